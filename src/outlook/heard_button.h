#pragma once

#include <functional>
#include <memory>

#include "outlook/office/outlook.h"

namespace postrove {

// A window with its events, which come as long as anybody holds it.
struct OpenWindow {
  office::Inspector inspector;
  office::Subscription events;
};

// The inspector button whose clicks arrive. Office raises a click to every listener of every button
// with the same tag: one listener hears them all, and a second would file the message twice. The
// button is dead when its window has closed, so it is held together with that window's events and
// those of the message in it, whatever other windows are opened meanwhile.
//
// Movable. Letting it go ends the clicks first and holds nothing of Outlook afterwards; an empty
// one hears nothing.
class HeardButton {
 public:
  HeardButton() = default;
  // `messageCloses` runs at each Close of `message`. Throws Error when Outlook refuses.
  HeardButton(office::CommandBarButton button, std::shared_ptr<OpenWindow> window,
              const office::Item& message, std::function<void()> messageCloses);

  // Clicks go to `clicked` from now on. Throws Error when Office refuses.
  void Hear(std::function<void()> clicked);

  explicit operator bool() const { return static_cast<bool>(button_); }
  const office::CommandBarButton& Button() const { return button_; }
  bool StandsIn(const OpenWindow& window) const { return window_.get() == &window; }

  // Lets the message go; its Close is not heard any more.
  void ForgetMessage() { message_.Reset(); }

 private:
  std::shared_ptr<OpenWindow> window_;
  office::Subscription message_;
  office::CommandBarButton button_;
  office::Subscription clicks_;
};

}  // namespace postrove
