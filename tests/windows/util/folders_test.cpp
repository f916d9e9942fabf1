#include <gtest/gtest.h>
#include <windows.h>

#include <memory>
#include <string>
#include <utility>

#include "shared/text.h"
#include "shared/win32/WinSharedUtil.h"
#include "shared/win32/no_drive_messages.h"
#include "temporary_folder.h"

namespace postrove {
namespace {

class Folders : public testing::Test {
 protected:
  // The Error that making a folder throws; number 0 when it throws none.
  Error CreateError(const std::wstring& folder) {
    try {
      utility_->CreateFolder(folder);
    } catch (const Error& error) {
      return error;
    }
    return Error(0, {}, {});
  }

  const std::shared_ptr<clsSharedUtil> utility_ = CreateWinSharedUtil();
  const TemporaryFolder folder_;
};

TEST_F(Folders, AndFilesAreToldApart) {
  MakeFile(folder_.Path() + L"Ärger.msg", "12345");
  const std::wstring bare = folder_.Path().substr(0, folder_.Path().size() - 1);
  const std::pair<std::wstring, bool> kFolders[] = {
      {folder_.Path(), true},
      {bare, true},
      {L"C:\\", true},
      {L"", false},
      {folder_.Path() + L"none", false},
      {folder_.Path() + L"Ärger.msg", false},
      {folder_.Path() + L"*", false},
      {folder_.Path() + std::wstring(1, L'\0') + L"none", false},
      {L"Q:\\", false},
  };
  for (const auto& [folder, exists] : kFolders) {
    EXPECT_EQ(utility_->FolderExists(folder), exists) << text::ToUtf8(folder);
  }
  const struct {
    std::wstring folder;
    std::wstring file;
    bool exists;
  } kFiles[] = {
      {folder_.Path(), L"Ärger.msg", true},
      {bare, L"Ärger.msg", true},
      {bare, L"äRGER.MSG", true},
      {bare, L"other.msg", false},
      {bare, L"", false},
      {L"", folder_.Path() + L"Ärger.msg", false},
      {L"C:\\", L"windows", false},
      {bare, L"*.msg", false},
      {bare, L"?rger.msg", false},
      {bare + L"\\none", L"Ärger.msg", false},
  };
  for (const auto& [folder, file, exists] : kFiles) {
    EXPECT_EQ(utility_->FileExists(folder, file), exists) << text::ToUtf8(folder + L" | " + file);
  }
  EXPECT_EQ(utility_->FileSize(folder_.Path() + L"Ärger.msg"), 5);
  EXPECT_EQ(utility_->FileSize(folder_.Path() + L"none"), -1);
  EXPECT_EQ(utility_->FileSize(bare), -1);
  EXPECT_EQ(utility_->FileSize(L""), -1);
}

TEST_F(Folders, KeepAClaimedNameForItsOwner) {
  const std::wstring path = folder_.Path() + L"a.msg";
  const std::optional<FileIdentity> mine = utility_->ClaimFile(path);
  ASSERT_TRUE(mine);
  EXPECT_EQ(utility_->FileSize(path), 0);
  EXPECT_EQ(utility_->IdentifyFile(path), mine);
  EXPECT_FALSE(utility_->ClaimFile(path));
  EXPECT_FALSE(utility_->ClaimFile(folder_.Path().substr(0, folder_.Path().size() - 1)));
  EXPECT_THROW(utility_->ClaimFile(folder_.Path() + L"none\\a.msg"), Error);

  const std::wstring theirs = folder_.Path() + L"theirs";
  MakeFile(theirs, "theirs");
  ASSERT_TRUE(MoveFileExW(theirs.c_str(), path.c_str(), MOVEFILE_REPLACE_EXISTING));
  EXPECT_FALSE(utility_->RemoveFileIf(path, *mine));
  EXPECT_EQ(utility_->FileSize(path), 6);
  const std::optional<FileIdentity> other = utility_->IdentifyFile(path);
  ASSERT_TRUE(other);
  utility_->RenameFile(path, theirs);
  EXPECT_EQ(utility_->IdentifyFile(theirs), other);
  EXPECT_TRUE(utility_->RemoveFileIf(path, *mine));  // it is gone
  EXPECT_TRUE(utility_->RemoveFileIf(theirs, *other));
  EXPECT_EQ(utility_->FileSize(theirs), -1);

  ASSERT_TRUE(utility_->ClaimFile(path));
  SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_READONLY);
  EXPECT_TRUE(utility_->IdentifyFile(path)->readOnly);
  SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
}

TEST_F(Folders, AreMadeWithThoseAboveThem) {
  for (const wchar_t* folder : {L"a\\b\\c", L"a\\b\\c", L"d\\e\\", L"f//g/h", L"ö\\日本"}) {
    utility_->CreateFolder(folder_.Path() + folder);
    EXPECT_TRUE(utility_->FolderExists(folder_.Path() + folder)) << text::ToUtf8(folder);
  }
  utility_->CreateFolder(L"C:\\");
}

TEST_F(Folders, NameThePathAndTheReasonWhenTheyCannotBeMade) {
  MakeFile(folder_.Path() + L"file", "");
  const std::pair<std::wstring, long> kTable[] = {
      {folder_.Path() + L"file", kPathFileAccess},
      {folder_.Path() + L"file\\below", kPathFileAccess},
      {folder_.Path() + L"a?b", kPathFileAccess},
      {folder_.Path() + std::wstring(260 - folder_.Path().size(), L'x'), kPathFileAccess},
      {L"Q:\\x\\y", kFileNotFound},
      {L"", kPathFileAccess},
  };
  for (const auto& [folder, number] : kTable) {
    const Error error = CreateError(folder);
    EXPECT_EQ(error.Number(), number) << text::ToUtf8(error.Description());
    const std::wstring lead = L"Cannot make the folder \"" + folder + L"\": ";
    EXPECT_TRUE(error.Description().starts_with(lead));
    EXPECT_GT(error.Description().size(), lead.size() + 5) << "the system's reason is missing";
    EXPECT_NE(error.Description().back(), L'\n');
  }
}

TEST_F(Folders, LieOnDrives) {
  EXPECT_EQ(utility_->DriveType(L"C:\\"), DriveKind::Fixed);
  EXPECT_EQ(utility_->DriveType(L"Q:\\"), DriveKind::NoRoot);
}

// Windows itself accepts the cleaned names, under just these names.
TEST_F(Folders, TakeFilesWithCleanedNames) {
  for (const wchar_t* text : {L"RE: a/b\\c?", L"con", L"nul.msg", L"..\\..\\x", L"trailing. . .",
                              L"日本語 \U0001F600", L"tab\there", L"\u202Egsm.exe"}) {
    const std::wstring name = utility_->MakeFileName(text);
    const TemporaryFolder own;
    MakeFile(own.Path() + name, "x");
    EXPECT_EQ(own.Names(), std::vector<std::wstring>{name}) << text::ToUtf8(text);
  }
}

TEST_F(Folders, OpenOnlyWhatIsThere) {
  const std::wstring missing = folder_.Path() + L"missing.htm";
  try {
    utility_->OpenDocument(missing);
    ADD_FAILURE() << "a missing document was opened";
  } catch (const Error& error) {
    EXPECT_EQ(error.Number(), kFileNotFound);
    EXPECT_NE(error.Description().find(missing), std::wstring::npos);
  }
}

TEST_F(Folders, AHeldFileCanBeCopiedAndRenamedButNotWritten) {
  const std::wstring path = folder_ / L"a.mdb", copy = folder_ / L"new\\a.mdb";
  const std::string bytes(3 << 20, 'x');
  MakeFile(path, bytes);
  const auto open = [](const std::wstring& file, DWORD access) {
    return CreateFileW(file.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                       OPEN_EXISTING, 0, nullptr);
  };
  const HANDLE reader = open(path, GENERIC_READ);
  EXPECT_THROW(utility_->HoldFile(path), Error) << "it could not be renamed";
  CloseHandle(reader);
  std::shared_ptr<void> held = utility_->HoldFile(path);
  EXPECT_EQ(open(path, GENERIC_WRITE), INVALID_HANDLE_VALUE);
  utility_->DuplicateFile(path, copy);
  EXPECT_TRUE(utility_->FilesAreEqual(path, copy));
  MakeFile(folder_ / L"c.mdb", bytes.substr(1) + 'y');
  EXPECT_FALSE(utility_->FilesAreEqual(path, folder_ / L"c.mdb"));
  EXPECT_EQ(Bytes(copy), bytes);
  EXPECT_THROW(utility_->DuplicateFile(folder_ / L"none", folder_ / L"b.mdb"), Error);
  EXPECT_THROW(utility_->DuplicateFile(path, copy), Error);
  EXPECT_EQ(Bytes(copy), bytes);
  utility_->RenameFile(path, folder_ / L"b.mdb");
  held.reset();
  const HANDLE writer = open(folder_ / L"b.mdb", GENERIC_WRITE);
  EXPECT_NE(writer, INVALID_HANDLE_VALUE);
  CloseHandle(writer);
}

// Null stands for a Windows that has the mode of the process alone.
TEST(NoDriveMessages, AddToTheModeAndTakeBackNothingElse) {
  const UINT before = SetErrorMode(SEM_NOGPFAULTERRORBOX);
  for (const auto set : {NoDriveMessages::OfThread(), NoDriveMessages::SetThreadMode{}}) {
    {
      const NoDriveMessages quiet(set);
      EXPECT_EQ(set ? GetThreadErrorMode() : GetErrorMode(),
                SEM_FAILCRITICALERRORS | (set ? 0u : SEM_NOGPFAULTERRORBOX));
    }
    EXPECT_EQ(GetThreadErrorMode(), 0u);
    EXPECT_EQ(GetErrorMode(), unsigned{SEM_NOGPFAULTERRORBOX});
  }
  SetErrorMode(before);
}

}  // namespace
}  // namespace postrove
