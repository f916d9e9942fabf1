#pragma once

#include <memory>
#include <string>
#include <vector>

#include "outlook/command_bar_model.h"
#include "outlook/item.h"

namespace standin {

class InspectorWindow;

enum class Editor { kFromMessage, kText, kHtml, kRichText, kWord };

// One open item: its editor, its command bars and its window.
class Inspector {
 public:
  Inspector(std::shared_ptr<standin::Item> item, Editor editor);
  ~Inspector();

  const std::shared_ptr<standin::Item>& Item() const { return item_; }
  Session& Owner() const { return item_->Owner(); }
  const std::shared_ptr<EventHub>& Events() const { return events_; }

  long EditorType() const;  // OlEditorType; 4 from version 12 on
  bool IsWordMail() const;
  std::wstring Caption() const;

  bool IsOpen() const { return state_ != State::kClosed; }
  bool IsClosing() const { return state_ == State::kClosing; }
  bool WasActivated() const { return activated_; }
  void SetActivated() { activated_ = true; }
  // Throws HostError when it is closed.
  void RequireOpen() const;

  const std::vector<std::shared_ptr<BarModel>>& Bars() const { return bars_; }
  std::shared_ptr<BarModel> Bar(const std::wstring& name) const;  // null when there is none
  ControlPointer FindByTag(const std::wstring& tag) const;        // null when there is none

  InspectorWindow* Window() const { return window_.get(); }
  void Show();     // nothing when it has a window
  void Changed();  // a control or the subject changed: the window follows

  // Steps of closing, taken by the session.
  void BeginClosing() { state_ = State::kClosing; }
  void KeepOpen() { state_ = State::kOpen; }
  void Finish();  // controls are gone, the window is destroyed

 private:
  enum class State { kOpen, kClosing, kClosed };

  std::shared_ptr<standin::Item> item_;
  const Editor editor_;
  State state_ = State::kOpen;
  bool activated_ = false;
  std::shared_ptr<EventHub> events_;
  std::vector<std::shared_ptr<BarModel>> bars_;
  std::unique_ptr<InspectorWindow> window_;
};

}  // namespace standin
