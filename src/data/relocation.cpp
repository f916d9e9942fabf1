#include "controller/clsPostrove.h"
#include "data/file_move.h"
#include "shared/text.h"

// Moving the database and the settings file to another folder.
namespace postrove {

namespace {

constexpr wchar_t kIniName[] = L"Postrove.ini";

// The settings that move with their file.
constexpr struct {
  const wchar_t* section;
  const wchar_t* key;
} kMovingSettings[] = {{L"Setup", L"Root"},        {L"Setup", L"ProjDelim"},
                       {L"Setup", L"SubjDelim"},   {L"Setup", L"EmailFolder"},
                       {L"Setup", L"WorkUnit"},    {L"Setup", L"PostroveDBPath"},
                       {L"Database", L"Provider2"}};

// No value of a settings file: it cannot hold this character.
constexpr wchar_t kMissing[] = L"\n";

// A name for what stays of a moved database.
std::wstring FreeDatedName(clsSharedUtil& utility, const std::wstring& folder) {
  const std::wstring stem = L"Moved_By_Postrove" + utility.Today();
  std::wstring name = stem + L".mdb";
  for (int n = 2; utility.FileExists(folder, name); ++n) {
    name = stem + L"_" + text::FromNumber(n) + L".mdb";
  }
  return folder + name;
}

}  // namespace

clsPostrove::Move clsPostrove::PlanMove(const std::wstring& file, const std::wstring& folder,
                                        const std::wstring& name) {
  if (text::EqualsIgnoreCase(folder + name, file)) return Move::Refused;
  if (!text::IsRootedPath(folder)) {
    throw Error(
        kPathFileAccess, L"clsPostrove",
        L"The folder \"" + folder +
            L"\" must begin with a drive or a server, such as C:\\Data or \\\\Server\\Data.");
  }
  const std::wstring before = file.substr(0, file.rfind(L'\\') + 1);
  if (!utility_->FileExists(folder, name)) {
    return AskToMove(name, before, folder) ? Move::Copy : Move::Refused;
  }
  const bool use =
      utility_->ShowMessage(
          L"The folder " + text::Quoted(folder) + L" already holds a file " + text::Quoted(name) +
              L".\r\n\r\nDo you want to use that file from now on? The one that was used until "
              L"now stays in " +
              text::Quoted(before) + L".",
          L"Existing File", MessageButtons::YesNo, MessageIcon::Question) == MessageAnswer::Yes;
  return use ? Move::UseExisting : Move::Refused;
}

// A typed folder alone must not take the office's files elsewhere.
bool clsPostrove::AskToMove(const std::wstring& name, const std::wstring& from,
                            const std::wstring& to) const {
  const bool settings = name == kIniName;
  std::wstring question = L"Do you want to move the ";
  question += settings ? L"settings" : L"database";
  question += L" from " + text::Quoted(from) + L" to " + text::Quoted(to) + L"?";
  question += settings ? L"\r\n\r\nThey are kept there from now on."
                       : L"\r\n\r\nEverybody who uses it will find it there. Ask them to close "
                         L"Outlook first.";
  if (networkDrive_) {
    question += L"\r\n\r\n" + to.substr(0, 2) +
                L" is a network drive: everybody who uses that folder needs this letter for it.";
  }
  return utility_->ShowMessage(question, settings ? L"Move the Settings" : L"Move the Database",
                               MessageButtons::YesNo, MessageIcon::Question) == MessageAnswer::Yes;
}

bool clsPostrove::SetNewDbLocation(const std::wstring& folder) {
  bool moved = false;
  Reporting(*utility_, L"clsPostrove", L"SetNewDbLocation()", [&] {
    if (useQuillion_) return;  // the database is Quillion's
    const std::wstring before = database_->DBPath;
    const std::wstring name = database_->DbName;
    const Move move = PlanMove(before + name, folder, name);
    if (move == Move::Refused) return;

    constexpr wchar_t kKey[] = L"PostroveDBPath";
    const std::wstring files[] = {utility_->IniFile(), LocalIniFile()};
    const std::wstring named[] = {ReadSetup(kKey, before, files[0]),
                                  ReadSetup(kKey, before, files[1])};
    std::size_t stored = 0;
    const auto store = [&] {
      for (; stored < std::size(files); ++stored) WriteSetup(kKey, folder, files[stored]);
    };
    const auto takeBack = [&] {
      for (std::size_t i = 0; i < stored; ++i) WriteSetup(kKey, named[i], files[i]);
    };
    if (move == Move::Copy) {
      MoveDatabase(*utility_, before + name, folder + name, FreeDatedName(*utility_, before), store,
                   takeBack);
    } else {
      CheckDatabase(folder);
      try {
        store();
      } catch (const Error&) {
        takeBack();
        throw;
      }
    }
    moved = true;
  });
  return moved;
}

bool clsPostrove::SetNewIniLocation(const std::wstring& folder) {
  bool moved = false;
  Reporting(*utility_, L"clsPostrove", L"SetNewIniLocation()", [&] {
    if (useQuillion_) return;  // the file is Quillion's
    const std::wstring file = utility_->IniFile();
    const std::wstring target = folder + kIniName;
    if (text::EqualsIgnoreCase(target, LocalIniFile()) && !text::EqualsIgnoreCase(target, file)) {
      if (!AskToMove(kIniName, file.substr(0, file.rfind(L'\\') + 1), folder)) return;
      // The local file is always there, with the way to the others: it takes over what is in use,
      // and when nothing is, because the other file cannot be read, it is in use as it stands.
      if (!settingsRead_) {
        moved = true;
        return;
      }
      const clsSharedUtil::ReadingOnce once(*utility_);
      for (const auto& [section, key] : kMovingSettings) {
        const std::wstring value = utility_->ReadSetting(L"Postrove", section, key, kMissing, file);
        if (value != kMissing) utility_->WriteSetting(L"Postrove", section, key, value, target);
      }
      moved = true;
      return;
    }
    const Move move = PlanMove(file, folder, kIniName);
    if (move == Move::Copy) {
      RequireSettings();
      // Without a file yet there is nothing to copy; storing what is in use makes one.
      if (utility_->FileSize(file) < 0) WriteSetup(L"Root", Root, file);
      CopyIntoPlace(*utility_, file, target);
    }
    moved = move != Move::Refused;
  });
  return moved;
}

}  // namespace postrove
