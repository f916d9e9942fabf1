#include "shared/clsSharedUtil.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "memory/FakeSharedUtil.h"

namespace postrove {
namespace {

using testing::FakeSharedUtil;
using testing::ShownMessage;

constexpr wchar_t kFile[] = L"C:\\ProgramData\\Postrove\\Postrove.ini";

bool Contains(const std::wstring& text, const std::wstring& part) {
  return text.find(part) != std::wstring::npos;
}

TEST(SharedUtil, AppendsALineInTheFilesEncoding) {
  using namespace std::string_literals;
  const struct {
    std::string before;
    std::wstring line;
    std::string after;
  } kTable[] = {
      {"", L"Job", "Job\r\n"},
      {"Job\n", L"Größe", "Job\nGr\xF6\xDF\x65\r\n"},
      {"Job", L"Task", "Job\r\nTask\r\n"},
      {"J\xF6\x62\r\n", L"Ł", "\xEF\xBB\xBFJ\xC3\xB6\x62\r\n\xC5\x81\r\n"},
      {"\xEF\xBB\xBFJob\r\n", L"Ł", "\xEF\xBB\xBFJob\r\n\xC5\x81\r\n"},
      {"\xFF\xFE\x41\x01"s, L"b", "\xFF\xFE\x41\x01\r\0\n\0b\0\r\0\n\0"s},
      {"\xFE\xFF\x01\x41"s, L"b", "\xFE\xFF\x01\x41\0\r\0\n\0b\0\r\0\n"s},
      {"J\xC3\xB6\x62\n", L"Ł", "J\xC3\xB6\x62\n\xC5\x81\r\n"},
      // Half a character at the end, and a line that begins like a mark.
      {"\xFF\xFEJ\0\n\0x"s, L"b", "\xEF\xBB\xBFJ\nb\r\n"},
      {"", L"\u00FF\u00FE", "\xEF\xBB\xBF\xC3\xBF\xC3\xBE\r\n"},
  };
  for (const auto& row : kTable) {
    FakeSharedUtil utility;
    utility.AddFile(kFile, row.before);
    utility.AppendLine(kFile, row.line);
    EXPECT_EQ(utility.File(kFile), row.after);
  }
}

TEST(SharedUtil, ReportsErrors) {
  FakeSharedUtil utility;
  utility.ExpectMessage();
  utility.ReportError(Error(kFileNotFound, L"LabelFile", L"The label file is missing."),
                      L"clsPostrove", L"PostroveMenuButton_Click()", L"Labels keep their words.");
  utility.ExpectMessage();
  utility.ReportError(Error(static_cast<long>(-2147352567), L"", L""), L"clsPostrove", L"Save()");
  utility.ExpectMessage();
  utility.ReportError(Error(7, L"", L"Out of memory."), L"clsPostrove", L"Save()");

  ASSERT_EQ(utility.Messages().size(), 3u);
  for (const ShownMessage& message : utility.Messages()) {
    EXPECT_EQ(message.title, L"Postrove");
    EXPECT_EQ(message.buttons, MessageButtons::Ok);
    EXPECT_EQ(message.icon, MessageIcon::Error);
  }
  const std::wstring& first = utility.Messages()[0].text;
  EXPECT_TRUE(first.starts_with(L"The label file is missing."));
  for (const wchar_t* part :
       {L"Labels keep their words.", L"clsPostrove.PostroveMenuButton_Click()", L"53",
        L"Source: LabelFile", L"Check that"}) {
    EXPECT_TRUE(Contains(first, part)) << text::ToUtf8(part);
  }
  const std::wstring& second = utility.Messages()[1].text;
  EXPECT_TRUE(Contains(second, L"0x80020009"));
  EXPECT_FALSE(second.starts_with(L"\n")) << "an error without a description says so";
  EXPECT_FALSE(Contains(second, L"Source:"));
  EXPECT_TRUE(Contains(second, L"restart Outlook"));
  EXPECT_TRUE(Contains(utility.Messages()[2].text, L"Close other programs"));
}

// A utility object whose message boxes cannot be shown.
class MuteUtility : public FakeSharedUtil {
 public:
  MessageAnswer ShowMessage(const std::wstring&, const std::wstring&, MessageButtons,
                            MessageIcon) override {
    throw std::runtime_error("no desktop");
  }
};

TEST(SharedUtil, LetsNoExceptionOut) {
  FakeSharedUtil utility;
  EXPECT_TRUE(Reporting(utility, L"clsPostrove", L"Quiet()", [] {}));
  EXPECT_TRUE(utility.Messages().empty());

  utility.ExpectMessage();
  EXPECT_FALSE(
      Reporting(utility, L"clsPostrove", L"Throw()", [] { throw std::logic_error("odd"); }));
  ASSERT_EQ(utility.Messages().size(), 1u);
  EXPECT_TRUE(Contains(utility.Messages()[0].text, L"odd"));
  EXPECT_TRUE(Contains(utility.Messages()[0].text, L"clsPostrove.Throw()"));

  MuteUtility mute;
  EXPECT_FALSE(Reporting(mute, L"clsPostrove", L"Throw()", [] { throw 42; }));
}

}  // namespace
}  // namespace postrove
