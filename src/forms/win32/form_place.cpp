#include <algorithm>
#include <utility>

#include "forms/win32/dpi.h"
#include "forms/win32/form_size.h"
#include "forms/win32/form_window.h"

// The size of a dialog and of what is in it.
namespace postrove::forms {
namespace {

constexpr int kListTwips = 3600;
constexpr int kTipTwips = 4500;

SIZE SizeOf(const RECT& area) { return {area.right - area.left, area.bottom - area.top}; }

}  // namespace

// The size of the window around a client area in twips, which is at least as designed.
SIZE FormWindow::SizeAround(SIZE twips) const {
  const SIZE client = {fonts_->Pixels(std::max<int>(twips.cx, layout_->Width())),
                       fonts_->Pixels(std::max<int>(twips.cy, form_->Height()))};
  return SizeOf(FrameAround(client, style_, exStyle_, dpi_));
}

// What its work area leaves for the client area, in pixels.
SIZE FormWindow::Room() const {
  const SIZE work = SizeOf(WorkArea(window_));
  const SIZE frame = SizeOf(FrameAround({}, style_, exStyle_, dpi_));
  return {work.cx - frame.cx, work.cy - frame.cy};
}

// As large as the user left it, centred on the owner, and within the work area of its monitor.
void FormWindow::PlaceWindow() {
  const HWND owner = GetWindow(window_, GW_OWNER);
  const RECT work = WorkArea(owner ? owner : window_);
  RECT around = work;
  if (owner && IsWindowVisible(owner) && !IsIconic(owner)) GetWindowRect(owner, &around);
  SIZE size = SizeAround(form_->Resizable() ? RememberedSize(form_->Name()) : SIZE());
  size.cx = std::min(size.cx, work.right - work.left);
  size.cy = std::min(size.cy, work.bottom - work.top);
  const auto place = [](LONG low, LONG high, LONG extent, LONG from, LONG to) {
    return std::max(from, std::min((low + high - extent) / 2, to - extent));
  };
  SetWindowPos(window_, nullptr, place(around.left, around.right, size.cx, work.left, work.right),
               place(around.top, around.bottom, size.cy, work.top, work.bottom), size.cx, size.cy,
               SWP_NOZORDER | SWP_NOACTIVATE);
}

// A form that the screen has no room for is drawn smaller, so that its buttons can be reached.
void FormWindow::SetDpi(unsigned dpi) {
  dpi_ = dpi;
  // The old fonts go when no window uses them any more.
  const auto old = std::exchange(fonts_, std::make_unique<Fonts>(dpi));
  const SIZE room = Room();
  const int percent = static_cast<int>(
      std::min({100L, room.cx * 100 / fonts_->Pixels(FormLayout::LeastWidth(*form_)),
                room.cy * 100 / fonts_->Pixels(FormLayout::LeastHeight(*form_))}));
  if (percent < 100) fonts_ = std::make_unique<Fonts>(dpi, percent);
  for (const auto& control : controls_) control->SetFont(*fonts_);
  tips_.SetFont(fonts_->Get(0, false, false), fonts_->Pixels(kTipTwips));
  MeasureCaptions();
}

void FormWindow::MeasureCaptions() {
  constexpr int kRounding = 15;
  const auto needs = [this](const Control& control) {
    const int width = WindowOf(control)->CaptionWidth(*fonts_);
    return width ? width + kRounding : 0;
  };
  layout_.emplace(*form_, needs, fonts_->Twips(Room().cx));
}

// After a change of a caption or a place.
void FormWindow::Rearrange() {
  if (!layout_) return;
  MeasureCaptions();
  const RECT work = WorkArea(window_);
  const LONG width = std::min(SizeAround({}).cx, work.right - work.left);
  RECT place;
  GetWindowRect(window_, &place);
  if (place.right - place.left < width) {
    SetWindowPos(window_, nullptr, std::max(work.left, std::min(place.left, work.right - width)),
                 place.top, width, place.bottom - place.top, SWP_NOZORDER | SWP_NOACTIVATE);
  }
  Arrange();
  // Controls that move over each other one by one leave pieces of their old pictures behind.
  RedrawWindow(window_, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

void FormWindow::Arrange() {
  if (!form_ || !layout_) return;
  RECT client;
  GetClientRect(window_, &client);
  const int width = fonts_->Twips(client.right);
  const int height = fonts_->Twips(client.bottom);
  for (const auto& control : controls_) {
    // Edges, not sizes, are rounded: what is aligned in the design stays so.
    const Box box = layout_->Place(*control->Model(), width, height);
    control->MoveTo({fonts_->Pixels(box.left), fonts_->Pixels(box.top),
                     fonts_->Pixels(box.left + box.width), fonts_->Pixels(box.top + box.height)},
                    fonts_->Pixels(kListTwips));
  }
}

// What another program or a small monitor made of the window is not what the user chose.
void FormWindow::KeepSize() {
  if (!window_ || !std::exchange(sized_, false)) return;
  const DpiAwareScope dpi;
  RECT client;
  GetClientRect(window_, &client);
  RememberSize(form_->Name(), {fonts_->Twips(client.right), fonts_->Twips(client.bottom)});
}

}  // namespace postrove::forms
