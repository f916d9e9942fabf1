#pragma once

#include "forms/kit/control.h"

namespace postrove {

// Shows whether a required value is there: the marker while the box is empty, and the colours of
// the box and its caption when the box is tagged "required". False when such a box is empty.
bool CheckRequired(forms::Control& box, forms::Control& caption, forms::Control& marker);

}  // namespace postrove
