#pragma once

// Texts that more than one dialog shows.
namespace postrove::forms {

inline constexpr wchar_t kRootedFolder[] =
    L"The Folder must begin with a drive or a server, such as C:\\Projects or "
    L"\\\\Server\\Projects.";

}  // namespace postrove::forms
