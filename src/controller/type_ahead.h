#pragma once

#include "forms/kit/form_host.h"

namespace postrove {

// True for a key that is a character of a text; Enter, Tab, Backspace and their like are none. Of
// the two keys that a character beyond the Basic Multilingual Plane arrives as, the second counts.
bool IsCharacter(int keyAscii);

// Completes what is typed into a combo box, or shortened by Backspace, by the first item that
// begins with it, ignoring case: the list is dropped down, the item is selected, its completed part
// marked, and the key becomes 0. True then; a text that no item begins with is left to the box.
bool CompleteTyping(forms::FormHost& host, forms::Control& combo, int& keyAscii);

}  // namespace postrove
