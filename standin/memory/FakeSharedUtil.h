#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "memory/Latin1.h"
#include "memory/Memory.h"
#include "shared/clsSharedUtil.h"
#include "shared/text.h"

namespace postrove::testing {

struct ShownMessage {
  std::wstring text;
  std::wstring title;
  MessageButtons buttons;
  MessageIcon icon;
  bool operator==(const ShownMessage&) const = default;
};

// The shared utility object in memory. Its file system knows paths with a drive ("C:\", which
// exists) or a share, compared without regard to case, "/" counting as "\". The code page is
// Latin-1. A message box or folder picker that the test did not announce fails the test, and so
// does an announced one that never came.
class FakeSharedUtil : public clsSharedUtil {
 public:
  FakeSharedUtil() { AddFolder(L"C:\\"); }
  FakeSharedUtil(const FakeSharedUtil&) = delete;
  FakeSharedUtil& operator=(const FakeSharedUtil&) = delete;
  ~FakeSharedUtil() override {
    EXPECT_TRUE(answers_.empty()) << answers_.size() << " expected message boxes were not shown";
    EXPECT_TRUE(picks_.empty()) << picks_.size() << " expected folder pickers were not shown";
  }

  // The stage. Folders above an added one are added with it.
  void AddFolder(const std::wstring& folder) {
    for (std::wstring path = Plain(folder); !path.empty(); path = Parent(path)) {
      entries_.try_emplace(Key(path), Entry{path, true, {}, false, 0, false});
    }
  }
  // A file that is there is written over in place: it stays the same one.
  void AddFile(const std::wstring& path, std::string bytes = {}) {
    AddFolder(Parent(Plain(path)));
    const std::uint64_t number = File(path) ? entries_.at(Key(path)).number : ++filesMade_;
    entries_[Key(path)] = Entry{Plain(path), false, std::move(bytes), false, number, false};
  }
  void SetReadOnly(const std::wstring& path) { entries_.at(Key(path)).readOnly = true; }
  // Another program has the file open, or no longer; it can neither be read nor written meanwhile.
  void SetHeld(const std::wstring& path, bool held = true) { entries_.at(Key(path)).held = held; }
  void Remove(const std::wstring& path) { entries_.erase(Key(path)); }
  void SetDriveType(const std::wstring& root, DriveKind kind) { drives_[Key(root)] = kind; }

  // Announces the next message box or folder picker (cancelled with an empty text).
  // `meanwhile` is what happens while the box is open.
  void ExpectMessage(MessageAnswer answer = MessageAnswer::Ok,
                     std::function<void()> meanwhile = {}) {
    answers_.push_back({answer, std::move(meanwhile)});
  }
  void ExpectBrowse(std::wstring chosen) { picks_.push_back(std::move(chosen)); }

  // From now on what was not announced is answered with Ok or Cancel, a question as told,
  // for tests that make anything fail.
  void AnswerTheRest(MessageAnswer questions = MessageAnswer::No) {
    answersTheRest_ = true;
    questions_ = questions;
  }

  // The n-th file operation from now on fails, 1 being the next: it throws Error where it can, else
  // it answers as for a missing file.
  void FailFileOperation(int n) { failing_ = operations_ + n; }

  // The process dies at the n-th file operation: neither that nor any later one does anything.
  struct ProcessDied {};
  void DieAtFileOperation(int n) { dying_ = operations_ + n; }

  // What happens while a message box is open that was not announced.
  std::function<void()> duringMessages;
  // What other users do before each file operation.
  std::function<void()> otherUsers;

  // The disk of a process that died.
  void TakeFilesOf(const FakeSharedUtil& other) { entries_ = other.entries_; }

  int FileOperations() const { return operations_; }

  // What happened. The files whose bytes were asked for, in that order.
  const std::vector<std::wstring>& Loaded() const { return loaded_; }
  // The bytes of a file, or nothing when there is none.
  std::optional<std::string> File(const std::wstring& path) const {
    const Entry* entry = Find(path);
    if (!entry || entry->folder) return std::nullopt;
    return entry->bytes;
  }
  bool IsHeld(const std::wstring& path) const { return held_.contains(Key(path)); }
  bool HasFolderOf(const std::wstring& path) const {
    const Entry* entry = Find(Parent(Plain(path)));
    return entry && entry->folder;
  }
  // Full paths of all files, in the order of their lower-case spelling.
  std::vector<std::wstring> Files() const {
    std::vector<std::wstring> files;
    for (const auto& [key, entry] : entries_) {
      if (!entry.folder) files.push_back(entry.path);
    }
    return files;
  }
  const std::vector<ShownMessage>& Messages() const { return messages_; }
  const std::vector<std::wstring>& BrowsePrompts() const { return prompts_; }
  const std::vector<std::wstring>& OpenedDocuments() const { return documents_; }

