#pragma once

#include <string>

#include "data/projects.h"

// Where a project's files lie. Without settings that were read, none is known.
namespace postrove {

// The folder of a project without one of its own, directly below the root folder, without a
// backslash at its end. The number can come from a stranger's subject: it names one folder, never a
// way out of the root, and the same one whether its project is listed or not.
std::wstring FolderOfNumber(const Settings& settings, const std::wstring& number);

// The folder of a project.
std::wstring FolderOf(const Settings& settings, const Project& project);

// The folder that is proposed for a message of the project, the root's when it has none.
std::wstring MessageFolder(const Settings& settings, const Project& project);

}  // namespace postrove
