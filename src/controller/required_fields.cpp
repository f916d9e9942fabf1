#include "controller/required_fields.h"

#include "shared/text.h"

namespace postrove {

bool CheckRequired(forms::Control& box, forms::Control& caption, forms::Control& marker) {
  const bool empty = box.Text().empty();
  marker.SetVisible(empty);
  if (!text::EqualsIgnoreCase(box.Tag(), L"required")) return true;
  box.SetBackColor(empty ? forms::kYellow : forms::kSystemWindow);
  caption.SetForeColor(empty ? forms::kRed : forms::kSystemButtonText);
  return !empty;
}

}  // namespace postrove
