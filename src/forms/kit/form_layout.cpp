#include "forms/kit/form_layout.h"

#include <algorithm>

namespace postrove::forms {
namespace {

bool InFoot(const Control& control) {
  return (control.anchors & kBottom) && !(control.anchors & kTop);
}

constexpr int kLentWidth = 900;
constexpr int kLentHeight = 240;

}  // namespace

int FormLayout::LeastWidth(const Form& form) {
  return form.Width() - (form.Resizable() ? kLentWidth : 0);
}

int FormLayout::LeastHeight(const Form& form) {
  return form.Height() - (form.Resizable() ? kLentHeight : 0);
}

FormLayout::FormLayout(const Form& form, const Needs& needs, int room) : form_(&form) {
  std::vector<const Control*> fromLeft;
  for (const auto& control : form.Controls()) fromLeft.push_back(control.get());
  // What is moved by one caption must be so before the next one is looked at.
  std::stable_sort(fromLeft.begin(), fromLeft.end(), [](const Control* one, const Control* other) {
    const Box& a = one->Place();
    const Box& b = other->Place();
    return a.left + a.width < b.left + b.width;
  });
  const int most = std::max(0, std::min(form.Width() / 2, room - LeastWidth(form)));
  for (const Control* const control : fromLeft) {
    Shifts& shifts = InFoot(*control) ? foot_ : body_;
    const int left = control->Place().left;
    const int right = left + control->Place().width;
    const int lacks = needs(*control) - (Moved(shifts, right) - Moved(shifts, left));
    const int spare = most - (Moved(shifts, form.Width()) - form.Width());
    if (lacks > 0 && spare > 0) shifts.push_back({right, std::min(lacks, spare)});
  }
}

int FormLayout::Moved(const Shifts& shifts, int edge) const {
  int moved = edge;
  for (const Shift& shift : shifts) {
    if (edge >= shift.at) moved += shift.by;
  }
  return moved;
}

const FormLayout::Shifts& FormLayout::Part(const Control& control) const {
  return InFoot(control) ? foot_ : body_;
}

int FormLayout::Width() const {
  return std::max(Moved(body_, form_->Width()), Moved(foot_, form_->Width()));
}

Box FormLayout::Place(const Control& control, int width, int height) const {
  const Shifts& shifts = Part(control);
  const Box& box = control.Place();
  int left = Moved(shifts, box.left);
  int right = Moved(shifts, box.left + box.width);
  int top = box.top;
  int bottom = box.top + box.height;
  const int least = Width() - form_->Width() + LeastWidth(*form_);
  const int wider = std::max(width, least) - Moved(shifts, form_->Width());
  const int higher = std::max(height, LeastHeight(*form_)) - form_->Height();
  if (control.anchors & kRight) {
    right += wider;
    if (!(control.anchors & kLeft)) left += wider;
  }
  if (control.anchors & kBottom) {
    bottom += higher;
    if (!(control.anchors & kTop)) top += higher;
  }
  return {left, top, right - left, bottom - top};
}

}  // namespace postrove::forms
