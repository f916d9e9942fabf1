#include "filing_run.h"

#include <algorithm>

#include "dialog_user.h"

namespace run {
namespace {

using namespace standin;

std::wstring Environment(const wchar_t* name) {
  wchar_t value[MAX_PATH] = {};
  GetEnvironmentVariableW(name, value, MAX_PATH);
  return value;
}

}  // namespace

Outcome File(const Filing& given, const Folder& folder) {
  Options options;
  options.version = given.version;
  Host host(options);
  host.LoadAddIns();
  Inspector& inspector = host.Open(given.message, !given.composing, ItemKind::kMail, given.editor);
  const std::size_t before = host.CallCount();
  if (given.failingCall != 0) host.FailCall(given.failingCall, E_FAIL);
  if (!given.failingMember.empty()) host.FailMember(given.failingMember, given.failure);
  const auto placed = [&folder](const std::wstring& text) {
    return postrove::text::Replace(text, folder.Path(), L"*\\");
  };

  Reports reports;
  {
    UserScript script;
    script.project = given.project;
    script.folder = given.folder.value_or(folder.Path());
    script.name = given.name;
    script.answers = given.answers;
    script.report = [&](const std::wstring& line) {
      reports.Add(placed(line));
      if (given.onReport) given.onReport(host, inspector);
    };
    const ScriptedUser user(std::move(script));
    EXPECT_TRUE(host.Click(inspector));
  }
  Outcome outcome;
  const std::vector<Runtime::Call>& all = host.AllCalls();
  for (std::size_t i = before; i < all.size(); ++i) {
    ++outcome.callCount;
    std::wstring text = placed(all[i].text);
    if (text.find(L"Body=") != std::wstring::npos) text.resize(text.find(L'=') + 1);
    if (all[i].invoke) outcome.calls.push_back(text);
    // What follows is the closing of the window.
    if (text == L"MailItem.Send") break;
  }
  outcome.files = folder.Files();
  outcome.saved = host.SavedFiles();
  outcome.reports = reports.Lines();
  outcome.sent = host.SentMessages().size();
  host.Quit();
  outcome.held = Held(host);
  EXPECT_TRUE(host.Core().EventFailures().empty());
  return outcome;
}

QuillionInstalled::QuillionInstalled()
    : programs_(Environment(L"ProgramFiles") + L"\\Quillion"),
      data_(Environment(L"ProgramData") + L"\\Quillion") {
  CreateDirectoryW(programs_.c_str(), nullptr);
  CreateDirectoryW(data_.c_str(), nullptr);
  const std::string database =
      postrove::text::ToUtf8(Environment(L"ProgramData")) + "\\Postrove\\Postrove.mdb";
  Write(data_ + L"\\Qulln.ini",
        "[FilePathsMDB]\r\n1=" + database + "\r\n[FilePathsPrj]\r\n1=C:\\\r\n");
}

QuillionInstalled::~QuillionInstalled() {
  DeleteFileW((data_ + L"\\Qulln.ini").c_str());
  RemoveDirectoryW(data_.c_str());
  RemoveDirectoryW(programs_.c_str());
}

}  // namespace run
