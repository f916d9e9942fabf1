#pragma once

#include <string>

#include "data/projects.h"
#include "outlook/office/outlook.h"
#include "outlook/shared_objects.h"

namespace postrove {

// What belongs to one click on the button: made first thing in the click and gone with it. The
// message itself is held by the tracker, which lets it go when its window closes.
struct Filing {
  office::Inspector inspector;  // the message's window
  bool sent = false;            // the message is already sent or received
  std::wstring subject;         // as it was at the click

  Project project;              // the current one
  std::wstring saveAsName;      // the file's name without its ending
  std::wstring proposedFolder;  // what the dialog proposed last
  bool typedProject = false;    // the user typed the project instead of choosing one
  bool toldOfLetters = false;   // the user knows which letters the file cannot hold
};

// The message of the active window, whichever window's button was clicked, which the tracker holds
// from now on. Throws Error when there is none, or no tracker any more. Whether it is sent is asked
// of that very item: the window opened last can show another one. Nothing holds the tracker
// afterwards: Outlook can quit while the dialog is open.
Filing TakeActiveMessage(const SharedObjects& shared);

}  // namespace postrove
