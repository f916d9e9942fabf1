#pragma once

#include <string>

namespace postrove::forms {

// The product's web site: what the dialogs show and where the help pages lie.
inline constexpr const wchar_t* kWebSite = L"https://www.postrove.example";

// What a click on a link opens: its caption when that is an address of the web, else the product's
// site. The shell would look for any other text as a file, in whatever folder is current, and run
// it.
std::wstring LinkTarget(const std::wstring& caption);

}  // namespace postrove::forms
