#pragma once

#include <string>

namespace postrove {

// The name of a message file, with its ending, from the name that the user gave it, with or without
// the ending. `attachments` marks a message that has some; `folder` ends with its backslash, and
// the path keeps to Windows' limit. Throws Error 5 when the folder leaves no room for a name, or
// when nothing of the name can stand in one.
std::wstring MessageFileName(const std::wstring& name, const std::wstring& folder,
                             bool attachments);

}  // namespace postrove
