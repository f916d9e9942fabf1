#pragma once

#include <string>

#include "forms/kit/control.h"

namespace postrove::forms {

// The caption of a label or button as a window shows it: "&" stands before the letter of its key,
// and twice for itself. Without choosesKey that is its text; with it, the first letter of the text
// is marked that no other caption of the form uses, if there is one.
std::wstring ShownCaption(const Control& control);

}  // namespace postrove::forms
