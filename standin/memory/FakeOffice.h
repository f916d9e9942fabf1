#pragma once

#include <algorithm>
#include <deque>
#include <iterator>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "memory/Memory.h"
#include "outlook/office/object.h"
#include "shared/error.h"

// A recording host for tests of the portable core: objects with members given as values or
// functions, one log of every call, events raised by interface and number, and the n-th call made
// to fail.
namespace postrove::testing {

// Of the Outlook and Office type libraries, apart from the product's own list: a wrong number there
// cannot agree with itself.
namespace facts {
constexpr office::Guid Id(std::uint32_t first) {
  return {first, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
}
inline constexpr office::Guid kApplicationEvents = Id(0x0006304E),
                              kInspectorsEvents = Id(0x00063079), kInspectorEvents = Id(0x0006307D),
                              kItemEvents = Id(0x0006303A), kButtonEvents = Id(0x000C0351),
                              kButton = Id(0x000C030E), kMailItem = Id(0x00063034);
inline constexpr std::int32_t kQuit = 61447, kNewInspector = 61441, kActivate = 61441,
                              kDeactivate = 61446, kClose = 61448, kItemClose = 61444,
                              kItemSend = 61445, kClick = 1;
}  // namespace facts

class FakeObject;
using FakePtr = std::shared_ptr<FakeObject>;

// What all objects of one fake host share.
struct FakeLog {
  std::vector<std::wstring> calls;  // "Name.Member", "Name.Member=", "Name.Member()"
  int failAt = 0;                   // 1-based number of the call that fails; 0 for none
  std::wstring failMember;          // a call that fails each time it is made

  void Record(const std::wstring& call) {
    calls.push_back(call);
    if (static_cast<int>(calls.size()) == failAt || call == failMember) {
      throw Error(static_cast<long>(0x80004005), call, L"Refused by the test.");
    }
  }
};

class FakeObject : public office::Object, public std::enable_shared_from_this<FakeObject> {
 public:
  using Function = std::function<office::Value(const office::Arguments&)>;

  FakeObject(FakeLog& log, std::wstring name) : log_(log), name_(std::move(name)) {}

  std::map<std::wstring, office::Value> properties;
  std::map<std::wstring, Function> functions;  // for Get with arguments and for Call
  std::vector<office::Guid> interfaces;        // what As accepts

  office::Value Get(const wchar_t* member, const office::Arguments& arguments) override {
    const memory::Scope host(false);
    log_.Record(name_ + L"." + member);
    if (const auto found = functions.find(member); found != functions.end()) {
      return Function(found->second)(arguments);
    }
    const auto found = properties.find(member);
    if (found == properties.end()) ThrowUnknown(member);
    return found->second;
  }

  void Put(const wchar_t* member, const office::Value& value) override {
    const memory::Scope host(false);
    log_.Record(name_ + L"." + member + L"=");
    const auto found = properties.find(member);
    if (found == properties.end()) ThrowUnknown(member);
    found->second = value;
  }

  office::Value Call(const wchar_t* member, const office::Arguments& arguments) override {
    const memory::Scope host(false);
    log_.Record(name_ + L"." + member + L"()");
    const auto found = functions.find(member);
    if (found == functions.end()) ThrowUnknown(member);
    return Function(found->second)(arguments);
  }

  office::ObjectPtr As(const office::Guid& interfaceId) override {
    const memory::Scope host(false);
    log_.Record(name_ + L".As");
    for (const office::Guid& known : interfaces) {
      if (known == interfaceId) return shared_from_this();
    }
    throw Error(static_cast<long>(0x80004002), name_, L"No such interface.");
  }

  office::Subscription Subscribe(const office::Guid& events,
                                 office::EventHandler handler) override {
    const memory::Scope host(false);
    log_.Record(name_ + L".Subscribe");
    auto sink = std::make_shared<Sink>(Sink{events, std::move(handler)});
    sinks_.push_back(sink);
    return office::Subscription(std::make_unique<Advised>(shared_from_this(), sink));
  }

  // Raises an event to every live sink of that interface that is not among those `told` of it; what
  // a handler throws is dropped, as the real event sink does.
  using Told = std::vector<std::shared_ptr<const void>>;
  void Raise(const office::Guid& events, std::int32_t dispid, const office::Arguments& arguments,
             Told& told) {
    const auto sinks = sinks_;
    for (const auto& sink : sinks) {
      if (!(sink->events == events) || std::find(told.begin(), told.end(), sink) != told.end()) {
        continue;
      }
      told.push_back(sink);
      try {
        const memory::Scope product(true);
        sink->handler(dispid, arguments);
      } catch (const std::exception&) {
      }
    }
  }
  void Raise(const office::Guid& events, std::int32_t dispid,
             const office::Arguments& arguments = {}) {
    Told told;
    Raise(events, dispid, arguments, told);
  }

