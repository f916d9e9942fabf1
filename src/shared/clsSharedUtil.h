#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include <vector>

#include "shared/error.h"
#include "shared/file_name.h"
#include "shared/ini_text.h"
#include "shared/text_stream.h"

namespace postrove {

enum class MessageButtons { Ok, YesNo };
enum class MessageIcon { Information, Question, Error };
enum class MessageAnswer { Ok, Yes, No };

// What GetDriveType answers, with its numbers.
enum class DriveKind {
  Unknown = 0,
  NoRoot = 1,
  Removable = 2,
  Fixed = 3,
  Network = 4,
  CdRom = 5,
  RamDisk = 6
};

// What tells a file from every other one that had its name before or has it later: the system's
// number for it, the time it was made, and whether it may be changed. A file that is written over
// in place or renamed stays the same one.
struct FileIdentity {
  std::uint32_t volume = 0;
  std::uint64_t number = 0;
  std::uint64_t made = 0;
  bool readOnly = false;
  bool operator==(const FileIdentity&) const = default;
};

// The shared utility object (held in gUtility): files, settings, the shell, message boxes, the
// folder picker. The product implements the protected and pure members on Windows, a test in
// memory. Paths are Windows paths. Thread: Outlook's user-interface thread only.
class clsSharedUtil {
 public:
  virtual ~clsSharedUtil() = default;

  // Full path of the current settings file. A plain property: nothing is opened when it is set.
  const std::wstring& IniFile() const { return iniFile_; }
  void SetIniFile(std::wstring path) { iniFile_ = std::move(path); }

  // True when the folder exists; false for an empty path, a file, or one that cannot be asked for.
  virtual bool FolderExists(const std::wstring& folder) = 0;

  // True when a file of that name exists in the folder (the two are joined as they are when the
  // folder ends in "\", else with one between). A folder of that name does not count.
  virtual bool FileExists(const std::wstring& folder, const std::wstring& file) = 0;

  // Size of an existing file in bytes, or -1.
  virtual long long FileSize(const std::wstring& path) = 0;

  // Nothing when there is no such file, or a folder of that name, or it cannot be asked for.
  virtual std::optional<FileIdentity> IdentifyFile(const std::wstring& path) = 0;

  // Makes a new empty file, so that its name is the caller's and nobody else's; nothing when the
  // name is taken, by a file or a folder. Throws Error when the file cannot be made.
  virtual std::optional<FileIdentity> ClaimFile(const std::wstring& path) = 0;

  // Removes the file if it is the one meant. False when another one is there, which is left alone;
  // true when none is. Throws Error when it is still there.
  virtual bool RemoveFileIf(const std::wstring& path, const FileIdentity& meant) = 0;

  // Makes the folder and the missing ones above it. Nothing happens when it exists. Throws Error
  // with the path and the system's reason in its description.
  virtual void CreateFolder(const std::wstring& folder) = 0;

  // The system's folder picker with a prompt; one of several lines is shown before it, where the
  // user can cancel as well. The chosen folder without a trailing backslash
  // (a drive's root keeps its own), or empty text when the user cancels.
  virtual std::wstring BrowseForFolder(const std::wstring& prompt) = 0;

  // Keeps a file from being opened for writing by anybody until the answer goes; it can be read and
  // renamed. Throws Error when it is open in a way that forbids that, as a database in use is.
  virtual std::shared_ptr<void> HoldFile(const std::wstring& path) = 0;

  // Copies a file's bytes to the disk, with the folder made as needed, at a path where no file is
  // yet. Throws Error; where the connection is lost a part of the copy can be left.
  virtual void DuplicateFile(const std::wstring& from, const std::wstring& to) = 0;

  // True when both files can be read to their ends and hold the same bytes.
  virtual bool FilesAreEqual(const std::wstring& one, const std::wstring& other) = 0;

  // Gives a file another name in its folder, where none has it. Throws Error; the file then keeps
  // its name.
  virtual void RenameFile(const std::wstring& from, const std::wstring& to) = 0;

  // Removes a file; a read-only one as well. Throws Error when it is still there.
  virtual void RemoveFile(const std::wstring& path) = 0;

  // The local date as "YYYYMMDD".
  virtual std::wstring Today() = 0;

  // A drive root such as "C:\".
  virtual DriveKind DriveType(const std::wstring& root) = 0;

  // Opens a document, folder or web address with the shell verb "open". Throws Error.
  virtual void OpenDocument(const std::wstring& document) = 0;

