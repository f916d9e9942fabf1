#pragma once

#include <windows.h>

#include <functional>
#include <string>

namespace postrove {

// Files larger than this are not settings or text files and are not loaded.
inline constexpr long long kLargestTextFile = 64LL * 1024 * 1024;

// The bytes of a file; others may read, write or replace it meanwhile. A file that another program
// holds is waited for, a quarter of a second as a rule and half a second at most: Outlook's start
// reads settings. ERROR_SUCCESS, or the system's reason: ERROR_FILE_TOO_LARGE for a file beyond
// kLargestTextFile.
DWORD LoadWholeFile(const std::wstring& path, std::string* bytes);

// Replaces a file by change(its bytes). A missing file counts as empty; its folder must exist.
// - Writers in all processes that use this function exclude each other by a lock file beside the
//   file ("<path>.lock"), which the system removes with its owner, even a killed one. A writer
//   waits a few seconds for the lock.
// - The new bytes go to "<path>.tmp", are flushed to the disk and renamed over the file, so that a
//   reader or a crash meets the old bytes or the new ones. When `change` returns what it was given,
//   nothing is written.
// - Permissions stay: a user who may not write or delete the old file does not replace it, and the
//   new one gets its access list where the file system and the user's rights allow that.
// Throws Error, and passes on what `change` throws; the old file then stands unchanged and no
// temporary file is left.
void UpdateWholeFile(const std::wstring& path,
                     const std::function<std::string(const std::string&)>& change);

// Copies a file's bytes to a path where none is yet and flushes them to the disk. Throws Error; no
// copy is then left, unless its disk cannot be reached any more.
void CopyWholeFile(const std::wstring& from, const std::wstring& to);

// True when both files can be read to their ends and hold the same bytes, whatever their size.
bool WholeFilesAreEqual(const std::wstring& one, const std::wstring& other);

}  // namespace postrove
