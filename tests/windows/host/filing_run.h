#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "product_run.h"

// One filing through the real dialog: the scripted user works on its windows.
namespace run {

struct Filing {
  int version = 11;
  bool composing = false;
  standin::Editor editor = standin::Editor::kHtml;
  standin::MessageData message = Mail(L"Minutes: 12 May");
  std::wstring project = L"Harbour Bridge: 2231";
  std::optional<std::wstring> folder;  // else the test's folder
  std::optional<std::wstring> name;    // else the one proposed
  std::multimap<std::wstring, std::wstring> answers;
  std::size_t failingCall = 0;
  std::wstring failingMember;
  HRESULT failure = E_ACCESSDENIED;
  // Called for each line that the user reports, on the user's thread.
  std::function<void(standin::Host& host, standin::Inspector& inspector)> onReport = {};
};

struct Outcome {
  std::vector<std::wstring> files;    // in the test's folder
  std::vector<std::wstring> saved;    // every file that the host wrote
  std::vector<std::wstring> reports;  // of the user; the test's folder is "*\"
  std::vector<std::wstring> calls;    // of members up to the sending, without the bodies written
  std::size_t sent = 0;
  std::string held;           // references of the add-in after the end, by name
  std::size_t callCount = 0;  // all that can be made to fail, up to the sending
};

// Opens the message in a new host, clicks the add-in's button, lets the user act, quits.
Outcome File(const Filing& given, const Folder& folder);

// Makes the machine one with Quillion, whose data the add-in shares, for as long as it lives.
class QuillionInstalled {
 public:
  QuillionInstalled();
  ~QuillionInstalled();
  QuillionInstalled(const QuillionInstalled&) = delete;
  QuillionInstalled& operator=(const QuillionInstalled&) = delete;

 private:
  std::wstring programs_, data_;
};

}  // namespace run
