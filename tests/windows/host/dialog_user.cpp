#include "dialog_user.h"

#include <cstdio>
#include <stdexcept>

#include "outlook/dialog_windows.h"
#include "outlook/message.h"
#include "threads.h"

namespace run {

using namespace standin;
using postrove::text::ToUtf8;

const std::wstring kData = L"C:\\ProgramData\\Postrove\\";
const std::wstring kIni = kData + L"Postrove.ini";
const std::wstring kDatabase = kData + L"Postrove.mdb";

FreshData::FreshData() {
  DeleteFileW(kIni.c_str());  // of a run that was ended
  EXPECT_TRUE(CopyFileW(kDatabase.c_str(), backup_.c_str(), FALSE));
}

FreshData::~FreshData() {
  CopyFileW(backup_.c_str(), kDatabase.c_str(), FALSE);
  DeleteFileW(kIni.c_str());
}

void WaitFor(const std::string& what, const std::function<bool()>& condition) {
  const ULONGLONG deadline = GetTickCount64() + 10000;
  while (!condition()) {
    if (GetTickCount64() > deadline) {
      throw std::runtime_error("waited for " + what + "\n" + ToUtf8(DescribeWindows()));
    }
    Sleep(1);
  }
}

bool Exists(const std::wstring& path) {
  return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

std::string Text(const std::wstring& path) {
  try {
    return Exists(path) ? ReadWholeFile(path) : std::string("(none)");
  } catch (const HostError&) {
    return "(being replaced)";
  }
}

void Write(const std::wstring& path, const std::string& bytes) {
  const HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                  FILE_ATTRIBUTE_NORMAL, nullptr);
  ASSERT_NE(file, INVALID_HANDLE_VALUE);
  DWORD written = 0;
  WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
  CloseHandle(file);
}

Window::Window(const std::wstring& caption) {
  WaitFor(ToUtf8(caption), [&] {
    window_ = TopDialog();
    return window_ && TextOf(window_) == caption;
  });
}

void Window::Press(const std::wstring& button) const {
  HWND found = nullptr;
  WaitFor(ToUtf8(button), [&] { return (found = FindButton(window_, button)) != nullptr; });
  PostMessageW(found, BM_CLICK, 0, 0);
}

void Window::Enter(const std::wstring& label, const std::wstring& text) const {
  const HWND edit = Box(label);
  int looks = 0;
  WaitFor("the focus", [&] {
    // A dialog that is just being shown may still choose the box to begin in.
    if (looks++ % 100 == 0) {
      PostMessageW(window_, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(edit), TRUE);
    }
    return HasFocus(edit);
  });
  SendMessageW(edit, EM_SETSEL, 0, -1);
  SendMessageW(edit, EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(text.c_str()));
  PostMessageW(window_, WM_NEXTDLGCTL, 0, 0);
}

std::wstring Window::Value(const std::wstring& label) const { return TextOf(Box(label)); }

bool Window::HasButton(const std::wstring& caption) const {
  return FindButton(window_, caption) != nullptr;
}

bool Window::Shows(const std::wstring& label) const {
  for (const HWND one : VisibleChildren(window_, L"STATIC")) {
    if (postrove::text::Replace(TextOf(one), L"&", L"") == label) return true;
  }
  return false;
}

void Window::WaitForLabel(const std::wstring& label) const {
  WaitFor(ToUtf8(label), [&] { return Shows(label); });
}

void Window::WaitForFocus(const std::wstring& label) const {
  WaitFor("the focus in " + ToUtf8(label), [&] { return HasFocus(Box(label)); });
}

HWND Window::Box(const std::wstring& label) const {
  const HWND edit = EditAfterLabel(window_, label);
  if (!edit) throw std::runtime_error("no box " + ToUtf8(label));
  return edit;
}

bool Window::HasFocus(HWND edit) const {
  GUITHREADINFO info = {};
  info.cbSize = sizeof info;
  GetGUIThreadInfo(GetWindowThreadProcessId(window_, nullptr), &info);
  return info.hwndFocus == edit;
}

void Click(Host& host, Inspector& inspector, const std::function<void(const Window& save)>& steps) {
  const standin::Thread user([&] {
    try {
      steps(Window(L"Postrove"));
    } catch (const std::exception& failure) {
      std::fprintf(stderr, "%s\n", failure.what());
      TerminateProcess(GetCurrentProcess(), 1);
    }
  });
  EXPECT_TRUE(host.Click(inspector));
  user.Join();
}

}  // namespace run
