#include "data/file_move.h"

namespace postrove {

void CopyIntoPlace(clsSharedUtil& utility, const std::wstring& from, const std::wstring& to) {
  const std::wstring unfinished = to + L".moving";
  const auto clear = [&] {
    if (utility.FileSize(unfinished) >= 0) utility.RemoveFile(unfinished);
  };
  clear();  // of a process that died
  try {
    utility.DuplicateFile(from, unfinished);
    if (!utility.FilesAreEqual(from, unfinished)) {
      throw Error(kPathFileAccess, L"clsPostrove",
                  L"The copy \"" + to + L"\" is not the same as \"" + from + L"\".");
    }
    utility.RenameFile(unfinished, to);
  } catch (const Error&) {
    clear();
    throw;
  }
}

void MoveDatabase(clsSharedUtil& utility, const std::wstring& from, const std::wstring& to,
                  const std::wstring& dated, const std::function<void()>& store,
                  const std::function<void()>& takeBack) {
  const std::shared_ptr<void> held = utility.HoldFile(from);
  CopyIntoPlace(utility, from, to);
  std::shared_ptr<void> heldCopy;
  try {
    heldCopy = utility.HoldFile(to);
    store();
    utility.RenameFile(from, dated);
  } catch (const Error&) {
    takeBack();
    utility.RemoveFile(to);
    throw;
  }
}

}  // namespace postrove
