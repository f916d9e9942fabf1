#pragma once

#include <functional>
#include <memory>
#include <string>

#include "forms/kit/form.h"

namespace postrove::forms {

// Sizes that the dialogs share, in twips.
inline constexpr int kMargin = 210;
inline constexpr int kGap = 75;  // between what stands beside each other in a row
inline constexpr int kFieldHeight = 345;
inline constexpr int kLabelHeight = 240;
inline constexpr int kButtonHeight = 390;
inline constexpr int kButtonWidth = 1260;
inline constexpr int kButtonGap = 105;
inline constexpr int kBrowseWidth = 435;
inline constexpr int kAlertWidth = 780;
inline constexpr int kRowHeight = 435;

// The parts of a dialog that look alike everywhere.
class DialogForm : public Form {
 protected:
  using Form::Form;

  int InnerRight() const { return Width() - kMargin; }

  Control& AddTitle(const wchar_t* text, bool mnemonic = true);

  // The label on the line of its field's text; `fieldTop` is the top of the row's field.
  Control& AddLabel(const wchar_t* name, int index, int left, int fieldTop, int width,
                    const wchar_t* text, const wchar_t* tip = L"", const Design& design = {});

  // A field whose value is required: a text or a combo box.
  Control& AddRequired(ControlKind kind, const wchar_t* name, int index, Box place,
                       const wchar_t* tip, unsigned anchors);

  // A button with the picture of a folder behind its field. The picture hides the caption, which
  // screen readers speak.
  Control& AddBrowse(const wchar_t* name, int index, int left, int fieldTop, const wchar_t* caption,
                     const std::wstring& tip, bool choosesKey = false);

  // The marker of a field, red unless it only says "Optional".
  Control& AddAlert(int index, int left, int fieldTop, unsigned anchors,
                    const wchar_t* text = L"Required");

  Control& AddHints(int top, int height);
  Control& AddButton(const wchar_t* name, int index, int left, int top, int width,
                     const wchar_t* caption, const wchar_t* tip, const Design& design);
  Control& AddWebSite(int index, int left, int top, int width, const wchar_t* caption,
                      const wchar_t* tip);
};

// Raises the events of a form to whoever listens, as long as anybody does.
template <class Events>
class Raising {
 public:
  explicit Raising(std::weak_ptr<Events> listener) : listener_(std::move(listener)) {}

  template <class... Parameters, class... Arguments>
  void operator()(void (Events::*event)(Parameters...), Arguments&&... arguments) const {
    if (const auto listener = listener_.lock()) {
      (listener.get()->*event)(std::forward<Arguments>(arguments)...);
    }
  }

  // A handler of a control's event that raises one of the form with these values.
  template <class... Parameters, class... Arguments>
  std::function<void()> As(void (Events::*event)(Parameters...), Arguments... arguments) const {
    return [self = *this, event, arguments...] { self(event, arguments...); };
  }

  // The same with the control's text. It is copied: the handler may write the control, or destroy
  // the form, while it reads it.
  std::function<void()> WithText(void (Events::*event)(const std::wstring&),
                                 const Control& control) const {
    return [self = *this, event, &control] { self(event, std::wstring(control.Text())); };
  }

 private:
  std::weak_ptr<Events> listener_;
};

}  // namespace postrove::forms
