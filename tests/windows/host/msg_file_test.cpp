// Where the stand-in writes message files and where not.

#include <windows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "outlook/host.h"
#include "outlook/msg_file.h"
#include "util/temporary_folder.h"

namespace standin {
namespace {

using postrove::TemporaryFolder;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

MessageData Message() {
  MessageData message;
  message.subject = L"RE: Pl\u00e4ne \u03a9";
  message.senderName = L"Site office";
  message.senderAddress = L"site@contractor.example";
  message.recipients = {{RecipientKind::kTo, L"Project office", L"office@engineers.example"}};
  message.attachments = {{L"empty.txt", L"text/plain", L"cid1", ""}};
  return message;
}

TEST(SaveAs, FailsAsTheStorageDoesAndLeavesNothing) {
  TemporaryFolder folder;
  const std::wstring tooLong = folder / std::wstring(260 - folder.Path().size(), L'x');
  const std::wstring fitting =
      folder / (std::wstring(259 - folder.Path().size() - 4, L'x') + L".msg");
  struct Case {
    const char* name;
    int version;
    std::wstring path;
    long type;
    unsigned long expected;
  };
  const Case cases[] = {
      {"missing folder", 12, folder / L"none\\a.msg", 3, 0x80030003},
      {"missing folder, stray bits", 11, folder / L"none\\a.msg", 3, 0xA7230003},
      {"over-long", 12, tooLong, 3, 0x800300FC},
      {"over-long, stray bits", 9, tooLong, 3, 0xA72300FC},
      {"forbidden letter", 16, folder / L"what?.msg", 3, 0x800300FC},
      {"a stream of a file", 16, folder / L"a:b.msg", 3, 0x800300FC},
      {"no name", 16, folder.Path(), 3, 0x800300FC},
      {"no Unicode files before 2003", 10, folder / L"a.msg", 9, 0x80070057},
      {"no such type", 16, folder / L"a.msg", 99, 0x80070057},
  };
  for (const Case& c : cases) {
    Options options;
    options.version = c.version;
    Host host(options);
    Item item(host.Core(), ItemKind::kMail, Message(), true);
    try {
      item.SaveAs(c.path, c.type);
      ADD_FAILURE() << c.name;
    } catch (const HostError& error) {
      EXPECT_EQ(static_cast<unsigned long>(error.code), c.expected) << c.name;
    }
    EXPECT_THAT(folder.Files(), IsEmpty()) << c.name;
    EXPECT_THAT(host.SavedFiles(), IsEmpty()) << c.name;
  }
  Host host;
  Item item(host.Core(), ItemKind::kMail, Message(), true);
  EXPECT_NO_THROW(item.SaveAs(fitting, 3));
  EXPECT_THAT(host.SavedFiles(), ElementsAre(fitting));
}

TEST(SaveAs, ReplacesAFileWholeOrNotAtAll) {
  TemporaryFolder folder;
  folder.Write(L"a.msg", "old");
  Host host;
  Item item(host.Core(), ItemKind::kMail, Message(), true);
  const std::wstring path = folder / L"a.msg";
  const auto refused = [&](const char* why) {
    EXPECT_THROW(item.SaveAs(path, 3), HostError) << why;
    EXPECT_THAT(folder.Files(), ElementsAre(L"a.msg")) << why;
  };
  SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_READONLY);
  refused("read-only");
  SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
  const HANDLE held =
      CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
  ASSERT_NE(held, INVALID_HANDLE_VALUE);
  refused("in use");
  CloseHandle(held);
  EXPECT_TRUE(ReadWholeFile(path) == "old");
  item.SaveAs(path, 3);
  EXPECT_EQ(ReadWholeFile(path).substr(0, 4), "\xD0\xCF\x11\xE0");
}

}  // namespace
}  // namespace standin
