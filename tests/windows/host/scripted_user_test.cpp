// The scripted user at message boxes; in the save dialog every filing shows it.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "outlook/scripted_user.h"

namespace standin {
namespace {

using ::testing::ElementsAre;

TEST(ScriptedUser, AnswersMessageBoxes) {
  std::vector<std::wstring> report;
  UserScript script;
  script.answers = {{L"delete it?", L"Yes"},
                    {L"other", L"Yes"},
                    {L"other", L"Cancel"},
                    {L"odd", L"Maybe"},
                    {L"never", L"OK:name"}};
  script.report = [&](const std::wstring& line) { report.push_back(line); };
  {
    const ScriptedUser user(std::move(script));
    EXPECT_EQ(MessageBoxW(nullptr, L"First\r\nSecond", L"Delete it?", MB_YESNO), IDYES);
    EXPECT_EQ(MessageBoxW(nullptr, L"Sure?", L"Unasked", MB_YESNO), IDNO);
    EXPECT_EQ(MessageBoxW(nullptr, L"Sure?", L"Other", MB_YESNO), IDYES);
    EXPECT_EQ(MessageBoxW(nullptr, L"Sure?", L"Other", MB_OKCANCEL), IDCANCEL);
    EXPECT_EQ(MessageBoxW(nullptr, L"Sure?", L"Other", MB_OKCANCEL), IDCANCEL);
    EXPECT_FALSE(user.Faulty());
    EXPECT_EQ(MessageBoxW(nullptr, L"Sure?", L"Odd", MB_YESNO), IDNO);
    EXPECT_TRUE(user.Faulty());
  }
  EXPECT_THAT(report,
              ElementsAre(L"Message: Delete it? | First / Second", L"Message: Unasked | Sure?",
                          L"Message: Other | Sure?", L"Message: Other | Sure?",
                          L"Message: Other | Sure?", L"Message: Odd | Sure?",
                          L"Fault: \"Odd\" has no button Maybe", L"Unused: never=OK:name"));
}

}  // namespace
}  // namespace standin
