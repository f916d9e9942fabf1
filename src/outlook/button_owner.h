#pragma once

#include "outlook/heard_button.h"

namespace postrove {

// Whoever owns the inspector button, as the tracker sees it; the controller in the product.
// Thread: Outlook's user-interface thread only.
class ButtonOwner {
 public:
  virtual ~ButtonOwner() = default;

  // Takes a new inspector button: gives it its looks, which tell whether the window's message is
  // sent or received already, and listens to it. Throws Error when Office refuses; the button heard
  // before then stays.
  virtual void SetPostroveMenuButton(HeardButton button, bool itemIsSent) = 0;

  // The button whose clicks arrive.
  virtual HeardButton& PostroveMenuButton() = 0;

  // Takes the clicks of another button instead, which keeps its looks, or of none. Throws Error
  // when Office refuses; the button heard before then stays.
  virtual void ListenTo(HeardButton button) = 0;

  // Lets go of every object of Outlook and closes the open dialogs, unanswered. Before the last
  // reference to the owner goes.
  virtual void Terminate() = 0;
};

}  // namespace postrove
