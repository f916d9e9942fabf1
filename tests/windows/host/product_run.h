#pragma once

#include <windows.h>

#include <string>

#include "com/module_under_test.h"
#include "gtest/gtest.h"
#include "outlook/host.h"
#include "outlook/scripted_user.h"
#include "shared/text.h"
#include "util/temporary_folder.h"
#include "util/user.h"

// The real add-in, registered for a moment, in the stand-in Outlook, and what lies on the disk.
namespace run {

// Registers the built DLL for as long as it lives.
class Registered {
 public:
  Registered() { EXPECT_EQ(module_.RegisterServer(), S_OK); }
  ~Registered() { EXPECT_EQ(module_.UnregisterServer(), S_OK); }
  const ModuleUnderTest& Module() const { return module_; }

 private:
  ModuleUnderTest module_;
};

inline standin::MessageData Mail(const std::wstring& subject, bool html = true) {
  standin::MessageData message;
  message.subject = subject;
  message.senderName = L"Planning office";
  message.senderAddress = L"planning@example.com";
  message.body = L"Please find the drawings attached.\r\n";
  if (html) message.html = L"<html><body><p>Please find the drawings attached.</p></body></html>";
  message.recipients.push_back({standin::RecipientKind::kTo, L"Site", L"site@example.com"});
  return message;
}

using Folder = postrove::TemporaryFolder;
using standin::WaitFor;
using Window = standin::DialogInFront;

// The names of what is still held, for a message.
inline std::string Held(const standin::Host& host) {
  std::string text;
  for (const standin::Leak& leak : host.Leaks()) {
    text += postrove::text::ToUtf8(leak.name) + " x" + std::to_string(leak.references) + "; ";
  }
  return text;
}

// Clicks the add-in's button while a user does the steps, beginning in the save dialog.
inline void Click(standin::Host& host, standin::Inspector& inspector,
                  const std::function<void(const Window& save)>& steps) {
  const postrove::User user([&] { steps(Window(L"Postrove")); });
  EXPECT_TRUE(host.Click(inspector));
}

const std::wstring kData = L"C:\\ProgramData\\Postrove\\";  // the add-in's
const std::wstring kIni = kData + L"Postrove.ini";
const std::wstring kDatabase = kData + L"Postrove.mdb";

inline std::string Text(const std::wstring& path) {
  return postrove::Bytes(path).value_or("(none)");
}

// The add-in without a settings file; at the end there is none again, and the database is as it
// was.
class FreshData {
 public:
  FreshData() {
    DeleteFileW(kIni.c_str());  // of a run that was ended
    EXPECT_TRUE(CopyFileW(kDatabase.c_str(), backup_.c_str(), FALSE));
  }
  ~FreshData() {
    CopyFileW(backup_.c_str(), kDatabase.c_str(), FALSE);
    DeleteFileW(kIni.c_str());
  }
  FreshData(const FreshData&) = delete;
  FreshData& operator=(const FreshData&) = delete;

 private:
  const Folder folder_;
  const std::wstring backup_ = folder_ / L"backup";
};

}  // namespace run
