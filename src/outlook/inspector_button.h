#pragma once

namespace postrove {

// The bar of an inspector that gets the button, and the tag by which earlier buttons are found.
inline constexpr wchar_t kInspectorButtonBar[] = L"Standard";
inline constexpr wchar_t kInspectorButtonTag[] = L"Quillion Postrove Button";

}  // namespace postrove
