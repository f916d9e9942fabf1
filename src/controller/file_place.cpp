#include "controller/file_place.h"

#include <utility>

#include "shared/file_name.h"
#include "shared/text.h"

namespace postrove {

namespace {

constexpr wchar_t kSource[] = L"clsPostrove.SaveAndSendMail()";

}  // namespace

FilePlace::~FilePlace() {
  try {
    GiveBack();
  } catch (...) {
    // What was agreed about is a message file all the same.
  }
}

bool FilePlace::Claim(const std::wstring& path) {
  path_ = path;  // before it is taken: nothing that fails may come between that and knowing it
  claimed_ = utility_.ClaimFile(path);
  return claimed_.has_value();
}

bool FilePlace::Replace(const std::wstring& path, const FileIdentity& agreed) {
  if (utility_.IdentifyFile(path) != agreed) return false;
  path_ = path;
  std::wstring aside = SetAsideName();
  utility_.RenameFile(path, aside);
  aside_ = std::move(aside);
  if (Claim(path)) return true;
  throw Error(kPathFileAccess, kSource,
              L"Another file " + text::Quoted(path) + L" was made meanwhile." + GiveBack());
}

// A free name beside the file, "Minutes (earlier).msg", within the limit of a path.
std::wstring FilePlace::SetAsideName() const {
  const std::size_t nameAt = path_.rfind(L'\\') + 1;
  const std::wstring folder = path_.substr(0, nameAt);
  const std::wstring stem = path_.substr(nameAt, path_.rfind(L'.') - nameAt);
  const std::size_t room = RoomForName(folder, kMessageEnding);
  constexpr int kMostTries = 1000;
  for (int n = 1; n < kMostTries; ++n) {
    const std::wstring number = n == 1 ? std::wstring() : L" " + text::FromNumber(n);
    const std::wstring mark = L" (earlier" + number + L")";
    std::wstring name = text::FromNumber(n);  // where there is no room for more
    if (mark.size() < room) name = CleanFileName(stem, room - mark.size()) + mark;
    const std::wstring aside = folder + name + kMessageEnding;
    if (name.size() <= room && utility_.FileSize(aside) < 0) return aside;
  }
  throw Error(kPathFileAccess, kSource,
              L"The file " + text::Quoted(path_) +
                  L" cannot be kept under another name while it is replaced. Choose another name.");
}

void FilePlace::Write(const std::function<void()>& write) {
  try {
    write();
    if (utility_.FileSize(path_) <= 0) {
      throw Error(kPathFileAccess, L"SaveAs",
                  L"Outlook did not write the file " + text::Quoted(path_) + L".");
    }
  } catch (...) {
    const Error error = CurrentError();
    throw Error(error.Number(), error.Source(), error.Description() + GiveBack());
  }
  claimed_.reset();
  if (aside_.empty()) return;
  const std::wstring aside = std::exchange(aside_, {});
  try {
    utility_.RemoveFile(aside);
  } catch (...) {
    // The new file is there; one too many harms nobody.
  }
}

// Sentences about what could not be put back, to go behind another one; none when all was.
std::wstring FilePlace::GiveBack() {
  std::wstring left;
  const std::optional<FileIdentity> claimed = std::exchange(claimed_, std::nullopt);
  const std::wstring aside = std::exchange(aside_, {});
  try {
    // Half a message must not pass for a filed one.
    if (claimed && !utility_.RemoveFileIf(path_, *claimed)) {
      left += L"\n\nThe file " + text::Quoted(path_) +
              L" was put there by somebody else, or is incomplete. Look at it before you go on.";
    }
  } catch (...) {
    left += L"\n\nThe file " + text::Quoted(path_) +
            L" is incomplete and could not be removed. Remove it yourself.";
  }
  try {
    if (!aside.empty()) utility_.RenameFile(aside, path_);
  } catch (...) {
    left += L"\n\nThe message that was there before is now in " + text::Quoted(aside) + L".";
  }
  return left;
}

}  // namespace postrove
