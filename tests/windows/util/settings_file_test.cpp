#include <gtest/gtest.h>
#include <windows.h>

#include <atomic>
#include <memory>
#include <string>
#include <thread>

#include "shared/text.h"
#include "shared/win32/WinSharedUtil.h"
#include "temporary_folder.h"
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

TEST_F(SettingsFile, KeepsItsEncodingOnTheDisk) {
  using namespace std::string_literals;
  const std::pair<std::string, std::string> kTable[] = {
      {"\xEF\xBB\xBF[Setup]\nRoot=1\n", "\xEF\xBB\xBF[Setup]\nRoot=\xC5\x81\n"},
      {"\xFF\xFE[\0S\0e\0t\0u\0p\0]\0\n\0R\0o\0o\0t\0=\0001\0"s,
       "\xFF\xFE[\0S\0e\0t\0u\0p\0]\0\n\0R\0o\0o\0t\0=\0\x41\x01"s},
  };
  for (const auto& [before, after] : kTable) {
    MakeFile(file_, before);
    Write(L"Setup", L"Root", L"Ł");
    EXPECT_EQ(Bytes(file_), after);
    EXPECT_EQ(Read(L"Setup", L"Root"), L"Ł");
  }
}

TEST_F(SettingsFile, IsInTheCodePageAsLongAsThatHoldsTheValues) {
  if (GetACP() != 1252) GTEST_SKIP() << "needs the code page 1252, the system has " << GetACP();
  MakeFile(file_, "; caf\xE9\r\n[Setup]\r\nRoot=\x80\r\n");
  EXPECT_EQ(Read(L"Setup", L"Root"), L"€");
  Write(L"Setup", L"Root", L"Größe €");
  EXPECT_EQ(Bytes(file_), "; caf\xE9\r\n[Setup]\r\nRoot=Gr\xF6\xDF\x65 \x80\r\n");
  // The code page has a best fit for the first letter, which would be another text.
  Write(L"Setup", L"Root", L"Ā");
  EXPECT_EQ(Bytes(file_), "\xEF\xBB\xBF; caf\xC3\xA9\r\n[Setup]\r\nRoot=\xC4\x80\r\n");
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

TEST_F(SettingsFile, WaitsForAReaderToFinish) {
  MakeFile(file_, "[Setup]\r\nRoot=old\r\n");
  const HANDLE reader =
      CreateFileW(file_.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
  std::wstring error;
  std::atomic<bool> finished = false;
  std::thread writer([&] {
    error = WriteError();
    finished = true;
  });
  // Once its temporary file is there the writer tries to put it in the place of the old one.
  while (!Bytes(file_ + L".tmp") && !finished) std::this_thread::yield();
  EXPECT_FALSE(finished);
  CloseHandle(reader);
  writer.join();
  EXPECT_EQ(error, L"");
  EXPECT_EQ(Read(L"Setup", L"Root"), L"new");
}

TEST_F(SettingsFile, KeepsItsAttributes) {
  MakeFile(file_, "[Setup]\r\nRoot=old\r\n");
  SetFileAttributesW(file_.c_str(), FILE_ATTRIBUTE_HIDDEN);
  Write(L"Setup", L"Root", L"new");
  EXPECT_TRUE(GetFileAttributesW(file_.c_str()) & FILE_ATTRIBUTE_HIDDEN);
}

TEST_F(SettingsFile, IsNotLoadedWhenItIsHuge) {
  const HANDLE file = CreateFileW(file_.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr);
  LONG high = 0;
  SetFilePointer(file, 65 * 1024 * 1024, &high, FILE_BEGIN);
  ASSERT_TRUE(SetEndOfFile(file));
  CloseHandle(file);
  EXPECT_EQ(Read(L"Setup", L"Root"), L"(default)");
  EXPECT_NE(WriteError(), L"");
  EXPECT_EQ(utility_->FileSize(file_), 65 * 1024 * 1024);
}

TEST_F(SettingsFile, LosesNoValueWhenProcessesWriteAtOnce) {
  constexpr int kCount = 200;
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

TEST_F(SettingsFile, IsOldOrNewAfterAWriterWasKilled) {
  const std::string filler(300000, ';');
  const std::string tail = "\r\n" + filler + "\r\n[Setup]\r\nRoot=C:\\\r\n";
  MakeFile(file_, "[Written]\r\nCounter=0" + tail);
  for (int round = 0; round < 12; ++round) {
    SCOPED_TRACE(round);
    const std::wstring before = Read(kWrittenSection, kCounterKey);
    WriterProcess writer = WriterProcess::Counter(file_);
    // Writers are killed at different moments of their work.
    for (int spare = round * 3; spare >= 0;) {
      if (Read(kWrittenSection, kCounterKey) != before) --spare;
      ASSERT_TRUE(writer.Running());
    }
    writer.Kill();
    const std::string bytes = Bytes(file_).value_or("");
    ASSERT_GT(bytes.size(), tail.size());
    ASSERT_TRUE(bytes.ends_with(tail));
    const std::wstring counter = Read(kWrittenSection, kCounterKey);
    ASSERT_EQ(bytes, "[Written]\r\nCounter=" + text::ToUtf8(counter) + tail);
    ASSERT_EQ(counter.find_first_not_of(L"0123456789"), std::wstring::npos);
    ASSERT_EQ(WriteError(text::FromNumber(round)), L"") << "the lock went with its owner";
    Write(L"Setup", L"Root", L"C:\\");
    ASSERT_EQ(folder_.Names(), std::vector<std::wstring>{L"Postrove.ini"});
  }
}

}  // namespace
}  // namespace postrove
