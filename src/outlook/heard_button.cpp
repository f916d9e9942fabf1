#include "outlook/heard_button.h"

#include <utility>

#include "outlook/office/ids.h"

namespace postrove {

namespace {

// Runs `action` at the one event that counts.
office::EventHandler At(std::int32_t event, std::function<void()> action) {
  return [event, action = std::move(action)](std::int32_t dispid, const office::Arguments&) {
    if (dispid == event) action();
  };
}

}  // namespace

HeardButton::HeardButton(office::CommandBarButton button, std::shared_ptr<OpenWindow> window,
                         const office::Item& message, std::function<void()> messageCloses)
    : window_(std::move(window)),
      message_(message.Get()->Subscribe(office::kItemEvents,
                                        At(office::kItemClose, std::move(messageCloses)))),
      button_(std::move(button)) {}

void HeardButton::Hear(std::function<void()> clicked) {
  clicks_ = button_.Get()->Subscribe(office::kCommandBarButtonEvents,
                                     At(office::kButtonClick, std::move(clicked)));
}

}  // namespace postrove
