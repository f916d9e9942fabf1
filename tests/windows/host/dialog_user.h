#pragma once

#include <windows.h>

#include <functional>
#include <string>

#include "product_run.h"

// A user at the windows of the real add-in, and what lies on the disk.
namespace run {

// Waits until the condition holds. Throws std::runtime_error with the windows that are to be seen
// when it does not within ten seconds.
void WaitFor(const std::string& what, const std::function<bool()>& condition);

bool Exists(const std::wstring& path);
// The bytes of a file; "(none)" without one.
std::string Text(const std::wstring& path);
void Write(const std::wstring& path, const std::string& bytes);

extern const std::wstring kData;  // the add-in's data folder
extern const std::wstring kIni;
extern const std::wstring kDatabase;

// The add-in without a settings file; at the end there is none again, and the database is as it
// was.
class FreshData {
 public:
  FreshData();
  ~FreshData();
  FreshData(const FreshData&) = delete;
  FreshData& operator=(const FreshData&) = delete;

 private:
  const Folder folder_;
  const std::wstring backup_ = folder_ / L"backup";
};

// The dialog in front. Used on the user's thread; all throw as WaitFor does. A box is named by a
// word of the label before it, a button or label by its text without "&".
class Window {
 public:
  explicit Window(const std::wstring& caption);  // waits for it

  void Press(const std::wstring& button) const;
  // The text takes the place of all that is in the box, which is then left again.
  void Enter(const std::wstring& label, const std::wstring& text) const;
  std::wstring Value(const std::wstring& label) const;
  bool HasButton(const std::wstring& caption) const;  // to be seen and enabled
  bool Shows(const std::wstring& label) const;
  void WaitForLabel(const std::wstring& label) const;
  void WaitForFocus(const std::wstring& label) const;

 private:
  HWND Box(const std::wstring& label) const;
  bool HasFocus(HWND edit) const;

  HWND window_ = nullptr;
};

// Clicks the add-in's button while a user on another thread does the steps, beginning in the save
// dialog. A step that fails ends the process: its dialogs would stay for ever.
void Click(standin::Host& host, standin::Inspector& inspector,
           const std::function<void(const Window& save)>& steps);

}  // namespace run
