#pragma once

#include <windows.h>

#include <string>

namespace postrove::forms {

// The size that the user gave a form's client area, in twips, kept for the user under the form's
// name. Zeros when there is none, or none that can be read. Nothing here fails.
SIZE RememberedSize(const std::wstring& form);
void RememberSize(const std::wstring& form, SIZE twips);

}  // namespace postrove::forms
