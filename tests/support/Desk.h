#pragma once

#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "memory/Product.h"

namespace postrove::testing {

// A desk with up to four windows at a time, on which anything happens in any order.
class Desk {
 public:
  // Decides: a number below `count`. From a generator, or from a fuzzer's bytes.
  using Choose = std::function<std::size_t(std::size_t count)>;

  // The n-th of one kind of call, of all that a day makes: the only one that fails.
  enum Kind { kOffice, kFiles, kDatabase, kMemory };
  struct Failure {
    Kind kind;
    int number;  // 0 for none
  };

  // With a failure nothing else goes wrong by chance.
  explicit Desk(Choose choose, std::optional<Failure> only)
      : choose_(std::move(choose)), only_(only) {}
  virtual ~Desk() = default;
  Desk(const Desk&) = delete;
  Desk& operator=(const Desk&) = delete;

 protected:
  using Window = FakeOutlook::InspectorPtr;
  using Texts = std::vector<const wchar_t*>;

  // What Outlook is asked to do with the message of a window.
  virtual office::Value SaveAs(const FakeOutlook::Inspector& window, const std::wstring& path) = 0;
  virtual office::Value Send(const FakeOutlook::Inspector& window) = 0;
  // What must hold when a button was pressed during a click, and when Outlook has quit.
  virtual void CheckSecondClick() = 0;
  virtual void CheckQuit() = 0;

  std::size_t Pick(std::size_t count) { return choose_(count); }
  bool One(std::size_t in) { return Pick(in) == 0; }  // with one chance in so many
  std::wstring AnyOf(const Texts& texts) { return texts[Pick(texts.size())]; }
  void Tell(const std::wstring& what) { story_ += what + L", "; }

  Window AnyWindow() {
    return outlook_.open.empty() ? nullptr : outlook_.open[Pick(outlook_.open.size())];
  }
  static std::wstring Subject(const Window& window) {
    return office::ToText(window->item->properties[L"Subject"]);
  }
  static office::Value& Recipients(const FakeOutlook::Inspector& window) {
    const auto all = office::ToObject(window.item->properties[L"Recipients"]);
    return std::static_pointer_cast<FakeObject>(all)->properties[L"Count"];
  }
  static bool IsMail(const Window& window) {
    return window->item->properties[L"Class"] == office::Value(43);
  }

  void ActOnWindow() {
    const Window window = AnyWindow();
    const std::size_t action = Pick(4);
    if (!window || (action == 0 && outlook_.open.size() < 4)) return Open();
    if (action == 1) return Activate(window);
    Tell((action == 2 ? L"keep " : L"close ") + Subject(window));
    outlook_.CloseMessage(window);
    if (action != 2) Close(window);
  }

  void Open() {
    const std::int32_t item = std::array{43, 43, 40, 44}[Pick(4)];
    Open(One(2), item);
  }

  Window Open(bool sent, std::int32_t item) {
    const Window before = outlook_.active;
    const Window window = outlook_.Open(sent, item, One(2));
    auto& properties = window->item->properties;
    properties[L"Subject"] = (One(3) ? L"22-31-Mill=>" : L"") + std::to_wstring(++opened_);
    if (One(8)) properties[L"Subject"] = L"";
    if (One(6)) Recipients(*window) = 0;
    window->item->functions[L"SaveAs"] = [this, raw = window.get()](const auto& arguments) {
      return SaveAs(*raw, office::ToText(arguments.at(0)));
    };
    window->item->functions[L"Send"] = [this, raw = window.get()](const auto&) {
      return Send(*raw);
    };
    window->ready = item != 44 && !late_;
    Tell(L"open " + Subject(window) + (item == 43 ? L"" : L" (no mail)"));
    outlook_.active = before;
    outlook_.RaiseNew(window);
    if (!One(4)) Activate(window);
    return window;
  }

  void Activate(const Window& window) {
    if (outlook_.active == window) return;
    Tell(L"activate " + Subject(window));
    window->ready = window->item->properties[L"Class"] != office::Value(44);
    NoFault();  // bars that come late have had their one failure
    outlook_.Activate(window);
  }

  void Close(const Window& window) {
    for (const FakePtr& button : window->buttons) gone_.push_back(button);
    if (!silent_) {
      gone_.insert(gone_.end(), {window->window, window->item});
      outlook_.CloseWindow(window);
    }
    outlook_.TakeAway(window);
    if (!outlook_.active && !outlook_.open.empty()) Activate(outlook_.open.back());
  }

  // Memory is what fails: then a change that said so can have been left half way.
  bool LacksMemory() const { return only_ && only_->kind == kMemory; }

  void NoFault() {
    if (!only_) outlook_.log.failAt = 0;
  }

  // Every button that can be seen is heard through one of them, and nothing is held of a window
  // that has gone. One that goes in silence can be held while there is no other.
  void CheckWindows() {
    std::size_t buttons = 0, listeners = 0, held = 0;
    for (const Window& window : outlook_.open) {  // a failure is made up for
      if (!only_ || !window->ready || !window->buttons.empty()) continue;
      outlook_.active = nullptr;
      Activate(window);
    }
    for (const Window& window : outlook_.open) {
      const bool has = IsMail(window) && window->ready;
      if (window->buttons.empty() && LacksMemory()) continue;
      EXPECT_EQ(window->buttons.size(), has ? 1u : 0u);
      for (const FakePtr& button : window->buttons) {
        ++buttons;
        listeners += button->SinkCount();
      }
    }
    EXPECT_EQ(listeners, buttons > 0 ? 1u : 0u);
    for (const auto& thing : gone_) {
      if (const auto alive = thing.lock()) held += silent_ ? buttons * alive->SinkCount() : 1;
    }
    EXPECT_EQ(held, 0u);
  }

  // What else can happen at any moment: in a dialog or a message box, or while Outlook works.
  void Disturb() {
    NoFault();  // one at a time
    const Window window = AnyWindow();
    if (One(6)) return Quit();
    if (One(2) || !window || window->buttons.empty()) return ActOnWindow();
    Tell(L"click under the dialog " + Subject(window));
    outlook_.Click(window);
    CheckSecondClick();
  }

  void Quit() {
    if (quit_) return;
    Tell(L"quit");
    quit_ = true;
    outlook_.Quit();
    CheckQuit();
  }

  // Nothing is held after the end, which comes by Quit or by OnBeginShutdown.
  void End() {
    if (!quit_ && One(2)) product_.shared.gOutlook.reset();
    if (product_.shared.gOutlook) Quit();
    for (const Window& window : outlook_.open) {
      EXPECT_EQ(window->window->SinkCount() + window->item->SinkCount(), 0u);
      for (const FakePtr& button : window->buttons) EXPECT_EQ(button.use_count(), 1);
    }
  }

  const Choose choose_;
  const std::optional<Failure> only_;
  // Command bars come late; the Close of a window does not come, that of its message does.
  const bool late_ = One(2) && !only_, silent_ = One(2);
  Product product_;
  FakeOutlook& outlook_ = product_.outlook;
  bool quit_ = false;
  int opened_ = 0;
  std::vector<std::weak_ptr<FakeObject>> gone_;
  std::wstring story_;
};

}  // namespace postrove::testing
