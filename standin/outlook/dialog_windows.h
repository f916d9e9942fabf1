#pragma once

#include <windows.h>

#include <string>
#include <vector>

// How a person sees the dialogs of this process: by what is visible. All calls are made from
// another thread than the one that owns the windows.
namespace standin {

std::wstring ClassOf(HWND window);
std::wstring TextOf(HWND window);  // also of another thread's control

// The topmost visible and enabled dialog of this process: no inspector, menu, list or tool tip.
// Null when there is none.
HWND TopDialog();

bool IsMessageBox(HWND dialog);

// Visible children of the window class in z-order, at any depth.
std::vector<HWND> VisibleChildren(HWND dialog, const wchar_t* windowClass);

// A visible, enabled button by its caption without mnemonic, ignoring case; null when none.
HWND FindButton(HWND dialog, const std::wstring& caption);

// The button that Enter presses: the visible default push button, else the first push button.
HWND DefaultButton(HWND dialog);

// The text part of the first combo box; null when there is none.
HWND ComboEdit(HWND dialog);

// The text box, or the text part of the combo box, after the label whose text contains the word;
// null when there is none.
HWND EditAfterLabel(HWND dialog, const std::wstring& word);

// Every visible window of the process with class and text, for a report.
std::wstring DescribeWindows();

}  // namespace standin
