// The parts of a filing on their own: the place of the file, what is changed in the message, the
// letters that a message file holds.

#include "controller/file_place.h"
#include "controller/letters.h"
#include "controller/message_changes.h"
#include "gmock/gmock.h"
#include "gtest/gtest.h"
#include "memory/FakeOffice.h"
#include "memory/FakeSharedUtil.h"

namespace postrove::testing {
namespace {

using office::Value;

constexpr wchar_t kPath[] = L"D:\\Filed\\Minutes.msg";

// Wherever the filing is cut off, each earlier message is whole under a name that ends in ".msg".
TEST(FilePlace, KeepsTheEarlierMessageUntilTheNewOneIsWhole) {
  const std::wstring deep = L"D:\\" + std::wstring(240, L'd') + L"\\";  // 244 units, 11 for a name
  const struct {
    std::wstring folder, name, aside;
    std::vector<std::wstring> taken;
  } cases[] = {
      {L"D:\\Filed\\", L"Minutes", L"Minutes (earlier)", {}},
      {L"D:\\Filed\\", L"v1.2", L"v1.2 (earlier)", {}},
      {L"D:\\Filed\\", L"a", L"a (earlier 3)", {L"a (earlier)", L"a (earlier 2)"}},
      {deep, L"Fee letter2", L"F (earlier)", {}},
      {deep, L"Fee letter2", L"2", {L"F (earlier)"}},
      {deep + std::wstring(9, L'e') + L"\\", L"a", L"1", {}},
  };
  for (const auto& one : cases) {
    SCOPED_TRACE(text::ToUtf8(one.aside));
    FakeSharedUtil utility;
    const std::wstring path = one.folder + one.name + L".msg";
    utility.AddFile(path, "earlier");
    for (const std::wstring& name : one.taken) utility.AddFile(one.folder + name + L".msg", "x");
    for (const bool fails : {true, false}) {
      FilePlace place(utility);
      EXPECT_FALSE(place.Claim(path));
      ASSERT_TRUE(place.Replace(path, *utility.IdentifyFile(path)));
      const auto write = [&] {
        EXPECT_EQ(utility.File(path), "");
        EXPECT_EQ(utility.File(one.folder + one.aside + L".msg"), "earlier");
        utility.AddFile(path, "new");
        if (fails) throw Error(1, L"SaveAs", L"The disk is full.");
      };
      if (fails) {
        EXPECT_THROW(place.Write(write), Error);
      } else {
        place.Write(write);
      }
      EXPECT_EQ(utility.File(path), fails ? "earlier" : "new");
      EXPECT_EQ(utility.Files().size(), one.taken.size() + 1);
    }
  }
}

// What another user does in the folder meanwhile, and what is then said behind the failure.
TEST(FilePlace, RemovesAndReplacesNothingOfAnybodyElse) {
  const std::wstring aside = L"D:\\Filed\\Minutes (earlier).msg";
  const std::wstring failure = L"The disk is full.";
  const std::wstring moved = L"\n\nThe message that was there before is now in \"" + aside + L"\".";
  const std::wstring foreign =
      L"\n\nThe file \"D:\\Filed\\Minutes.msg\" was put there by somebody else, or is incomplete. "
      L"Look at it before you go on.";
  for (const bool replaces : {false, true}) {
    FakeSharedUtil utility;
    utility.AddFolder(L"D:\\Filed");
    if (replaces) utility.AddFile(kPath, "earlier");
    std::wstring said;
    {
      FilePlace place(utility);
      ASSERT_TRUE(replaces ? place.Replace(kPath, *utility.IdentifyFile(kPath))
                           : place.Claim(kPath));
      try {
        place.Write([&] {
          utility.Remove(kPath);
          utility.AddFile(kPath, "colleague's");
          throw Error(1, L"SaveAs", failure);
        });
      } catch (const Error& error) {
        said = error.Description();
      }
    }
    EXPECT_EQ(said, failure + foreign + (replaces ? moved : L""));
    EXPECT_EQ(utility.File(kPath), "colleague's");
    EXPECT_EQ(utility.File(aside).has_value(), replaces);
  }
  FakeSharedUtil utility;
  utility.AddFile(kPath, "earlier");
  const FileIdentity agreed = *utility.IdentifyFile(kPath);
  utility.SetReadOnly(kPath);  // which the question did not say
  EXPECT_FALSE(FilePlace(utility).Replace(kPath, agreed));
  utility.Remove(kPath);
  utility.AddFile(kPath, "colleague's");
  EXPECT_FALSE(FilePlace(utility).Replace(kPath, agreed));
  EXPECT_EQ(utility.File(kPath), "colleague's");
  EXPECT_EQ(utility.Files().size(), 1u);
}

TEST(FilePlace, SaysWhatItCouldNotTakeBack) {
  FakeSharedUtil utility;
  utility.AddFolder(L"D:\\Filed");
  FilePlace place(utility);
  ASSERT_TRUE(place.Claim(kPath));
  try {
    place.Write([&] {
      utility.FailFileOperation(2);
      utility.AddFile(kPath, "");  // no error of Outlook's, and no message
    });
    ADD_FAILURE() << "an empty file was taken for a message";
  } catch (const Error& error) {
    EXPECT_EQ(error.Description(),
              L"Outlook did not write the file \"D:\\Filed\\Minutes.msg\".\n\nThe file "
              L"\"D:\\Filed\\Minutes.msg\" is incomplete and could not be removed. Remove it "
              L"yourself.");
  }
}

TEST(FootedBody, KeepsWhatTheBodySays) {
  const std::wstring html =
      L"<DIV><P>D:\\B&#252;ro &amp; Co\\a.msg<BR>Save important emails with <A "
      L"HREF=\"https://www.postrove.example\">https://www.postrove.example</A></P></DIV>";
  const std::wstring plain =
      L"\r\nD:\\B\x00FCro & Co\\a.msg\r\nSave important emails with https://www.postrove.example"
      L"\r\n";
  const struct {
    bool editsHtml;
    std::wstring html, body, footedHtml, footedBody;
  } cases[] = {
      {true, L"<body>a</Body></HTML>", L"a", L"<body>a" + html + L"</BODY></HTML>", L"a"},
      {true, L"<p>\x00FC", L"a", L"<p>\x00FC" + html, L"a"},
      {true, L"a</body>b</BODY>", L"", L"a" + html + L"</BODY>b" + html + L"</BODY>", L""},
      {true, L"", L"a", L"", L"a" + plain},
      {true, L" \r\n", L"a", L" \r\n", L"a" + plain},
      {false, L"<body>a</body>", L"a", L"<body>a</body>", L"a" + plain},
  };
  for (const auto& one : cases) {
    FakeLog log;
    const auto item = std::make_shared<FakeObject>(log, L"Item");
    item->properties = {{L"HTMLBody", one.html}, {L"Body", one.body}};
    for (const bool kept : {false, true}) {
      {
        FootedBody footed(office::MailItem(item), one.editsHtml, L"D:\\B\x00FCro & Co\\a.msg");
        EXPECT_EQ(item->properties[L"HTMLBody"], Value(one.footedHtml));
        EXPECT_EQ(item->properties[L"Body"], Value(one.footedBody));
        if (kept) footed.Keep();
      }
      EXPECT_EQ(item->properties[L"HTMLBody"], Value(kept ? one.footedHtml : one.html));
      EXPECT_EQ(item->properties[L"Body"], Value(kept ? one.footedBody : one.body));
    }
  }
}

// Each text of a message in turn holds a letter that the code page lacks, or cannot be read.
TEST(Letters, AreLookedForInEveryTextOfTheMessage) {
  for (const wchar_t* member : {L"FileName", L"DisplayName", L"Body", L"SenderName",
                                L"SentOnBehalfOfName", L"To", L"CC", L"BCC"}) {
    for (const bool trusted : {true, false}) {
      SCOPED_TRACE(text::ToUtf8(member));
      const bool name = std::wstring(L"SenderName SentOnBehalfOfName To CC BCC").find(member) !=
                        std::wstring::npos;
      FakeSharedUtil utility;
      FakeOutlook outlook;
      const auto mail = outlook.Open(true);
      outlook.AddAttachment(*mail, L"Gr\x00F6\x00DF\x65.txt");
      const FakePtr last = outlook.AddAttachment(*mail, L"b.txt");
      const office::MailItem item(mail->item);
      const auto fits = [&] {
        return FitsCodePage(item, L"Pl\x00E4ne", item.Attachments(), utility, trusted);
      };
      EXPECT_TRUE(fits());
      const FakePtr holder = last->properties.contains(member) ? last : mail->item;
      ASSERT_TRUE(holder->properties.contains(member));
      holder->properties[member] = L"\x03A3\x03C7\x03AD\x03B4\x03B9\x03BF";
      outlook.log.calls.clear();
      EXPECT_EQ(fits(), name && !trusted);
      if (!trusted) {
        // Outlook would ask the user about each of these.
        for (const wchar_t* asked : {L"Item.SenderName", L"Item.To", L"Item.CC", L"Item.BCC"}) {
          EXPECT_THAT(outlook.log.calls, ::testing::Not(::testing::Contains(asked)));
        }
      }
      holder->properties.erase(member);
      EXPECT_EQ(fits(), !trusted);
    }
  }
}

}  // namespace
}  // namespace postrove::testing
