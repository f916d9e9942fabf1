#include "outlook/clsPROutlook.h"

#include <exception>
#include <functional>
#include <utility>

#include "controller/clsPostrove.h"
#include "outlook/inspector_button.h"
#include "outlook/office/ids.h"
#include "shared/text.h"

namespace postrove {

namespace {

// Runs steps that do not depend on each other: each one is run whatever became of those before.
class Steps {
 public:
  template <class Step>
  void Run(Step&& step) {
    try {
      step();
    } catch (...) {
      if (!first_) first_ = std::current_exception();
    }
  }

  template <class Step>
  void RunTwice(Step&& step) {
    try {
      step();
    } catch (...) {
      Run(step);
    }
  }

  void ThrowFirst() const {
    if (first_) std::rethrow_exception(first_);
  }

 private:
  std::exception_ptr first_;
};

constexpr std::int32_t kButtonPosition = 4;

// More buttons than any crash can have left behind; past it the bar does not let go of them, and
// going on would freeze Outlook.
constexpr int kMostButtons = 1000;

void DeleteButtons(const office::CommandBars& bars) {
  for (int i = 0; i < kMostButtons; ++i) {
    const office::CommandBarControl control = bars.FindControl(kInspectorButtonTag);
    if (!control) return;
    control.Delete();
  }
}

// Without its place a button still files messages, so it goes to the end of a bar that is shorter
// than expected.
office::CommandBarControl AddButton(const office::CommandBar& bar, std::int32_t parameter) {
  try {
    return bar.AddButton(parameter, kButtonPosition);
  } catch (const Error&) {
    return bar.AddButton(parameter, std::nullopt);
  }
}

}  // namespace

std::shared_ptr<clsPROutlook> clsPROutlook::Create(SharedObjects& shared) {
  return std::shared_ptr<clsPROutlook>(new clsPROutlook(shared));
}

clsPROutlook::~clsPROutlook() {
  m_olMail.Clear();
  m_olInspector.Clear();
  m_olInspectors.Clear();
  m_olNameSpace = {};
  m_olApp.Clear();
}

template <class T>
void clsPROutlook::Track(Tracked<T>& held, const T& object, const office::Guid& events,
                         Handler handler) {
  held.Clear();
  if (!object) return;
  held.object = object;
  // The tracker can be released by one of its own events (Quit); the lock keeps it until the
  // handler has returned.
  held.events = object.Get()->Subscribe(
      events,
      [self = weak_from_this(), handler](std::int32_t dispid, const office::Arguments& arguments) {
        if (const auto tracker = self.lock()) ((*tracker).*handler)(dispid, arguments);
      });
}

void clsPROutlook::SetApp(const office::Application& application) {
  Steps steps;
  steps.RunTwice([&] {
    Track(m_olApp, application, office::kApplicationEvents, &clsPROutlook::OnApplicationEvent);
  });
  if (application) {
    steps.RunTwice([&] { SetNameSpace(application.GetNamespace(L"MAPI")); });
    steps.RunTwice([&] { SetInspectors({}); });
  }
  steps.ThrowFirst();
}

void clsPROutlook::SetInspectors(const office::Inspectors&) {
  Track(m_olInspectors, m_olApp.object.Inspectors(), office::kInspectorsEvents,
        &clsPROutlook::OnInspectorsEvent);
}

office::Inspectors clsPROutlook::Inspectors() {
  SetInspectors(m_olInspectors.object);
  return {};
}

void clsPROutlook::SetInspector(const office::Inspector& inspector) {
  Track(m_olInspector, inspector, office::kInspectorEvents, &clsPROutlook::OnInspectorEvent);
}

void clsPROutlook::SetMailItem(const office::MailItem& item) {
  Track(m_olMail, item, office::kItemEvents, &clsPROutlook::OnMailEvent);
}

void clsPROutlook::OnApplicationEvent(std::int32_t dispid, const office::Arguments&) {
  if (dispid == office::kApplicationQuit) Quit();
}

void clsPROutlook::OnInspectorsEvent(std::int32_t dispid, const office::Arguments& arguments) {
  if (dispid == office::kInspectorsNewInspector && !arguments.empty()) {
    NewInspector(office::Inspector(office::ToObject(arguments[0])));
  }
}

void clsPROutlook::OnInspectorEvent(std::int32_t dispid, const office::Arguments&) {
  // Activate asks for nothing.
  if (dispid == office::kInspectorClose) InspectorClose();
}

void clsPROutlook::OnMailEvent(std::int32_t dispid, const office::Arguments&) {
  // Send asks for nothing: only the button files a message.
  if (dispid != office::kItemClose) return;
  Steps steps;
  steps.Run([&] { HandOverClicks(m_olMail.object.GetInspector()); });
  SetMailItem({});
  SetInspector({});
  steps.ThrowFirst();
}

void clsPROutlook::NewInspector(const office::Inspector& inspector) {
  Steps steps;
  steps.Run([&] { SetInspector(inspector); });
  steps.Run([&] { PlaceButton(inspector); });
  steps.ThrowFirst();
}

void clsPROutlook::PlaceButton(const office::Inspector& inspector) {
  const office::Item item = inspector.CurrentItem();
  if (item.Class() != office::kClassMail) return;
  const std::shared_ptr<clsPostrove> controller = shared_.gController;
  if (!controller) return;  // Outlook is quitting

  controller->ItemIsSent = item.Sent();
  SetSaveType(office::kSaveTypeMsg);
  const office::CommandBars bars = inspector.CommandBars();
  DeleteButtons(bars);
  const office::CommandBar bar = bars.Item(kInspectorButtonBar);
  const office::CommandBarControl control = AddButton(bar, m_olInspectors.object.Count() - 1);
  try {
    controller->SetPostroveMenuButton(control.AsButton());
  } catch (...) {
    control.Delete();  // a button that nobody listens to must not stay
    throw;
  }
  if (inspector.IsWordMail()) {
    bar.SetVisible(true);
    bar.SetProtection(office::kBarNoChangeVisible);
  }
}

void clsPROutlook::InspectorClose() {
  const office::Inspector closing = m_olInspector.object;
  Steps steps;
  steps.Run([&] { HandOverClicks(closing); });
  steps.Run([&] { DeleteButtons(closing.CommandBars()); });
  steps.Run([&] {
    if (!closing.IsWordMail()) return;
    const office::CommandBar bar = closing.CommandBars().Item(kInspectorButtonBar);
    bar.SetVisible(true);
    bar.SetProtection(office::kBarNoProtection);
  });
  SetInspector({});
  steps.ThrowFirst();
}

// The clicks of all buttons arrive through the one that the controller listens to. When its window
// closes, another window's button takes its place, or the older windows' buttons would be dead.
void clsPROutlook::HandOverClicks(const office::Inspector& closing) {
  const std::shared_ptr<clsPostrove> controller = shared_.gController;
  if (!controller || !controller->PostroveMenuButton()) return;
  const auto buttonOf = [](const office::Inspector& inspector) {
    return inspector.CommandBars().FindControl(kInspectorButtonTag);
  };
  const office::CommandBarControl ending = buttonOf(closing);
  const std::int32_t heard =
      office::CommandBarControl(controller->PostroveMenuButton().Get()).InstanceId();
  if (!ending || ending.InstanceId() != heard) return;

  const office::Inspectors inspectors = m_olInspectors.object;
  for (std::int32_t i = inspectors.Count(); i >= 1; --i) {
    try {
      const office::CommandBarControl other = buttonOf(inspectors.Item(i));
      if (other && other.InstanceId() != heard) return controller->ListenTo(other.AsButton());
    } catch (const Error&) {
      // A window without command bars, such as a note's.
    }
  }
}

void clsPROutlook::Quit() {
  // The user switched the add-in off before: no OnBeginShutdown will come.
  const bool disconnected = !shared_.gController;
  if (const auto controller = std::exchange(shared_.gController, nullptr)) controller->Terminate();
  // Outlook 2000 and 2003 count references and wait for the last one before they end; for the other
  // versions OnBeginShutdown releases the tracker.
  const double version = text::LeadingNumber(m_olApp.object.Version());
  if (disconnected || version == 9 || version == 11) {
    SetApp({});
    shared_.gOutlook.reset();
  }
}

}  // namespace postrove
