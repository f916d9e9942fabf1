#include "forms/kit/form.h"

#include "shared/error.h"
#include "shared/text.h"

namespace postrove::forms {

Form::Form(std::wstring name, int width, int height, bool resizable)
    : name_(std::move(name)), width_(width), height_(height), resizable_(resizable) {}

Form::~Form() {
  if (FormView* view = std::exchange(view_, nullptr)) view->Unloaded();
}

Control& ControlArray::operator()(int index) const {
  for (Control* const control : controls_) {
    if (control->Index() == index) return *control;
  }
  throw Error(kInvalidArgument, L"ControlArray", L"Control not found: " + text::FromNumber(index));
}

void Form::SetCaption(std::wstring caption) {
  if (caption == caption_) return;
  caption_ = std::move(caption);
  if (view_) view_->CaptionChanged();
}

Control& Form::Find(const std::wstring& name, int index) const {
  for (const auto& control : controls_) {
    if (control->Index() == index && control->Name() == name) return *control;
  }
  throw Error(kInvalidArgument, name_,
              L"Control not found: " + name + L"(" + text::FromNumber(index) + L")");
}

Control& Form::Add(ControlKind kind, std::wstring name, int index, Box place, std::wstring text,
                   std::wstring tip, const Design& design) {
  controls_.push_back(std::make_unique<Control>(*this, kind, std::move(name), index, place));
  Control& control = *controls_.back();
  static_cast<Design&>(control) = design;
  control.SetText(std::move(text));
  control.SetToolTip(std::move(tip));
  return control;
}

bool Form::Unload() {
  if (unloaded_ || unloading_) return true;
  unloading_ = true;
  bool cancel = false;
  const auto life = Life();
  try {
    if (const auto handler = onUnload) handler(cancel);
  } catch (...) {
    if (!life.expired()) unloading_ = false;
    throw;
  }
  if (life.expired()) return true;
  unloading_ = false;
  if (cancel) return false;
  unloaded_ = true;
  if (FormView* view = std::exchange(view_, nullptr)) view->Unloaded();
  return true;
}

bool Form::Press(bool Control::*role) {
  for (const auto& control : controls_) {
    if (!(control.get()->*role)) continue;
    control->UserClicked();  // may destroy the form
    return true;
  }
  return false;
}

void Form::UserClosed() {
  if (!Press(&Control::isCancel)) Unload();
}

void Form::UserEscaped() {
  if (unloaded_) return;
  if (const auto handler = onEscape) return handler();
  UserClosed();
}

void Form::UserAskedForHelp() {
  if (Press(&Control::isHelp) || unloaded_) return;
  if (const auto handler = onHelp) handler();
}

void Form::UserActivated() {
  if (unloaded_) return;
  if (const auto handler = onActivate) handler();
}

void Form::Attach(FormView* view) {
  if (view_ || unloaded_) throw Error(kInvalidArgument, name_, L"The form is shown already");
  view_ = view;
}

}  // namespace postrove::forms