  // The host released it: every use fails from now on, also from within one of its own functions.
  void Release() {
    properties.clear();
    functions.clear();
  }

  std::size_t SinkCount() const { return sinks_.size(); }

 private:
  struct Sink {
    office::Guid events;
    office::EventHandler handler;
  };

  class Advised : public office::Connection {
   public:
    Advised(FakePtr source, std::shared_ptr<Sink> sink)
        : source_(std::move(source)), sink_(std::move(sink)) {}
    ~Advised() override { std::erase(source_->sinks_, sink_); }

   private:
    const FakePtr source_;
    const std::shared_ptr<Sink> sink_;
  };

  [[noreturn]] void ThrowUnknown(const std::wstring& member) const {
    throw Error(static_cast<long>(0x80020006), name_ + L"." + member, L"Unknown name.");
  }

  FakeLog& log_;
  const std::wstring name_;
  std::vector<std::shared_ptr<Sink>> sinks_;
};

// Outlook with inspectors, their bars and items.
class FakeOutlook {
 public:
  explicit FakeOutlook(std::wstring version = L"9.0.0.2711") {
    nameSpace = Make(L"NameSpace");
    inspectors = Make(L"Inspectors");
    app = Make(L"App");
    app->properties[L"Version"] = std::move(version);
    app->properties[L"Inspectors"] = inspectors;
    app->functions[L"GetNamespace"] = [this](const office::Arguments& arguments) {
      lastNamespace = office::ToText(arguments.at(0));
      return office::Value(nameSpace);
    };
    app->functions[L"ActiveInspector"] = [this](const office::Arguments&) {
      return active ? office::Value(active->window) : office::Value();
    };
    inspectors->functions[L"Item"] = [this](const office::Arguments& arguments) {
      const auto index = static_cast<std::size_t>(office::ToLong(arguments.at(0)));
      return office::Value(open.at(index - 1)->window);
    };
    inspectors->functions[L"Count"] = [this](const office::Arguments&) {
      return office::Value(static_cast<std::int32_t>(open.size()));
    };
  }

  // One inspector window with its "Standard" bar and item.
  struct Inspector {
    FakePtr window, bars, bar, controls, item;
    std::deque<FakePtr> buttons;               // controls with the inspector button's tag
    std::vector<office::Arguments> additions;  // arguments of each Controls.Add
    bool ready = true;                         // its command bars are there
  };

  std::shared_ptr<Inspector> Open(bool sent, std::int32_t itemClass = 43, bool word = false) {
    auto inspector = std::make_shared<Inspector>();
    Inspector& parts = *inspector;
    parts.window = Make(L"Inspector");
    parts.bars = Make(L"Bars");
    parts.bar = Make(L"Bar");
    parts.controls = Make(L"Controls");
    parts.item = Make(L"Item");
    parts.item->interfaces = {facts::kMailItem};
    parts.item->properties = {{L"Class", itemClass}, {L"Sent", sent},
                              {L"Subject", L""},     {L"Body", L""},
                              {L"SenderName", L""},  {L"SentOnBehalfOfName", L""},
                              {L"To", L""},          {L"CC", L""},
                              {L"BCC", L""},         {L"HTMLBody", L"<html><body>x</body></html>"}};
    const FakePtr attachments = Make(L"Attachments");
    attachments->properties[L"Count"] = 0;
    const FakePtr recipients = Make(L"Recipients");
    recipients->properties[L"Count"] = 1;
    parts.item->properties[L"Attachments"] = attachments;
    parts.item->properties[L"Recipients"] = recipients;
    parts.window->properties = {{L"CurrentItem", parts.item},
                                {L"EditorType", std::int32_t{word ? 4 : 2}}};
    parts.window->functions[L"CommandBars"] = [&parts](const office::Arguments&) {
      if (!parts.ready) throw Error(5, L"CommandBars", L"There are none.");
      return office::Value(parts.bars);
    };
    parts.window->functions[L"IsWordMail"] = [word](const office::Arguments&) {
      return office::Value(word);
    };
    parts.bar->properties = {
        {L"Visible", false}, {L"Protection", 0}, {L"Controls", parts.controls}};
    parts.bars->functions[L"Item"] = [&parts](const office::Arguments& arguments) {
      if (arguments.at(0) != office::Value(L"Standard")) throw Error(5, L"Bars", L"No such bar.");
      return office::Value(parts.bar);
    };
    parts.bars->functions[L"FindControl"] = [&parts](const office::Arguments&) {
      for (const FakePtr& button : parts.buttons) {
        if (button->properties[L"Tag"] == office::Value(L"Quillion Postrove Button")) {
          return office::Value(button);
        }
      }
      return office::Value();
    };
    parts.controls->functions[L"Add"] = [this, &parts](const office::Arguments& arguments) {
      parts.additions.push_back(arguments);
      return office::Value(AddButton(parts, L""));
    };
    open.push_back(inspector);
    active = inspector;
    return inspector;
  }

