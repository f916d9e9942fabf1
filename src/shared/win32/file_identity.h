#pragma once

#include <optional>
#include <string>

#include "shared/clsSharedUtil.h"

// The Windows side of the operations of clsSharedUtil with these names.
namespace postrove {

std::optional<FileIdentity> IdentifyFileAt(const std::wstring& path);
std::optional<FileIdentity> ClaimFileAt(const std::wstring& path);
bool RemoveFileAtIf(const std::wstring& path, const FileIdentity& meant);

}  // namespace postrove
