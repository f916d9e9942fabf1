#include <algorithm>
#include <optional>
#include <utility>

#include "forms/win32/control_window.h"
#include "forms/win32/dpi.h"

// The list of a combo box.
//
// Putting 100,000 items into it takes half a second: the dialog would open late, or the first key
// would wait. So the list is filled in portions while the user does nothing; what the user asks for
// meanwhile is filled at once, up to the item in question. The list stays one of texts, which
// screen readers read.
//
// What the user chooses in the open list counts when the list is closed, unless that is by Esc.
// Windows completes a typed text from the list when this is dropped down or closed; the text is
// then put back, since the model decides on that.
namespace postrove::forms {
namespace {

constexpr std::size_t kPortion = 1000;  // some milliseconds
constexpr UINT kPause = 10;             // milliseconds; input comes before the timer anyway

}  // namespace

void ControlWindow::EmptyList() {
  if (!list_) return;
  const Applying applying(applying_);
  listed_ = 0;
  picked_ = -1;
  // The list alone: the combo box would empty its text too.
  SendMessageW(list_, LB_RESETCONTENT, 0, 0);
  if (ListIsDown()) FillAround();
  FillLater();
}

void ControlWindow::FillLater() {
  if (list_ && listed_ < control_->Items().size()) {
    SetTimer(window_, kFillTimer, kPause, nullptr);
  }
}

void ControlWindow::FillMore() {
  if (control_) FillTo(listed_ + kPortion);
  if (!control_ || listed_ >= control_->Items().size()) KillTimer(window_, kFillTimer);
}

// As far as the selected item and all that the next key or turn of the wheel can reach.
void ControlWindow::FillAround() {
  if (control_) FillTo(static_cast<std::size_t>(control_->ListIndex() + 1) + kPortion);
}

void ControlWindow::FillTo(std::size_t count) {
  if (!list_) return;
  const std::vector<std::wstring>& items = control_->Items();
  count = std::min(count, items.size());
  if (listed_ >= count) return;
  const Applying applying(applying_);
  const std::size_t before = listed_;
  SendMessageW(list_, WM_SETREDRAW, FALSE, 0);
  for (; listed_ < count; ++listed_) {
    SendMessageW(list_, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(items[listed_].c_str()));
  }
  SendMessageW(list_, WM_SETREDRAW, TRUE, 0);
  const auto selected = static_cast<std::size_t>(control_->ListIndex());  // none is out of range
  if (selected >= before && selected < listed_) SendMessageW(list_, LB_SETCURSEL, selected, 0);
}

// The list is as wide as its longest item, within the screen.
void ControlWindow::WidenList() {
  constexpr std::size_t kCharacters = 1000;  // wider than any screen
  const std::vector<std::wstring>& items = control_->Items();
  std::size_t longest = 0;
  for (const std::wstring& item : items) longest = std::max(longest, item.size());
  const TextRuler ruler(window_);
  LONG widest = 0;
  std::size_t measured = 0;
  for (const std::wstring& item : items) {
    if (item.size() < longest - longest / 4) continue;
    const SIZE size = ruler.Measure(item.substr(0, kCharacters), DT_SINGLELINE | DT_NOPREFIX);
    widest = std::max(widest, size.cx);
    if (++measured == kPortion) break;
  }
  widest += GetSystemMetrics(SM_CXVSCROLL) + 4 * GetSystemMetrics(SM_CXEDGE);
  RECT box;
  GetWindowRect(window_, &box);
  const LONG room = WorkArea(window_).right - box.left;
  SendMessageW(window_, CB_SETDROPPEDWIDTH, static_cast<WPARAM>(std::min(widest, room)), 0);
}

void ControlWindow::ListCommand(UINT code) {
  if (code == CBN_DROPDOWN) {
    FillAround();
    WidenList();
  }
  if (applying_) return;
  // What Windows does to the text, and the notice of a choice, can follow these two.
  if (code == CBN_DROPDOWN || code == CBN_CLOSEUP) {
    PostMessageW(dialog_, kListMoved, 0, reinterpret_cast<LPARAM>(window_));
  }
  if (code == CBN_EDITCHANGE) ReadText();
  if (code == CBN_SELCHANGE) {
    picked_ = static_cast<int>(SendMessageW(window_, CB_GETCURSEL, 0, 0));
    if (!ListIsDown()) TakePick();
  }
  if (code == CBN_CLOSEUP) TakePick();
}

void ControlWindow::TakePick() {
  const int index = std::exchange(picked_, -1);
  if (index < 0 || !control_) return;
  const HostDpiScope host;
  control_->UserPicked(index);
}

void ControlWindow::SetSelectionNow() {
  if (!edit_) return;
  const Applying applying(applying_);
  if (list_) {
    const int index = control_->ListIndex();
    if (ListIsDown()) FillAround();
    // An item that is not listed yet is selected when it is.
    if (static_cast<std::size_t>(index + 1) <= listed_ &&
        static_cast<int>(SendMessageW(window_, CB_GETCURSEL, 0, 0)) != index) {
      SendMessageW(window_, CB_SETCURSEL, static_cast<WPARAM>(index), 0);
      SetWindowTextNow();
    }
  }
  const int start = control_->SelectionStart();
  SendMessageW(edit_, EM_SETSEL, static_cast<WPARAM>(start), start + control_->SelectionLength());
  SendMessageW(edit_, EM_SCROLLCARET, 0, 0);
}

bool ControlWindow::ListIsDown() const {
  return kind_ == ControlKind::ComboBox && window_ &&
         SendMessageW(window_, CB_GETDROPPEDSTATE, 0, 0);
}

void ControlWindow::DropDownList() {
  if (kind_ != ControlKind::ComboBox || !window_ || !control_) return;
  {
    const Applying applying(applying_);
    ReadCaret();
    FillAround();
    SendMessageW(window_, CB_SHOWDROPDOWN, TRUE, 0);
    // Dropping down can complete the text from the list; the model decides on that.
    if (control_) {
      SetWindowTextNow();
      SetSelectionNow();
    }
  }
  // Typing hid the pointer, and the list keeps the mouse: it would stay hidden.
  SetCursor(LoadCursorW(nullptr, IDC_ARROW));
}

void ControlWindow::ListMoved() {
  if (!control_ || picked_ >= 0 || TextOf(window_) == control_->Text()) return;
  SetWindowTextNow();
  if (!ListIsDown()) SetSelectionNow();
}

// Which part of the box hears the key differs between systems.
void ControlWindow::CloseListBy(WORD key) {
  std::optional<Applying> cancelled;
  if (key == VK_ESCAPE) {
    cancelled.emplace(applying_);
    picked_ = -1;
  }
  SendMessageW(edit_, WM_KEYDOWN, key, 0);
  if (ListIsDown()) SendMessageW(window_, WM_KEYDOWN, key, 0);
  if (ListIsDown()) SendMessageW(window_, CB_SHOWDROPDOWN, FALSE, 0);
  ListMoved();
}

}  // namespace postrove::forms
