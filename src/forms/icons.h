#pragma once

namespace postrove::forms {

// Icon resources of picture buttons (win32/forms.rc).
inline constexpr int kFolderIcon = 110;

}  // namespace postrove::forms
