#include <gtest/gtest.h>
#include <windows.h>

#include <sddl.h>

#include <algorithm>
#include <atomic>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "shared/text.h"
#include "shared/win32/WinSharedUtil.h"
#include "temporary_folder.h"
#include "threads.h"
#include "writer_process.h"

namespace postrove {
namespace {

class SettingsFile : public testing::Test {
 protected:
  std::wstring Read(const std::wstring& section, const std::wstring& key) {
    return utility_->ReadSetting(L"Postrove", section, key, L"(default)", file_);
  }
  void Write(const std::wstring& section, const std::wstring& key, const std::wstring& value) {
    utility_->WriteSetting(L"Postrove", section, key, value, file_);
  }
  // The description of the Error that a write throws, or empty text.
  std::wstring WriteError(const std::wstring& value = L"new") {
    try {
      Write(L"Setup", L"Root", value);
    } catch (const Error& error) {
      EXPECT_EQ(error.Number(), kPathFileAccess);
      return error.Description();
    }
    return {};
  }

  const std::shared_ptr<clsSharedUtil> utility_ = CreateWinSharedUtil();
  const TemporaryFolder folder_;
  std::wstring file_ = folder_.Path() + L"Postrove.ini";
};

TEST_F(SettingsFile, IsMadeWithItsFoldersAndReadBack) {
  file_ = folder_.Path() + L"Größe\\b c\\Postrove.ini";
  EXPECT_EQ(Read(L"Setup", L"Root"), L"(default)");
  Write(L"Setup", L"Root", L"C:\\Jobs\\");
  Write(L"setup", L"SubjDelim", L" - ");
  Write(L"Setup", L"ProjDelim", L"");
  EXPECT_EQ(Bytes(file_), "[Setup]\r\nRoot=C:\\Jobs\\\r\nSubjDelim=\" - \"\r\nProjDelim=\r\n");
  EXPECT_EQ(Read(L"SETUP", L"root"), L"C:\\Jobs\\");
  EXPECT_EQ(Read(L"Setup", L"SubjDelim"), L" - ");
  EXPECT_EQ(Read(L"Setup", L"ProjDelim"), L"");
}

TEST_F(SettingsFile, IsInTheCodePageAsLongAsThatHoldsTheValues) {
  if (GetACP() != 1252) GTEST_SKIP() << "needs the code page 1252, the system has " << GetACP();
  MakeFile(file_, "; caf\xE9\r\n[Setup]\r\nRoot=\x80\r\n");
  EXPECT_EQ(Read(L"Setup", L"Root"), L"€");
  Write(L"Setup", L"Root", L"Größe €");
  EXPECT_EQ(Bytes(file_), "; caf\xE9\r\n[Setup]\r\nRoot=Gr\xF6\xDF\x65 \x80\r\n");
  // The code page has a best fit for the first letter, which would be another text.
  Write(L"Setup", L"Root", L"Ā");
  std::string expected = "\xFF\xFE";
  for (const wchar_t unit : std::wstring(L"; café\r\n[Setup]\r\nRoot=Ā\r\n")) {
    expected.push_back(static_cast<char>(unit & 0xFF));
    expected.push_back(static_cast<char>(unit >> 8));
  }
  EXPECT_EQ(Bytes(file_), expected);
}

TEST_F(SettingsFile, IsMissingOnlyOnADriveThatAnswers) {
  const std::wstring held = folder_ / L"held.ini";
  const HANDLE program =
      CreateFileW(held.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr);
  const std::wstring bare = folder_.Path().substr(0, folder_.Path().size() - 1);
  for (const std::wstring& missing : {folder_ / L"x.ini", folder_ / L"none\\x.ini"}) {
    EXPECT_FALSE(utility_->HasSettings(missing)) << text::ToUtf8(missing);
  }
  for (const std::wstring& unknown :
       {held, bare, folder_ / L"a?b.ini", std::wstring(L"Q:\\x.ini"), std::wstring(),
        std::wstring(L"\\\\localhost\\none\\x.ini"), file_ + std::wstring(1, L'\0')}) {
    EXPECT_THROW(utility_->HasSettings(unknown), Error) << text::ToUtf8(unknown);
  }
  CloseHandle(program);
}

TEST_F(SettingsFile, StaysWhenItCannotBeWritten) {
  const std::string old = "[Setup]\r\nRoot=old\r\n";
  MakeFile(file_, old);

  EXPECT_THROW(Write(L"Setup", L"Root", L"two\nlines"), Error);

  SetFileAttributesW(file_.c_str(), FILE_ATTRIBUTE_READONLY);
  EXPECT_NE(WriteError().find(file_), std::wstring::npos) << "the message names the file";
  SetFileAttributesW(file_.c_str(), FILE_ATTRIBUTE_NORMAL);

  // Another program keeps it open for good.
  const HANDLE held =
      CreateFileW(file_.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
  EXPECT_NE(WriteError(), L"");
  CloseHandle(held);

  EXPECT_EQ(Bytes(file_), old);
  EXPECT_EQ(folder_.Names(), std::vector<std::wstring>{L"Postrove.ini"});

  file_ = folder_.Path() + std::wstring(250, L'x');
  EXPECT_NE(WriteError(), L"") << "the path is too long";
  file_ = folder_.Path() + L"a?b.ini";
  EXPECT_NE(WriteError(), L"");
  file_ = folder_.Path().substr(0, folder_.Path().size() - 1);
  EXPECT_NE(WriteError(), L"") << "a folder is no file";
  file_.clear();
  EXPECT_NE(WriteError(), L"");
  EXPECT_EQ(folder_.Names(), std::vector<std::wstring>{L"Postrove.ini"});
}

// What this program calls for a function of the system, replaced for a time.
class Replaced {
 public:
  Replaced(const char* name, const void* with)
      : slot_(Slot(
            reinterpret_cast<const void*>(GetProcAddress(GetModuleHandleW(L"kernel32"), name)))),
        before_(*slot_) {
    DWORD protection = 0;
    VirtualProtect(slot_, sizeof *slot_, PAGE_READWRITE, &protection);
    *slot_ = with;
  }
  Replaced(const Replaced&) = delete;
  Replaced& operator=(const Replaced&) = delete;
  ~Replaced() { *slot_ = before_; }

 private:
  static const void** Slot(const void* function) {
    auto* const base = reinterpret_cast<char*>(GetModuleHandleW(nullptr));
    const auto* const headers = reinterpret_cast<const IMAGE_NT_HEADERS*>(
        base + reinterpret_cast<const IMAGE_DOS_HEADER*>(base)->e_lfanew);
    const IMAGE_DATA_DIRECTORY& table =
        headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IAT];
    auto** const first = reinterpret_cast<const void**>(base + table.VirtualAddress);
    return std::find(first, first + table.Size / sizeof *first, function);
  }

  const void** const slot_;
  const void* const before_;
};

BOOL WINAPI NotWritten(HANDLE, const void*, DWORD, DWORD*, OVERLAPPED*) {
  SetLastError(ERROR_DISK_FULL);
  return FALSE;
}
BOOL WINAPI CutShort(HANDLE, const void*, DWORD size, DWORD* written, OVERLAPPED*) {
  *written = size / 2;
  return TRUE;
}
BOOL WINAPI NotFlushed(HANDLE) {
  SetLastError(ERROR_DISK_FULL);
  return FALSE;
}

TEST_F(SettingsFile, AndCopiesAreWholeOrNotThere) {
  const std::string old = "[Setup]\r\nRoot=old\r\n";
  MakeFile(file_, old);
  const std::pair<const char*, const void*> faults[] = {
      {"WriteFile", reinterpret_cast<const void*>(&NotWritten)},
      {"WriteFile", reinterpret_cast<const void*>(&CutShort)},
      {"FlushFileBuffers", reinterpret_cast<const void*>(&NotFlushed)}};
  for (const auto& [name, with] : faults) {
    std::wstring error;
    {
      const Replaced replaced(name, with);
      error = WriteError();
      EXPECT_THROW(utility_->DuplicateFile(file_, folder_ / L"copy"), Error);
    }
    EXPECT_NE(error, L"");
    EXPECT_EQ(Bytes(file_), old);
    EXPECT_EQ(folder_.Names(), std::vector<std::wstring>{L"Postrove.ini"});
  }
}

TEST_F(SettingsFile, WaitsForAReaderToFinish) {
  MakeFile(file_, "[Setup]\r\nRoot=old\r\n");
  const HANDLE reader =
      CreateFileW(file_.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
  std::wstring error;
  std::atomic<bool> finished = false;
  const standin::Thread writer([&] {
    error = WriteError();
    finished = true;
  });
  // Once its lock is there the writer tries to open the file with the right to replace it.
  while (GetFileAttributesW((file_ + L".lock").c_str()) == INVALID_FILE_ATTRIBUTES && !finished) {
    SwitchToThread();
  }
  EXPECT_FALSE(finished);
  CloseHandle(reader);
  writer.Join();
  EXPECT_EQ(error, L"");
  EXPECT_EQ(Read(L"Setup", L"Root"), L"new");
}

// The access list of a file, as the system stores it.
std::string Permissions(const std::wstring& file) {
  std::string descriptor(1000, '\0');
  DWORD size = 0;
  EXPECT_TRUE(GetFileSecurityW(file.c_str(), DACL_SECURITY_INFORMATION, descriptor.data(),
                               static_cast<DWORD>(descriptor.size()), &size));
  return descriptor.substr(0, size);
}

TEST_F(SettingsFile, KeepsItsAttributesAndPermissions) {
  MakeFile(file_, "[Setup]\r\nRoot=old\r\n");
  SetFileAttributesW(file_.c_str(), FILE_ATTRIBUTE_HIDDEN);
  // Everybody may do everything; Wine shows that as a mode of Unix that a new file does not get.
  const std::string usual = Permissions(file_);
  PSECURITY_DESCRIPTOR everybody = nullptr;
  ASSERT_TRUE(ConvertStringSecurityDescriptorToSecurityDescriptorW(
      L"D:P(A;;FA;;;WD)", SDDL_REVISION_1, &everybody, nullptr));
  ASSERT_TRUE(SetFileSecurityW(file_.c_str(), DACL_SECURITY_INFORMATION, everybody));
  LocalFree(everybody);
  const std::string before = Permissions(file_);
  ASSERT_NE(before, usual);
  Write(L"Setup", L"Root", L"new");
  EXPECT_TRUE(GetFileAttributesW(file_.c_str()) & FILE_ATTRIBUTE_HIDDEN);
  EXPECT_EQ(Permissions(file_), before);
}

TEST_F(SettingsFile, IsNotLoadedWhenItIsHuge) {
  const HANDLE file = CreateFileW(file_.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr);
  LONG high = 0;
  SetFilePointer(file, 65 * 1024 * 1024, &high, FILE_BEGIN);
  ASSERT_TRUE(SetEndOfFile(file));
  CloseHandle(file);
  EXPECT_THROW(Read(L"Setup", L"Root"), Error);
  EXPECT_NE(WriteError(), L"");
  EXPECT_EQ(utility_->FileSize(file_), 65 * 1024 * 1024);
}

TEST_F(SettingsFile, LosesNoValueWhenProcessesWriteAtOnce) {
  constexpr int kCount = 500;
  MakeFile(file_, "[Setup]\r\nRoot=C:\\\r\n");
  const WriterProcess one = WriterProcess::Keys(file_, L"One", kCount);
  const WriterProcess two = WriterProcess::Keys(file_, L"Two", kCount);
  int reads = 0;
  while (one.Running() || two.Running()) {
    ASSERT_EQ(Read(L"Setup", L"Root"), L"C:\\") << "a reader met half a file or none";
    ++reads;
  }
  EXPECT_GT(reads, 10);
  EXPECT_EQ(one.ExitCode(), 0u);
  EXPECT_EQ(two.ExitCode(), 0u);
  for (int i = 0; i < kCount; ++i) {
    const std::wstring number = text::FromNumber(i);
    EXPECT_EQ(Read(kWrittenSection, L"One" + number), number);
    EXPECT_EQ(Read(kWrittenSection, L"Two" + number), number);
  }
  EXPECT_EQ(folder_.Names(), std::vector<std::wstring>{L"Postrove.ini"});
}

// Told of the first new or deleted file in a folder.
class FolderChange {
 public:
  explicit FolderChange(const TemporaryFolder& folder)
      : handle_(FindFirstChangeNotificationW(folder.Path().c_str(), FALSE,
                                             FILE_NOTIFY_CHANGE_FILE_NAME)) {}
  FolderChange(const FolderChange&) = delete;
  FolderChange& operator=(const FolderChange&) = delete;
  ~FolderChange() { FindCloseChangeNotification(handle_); }

  bool Wait() const { return WaitForSingleObject(handle_, 30000) == WAIT_OBJECT_0; }

 private:
  HANDLE handle_;
};

TEST_F(SettingsFile, IsOldOrNewAfterAWriterWasKilled) {
  const std::string filler(30000, ';');
  const std::string tail = "\r\n" + filler + "\r\n[Setup]\r\nRoot=C:\\\r\n";
  // Starting takes longest, so some writers start at a time, each for a file of its own that is
  // locked until its turn.
  const TemporaryFolder folders[5];
  std::mt19937 random(27182);
  int killed = 0;
  int cutShort = 0;
  while (killed < 200) {
    std::vector<HANDLE> locks;
    std::vector<WriterProcess> writers;
    for (const TemporaryFolder& folder : folders) {
      const std::wstring file = folder.Path() + L"Postrove.ini";
      MakeFile(file, "[Written]\r\nCounter=none" + tail);
      locks.push_back(CreateFileW((file + L".lock").c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                  FILE_ATTRIBUTE_NORMAL, nullptr));
      ASSERT_NE(locks.back(), INVALID_HANDLE_VALUE);
      writers.push_back(WriterProcess::Counter(file));
    }
    for (std::size_t i = 0; i < writers.size(); ++i) {
      SCOPED_TRACE(++killed);
      file_ = folders[i].Path() + L"Postrove.ini";
      const FolderChange change(folders[i]);
      CloseHandle(locks[i]);
      ASSERT_TRUE(change.Wait()) << "the writer does not begin";
      // Writers are killed at different moments of their work.
      for (auto turns = random() % 300; turns > 0; --turns) ASSERT_TRUE(writers[i].Running());
      writers[i].Kill();
      if (Bytes(file_ + L".tmp")) ++cutShort;
      const std::string bytes = Bytes(file_).value_or("");
      ASSERT_TRUE(bytes.ends_with(tail));
      const std::wstring counter = Read(kWrittenSection, kCounterKey);
      ASSERT_EQ(bytes, "[Written]\r\nCounter=" + text::ToUtf8(counter) + tail);
      ASSERT_TRUE(counter == L"none" || counter.find_first_not_of(L"0123456789") == counter.npos);
      ASSERT_EQ(WriteError(), L"") << "the lock went with its owner";
      ASSERT_EQ(folders[i].Names(), std::vector<std::wstring>{L"Postrove.ini"});
    }
  }
  EXPECT_GT(cutShort, 0) << "no writer was met at its work";
  RecordProperty("CutShort", cutShort);
}

TEST_F(SettingsFile, CanBeLarge) {
  std::string before;
  for (int i = 0; i < 10000; ++i)
    before += "[S" + std::to_string(i) + "]\r\nk=" + std::string(99, 'x') + "\r\n";
  const std::string after = "[Last]\r\nk=old\r\n";
  MakeFile(file_, before + after);
  EXPECT_EQ(Read(L"Last", L"k"), L"old");
  Write(L"Last", L"k", L"new");
  EXPECT_TRUE(Bytes(file_) == before + "[Last]\r\nk=new\r\n");
  EXPECT_EQ(Read(L"Setup", L"Root"), L"(default)");
}

}  // namespace
}  // namespace postrove
