#pragma once

#include <memory>

#include "shared/clsSharedUtil.h"

namespace postrove {

// The shared utility object on Windows. The caller's thread has COM initialised as a
// single-threaded apartment, which the folder picker needs. Message boxes and the picker are owned
// by the thread's active window and stand above it even when it is topmost.
std::shared_ptr<clsSharedUtil> CreateWinSharedUtil();

}  // namespace postrove
