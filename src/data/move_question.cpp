#include "data/move_question.h"

#include "shared/text.h"

namespace postrove {

namespace {

bool Asks(clsSharedUtil& utility, const std::wstring& question, const std::wstring& title) {
  return utility.ShowMessage(question, title, MessageButtons::YesNo, MessageIcon::Question) ==
         MessageAnswer::Yes;
}

bool IsNetworkDrive(clsSharedUtil& utility, const std::wstring& folder) {
  return folder.substr(1, 1) == L":" &&
         utility.DriveType(folder.substr(0, 2) + L"\\") == DriveKind::Network;
}

}  // namespace

bool AskToMove(clsSharedUtil& utility, Moved what, const std::wstring& from,
               const std::wstring& to) {
  const bool settings = what == Moved::Settings;
  std::wstring question = L"Do you want to move the ";
  question += settings ? L"settings" : L"database";
  question += L" from " + text::Quoted(from) + L" to " + text::Quoted(to) + L"?";
  question += settings ? L"\r\n\r\nThey are kept there from now on."
                       : L"\r\n\r\nEverybody who uses it will find it there. Ask them to close "
                         L"Outlook first.";
  if (IsNetworkDrive(utility, to)) {
    question += L"\r\n\r\n" + to.substr(0, 2) +
                L" is a network drive: everybody who uses that folder needs this letter for it.";
  }
  return Asks(utility, question, settings ? L"Move the Settings" : L"Move the Database");
}

Move PlanMove(clsSharedUtil& utility, Moved what, const std::wstring& file,
              const std::wstring& folder) {
  const std::size_t nameAt = file.rfind(L'\\') + 1;
  const std::wstring before = file.substr(0, nameAt);
  const std::wstring name = file.substr(nameAt);
  if (text::EqualsIgnoreCase(folder + name, file)) return Move::Refused;
  if (!text::IsRootedPath(folder)) {
    throw Error(
        kPathFileAccess, L"clsPostrove",
        L"The folder \"" + folder +
            L"\" must begin with a drive or a server, such as C:\\Data or \\\\Server\\Data.");
  }
  if (!utility.FileExists(folder, name)) {
    return AskToMove(utility, what, before, folder) ? Move::Copy : Move::Refused;
  }
  const bool use =
      Asks(utility,
           L"The folder " + text::Quoted(folder) + L" already holds a file " + text::Quoted(name) +
               L".\r\n\r\nDo you want to use that file from now on? The one that was "
               L"used until now stays in " +
               text::Quoted(before) + L".",
           L"Existing File");
  return use ? Move::UseExisting : Move::Refused;
}

}  // namespace postrove
