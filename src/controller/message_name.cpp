#include "controller/message_name.h"

#include <algorithm>

#include "shared/error.h"
#include "shared/file_name.h"
#include "shared/text.h"

namespace postrove {

std::wstring MessageFileName(const std::wstring& name, const std::wstring& folder,
                             bool attachments) {
  const std::wstring ending = (attachments ? L"(att)" : L"") + std::wstring(kMessageEnding);
  const std::size_t room = RoomForName(folder, ending);
  if (room == 0) {
    throw Error(kInvalidArgument, L"clsPostrove.SaveAndSendMail()",
                L"The folder " + text::Quoted(folder) +
                    L" leaves no room for a file name. Choose a folder with a shorter path.");
  }
  const std::wstring cleaned =
      CleanFileName(WithoutMessageEnding(name), std::min(kMaxNameUnits, room));
  if (cleaned.empty()) {
    throw Error(
        kInvalidArgument, L"clsPostrove.SaveAndSendMail()",
        L"Nothing of " + text::Quoted(name) + L" can stand in a file name. Choose another name.");
  }
  return cleaned + ending;
}

}  // namespace postrove
