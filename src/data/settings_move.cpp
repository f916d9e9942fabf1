#include "data/file_move.h"
#include "data/move_question.h"
#include "data/settings_table.h"
#include "shared/text.h"

// Moving the settings file to another folder.
namespace postrove {

namespace {

// No value of a settings file: it cannot hold this character.
constexpr wchar_t kMissing[] = L"\n";

}  // namespace

bool Settings::SetNewIniLocation(const std::wstring& folder) {
  bool moved = false;
  Reporting(utility_, L"clsPostrove", L"SetNewIniLocation()",
            [&] { moved = !useQuillion_ && MoveFileTo(folder); });
  return moved;
}

bool Settings::MoveFileTo(const std::wstring& folder) {
  const std::wstring file = utility_.IniFile();
  const std::wstring target = folder + kSettingsFileName;
  if (text::EqualsIgnoreCase(target, LocalFile()) && !text::EqualsIgnoreCase(target, file)) {
    if (!AskToMove(utility_, Moved::Settings, CurrentFolder(), folder)) return false;
    // The local file is always there, with the way to the others: it takes over what is in use, and
    // when nothing is, because the other file cannot be read, it is in use as it stands.
    if (read_) CopyValuesTo(target);
    return true;
  }
  const Move move = PlanMove(utility_, Moved::Settings, file, folder);
  if (move == Move::Copy) {
    RequireRead();
    // Without a file yet there is nothing to copy; storing what is in use makes one.
    if (utility_.FileSize(file) < 0) Write(kRootField, Root);
    CopyIntoPlace(utility_, file, target);
  }
  return move != Move::Refused;
}

void Settings::CopyValuesTo(const std::wstring& target) {
  const clsSharedUtil::ReadingOnce once(utility_);
  for (const Setting& one : kSettings) {
    if (!one.moves) continue;
    const auto& [application, section] = one.section;
    const std::wstring value =
        utility_.ReadSetting(application, section, one.key, kMissing, utility_.IniFile());
    if (value != kMissing) utility_.WriteSetting(application, section, one.key, value, target);
  }
}

}  // namespace postrove
