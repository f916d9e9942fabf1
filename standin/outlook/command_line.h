#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "outlook/host.h"
#include "outlook/scripted_user.h"

namespace standin {

struct CommandLine {
  Options host;
  Editor editor = Editor::kFromMessage;
  bool composing = false;  // --new
  bool interactive = false;
  UserScript user;
  std::size_t failingCall = 0;  // 0: none
  std::wstring callsFile;
  std::wstring messageFolder;
};

// Reads the arguments. Throws HostError with a sentence for the user.
CommandLine ParseCommandLine(const std::vector<std::wstring>& arguments);

}  // namespace standin
