#pragma once

#include <functional>
#include <optional>
#include <string>

#include "shared/clsSharedUtil.h"

namespace postrove {

// The place of one message file, from the taking of its name to the whole file. Other users file
// into the same folders: nothing that they put there is written over or removed. What the user
// agreed to write over stays a message file under another name until the new one is whole, also
// when Outlook or the machine dies meanwhile.
class FilePlace {
 public:
  explicit FilePlace(clsSharedUtil& utility) : utility_(utility) {}
  FilePlace(const FilePlace&) = delete;
  FilePlace& operator=(const FilePlace&) = delete;
  ~FilePlace();  // gives the place back unless a message was written

  const std::wstring& Path() const { return path_; }

  // Takes a name by making an empty file. False when the name is taken. Throws Error when the file
  // cannot be made.
  bool Claim(const std::wstring& path);

  // Takes the name of the file that the user agreed to write over. False when another file has it
  // by now, or that one's protection has changed: nobody agreed about that. Throws Error when the
  // file cannot be moved.
  bool Replace(const std::wstring& path, const FileIdentity& agreed);

  // Lets `write` write the file; what was there before then goes. When it throws, or leaves an
  // empty file, the place is given back, and the Error also says what could not be.
  void Write(const std::function<void()>& write);

 private:
  std::wstring SetAsideName() const;
  std::wstring GiveBack();

  clsSharedUtil& utility_;
  std::wstring path_;
  std::optional<FileIdentity> claimed_;
  std::wstring aside_;  // where the file is that was agreed about; empty for none
};

}  // namespace postrove