  // Shows a message box over the active window and returns the answer.
  virtual MessageAnswer ShowMessage(const std::wstring& text, const std::wstring& title,
                                    MessageButtons buttons, MessageIcon icon) = 0;

  // The value of a key of an INI file, or `defaultValue` when the file, the section or the key is
  // missing. Throws Error when the file cannot be read: defaults are never taken for it.
  // `application` ("Postrove" or "Quillion") names the product that owns the key; the file alone
  // decides the result. The rules of the format are in data/ini_text.h.
  std::wstring ReadSetting(const std::wstring& application, const std::wstring& section,
                           const std::wstring& key, const std::wstring& defaultValue,
                           const std::wstring& file);

  // True when the settings file is there, false when it is not, on a drive that answers. Throws
  // Error when it cannot be read or nobody can tell.
  bool HasSettings(const std::wstring& file);

  // While one of these lives, each settings file is opened once at most, and waited for once: what
  // was found then holds for ReadSetting and HasSettings.
  class ReadingOnce {
   public:
    explicit ReadingOnce(clsSharedUtil& utility) : utility_(utility) { ++utility_.readers_; }
    ReadingOnce(const ReadingOnce&) = delete;
    ReadingOnce& operator=(const ReadingOnce&) = delete;
    ~ReadingOnce() {
      if (--utility_.readers_ == 0) utility_.found_.clear();
    }

   private:
    clsSharedUtil& utility_;
  };

  // Stores a value; file, folder, section and key are made as needed. The file is replaced as a
  // whole under a lock, so another reader sees the old or the new file. Throws Error; the old file
  // then stands unchanged. `recoding` says whether its encoding may change for the value's sake:
  // not that of another program's file.
  void WriteSetting(const std::wstring& application, const std::wstring& section,
                    const std::wstring& key, const std::wstring& value, const std::wstring& file,
                    ini::Recoding recoding = ini::Recoding::Allowed);

  // The lines of a text file, or nothing when it does not exist. Throws Error when it cannot be
  // read.
  std::optional<TextStream> OpenTextFile(const std::wstring& path);

  // Appends one line to a text file, which is not made: throws Error 53 when it is missing, and
  // Error when it cannot be written.
  void AppendLine(const std::wstring& path, const std::wstring& line);

  // A name that Windows accepts for a file (shared/file_name.h).
  std::wstring MakeFileName(const std::wstring& text, std::size_t maxUnits = kMaxNameUnits);

  // True when text written in the system's code page comes back as it was.
  bool InCodePage(const std::wstring& text) { return FromCodePage(ToCodePage(text)) == text; }

  // Shows the standard message box for a failed procedure: what failed, in which procedure, what
  // the user can do. Never throws.
  void ReportError(const Error& error, const std::wstring& module, const std::wstring& procedure,
                   const std::wstring& detail = {}) noexcept;

 protected:
  // The bytes of a file. False when it is not there, on a drive or share that answers. Throws Error
  // when it cannot be read: another program holds it, the drive is away, access is denied.
  virtual bool LoadFile(const std::wstring& path, std::string* bytes) = 0;

  // Replaces a file by change(its bytes) in one step; a missing file counts as empty and is made,
  // with its folder. Throws Error; the old file then stands unchanged.
  virtual void UpdateFile(const std::wstring& path,
                          const std::function<std::string(const std::string&)>& change) = 0;

  // Text of bytes in the system's code page, and back ("?" for what it lacks).
  virtual std::wstring FromCodePage(const std::string& bytes) = 0;
  virtual std::string ToCodePage(const std::wstring& text) = 0;

 private:
  // What a look at a settings file found: its bytes, none when it is missing, or why not.
  struct Found {
    std::wstring path;
    std::optional<std::string> bytes;
    std::optional<Error> error;
  };
  std::optional<std::string> SettingsBytes(const std::wstring& file);
  Found LookAt(const std::wstring& file);
  Found* KnownFile(const std::wstring& file);
  CodePage SystemCodePage();

  std::wstring iniFile_;
  int readers_ = 0;
  std::vector<Found> found_;
};

// Runs `body` under the procedure-wide error handler: an exception is reported through ReportError
// with the module and procedure name and goes no further. True when the body ended without one.
bool Reporting(clsSharedUtil& utility, const wchar_t* module, const wchar_t* procedure,
               const std::function<void()>& body) noexcept;

}  // namespace postrove
