#pragma once

#include <optional>
#include <string>

#include "controller/dialog_stack.h"
#include "shared/clsSharedUtil.h"

// What the dialogs ask about folders.
namespace postrove {

// Lets the user choose a folder above the save dialog. Nothing when the choice was cancelled.
std::optional<std::wstring> BrowseForFolder(DialogStack& dialogs, clsSharedUtil& utility,
                                            const std::wstring& prompt);

// The folder, which exists now: it did, or the user had it made, perhaps under another name.
// Nothing when he did not want it. Throws Error when it cannot be made, or its new name is refused.
std::optional<std::wstring> EnsureFolder(DialogStack& dialogs, clsSharedUtil& utility,
                                         const std::wstring& folder);

}  // namespace postrove
