#pragma once

namespace postrove::forms {

// The product's web site: what the dialogs show and where the help pages lie.
inline constexpr const wchar_t* kWebSite = L"https://www.postrove.example";

}  // namespace postrove::forms
