#include "shared/win32/folder_picker.h"

#include <shlobj.h>
#include <shobjidl.h>
#include <wrl/client.h>

#include <memory>
#include <optional>

#include "shared/win32/system_error.h"

namespace postrove {
namespace {

using Microsoft::WRL::ComPtr;

struct TaskMemoryDeleter {
  void operator()(void* memory) const { CoTaskMemFree(memory); }
};

std::wstring WithoutBackslash(std::wstring folder) {
  const bool driveRoot = folder.size() == 3 && folder[1] == L':';
  if (!driveRoot && !folder.empty() && folder.back() == L'\\') folder.pop_back();
  return folder;
}

// Nothing when this picker cannot be used, empty text when the user cancelled it.
std::optional<std::wstring> PickWithFileDialog(HWND owner, const std::wstring& prompt) {
  ComPtr<IFileOpenDialog> dialog;
  if (FAILED(CoCreateInstance(CLSID_FileOpenDialog, nullptr, CLSCTX_INPROC_SERVER,
                              IID_PPV_ARGS(dialog.GetAddressOf())))) {
    return std::nullopt;
  }
  FILEOPENDIALOGOPTIONS options = 0;
  if (FAILED(dialog->GetOptions(&options)) ||
      FAILED(dialog->SetOptions(options | FOS_PICKFOLDERS | FOS_FORCEFILESYSTEM)) ||
      (!prompt.empty() && FAILED(dialog->SetTitle(prompt.c_str())))) {
    return std::nullopt;
  }
  const HRESULT shown = dialog->Show(owner);
  if (shown == HRESULT_FROM_WIN32(ERROR_CANCELLED)) return std::wstring();
  ComPtr<IShellItem> item;
  if (FAILED(shown) || FAILED(dialog->GetResult(item.GetAddressOf()))) return std::nullopt;
  wchar_t* name = nullptr;
  if (FAILED(item->GetDisplayName(SIGDN_FILESYSPATH, &name))) return std::nullopt;
  const std::unique_ptr<wchar_t, TaskMemoryDeleter> path(name);
  return std::wstring(path.get());
}

std::wstring PickWithTree(HWND owner, const std::wstring& prompt) {
  BROWSEINFOW browse{};
  browse.hwndOwner = owner;
  browse.lpszTitle = prompt.c_str();
  browse.ulFlags = BIF_RETURNONLYFSDIRS | BIF_NEWDIALOGSTYLE;
  const std::unique_ptr<ITEMIDLIST, TaskMemoryDeleter> item(SHBrowseForFolderW(&browse));
  if (!item) return {};
  wchar_t path[MAX_PATH];
  if (!SHGetPathFromIDListW(item.get(), path)) {
    throw Error(kPathFileAccess, L"BrowseForFolder",
                L"The chosen place is not a folder on a disk.");
  }
  return path;
}

}  // namespace

std::wstring PickFolder(HWND owner, const std::wstring& prompt) {
  std::optional<std::wstring> folder = PickWithFileDialog(owner, prompt);
  if (!folder) folder = PickWithTree(owner, prompt);
  return WithoutBackslash(std::move(*folder));
}

}  // namespace postrove