  bool FolderExists(const std::wstring& folder) override {
    const memory::Scope host(false);
    const Entry* entry = Find(folder);
    return !NextOperationFails() && entry && entry->folder;
  }
  bool FileExists(const std::wstring& folder, const std::wstring& file) override {
    const memory::Scope host(false);
    if (NextOperationFails() || folder.empty() || file.empty()) return false;
    return File(text::NormaliseFolder(folder) + file).has_value();
  }
  long long FileSize(const std::wstring& path) override {
    const memory::Scope host(false);
    const std::optional<std::string> bytes = File(path);
    if (NextOperationFails() || !bytes) return -1;
    return static_cast<long long>(bytes->size());
  }
  std::optional<FileIdentity> IdentifyFile(const std::wstring& path) override {
    const memory::Scope host(false);
    const Entry* entry = Find(path);
    if (NextOperationFails() || !entry || entry->folder) return std::nullopt;
    return FileIdentity{1, entry->number, 0, entry->readOnly};
  }
  std::optional<FileIdentity> ClaimFile(const std::wstring& path) override {
    const memory::Scope host(false);
    if (NextOperationFails() || !HasFolderOf(path)) Fail(L"Cannot make the file", path);
    if (Find(path)) return std::nullopt;
    AddFile(path);
    return FileIdentity{1, filesMade_, 0, false};
  }
  bool RemoveFileIf(const std::wstring& path, const FileIdentity& meant) override {
    const memory::Scope host(false);
    if (NextOperationFails()) Fail(L"Cannot delete the file", path);
    const Entry* entry = Find(path);
    if (entry && entry->number != meant.number) return false;
    Remove(path);
    return true;
  }
  void CreateFolder(const std::wstring& folder) override {
    const memory::Scope host(false);
    if (NextOperationFails()) Fail(L"Cannot make the folder", folder);
    for (std::wstring path = Plain(folder); !path.empty(); path = Parent(path)) {
      const Entry* entry = Find(path);
      if (entry && entry->folder) return AddFolder(folder);
      if (entry) break;
    }
    Fail(L"Cannot make the folder", folder);
  }
  std::shared_ptr<void> HoldFile(const std::wstring& path) override {
    const memory::Scope host(false);
    if (NextOperationFails() || !File(path)) Fail(L"Cannot hold the file", path);
    held_.insert(Key(path));
    return {this, [path](FakeSharedUtil* self) { self->held_.erase(Key(path)); }};
  }
  void DuplicateFile(const std::wstring& from, const std::wstring& to) override {
    const memory::Scope host(false);
    const bool wanted = File(from) && !Find(to) && Find(Root(to));
    if (wanted && !Died()) AddFile(to, File(from)->substr(0, File(from)->size() / 2));
    if (NextOperationFails() || !wanted) Fail(L"Cannot copy the file to", to);
    AddFile(to, *File(from));
  }
  bool FilesAreEqual(const std::wstring& one, const std::wstring& other) override {
    const memory::Scope host(false);
    return !NextOperationFails() && File(one) && File(one) == File(other);
  }
  void RenameFile(const std::wstring& from, const std::wstring& to) override {
    const memory::Scope host(false);
    if (NextOperationFails() || !File(from) || Find(to)) Fail(L"Cannot rename the file", from);
    Entry moved = entries_.at(Key(from));
    Remove(from);
    moved.path = Plain(to);
    entries_.emplace(Key(to), std::move(moved));
  }
  void RemoveFile(const std::wstring& path) override {
    const memory::Scope host(false);
    if (NextOperationFails() || !File(path)) Fail(L"Cannot delete the file", path);
    Remove(path);
  }
  std::wstring Today() override { return L"20240512"; }
  std::wstring BrowseForFolder(const std::wstring& prompt) override {
    const memory::Scope host(false);
    prompts_.push_back(prompt);
    return Take(&picks_, L"folder picker", prompt).value_or(L"");
  }
  DriveKind DriveType(const std::wstring& root) override {
    const memory::Scope host(false);
    const auto drive = drives_.find(Key(root));
    if (drive != drives_.end()) return drive->second;
    return Find(root) ? DriveKind::Fixed : DriveKind::NoRoot;
  }
  void OpenDocument(const std::wstring& document) override { documents_.push_back(document); }
  MessageAnswer ShowMessage(const std::wstring& text, const std::wstring& title,
                            MessageButtons buttons, MessageIcon icon) override {
    const memory::Scope host(false);
    messages_.push_back({text, title, buttons, icon});
    const bool question = buttons == MessageButtons::YesNo;
    const auto box = Take(&answers_, L"message box", title + L" | " + text);
    if (!box) {
      const MessageAnswer answer = question ? questions_ : MessageAnswer::Ok;
      if (duringMessages) duringMessages();
      return answer;
    }
    EXPECT_EQ(question, box->answer != MessageAnswer::Ok)
        << "the answer does not fit the buttons of: " << text::ToUtf8(text);
    if (box->meanwhile) box->meanwhile();
    return box->answer;
  }

