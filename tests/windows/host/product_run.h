#pragma once

#include <windows.h>

#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "com/module_under_test.h"
#include "gtest/gtest.h"
#include "outlook/host.h"
#include "outlook/scripted_user.h"
#include "shared/text.h"
#include "threads.h"
#include "util/temporary_folder.h"

// The real add-in, registered for a moment, in the stand-in Outlook.
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

// What the scripted user saw.
class Reports {
 public:
  void Add(const std::wstring& line) {
    const std::lock_guard lock(mutex_);
    lines_.push_back(line);
  }
  std::vector<std::wstring> Lines() const {
    const std::lock_guard lock(mutex_);
    return lines_;
  }

 private:
  mutable standin::Mutex mutex_;
  std::vector<std::wstring> lines_;
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

// The names of what is still held, for a message.
inline std::string Held(const standin::Host& host) {
  std::string text;
  for (const standin::Leak& leak : host.Leaks()) {
    text += postrove::text::ToUtf8(leak.name) + " x" + std::to_string(leak.references) + "; ";
  }
  return text;
}

}  // namespace run
