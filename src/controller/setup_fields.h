#pragma once

#include <string>

#include "forms/frmSetup.h"

// The fields of the setup dialog by their index: which controls show one, and what it says.
namespace postrove {

forms::Control& FieldOf(const forms::frmSetup& form, int index);
bool IsDelimiter(int index);

// A field's name in messages: its label without the mark of its key and what follows the name.
std::wstring NameOf(const forms::frmSetup& form, int index);

// Shows whether a field's value is there. False when a required one is missing.
bool MarkField(const forms::frmSetup& form, int index);

// What the user cannot fill in is not asked for.
void ShowLocked(const forms::frmSetup& form, int index);

// Quillion decides on its database and folders.
void LockByMode(forms::frmSetup& form, bool shared);

// A text with the word for a project in the place of "~Unit~".
std::wstring WithWord(const std::wstring& pattern, const std::wstring& word);

// Shows the word, and an example of the path of a message.
void ShowWord(const forms::frmSetup& form, const std::wstring& word);
void ShowSample(const forms::frmSetup& form);

// The lines about fields that are empty; none when all are filled.
std::wstring ValueMissing(const std::wstring& name);
std::wstring MissingFields(const forms::frmSetup& form, const std::wstring& workUnit);

}  // namespace postrove
