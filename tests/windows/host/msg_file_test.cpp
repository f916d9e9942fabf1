// The message files of the stand-in, read back with the system's own structured storage.

#include <windows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <ole2.h>

#include <map>
#include <set>

#include "outlook/host.h"
#include "outlook/ids.h"
#include "outlook/msg_file.h"
#include "temp_folder.h"

namespace standin {
namespace {

using probe::TempFolder;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

MessageData FullMessage() {
  MessageData message;
  message.subject = L"RE: Pl\u00e4ne \u03a9";
  message.senderName = L"Site office";
  message.senderAddress = L"site@contractor.example";
  message.date = FILETIME{0x11223344, 0x01D00000};
  message.body = L"Text";
  message.html = L"<html><body>\u03a9</body></html>";
  message.recipients = {{RecipientKind::kTo, L"Project office", L"office@engineers.example"},
                        {RecipientKind::kCc, L"", L"archive@engineers.example"}};
  message.attachments = {{L"Site report.pdf", L"application/pdf", L"", std::string("%PDF\0x", 6)},
                         {L"empty.txt", L"text/plain", L"cid1", ""}};
  return message;
}

// One storage of a message file, read whole.
struct Sheet {
  std::string header;
  std::map<DWORD, std::string> entries;  // tag -> the 8 bytes of the value
  std::map<std::wstring, std::string> streams;
  std::map<std::wstring, Sheet> storages;

