#include "outlook/session.h"

#include <algorithm>

#include "outlook/add_ins.h"
#include "outlook/application.h"
#include "outlook/command_bars.h"
#include "outlook/file_place.h"
#include "outlook/ids.h"
#include "outlook/inspector_object.h"
#include "outlook/inspector_window.h"
#include "outlook/msg_file.h"

namespace standin {
namespace {

constexpr DISPID kItemRead = 61441;
constexpr DISPID kItemOpen = 61443;
constexpr DISPID kItemClose = 61444;
constexpr DISPID kNewInspector = 61441;
constexpr DISPID kInspectorActivate = 61441;
constexpr DISPID kInspectorDeactivate = 61446;
constexpr DISPID kInspectorClose = 61448;
constexpr DISPID kButtonClick = 1;

std::vector<Variant> One(Variant value) {
  std::vector<Variant> result;
  result.push_back(std::move(value));
  return result;
}

}  // namespace

Session::Session(Options options)
    : Runtime(options.version),
      options_(std::move(options)),
      applicationEvents_(std::make_shared<EventHub>(*this)),
      inspectorsEvents_(std::make_shared<EventHub>(*this)) {}

Session::~Session() = default;

std::wstring Session::VersionText() const {
  switch (Version()) {
    case 9:
      return L"9.0.0.2711";
    case 10:
      return L"10.0.0.2627";
    case 11:
      return L"11.0.8173";
    case 12:
      return L"12.0.6739.5000";
    case 14:
      return L"14.0.0.7011";
    case 15:
      return L"15.0.0.4569";
    default:
      return L"16.0.0.4266";
  }
}

std::shared_ptr<Item> Session::NewItem(ItemKind kind, MessageData message, bool sent) {
  return std::make_shared<Item>(*this, kind, std::move(message), sent);
}

Inspector* Session::Open(const std::shared_ptr<Item>& item, Editor editor) {
  if (const std::shared_ptr<Inspector> open = Find(*item)) {
    open->Show();
    Activate(*open);
    return open.get();
  }
  if (item->Sent()) item->Events()->Raise(kItemEventsId, kItemRead);
  if (item->Events()->RaiseCancellable(kItemEventsId, kItemOpen)) return nullptr;
  const std::shared_ptr<Inspector> inspector = Announce(item, editor);
  if (!inspector->IsOpen()) return inspector.get();  // a sink closed it again
  inspector->Show();
  if (inspector->IsOpen()) Activate(*inspector);
  return inspector.get();
}

std::shared_ptr<Inspector> Session::Announce(const std::shared_ptr<Item>& item, Editor editor) {
  const auto inspector = std::make_shared<Inspector>(item, editor);
  inspectors_.push_back(inspector);
  inspectorsEvents_->Raise(kInspectorsEventsId, kNewInspector,
                           One(Variant::Object(MakeInspectorObject(inspector))));
  return inspector;
}

std::shared_ptr<Inspector> Session::InspectorOf(const std::shared_ptr<Item>& item) {
  const std::shared_ptr<Inspector> open = Find(*item);
  return open && !open->IsClosing() ? open : Announce(item, Editor::kFromMessage);
}

bool Session::Close(Inspector& inspector, bool cancellable, SaveChanges answer) {
  if (!inspector.IsOpen()) return true;
  if (inspector.IsClosing()) throw HostError{E_FAIL, L"The inspector is being closed."};
  inspector.BeginClosing();
  const bool cancelled = inspector.Item()->Events()->RaiseCancellable(kItemEventsId, kItemClose);
  if ((cancelled && cancellable) || answer == SaveChanges::kCancel) {
    inspector.KeepOpen();
    return false;
  }
  inspector.Events()->Raise(kInspectorEventsId, kInspectorClose);
  CollectPermanentControls(inspector);
  std::erase(activation_, &inspector);
  if (active_ == &inspector) active_ = nullptr;
  inspector.Finish();
  if (!active_ && !activation_.empty()) Activate(*activation_.back());
  return true;
}

void Session::CloseInspectorOf(const Item& item) {
  const std::shared_ptr<Inspector> inspector = Find(item);
  if (inspector && !inspector->IsClosing()) Close(*inspector, false);
}

std::vector<std::shared_ptr<Inspector>> Session::OpenInspectors() const {
  std::vector<std::shared_ptr<Inspector>> result;
  std::copy_if(inspectors_.begin(), inspectors_.end(), std::back_inserter(result),
               [](const auto& inspector) { return inspector->IsOpen(); });
  return result;
}

std::shared_ptr<Inspector> Session::Find(const Item& item) const {
  for (const auto& inspector : OpenInspectors()) {
    if (inspector->Item().get() == &item) return inspector;
  }
  return nullptr;
}

std::shared_ptr<Inspector> Session::Active() const {
  const auto found = std::find_if(inspectors_.begin(), inspectors_.end(),
                                  [&](const auto& one) { return one.get() == active_; });
  return found == inspectors_.end() ? nullptr : *found;
}

void Session::Activate(Inspector& inspector) {
  if (!inspector.IsOpen() || inspector.IsClosing()) return;
  const std::shared_ptr<Inspector> before = Active();
  if (before.get() == &inspector) return;
  std::erase(activation_, &inspector);
  activation_.push_back(&inspector);
  active_ = &inspector;
  inspector.SetActivated();
  if (before) before->Events()->Raise(kInspectorEventsId, kInspectorDeactivate);
  inspector.Events()->Raise(kInspectorEventsId, kInspectorActivate);
  if (inspector.Window()) inspector.Window()->BringToFront();
}

void Session::Click(const ControlPointer& control) {
  std::vector<ControlPointer> targets;
  for (const auto& inspector : OpenInspectors()) {
    for (const auto& bar : inspector->Bars()) {
      for (const ControlPointer& candidate : bar->controls) {
        const bool sameTag = !control->tag.empty() && candidate->tag == control->tag;
        if (candidate == control || sameTag) targets.push_back(candidate);
      }
    }
  }
  for (const ControlPointer& target : targets) {
    if (target->deleted) continue;
    target->events->RaiseCancellable(kCommandBarButtonEventsId, kButtonClick,
                                     One(Variant::Object(MakeButtonObject(*this, control))));
  }
}

void Session::Transmit(MessageData message) {
  FILETIME now;
  GetSystemTimeAsFileTime(&now);
  message.date = now;
  if (!options_.sentFolder.empty()) {
    const std::wstring path = FreePlace(options_.sentFolder, message.subject);
    MsgForm form;
    form.unicode = Version() >= 11;
    WriteMsgFile(path, message, form);
    sentFiles_.push_back(path);
  }
  sentMessages_.push_back(std::move(message));
}

void Session::CollectPermanentControls(const Inspector& inspector) {
  for (const auto& bar : inspector.Bars()) {
    std::vector<ControlLook>& kept = permanentControls_[bar->name];
    kept.clear();
    for (const ControlPointer& control : bar->controls) {
      if (!control->builtIn && !control->temporary) kept.push_back(*control);
    }
  }
}

void Session::Forget() {
  ForgetCalls();
  savedFiles_.clear();
  sentFiles_.clear();
  sentMessages_.clear();
  std::erase_if(inspectors_, [](const auto& inspector) { return !inspector->IsOpen(); });
}

}  // namespace standin
