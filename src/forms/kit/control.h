#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

// The form model: controls with the properties a Visual Basic form has, free of windows. A renderer
// (FormHost) shows a form as real windows and feeds the user's actions back through the User...
// members; a test does the same without windows.
// Thread: Outlook's user-interface thread only.
namespace postrove::forms {

class Form;

enum class ControlKind {
  Label,
  TextBox,
  ComboBox,  // a text box with a drop-down list
  CommandButton,
  RichTextBox,  // shows text, is not edited
  CheckBox,
  OptionButton,
  Frame,
};

// Which edges of the form a control keeps its distance to when the form is resized.
enum Anchor : unsigned { kLeft = 1, kTop = 2, kRight = 4, kBottom = 8 };

// A colour as Visual Basic writes it: 0x00BBGGRR, or 0x80000000 plus a system colour index.
using Color = std::uint32_t;
inline constexpr Color kSystemWindow = 0x80000005;
inline constexpr Color kSystemWindowText = 0x80000008;
inline constexpr Color kSystemButtonFace = 0x8000000F;
inline constexpr Color kSystemButtonText = 0x80000012;
inline constexpr Color kSystemInfoText = 0x80000017;
inline constexpr Color kSystemInfoBack = 0x80000018;
inline constexpr Color kSystemLink = 0x8000001A;
inline constexpr Color kRed = 255;
inline constexpr Color kYellow = 65535;

// Positions and sizes are in twips (1440 to an inch, 15 to a pixel at 100 %).
struct Box {
  int left = 0;
  int top = 0;
  int width = 0;
  int height = 0;
  bool operator==(const Box&) const = default;
};

enum class Property {
  Text,  // caption of labels, buttons and frames; text of the others
  Visible,
  Enabled,
  Locked,
  ToolTip,
  ForeColor,
  BackColor,
  Place,
  Items,      // the whole list was replaced or emptied
  ItemAdded,  // one item was appended
  Selection,  // selected list item, or the selected part of the text
  Value,      // checked state
};

// How a control is designed: fixed before the form is shown.
struct Design {
  unsigned anchors = kLeft | kTop;
  bool isDefault = false;  // the button that Enter presses
  bool isCancel = false;   // the button that Esc and the title bar press
  bool isHelp = false;     // the button that F1 presses
  bool tabStop = true;
  bool bold = false;
  bool link = false;        // a label that is clicked like a link
  bool multiLine = false;   // a label or text box of several lines; Enter is still the dialog's
  bool border = true;       // a text box without one looks like a label
  bool mnemonic = true;     // "&" in a label's text marks a key; else it is shown
  bool choosesKey = false;  // a caption without a mark: it is shown with a key that is free
  bool boxOnRight = false;  // a check box stands right of its text
  int fontPoints = 0;       // 0: the form's font size
  int icon = 0;             // icon resource of a picture button, 0 for none
};

class Control : public Design {
 public:
  Control(Form& form, ControlKind kind, std::wstring name, int index, Box place);
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;

  ControlKind Kind() const { return kind_; }
  const std::wstring& Name() const { return name_; }
  int Index() const { return index_; }  // -1 outside a control array
  Form& Owner() const { return form_; }

  // Caption and text are one property. Setting it to another text raises the change event, as in
  // Visual Basic, and puts the caret at the start; setting the same text does nothing.
  const std::wstring& Text() const { return text_; }
  void SetText(std::wstring text);

  bool Visible() const { return visible_; }
  void SetVisible(bool visible);
  bool Enabled() const { return enabled_; }
  void SetEnabled(bool enabled);
  bool Locked() const { return locked_; }  // a locked text box is read, not edited
  void SetLocked(bool locked);
  const std::wstring& Tag() const { return tag_; }
  void SetTag(std::wstring tag) { tag_ = std::move(tag); }
  const std::wstring& ToolTip() const { return toolTip_; }
  void SetToolTip(std::wstring tip);
  Color ForeColor() const { return foreColor_; }
  void SetForeColor(Color color);
  Color BackColor() const { return backColor_; }
  void SetBackColor(Color color);
  const Box& Place() const { return place_; }
  void SetPlace(Box place);

  // List items of a combo box. Changing the list never raises an event.
  const std::vector<std::wstring>& Items() const { return items_; }
  void SetItems(std::vector<std::wstring> items);  // selects none, keeps the text
  void AddItem(std::wstring item);

  // Selected list item or -1. Selecting one puts its text into the box and raises the change event
  // when the text differs; it raises no click. Selecting none empties the box. Setting or typing a
  // text selects none. Throws Error 5 outside -1..items-1.
  int ListIndex() const { return listIndex_; }
  void SetListIndex(int index);

  // Caret and selection in characters of the text; out-of-range values are cut to it.
  int SelectionStart() const { return selectionStart_; }
  int SelectionLength() const { return selectionLength_; }
  void Select(int start, int length);

  // Checked state of check and option buttons. As in Visual Basic a change from code raises the
  // click event, except that of an option button that loses its mark. The option buttons of one
  // control array exclude each other.
  bool Checked() const { return checked_; }
  void SetChecked(bool checked);

  // Events, set by the form class. Unset ones are ignored.
  std::function<void()> onChange;
  std::function<void()> onClick;
  std::function<void()> onGotFocus;
  std::function<void()> onLostFocus;
  // A typed character as a UTF-16 unit, before it reaches the text; 0 swallows it.
  std::function<void(int& keyAscii)> onKeyPress;
  std::function<void(int button, int shift, float x, float y)> onMouseDown;

  // What the user did, called by the renderer or a scripted user. A disabled or invisible control
  // raises nothing, nor does one of an unloaded form; a locked one is not changed. An event's
  // handler may unload or destroy the form: nothing of the control is touched afterwards.
  void UserTyped(std::wstring text, int selectionStart, int selectionLength);  // the whole new text
  void UserMovedCaret(int selectionStart, int selectionLength);                // raises nothing
  void UserPicked(int listIndex);  // a list item: text, then click
  void UserClicked();              // buttons and links; check and option buttons change first
  void UserEntered();              // the control got the focus
  void UserLeft();                 // the control lost the focus
  bool UserPressed(int keyAscii);  // true when the key was swallowed
  void UserMouseDown(int button, int shift, float x, float y);

 private:
  void Tell(Property property);
  bool Usable() const;
  void TakeText(std::wstring text);

  Form& form_;
  const ControlKind kind_;
  const std::wstring name_;
  const int index_;
  std::wstring text_;
  std::wstring tag_;
  std::wstring toolTip_;
  std::vector<std::wstring> items_;
  Box place_;
  Color foreColor_;
  Color backColor_;
  int listIndex_ = -1;
  int selectionStart_ = 0;
  int selectionLength_ = 0;
  bool visible_ = true;
  bool enabled_ = true;
  bool locked_ = false;
  bool checked_ = false;
};

}  // namespace postrove::forms