  DWORD Number(DWORD tag) const { return Word(entries.at(tag), 0); }
  static DWORD Word(const std::string& bytes, std::size_t at) {
    DWORD value = 0;
    memcpy(&value, bytes.data() + at, sizeof value);
    return value;
  }
  std::wstring Text(DWORD tag) const {
    const std::string& bytes = Stream(tag);
    return {reinterpret_cast<const wchar_t*>(bytes.data()), bytes.size() / 2};
  }
  const std::string& Stream(DWORD tag) const {
    wchar_t name[32];
    swprintf(name, 32, L"__substg1.0_%08lX", tag);
    return streams.at(name);
  }
};

Sheet Read(IStorage& storage, std::size_t headerSize) {
  Sheet sheet;
  ComPtr<IEnumSTATSTG> elements;
  storage.EnumElements(0, nullptr, 0, &elements);
  STATSTG element;
  while (elements->Next(1, &element, nullptr) == S_OK) {
    const std::wstring name = element.pwcsName;
    CoTaskMemFree(element.pwcsName);
    constexpr DWORD kRead = STGM_READ | STGM_SHARE_EXCLUSIVE;
    if (element.type == STGTY_STORAGE) {
      ComPtr<IStorage> inner;
      storage.OpenStorage(name.c_str(), nullptr, kRead, nullptr, 0, &inner);
      sheet.storages[name] = Read(*inner.Get(), 8);
      continue;
    }
    ComPtr<IStream> stream;
    storage.OpenStream(name.c_str(), nullptr, kRead, 0, &stream);
    std::string bytes(static_cast<std::size_t>(element.cbSize.QuadPart), '\0');
    stream->Read(bytes.data(), static_cast<ULONG>(bytes.size()), nullptr);
    sheet.streams[name] = bytes;
  }
  const auto properties = sheet.streams.find(L"__properties_version1.0");
  if (properties == sheet.streams.end()) return sheet;
  const std::string& all = properties->second;
  EXPECT_EQ((all.size() - headerSize) % 16, 0u);
  sheet.header = all.substr(0, headerSize);
  for (std::size_t at = headerSize; at + 16 <= all.size(); at += 16) {
    EXPECT_EQ(Sheet::Word(all, at + 4), 6u);
    sheet.entries[Sheet::Word(all, at)] = all.substr(at + 8, 8);
  }
  return sheet;
}

Sheet ReadFile(const std::wstring& path, CLSID* classId) {
  ComPtr<IStorage> root;
  EXPECT_EQ(
      StgOpenStorage(path.c_str(), nullptr, STGM_READ | STGM_SHARE_EXCLUSIVE, nullptr, 0, &root),
      S_OK);
  if (!root) return {};
  STATSTG information;
  root->Stat(&information, STATFLAG_NONAME);
  *classId = information.clsid;
  return Read(*root.Get(), 32);
}

// Rules that hold in every storage of a file.
void CheckRules(const Sheet& sheet, bool unicode, const std::wstring& where) {
  SCOPED_TRACE(testing::PrintToString(where));
  std::set<std::wstring> used;
  for (const auto& [tag, value] : sheet.entries) {
    const DWORD type = tag & 0xFFFF;
    if (type != 0x001E && type != 0x001F && type != 0x0102) continue;
    const std::string& bytes = sheet.Stream(tag);
    const std::size_t terminator = type == 0x001F ? 2 : type == 0x001E ? 1 : 0;
    EXPECT_EQ(Sheet::Word(value, 0), bytes.size() + terminator) << std::hex << tag;
    if (type != 0x0102) {
      EXPECT_FALSE(bytes.empty()) << "an empty string " << std::hex << tag;
      EXPECT_EQ(type, unicode ? 0x001Fu : 0x001Eu) << std::hex << tag;
    }
  }
  for (const auto& [name, inner] : sheet.storages) {
    if (name != L"__nameid_version1.0") CheckRules(inner, unicode, name);
  }
}

TEST(MsgFile, AUnicodeFileHoldsEverything) {
  TempFolder folder;
  MsgForm form;
  form.unicode = true;
  form.received = true;
  WriteMsgFile(folder / L"a.msg", FullMessage(), form);
  EXPECT_THAT(folder.Files(), ElementsAre(L"a.msg"));
  CLSID id;
  const Sheet root = ReadFile(folder / L"a.msg", &id);
  EXPECT_TRUE(IsEqualGUID(id, OfficeId(0x00020D0B)));
  CheckRules(root, true, L"root");

  for (const std::size_t at : {8u, 12u, 16u, 20u}) EXPECT_EQ(Sheet::Word(root.header, at), 2u);
  EXPECT_EQ(root.Text(0x0037001F), L"RE: Pl\u00e4ne \u03a9");
  EXPECT_EQ(root.Text(0x003D001F), L"RE: ");
  EXPECT_EQ(root.Text(0x0E1D001F), L"Pl\u00e4ne \u03a9");
  EXPECT_EQ(root.Text(0x001A001F), L"IPM.Note");
  EXPECT_EQ(root.Text(0x0C1F001F), L"site@contractor.example");
  EXPECT_EQ(root.Text(0x0E03001F), L"archive@engineers.example");
  EXPECT_EQ(root.Stream(0x10130102), "<html><body>\xCE\xA9</body></html>");
  EXPECT_EQ(root.Number(0x3FDE0003), 65001u);
  EXPECT_EQ(root.Number(0x340D0003), 0x00040000u);
  EXPECT_EQ(root.Number(0x0E070003), 0x11u);  // read, has attachments
  EXPECT_EQ(root.Number(0x00390040), 0x11223344u);
  EXPECT_EQ(root.Number(0x0E060040), 0x11223344u);

  const Sheet& names = root.storages.at(L"__nameid_version1.0");
  for (const wchar_t* stream : {L"0002", L"0003", L"0004"}) {
    EXPECT_EQ(names.streams.at(std::wstring(L"__substg1.0_") + stream + L"0102"), "");
  }
  const Sheet& cc = root.storages.at(L"__recip_version1.0_#00000001");
  EXPECT_EQ(cc.Number(0x0C150003), 2u);
  EXPECT_EQ(cc.Number(0x30000003), 1u);
  EXPECT_EQ(cc.Text(0x39FE001F), L"archive@engineers.example");
  const Sheet& plan = root.storages.at(L"__attach_version1.0_#00000000");
  EXPECT_EQ(plan.Stream(0x37010102), std::string("%PDF\0x", 6));
  EXPECT_EQ(plan.Text(0x3707001F), L"Site report.pdf");
  EXPECT_EQ(plan.Text(0x3704001F), L"SITERE~1.PDF");
  EXPECT_EQ(plan.Number(0x37050003), 1u);
  const Sheet& empty = root.storages.at(L"__attach_version1.0_#00000001");
  EXPECT_EQ(empty.Stream(0x37010102), "");
  EXPECT_EQ(empty.Text(0x3712001F), L"cid1");
}

TEST(MsgFile, ACodePageFileLosesOtherLetters) {
  TempFolder folder;
  MsgForm form;
  form.unsent = true;
  WriteMsgFile(folder / L"a.msg", FullMessage(), form);
  CLSID id;
  const Sheet root = ReadFile(folder / L"a.msg", &id);
  CheckRules(root, false, L"root");
  char expected[16] = {};
  WideCharToMultiByte(CP_ACP, 0, L"RE: Pl\u00e4ne \u03a9", -1, expected, 16, nullptr, nullptr);
  EXPECT_EQ(root.Stream(0x0037001E), expected);
  EXPECT_FALSE(root.entries.contains(0x340D0003));
  EXPECT_EQ(root.Number(0x0E070003), 0x19u);  // read, unsent, has attachments
  EXPECT_FALSE(root.entries.contains(0x00390040));
}

TEST(MsgFile, AnEmptyMessageIsAllowed) {
  TempFolder folder;
  WriteMsgFile(folder / L"a.msg", MessageData(), {});
  CLSID id;
  const Sheet root = ReadFile(folder / L"a.msg", &id);
  CheckRules(root, false, L"root");
  EXPECT_FALSE(root.entries.contains(0x0037001E));
}

TEST(SaveAs, FailsAsTheStorageDoesAndLeavesNothing) {
  TempFolder folder;
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
    Item item(host.Core(), ItemKind::kMail, FullMessage(), true);
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
  Item item(host.Core(), ItemKind::kMail, FullMessage(), true);
  EXPECT_NO_THROW(item.SaveAs(fitting, 3));
  EXPECT_THAT(host.SavedFiles(), ElementsAre(fitting));
}

TEST(SaveAs, ReplacesAFileWholeOrNotAtAll) {
  TempFolder folder;
  folder.Write(L"a.msg", "old");
  Host host;
  Item item(host.Core(), ItemKind::kMail, FullMessage(), true);
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
  TempFolder folder;
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
