#pragma once

#include <string>

#include "forms/kit/control.h"

namespace postrove::forms {

// The caption of a label or button as a window shows it: "&" stands before the letter of its key,
// and twice for itself. A caption keeps the mark of its own text while no control that comes before
// it uses the letter; else, and with choosesKey, the first free letter of the text is marked, if
// there is one. First comes the default button, then the other buttons, then the labels; among
// these a mark comes before a choice.
std::wstring ShownCaption(const Control& control);

// The caption as it is read: without the marks of keys.
std::wstring PlainCaption(const Control& control);

}  // namespace postrove::forms