 protected:
  bool LoadFile(const std::wstring& path, std::string* bytes) override {
    const memory::Scope host(false);
    loaded_.push_back(path);
    const std::optional<std::string> found = File(path);
    const bool away = !Find(Root(path)) || (found && Find(path)->held);
    if (NextOperationFails() || away) Fail(L"Cannot read the file", path);
    if (!found) return false;
    *bytes = *found;
    return true;
  }
  void UpdateFile(const std::wstring& path,
                  const std::function<std::string(const std::string&)>& change) override {
    const memory::Scope host(false);
    if (NextOperationFails()) Fail(L"Cannot write the file", path);
    const Entry* entry = Find(path);
    if (entry && (entry->folder || entry->readOnly || entry->held)) {
      Fail(L"Cannot write the file", path);
    }
    if (!Find(Root(path))) Fail(L"Cannot write the file", path);
    AddFile(path, change(File(path).value_or("")));
  }
  std::wstring FromCodePage(const std::string& bytes) override { return kLatin1.decode(bytes); }
  std::string ToCodePage(const std::wstring& text) override { return kLatin1.encode(text); }

 private:
  struct Entry {
    std::wstring path;
    bool folder;
    std::string bytes;
    bool readOnly;
    std::uint64_t number;  // of a file, from 1 on
    bool held;
  };

  // With "\" only and none at the end, so "C:" stands for the drive's root.
  static std::wstring Plain(const std::wstring& path) {
    std::wstring plain = text::Replace(path, L"/", L"\\");
    while (!plain.empty() && plain.back() == L'\\') plain.pop_back();
    return plain;
  }
  static std::wstring Key(const std::wstring& path) {
    std::wstring key = Plain(path);
    for (wchar_t& c : key) c = text::Fold(c);
    return key;
  }
  // The folder of a plain path; empty above a drive or share.
  static std::wstring Parent(const std::wstring& plain) {
    if (plain == Root(plain)) return {};
    const std::size_t separator = plain.rfind(L'\\');
    return separator == std::wstring::npos ? std::wstring() : plain.substr(0, separator);
  }
  // "C:" or "\\server\share" of a path.
  static std::wstring Root(const std::wstring& path) {
    const std::wstring plain = Plain(path);
    const bool share = plain.starts_with(L"\\\\");
    const std::size_t server = share ? plain.find(L'\\', 2) : std::wstring::npos;
    const std::size_t end = plain.find(L'\\', share && server != plain.npos ? server + 1 : 2);
    return plain.substr(0, end);
  }

  const Entry* Find(const std::wstring& path) const {
    const auto found = entries_.find(Key(path));
    return path.empty() || found == entries_.end() ? nullptr : &found->second;
  }
  bool Died() const { return dying_ > 0 && operations_ >= dying_; }
  bool NextOperationFails() {
    ++operations_;
    if (Died()) throw ProcessDied();
    if (otherUsers) otherUsers();
    return operations_ == failing_;
  }
  [[noreturn]] static void Fail(const std::wstring& what, const std::wstring& path) {
    throw Error(kPathFileAccess, L"FakeSharedUtil",
                what + L" \"" + path + L"\": Access is denied.");
  }
  template <typename T>
  std::optional<T> Take(std::deque<T>* script, const wchar_t* what, const std::wstring& shown) {
    if (script->empty() && answersTheRest_) return std::nullopt;
    if (script->empty()) {
      ADD_FAILURE() << "unexpected " << text::ToUtf8(what) << ": " << text::ToUtf8(shown);
      return std::nullopt;
    }
    T first = std::move(script->front());
    script->pop_front();
    return first;
  }

  std::map<std::wstring, Entry> entries_;
  std::uint64_t filesMade_ = 0;
  std::map<std::wstring, DriveKind> drives_;
  struct ExpectedMessage {
    MessageAnswer answer;
    std::function<void()> meanwhile;
  };
  std::deque<ExpectedMessage> answers_;
  std::deque<std::wstring> picks_;
  std::vector<ShownMessage> messages_;
  std::vector<std::wstring> prompts_;
  std::vector<std::wstring> documents_;
  std::vector<std::wstring> loaded_;
  bool answersTheRest_ = false;
  MessageAnswer questions_ = MessageAnswer::No;
  int operations_ = 0;
  int failing_ = 0;
  int dying_ = 0;
  std::set<std::wstring> held_;
};

}  // namespace postrove::testing