  FakePtr AddAttachment(const Inspector& parts, const std::wstring& name) {
    const FakePtr one = Make(L"Attachment");
    one->properties = {{L"FileName", name}, {L"DisplayName", name}};
    const auto all = std::static_pointer_cast<FakeObject>(
        office::ToObject(parts.item->properties[L"Attachments"]));
    const std::int32_t count = office::ToLong(all->properties[L"Count"]) + 1;
    all->properties[L"Count"] = count;
    const FakeObject::Function before = all->functions[L"Item"];
    all->functions[L"Item"] = [=](const office::Arguments& arguments) {
      return office::ToLong(arguments.at(0)) == count ? office::Value(one) : before(arguments);
    };
    return one;
  }

  FakePtr AddButton(Inspector& parts, const std::wstring& tag) {
    const FakePtr button = Make(L"Button");
    button->interfaces = {facts::kButton};
    button->properties = {
        {L"Caption", L""},  {L"Style", 0},          {L"FaceId", 0},      {L"Tag", tag},
        {L"OnAction", L""}, {L"BeginGroup", false}, {L"Visible", false}, {L"DescriptionText", L""}};
    button->functions[L"Delete"] = [&parts, raw = button.get()](const office::Arguments&) {
      std::erase_if(parts.buttons, [raw](const FakePtr& one) { return one.get() == raw; });
      return office::Value();
    };
    parts.buttons.push_back(button);
    return button;
  }

  using InspectorPtr = std::shared_ptr<Inspector>;

  void RaiseNew(const InspectorPtr& inspector) {
    inspectors->Raise(facts::kInspectorsEvents, facts::kNewInspector,
                      {office::Value(inspector->window)});
  }
  void Activate(const InspectorPtr& inspector) {
    if (active) active->window->Raise(facts::kInspectorEvents, facts::kDeactivate);
    active = inspector;
    inspector->window->Raise(facts::kInspectorEvents, facts::kActivate);
  }
  // The message is about to close, the window closes: either can come alone.
  void CloseMessage(const InspectorPtr& inspector) {
    inspector->item->Raise(facts::kItemEvents, facts::kItemClose, {false});
  }
  void CloseWindow(const InspectorPtr& inspector) {
    inspector->window->Raise(facts::kInspectorEvents, facts::kClose);
  }
  // The window is gone: every use of its objects fails.
  void TakeAway(const InspectorPtr& inspector) {
    std::erase(open, inspector);
    if (active == inspector) active = nullptr;
    for (const FakePtr& button : std::exchange(inspector->buttons, {})) button->Release();
    for (const FakePtr& part : {inspector->window, inspector->bars, inspector->bar,
                                inspector->controls, inspector->item}) {
      part->Release();
    }
  }
  void Quit() { app->Raise(facts::kApplicationEvents, facts::kQuit); }

  // Reaches every listener of every button with the tag, also one that listens since a moment.
  void Click(const InspectorPtr& inspector) {
    ++clicks;
    const FakePtr clicked = inspector->buttons.at(0);
    const office::Value tag = clicked->properties[L"Tag"];
    FakeObject::Told told;
    std::size_t before = 0;
    do {
      before = told.size();
      std::vector<FakePtr> targets;
      for (const InspectorPtr& one : open) {
        std::copy_if(one->buttons.begin(), one->buttons.end(), std::back_inserter(targets),
                     [&](const FakePtr& button) { return button->properties[L"Tag"] == tag; });
      }
      for (const FakePtr& target : targets) {
        target->Raise(facts::kButtonEvents, facts::kClick, {office::Value(clicked), false}, told);
      }
    } while (told.size() != before);
  }

  FakePtr Make(std::wstring name) { return std::make_shared<FakeObject>(log, std::move(name)); }

  FakeLog log;
  FakePtr app, nameSpace, inspectors;
  std::vector<InspectorPtr> open;
  InspectorPtr active;
  std::wstring lastNamespace;
  std::uint32_t clicks = 0;
};

}  // namespace postrove::testing
