#pragma once

#include "controller/version.h"
#include "data/labels.h"
#include "data/settings.h"
#include "forms/frmPostrove.h"

// How the save dialog looks: what depends on the message, the mode, the labels and the version.
namespace postrove {

// Before the dialog is filled: the markers, the main button's caption for a message that is sent
// already, the version number.
void ArrangeForm(forms::frmPostrove& form, bool sent, const ProductVersion& version);

// What the mode decides; the setup dialog can change it.
void ArrangeByMode(forms::frmPostrove& form, bool shared);

// The texts that an office can choose.
void FillSaveLabels(forms::frmPostrove& form, const Settings& settings, const Labels& labels);

// Marks the name or the folder as missing or there.
void MarkSaveAsName(forms::frmPostrove& form);
void MarkSaveFolder(forms::frmPostrove& form);

// Shows the hint of a field, by its label in the label file (data/label_places.h).
void ShowHint(forms::frmPostrove& form, const Labels& labels, std::size_t label);

}  // namespace postrove
