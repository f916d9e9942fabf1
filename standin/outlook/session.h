#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "outlook/command_bar_model.h"
#include "outlook/inspector.h"
#include "outlook/item.h"
#include "outlook/runtime.h"

namespace standin {

struct AddIn;

struct Options {
  int version = 9;          // 9, 10, 11, 12, 14, 15 or 16
  std::wstring sentFolder;  // sent messages are written here; empty: only remembered
  // Command bars of an inspector fail before its first Activate, as in some builds.
  bool commandBarsFromActivate = false;
};

// The running stand-in: open inspectors, the active one, what was written and sent. It is the
// runtime of its objects, which keep it alive, so that a reference that is held too long finds
// closed things instead of freed memory.
class Session final : public Runtime, public std::enable_shared_from_this<Session> {
 public:
  explicit Session(Options options);
  ~Session() override;

  const Options& Settings() const { return options_; }
  std::wstring VersionText() const;
  const std::shared_ptr<EventHub>& ApplicationEvents() const { return applicationEvents_; }
  const std::shared_ptr<EventHub>& InspectorsEvents() const { return inspectorsEvents_; }

  std::shared_ptr<Item> NewItem(ItemKind kind, MessageData message, bool sent);

  // Opens a window on the item, or brings the open one to the front. Null when a sink of the item's
  // Open event cancelled.
  Inspector* Open(const std::shared_ptr<Item>& item, Editor editor);
  // What the user answers when he is asked whether to save the changes, after the item's Close.
  enum class SaveChanges { kYes, kCancel };
  // False when the window stays: the item's Close event cancelled, which only counts when
  // `cancellable`, or the user did. Throws HostError when it is already closing.
  bool Close(Inspector& inspector, bool cancellable, SaveChanges answer = SaveChanges::kYes);
  void CloseInspectorOf(const Item& item);

  std::vector<std::shared_ptr<Inspector>> OpenInspectors() const;  // in the order of opening
  std::shared_ptr<Inspector> Find(const Item& item) const;
  // The inspector of an item. One without a window, or whose window is closing, gets one that is
  // not shown, announced like any other.
  std::shared_ptr<Inspector> InspectorOf(const std::shared_ptr<Item>& item);
  std::shared_ptr<Inspector> Active() const;
  void Activate(Inspector& inspector);

  // A user's click: every sink of every button with the same tag is called.
  void Click(const ControlPointer& control);

  void NoteSavedFile(const std::wstring& path) { savedFiles_.push_back(path); }
  const std::vector<std::wstring>& SavedFiles() const { return savedFiles_; }
  void Transmit(MessageData message);
  const std::vector<MessageData>& SentMessages() const { return sentMessages_; }
  const std::vector<std::wstring>& SentFiles() const { return sentFiles_; }

  // Controls that were not added as temporary, by bar: each new inspector shows them.
  std::map<std::wstring, std::vector<ControlLook>>& PermanentControls() {
    return permanentControls_;
  }

  std::vector<std::shared_ptr<AddIn>>& AddIns() { return addIns_; }

  // Lets go of what is only history: calls, closed inspectors, names of files, sent messages.
  void Forget();

 private:
  std::shared_ptr<Inspector> Announce(const std::shared_ptr<Item>& item, Editor editor);
  void CollectPermanentControls(const Inspector& inspector);

  Options options_;
  std::shared_ptr<EventHub> applicationEvents_;
  std::shared_ptr<EventHub> inspectorsEvents_;
  // Closed inspectors stay here, at the end of their life but addressable.
  std::vector<std::shared_ptr<Inspector>> inspectors_;
  std::vector<Inspector*> activation_;  // open inspectors, the one activated last at the end
  Inspector* active_ = nullptr;
  std::map<std::wstring, std::vector<ControlLook>> permanentControls_;
  std::vector<std::wstring> savedFiles_;
  std::vector<std::wstring> sentFiles_;
  std::vector<MessageData> sentMessages_;
  std::vector<std::shared_ptr<AddIn>> addIns_;
};

}  // namespace standin
