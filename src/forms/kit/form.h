#pragma once

#include <functional>
#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

#include "forms/kit/control.h"

namespace postrove::forms {

// Is told of every change of a form's model while it is attached. Implemented by the renderer.
class FormView {
 public:
  virtual ~FormView() = default;
  virtual void ControlChanged(Control& control, Property property) = 0;
  virtual void CaptionChanged() = 0;
  // The form was unloaded: its windows go, ShowModal returns. The form's destructor calls it too.
  virtual void Unloaded() = 0;
};

// Controls of one name, found by their index.
class ControlArray {
 public:
  ControlArray(std::initializer_list<Control*> controls) : controls_(controls) {}

  // Throws Error 5 when there is none of that index.
  Control& operator()(int index) const;

  auto begin() const { return controls_.begin(); }
  auto end() const { return controls_.end(); }

 private:
  std::vector<Control*> controls_;
};

// A form: its controls in tab order (the order of their making), its size, its events. Forms do no
// work: a form class declares controls and turns each control event into one event of the form.
class Form {
 public:
  // Designed client size in twips; a resizable form can be made larger by the user, not smaller.
  Form(std::wstring name, int width, int height, bool resizable);
  virtual ~Form();
  Form(const Form&) = delete;
  Form& operator=(const Form&) = delete;

  const std::wstring& Name() const { return name_; }
  int Width() const { return width_; }
  int Height() const { return height_; }
  bool Resizable() const { return resizable_; }

  const std::wstring& Caption() const { return caption_; }
  void SetCaption(std::wstring caption);

  // Every control in tab order. A label stands directly before the control that it names.
  const std::vector<std::unique_ptr<Control>>& Controls() const { return controls_; }

  // The control of that name and index, for tests. Throws Error 5 when there is none.
  Control& Find(const std::wstring& name, int index = -1) const;

  // Ends the form: raises onUnload, which can cancel, then lets the view go. False when cancelled.
  // Unloading twice does nothing the second time.
  bool Unload();
  bool IsUnloaded() const { return unloaded_; }

  // Expires when the form is destroyed: lets a caller of an event see whether its handler did it.
  std::weak_ptr<const void> Life() const { return life_; }

  // The user closes the window by its title bar or Alt+F4: the cancel button is pressed; a form
  // without one is unloaded.
  void UserClosed();

  // Esc: onEscape is raised; a form for which that means nothing of its own is closed by it.
  void UserEscaped();

  // F1: the help button is pressed; a form without one raises onHelp.
  void UserAskedForHelp();

  // The form was shown, or another form was left for it.
  void UserActivated();

  std::function<void()> onActivate;
  std::function<void()> onEscape;
  std::function<void()> onHelp;
  std::function<void(bool& cancel)> onUnload;

  // At most one view. Throws Error 5 when there is one already, or when the form was unloaded.
  void Attach(FormView* view);
  void Detach() { view_ = nullptr; }
  FormView* View() const { return view_; }

 protected:
  Control& Add(ControlKind kind, std::wstring name, int index, Box place, std::wstring text = {},
               std::wstring tip = {}, const Design& design = {});

 private:
  bool Press(bool Control::*role);

  const std::wstring name_;
  const int width_;
  const int height_;
  const bool resizable_;
  std::wstring caption_;
  std::vector<std::unique_ptr<Control>> controls_;
  FormView* view_ = nullptr;
  bool unloading_ = false;
  bool unloaded_ = false;
  std::shared_ptr<const int> life_ = std::make_shared<const int>(0);
};

}  // namespace postrove::forms
