#include "forms/kit/control.h"

#include <algorithm>

#include "forms/kit/form.h"
#include "shared/error.h"

namespace postrove::forms {
namespace {

bool IsField(ControlKind kind) {
  return kind == ControlKind::TextBox || kind == ControlKind::ComboBox ||
         kind == ControlKind::RichTextBox;
}

// The handler is copied: it may destroy the control that holds it.
template <typename Handler, typename... Args>
void Raise(const Handler& handler, Args&&... args) {
  const Handler copy = handler;
  if (copy) copy(std::forward<Args>(args)...);
}

}  // namespace

Control::Control(Form& form, ControlKind kind, std::wstring name, int index, Box place)
    : form_(form),
      kind_(kind),
      name_(std::move(name)),
      index_(index),
      place_(place),
      foreColor_(IsField(kind) ? kSystemWindowText : kSystemButtonText),
      backColor_(IsField(kind) ? kSystemWindow : kSystemButtonFace) {}

void Control::Tell(Property property) {
  if (FormView* view = form_.View()) view->ControlChanged(*this, property);
}

bool Control::Usable() const { return visible_ && enabled_ && !form_.IsUnloaded(); }

void Control::TakeText(std::wstring text) {
  text_ = std::move(text);
  selectionStart_ = 0;
  selectionLength_ = 0;
  Tell(Property::Text);
}

void Control::SetText(std::wstring text) {
  if (text == text_) return;
  listIndex_ = -1;
  TakeText(std::move(text));
  Raise(onChange);
}

void Control::SetVisible(bool visible) {
  if (std::exchange(visible_, visible) != visible) Tell(Property::Visible);
}

void Control::SetEnabled(bool enabled) {
  if (std::exchange(enabled_, enabled) != enabled) Tell(Property::Enabled);
}

void Control::SetLocked(bool locked) {
  if (std::exchange(locked_, locked) != locked) Tell(Property::Locked);
}

void Control::SetToolTip(std::wstring tip) {
  if (tip == toolTip_) return;
  toolTip_ = std::move(tip);
  Tell(Property::ToolTip);
}

void Control::SetForeColor(Color color) {
  if (std::exchange(foreColor_, color) != color) Tell(Property::ForeColor);
}

void Control::SetBackColor(Color color) {
  if (std::exchange(backColor_, color) != color) Tell(Property::BackColor);
}

void Control::SetPlace(Box place) {
  if (std::exchange(place_, place) != place) Tell(Property::Place);
}

void Control::SetItems(std::vector<std::wstring> items) {
  items_ = std::move(items);
  listIndex_ = -1;
  Tell(Property::Items);
}

void Control::AddItem(std::wstring item) {
  items_.push_back(std::move(item));
  Tell(Property::ItemAdded);
}

void Control::SetListIndex(int index) {
  if (index < -1 || index >= static_cast<int>(items_.size())) {
    throw Error(kInvalidArgument, name_, L"Invalid property value");
  }
  if (index == listIndex_) return;
  listIndex_ = index;
  std::wstring text = index < 0 ? std::wstring() : items_[static_cast<std::size_t>(index)];
  const bool differs = text != text_;
  if (differs) TakeText(std::move(text));
  Tell(Property::Selection);
  if (differs) Raise(onChange);
}

void Control::UserMovedCaret(int selectionStart, int selectionLength) {
  const int size = static_cast<int>(text_.size());
  selectionStart_ = std::clamp(selectionStart, 0, size);
  selectionLength_ = std::clamp(selectionLength, 0, size - selectionStart_);
}

void Control::Select(int start, int length) {
  UserMovedCaret(start, length);
  // Always told: the window's caret can have moved without the model hearing of it.
  Tell(Property::Selection);
}

void Control::SetChecked(bool checked) {
  if (checked_ == checked) return;
  checked_ = checked;
  Tell(Property::Value);
  if (kind_ == ControlKind::OptionButton) {
    if (!checked) return;
    for (const auto& other : form_.Controls()) {
      if (other.get() != this && other->kind_ == kind_ && other->name_ == name_) {
        other->SetChecked(false);
      }
    }
  }
  Raise(onClick);
}

void Control::UserTyped(std::wstring text, int selectionStart, int selectionLength) {
  if (!Usable() || locked_) return;
  const bool differs = text != text_;
  if (differs) {
    text_ = std::move(text);
    listIndex_ = -1;
  }
  UserMovedCaret(selectionStart, selectionLength);
  if (!differs) return;
  Tell(Property::Text);
  Raise(onChange);
}

void Control::UserPicked(int listIndex) {
  if (!Usable() || locked_) return;
  if (listIndex < 0 || listIndex >= static_cast<int>(items_.size())) return;
  listIndex_ = listIndex;
  const std::wstring& item = items_[static_cast<std::size_t>(listIndex)];
  const bool differs = item != text_;
  if (differs) TakeText(item);
  UserMovedCaret(0, static_cast<int>(text_.size()));
  Tell(Property::Selection);
  if (differs) {
    const auto life = form_.Life();
    Raise(onChange);
    if (life.expired() || !Usable()) return;
  }
  Raise(onClick);
}

void Control::UserClicked() {
  if (!Usable()) return;
  switch (kind_) {
    case ControlKind::CheckBox:
      return SetChecked(!checked_);
    case ControlKind::OptionButton:
      return SetChecked(true);
    default:
      return Raise(onClick);
  }
}

void Control::UserEntered() {
  if (Usable()) Raise(onGotFocus);
}

void Control::UserLeft() {
  if (Usable()) Raise(onLostFocus);
}

bool Control::UserPressed(int keyAscii) {
  if (!Usable()) return false;
  int key = keyAscii;
  Raise(onKeyPress, key);
  return key == 0;
}

void Control::UserMouseDown(int button, int shift, float x, float y) {
  if (Usable()) Raise(onMouseDown, button, shift, x, y);
}

}  // namespace postrove::forms
