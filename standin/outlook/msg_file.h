#pragma once

#include <string>

#include "outlook/message.h"

namespace standin {

struct MsgForm {
  bool unicode = false;  // strings as UTF-16; otherwise in the system code page, which loses others
  bool unsent = false;   // a draft
  bool received = false;  // has a delivery time
  bool unRead = false;
};

// Writes a message as a .msg compound file, replacing an existing file. The file is written under a
// short name beside its place and renamed when it is complete. Throws HostError with the storage's
// or the system's code; nothing is left behind then.
void WriteMsgFile(const std::wstring& path, const MessageData& message, const MsgForm& form);

}  // namespace standin
