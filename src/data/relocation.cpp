#include "controller/clsPostrove.h"
#include "shared/text.h"

// Moving the database and the settings file to another folder. A file is copied, the copy is
// compared byte for byte, and only then the old one goes; whatever fails on the way is undone.
namespace postrove {

namespace {

constexpr wchar_t kIniName[] = L"Postrove.ini";

// Copies a file to a path where none is, and compares. What it made is removed again unless Keep.
class VerifiedCopy {
 public:
  VerifiedCopy(clsSharedUtil& utility, const std::wstring& from, std::wstring to)
      : utility_(utility), to_(std::move(to)) {
    utility_.DuplicateFile(from, to_);
    made_ = true;
    if (!utility_.FilesAreEqual(from, to_)) {
      Undo();
      throw Error(
          kPathFileAccess, L"clsPostrove",
          L"The copy \"" + to_ + L"\" is not the same as \"" + from + L"\". Nothing was moved.");
    }
  }
  VerifiedCopy(const VerifiedCopy&) = delete;
  VerifiedCopy& operator=(const VerifiedCopy&) = delete;
  ~VerifiedCopy() { Undo(); }

  void Keep() { made_ = false; }

 private:
  void Undo() noexcept {
    if (!made_) return;
    made_ = false;
    try {
      utility_.RemoveFile(to_);
    } catch (...) {
      // A copy too many harms nobody.
    }
  }

  clsSharedUtil& utility_;
  const std::wstring to_;
  bool made_ = false;
};

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
  const auto ask = [&](const std::wstring& question) {
    return utility_->ShowMessage(L"The folder \"" + folder + L"\" already holds a file \"" + name +
                                     L"\".\r\n\r\n" + question,
                                 L"Existing File", MessageButtons::YesNo,
                                 MessageIcon::Question) == MessageAnswer::Yes;
  };
  if (folder.empty() || text::EqualsIgnoreCase(folder + name, file)) return Move::Refused;
  if (!utility_->FileExists(folder, name)) return Move::Copy;
  if (ask(L"Do you want to use that file from now on? The one that was used until now stays where "
          L"it is.")) {
    return Move::UseExisting;
  }
  return Move::Refused;
}

bool clsPostrove::SetNewDbLocation(const std::wstring& folder) {
  bool moved = false;
  Reporting(*utility_, L"clsPostrove", L"SetNewDbLocation()", [&] {
    const std::wstring file = database_->DBPath + database_->DbName;
    const Move move = PlanMove(file, folder, database_->DbName);
    if (move == Move::Copy) {
      VerifiedCopy target(*utility_, file, folder + database_->DbName);
      VerifiedCopy dated(*utility_, file, FreeDatedName(database_->DBPath));
      utility_->RemoveFile(file);
      target.Keep();
      dated.Keep();
    }
    moved = move != Move::Refused;
  });
  return moved;
}

bool clsPostrove::SetNewIniLocation(const std::wstring& folder) {
  bool moved = false;
  Reporting(*utility_, L"clsPostrove", L"SetNewIniLocation()", [&] {
    if (useQuillion_) return;  // the file is Quillion's
    const std::wstring file = utility_->IniFile();
    const Move move = PlanMove(file, folder, kIniName);
    if (move == Move::Copy) {
      // Without a file yet there is nothing to copy; storing what is in use makes one.
      if (utility_->FileSize(file) < 0) WriteSetup(L"Root", Root, file);
      VerifiedCopy(*utility_, file, folder + kIniName).Keep();
    }
    moved = move != Move::Refused;
  });
  return moved;
}

}  // namespace postrove
