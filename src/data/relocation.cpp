#include "controller/clsPostrove.h"
#include "shared/text.h"

// Moving the database and the settings file to another folder. A file is copied, the copy is
// compared byte for byte, and only then the old one goes; whatever fails on the way is undone.
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

// Copies a file to a path where none is, and compares. Throws Error; nothing is then left there.
void CopyVerified(clsSharedUtil& utility, const std::wstring& from, const std::wstring& to) {
  utility.DuplicateFile(from, to);
  if (utility.FilesAreEqual(from, to)) return;
  utility.RemoveFile(to);
  throw Error(kPathFileAccess, L"clsPostrove",
              L"The copy \"" + to + L"\" is not the same as \"" + from + L"\".");
}

}  // namespace

std::wstring clsPostrove::FreeDatedName(const std::wstring& folder) const {
  const std::wstring stem = L"Moved_By_Postrove" + utility_->Today();
  std::wstring name = stem + L".mdb";
  for (int n = 2; utility_->FileExists(folder, name); ++n) {
    name = stem + L"_" + text::FromNumber(n) + L".mdb";
  }
  return folder + name;
}

clsPostrove::Move clsPostrove::PlanMove(const std::wstring& file, const std::wstring& folder,
                                        const std::wstring& name) {
  if (text::EqualsIgnoreCase(folder + name, file)) return Move::Refused;
  if (!text::IsRootedPath(folder)) {
    throw Error(
        kPathFileAccess, L"clsPostrove",
        L"The folder \"" + folder +
            L"\" must begin with a drive or a server, such as C:\\Data or \\\\Server\\Data.");
  }
  if (!utility_->FileExists(folder, name)) return Move::Copy;
  const bool use =
      utility_->ShowMessage(
          L"The folder \"" + folder + L"\" already holds a file \"" + name +
              L"\".\r\n\r\nDo you want to use that file from now on? The one that was "
              L"used until now stays where it is.",
          L"Existing File", MessageButtons::YesNo, MessageIcon::Question) == MessageAnswer::Yes;
  return use ? Move::UseExisting : Move::Refused;
}

bool clsPostrove::SetNewDbLocation(const std::wstring& folder) {
  bool moved = false;
  movedDatabase_.reset();
  Reporting(*utility_, L"clsPostrove", L"SetNewDbLocation()", [&] {
    if (useQuillion_) return;  // the database is Quillion's
    const std::wstring file = database_->DBPath + database_->DbName;
    const std::wstring target = folder + database_->DbName;
    const Move move = PlanMove(file, folder, database_->DbName);
    if (move == Move::Copy) {
      // The renaming comes first: it fails while anybody has the file open, and from then on nobody
      // can add a row that the copy would miss. The renamed file is the dated copy that stays.
      const std::wstring dated = FreeDatedName(database_->DBPath);
      utility_->RenameFile(file, dated);
      try {
        CopyVerified(*utility_, dated, target);
      } catch (const Error&) {
        utility_->RenameFile(dated, file);
        throw;
      }
      movedDatabase_ = MovedFile{file, dated, target};
    }
    moved = move != Move::Refused;
  });
  return moved;
}

void clsPostrove::TakeBackDbMove() {
  if (!movedDatabase_) return;
  utility_->RenameFile(movedDatabase_->dated, movedDatabase_->original);
  utility_->RemoveFile(movedDatabase_->target);
  movedDatabase_.reset();
}

bool clsPostrove::SetNewIniLocation(const std::wstring& folder) {
  bool moved = false;
  Reporting(*utility_, L"clsPostrove", L"SetNewIniLocation()", [&] {
    if (useQuillion_) return;  // the file is Quillion's
    const std::wstring file = utility_->IniFile();
    const std::wstring target = folder + kIniName;
    if (text::EqualsIgnoreCase(target, LocalIniFile()) && !text::EqualsIgnoreCase(target, file)) {
      // The local file is always there, with the way to the others: it takes over what is in use.
      for (const auto& [section, key] : kMovingSettings) {
        const std::wstring value = utility_->ReadSetting(L"Postrove", section, key, kMissing, file);
        if (value != kMissing) utility_->WriteSetting(L"Postrove", section, key, value, target);
      }
      moved = true;
      return;
    }
    const Move move = PlanMove(file, folder, kIniName);
    if (move == Move::Copy) {
      // Without a file yet there is nothing to copy; storing what is in use makes one.
      if (utility_->FileSize(file) < 0) WriteSetup(L"Root", Root, file);
      CopyVerified(*utility_, file, target);
    }
    moved = move != Move::Refused;
  });
  return moved;
}

}  // namespace postrove
