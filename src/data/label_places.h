#pragma once

#include <cstddef>

// Where each label stands in the label file (resources/Postrove.cnt).
namespace postrove::labels {

// Blocks.
inline constexpr std::size_t kSaveDialog = 0;
inline constexpr std::size_t kSetupDialog = 1;    // the hints, by the index of their field
inline constexpr std::size_t kProjectDialog = 2;  // the captions and then the hints of its fields

// Labels of the save dialog.
inline constexpr std::size_t kProjectHint = 0;
inline constexpr std::size_t kFolderHint = 1;
inline constexpr std::size_t kNameHint = 2;
inline constexpr std::size_t kFolderCaption = 3;
inline constexpr std::size_t kNameCaption = 4;

}  // namespace postrove::labels
