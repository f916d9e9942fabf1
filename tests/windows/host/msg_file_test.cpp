// Where the stand-in writes message files, and the folders that it reads messages from.

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

TEST(MessageFolder, IsReadWhole) {
  TemporaryFolder folder;
  folder.Write(L"message.ini",
               "\xEF\xBB\xBF[Message]\r\nSubject=\" \xCE\xA9 \"\r\nMessageClass=IPM.Note\r\n"
               "SenderName=Site\r\nSenderAddress=site@contractor.example\r\n"
               "Date=2026-03-09T08:14:02Z\r\nRecipients=2\r\nAttachments=1\r\n"
               "[Recipient 0]\r\nKind=to\r\nName=Office\r\nAddress=office@engineers.example\r\n"
               "[Recipient 1]\r\nKind=bcc\r\nName=Archive\r\nAddress=archive@engineers.example\r\n"
               "[Attachment 0]\r\nFile=0000\r\nName=plan.pdf\r\nMimeType=application/pdf\r\n");
  folder.Write(L"body.html", "<p>a<br>b</p>");
  folder.Write(L"0000", "%PDF");
  const MessageData message = LoadMessage(folder.Path());
  EXPECT_EQ(message.subject, L" \u03a9 ");
  EXPECT_EQ(message.body, L"a\r\nb\r\n");  // made from the HTML
  SYSTEMTIME time = {};
  ASSERT_TRUE(message.date && FileTimeToSystemTime(&*message.date, &time));
  EXPECT_EQ(time.wHour * 100 + time.wMinute, 814);
  ASSERT_EQ(message.recipients.size(), 2u);
  EXPECT_EQ(message.recipients[1].kind, RecipientKind::kBcc);
  ASSERT_EQ(message.attachments.size(), 1u);
  EXPECT_EQ(message.attachments[0].bytes, "%PDF");
  EXPECT_THROW(LoadMessage(folder / L"none"), HostError);
}

}  // namespace
}  // namespace standin
