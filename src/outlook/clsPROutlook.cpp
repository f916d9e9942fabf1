#include "outlook/clsPROutlook.h"

#include <exception>
#include <functional>
#include <utility>

#include "outlook/button_owner.h"
#include "outlook/inspector_button.h"
#include "outlook/office/ids.h"
#include "shared/error.h"
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

// In a Word window the user must not hide the bar with the button.
void Protect(const office::CommandBar& bar, std::int32_t protection) {
  bar.SetVisible(true);
  bar.SetProtection(protection);
}

// Outlook 2000 to 2003 count references and wait for the last one before they end; for the other
// versions OnBeginShutdown releases the tracker. One that cannot tell its version may be one of
// those.
bool WaitsForReferences(const office::Application& application) {
  double version = 9;
  Steps steps;
  steps.RunTwice([&] { version = text::LeadingNumber(application.Version()); });
  return version == 9 || version == 10 || version == 11;
}

// Tells the button that is to be left from all others while one of those is looked for: every get
// can return a new object for the same thing, and no number of Office's is promised to differ.
constexpr wchar_t kLeft[] = L"Left";

void Describe(const office::CommandBarButton& button, const wchar_t* text) {
  Steps steps;  // What refuses twice is gone, and cannot be taken for another window's.
  steps.RunTwice([&] { button.SetDescriptionText(text); });
}

}  // namespace

std::shared_ptr<clsPROutlook> clsPROutlook::Create(SharedObjects& shared) {
  return std::shared_ptr<clsPROutlook>(new clsPROutlook(shared));
}

clsPROutlook::~clsPROutlook() {
  // Without the tracker no button can be moved or answered.
  if (const auto controller = shared_.gController) controller->ListenTo({});
  m_olMail.Clear();
  m_olInspector.reset();
  unready_.clear();
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
    // Windows whose buttons were heard before the user switched the add-in off.
    HearOpenWindow();
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

office::Inspector clsPROutlook::Inspector() const {
  return m_olInspector ? m_olInspector->inspector : office::Inspector();
}

void clsPROutlook::SetInspector(const office::Inspector& inspector) {
  TrackWindow(inspector ? std::make_shared<OpenWindow>(OpenWindow{inspector, {}}) : nullptr);
}

void clsPROutlook::TrackWindow(const WindowPtr& window) {
  const WindowPtr last = std::exchange(m_olInspector, window);
  if (window) Watch(window);
}

// One subscription serves whatever a window is watched for.
void clsPROutlook::Watch(const WindowPtr& window) {
  window->events = window->inspector.Get()->Subscribe(
      office::kInspectorEvents, [self = weak_from_this(), watched = std::weak_ptr(window)](
                                    std::int32_t dispid, const office::Arguments&) {
        const auto tracker = self.lock();
        const WindowPtr open = watched.lock();
        if (tracker && open) tracker->OnInspectorEvent(open, dispid);
      });
}

void clsPROutlook::SetMailItem(const office::MailItem& item) {
  try {
    Track(m_olMail, item, office::kItemEvents, &clsPROutlook::OnMailEvent);
  } catch (...) {
    m_olMail.Clear();  // whose end is not heard of must not be held
    throw;
  }
}

void clsPROutlook::OnApplicationEvent(std::int32_t dispid, const office::Arguments&) {
  if (dispid == office::kApplicationQuit) Quit();
}

void clsPROutlook::OnInspectorsEvent(std::int32_t dispid, const office::Arguments& arguments) {
  if (dispid == office::kInspectorsNewInspector && !arguments.empty()) {
    NewInspector(office::Inspector(office::ToObject(arguments[0])));
  }
}

void clsPROutlook::OnInspectorEvent(const WindowPtr& window, std::int32_t dispid) {
  if (dispid == office::kInspectorActivate) {
    if (std::erase(unready_, window) != 0) Furnish(window, true);
  } else if (dispid == office::kInspectorClose) {
    std::erase(unready_, window);
    Steps steps;
    const auto controller = shared_.gController;
    if (controller && controller->PostroveMenuButton().StandsIn(*window)) {
      steps.Run([&] { LeaveHeardWindow(true); });
    }
    if (window == m_olInspector) steps.Run([&] { InspectorClose(); });
    steps.ThrowFirst();
  }
}

void clsPROutlook::OnMailEvent(std::int32_t dispid, const office::Arguments&) {
  // Send asks for nothing: only the button files a message.
  if (dispid != office::kItemClose) return;
  SetMailItem({});
  SetInspector({});
}

void clsPROutlook::NewInspector(const office::Inspector& inspector) {
  const auto window = std::make_shared<OpenWindow>(OpenWindow{inspector, {}});
  Steps steps;
  steps.Run([&] { TrackWindow(window); });
  steps.Run([&] { Furnish(window, false); });
  steps.ThrowFirst();
}

void clsPROutlook::Furnish(const WindowPtr& window, bool lastTry) {
  office::CommandBar bar;
  try {
    if (!window->events) Watch(window);
    bar = PlaceButton(window);
  } catch (...) {
    // The command bars of a Word window can come late: there is one more try when it is activated.
    if (!lastTry && window->events) unready_.push_back(window);
    throw;
  }
  if (bar && window->inspector.IsWordMail()) Protect(bar, office::kBarNoChangeVisible);
}

office::CommandBar clsPROutlook::PlaceButton(const WindowPtr& window) {
  const office::Item item = window->inspector.CurrentItem();
  if (item.Class() != office::kClassMail) return {};
  const std::shared_ptr<ButtonOwner> controller = shared_.gController;
  if (!controller) return {};  // Outlook is quitting

  const bool sent = item.Sent();
  SetSaveType(office::kSaveTypeMsg);
  const office::CommandBars bars = window->inspector.CommandBars();
  DeleteButtons(bars);
  const office::CommandBar bar = bars.Item(kInspectorButtonBar);
  const office::CommandBarControl control = AddButton(bar, m_olInspectors.object.Count() - 1);
  try {
    controller->SetPostroveMenuButton(ButtonIn(window, item, control), sent);
  } catch (...) {
    control.Delete();  // a button that nobody listens to must not stay
    throw;
  }
  return bar;
}

HeardButton clsPROutlook::ButtonIn(const WindowPtr& window, const office::Item& message,
                                   const office::CommandBarControl& control) {
  return HeardButton(control.AsButton(), window, message, [self = weak_from_this()] {
    if (const auto tracker = self.lock()) tracker->LeaveHeardWindow(false);
  });
}

void clsPROutlook::InspectorClose() {
  const office::Inspector closing = m_olInspector->inspector;
  Steps steps;
  steps.Run([&] { DeleteButtons(closing.CommandBars()); });
  steps.Run([&] {
    if (!closing.IsWordMail()) return;
    Protect(closing.CommandBars().Item(kInspectorButtonBar), office::kBarNoProtection);
  });
  SetInspector({});
  steps.ThrowFirst();
}

// The window of the heard button closes, or its message does, which the window can outlive: the
// user may decline to lose what was typed. Another window's button hears for both then; the last
// one is heard until it has closed.
void clsPROutlook::LeaveHeardWindow(bool closed) {
  const std::shared_ptr<ButtonOwner> controller = shared_.gController;
  if (!controller) return;
  const office::CommandBarButton left = controller->PostroveMenuButton().Button();
  Describe(left, kLeft);
  const bool moved = HearOpenWindow();
  if (!moved && closed) controller->ListenTo({});
  if (!moved && !closed) controller->PostroveMenuButton().ForgetMessage();
  if (!closed) Describe(left, L"");
}

bool clsPROutlook::HearOpenWindow() {
  const office::Inspectors inspectors = m_olInspectors.object;
  Steps steps;  // A window that cannot be heard, such as one that is closing, is passed over.
  std::int32_t count = 0;
  steps.RunTwice([&] { count = inspectors.Count(); });
  bool heard = false;
  for (std::int32_t i = count; i >= 1 && !heard; --i) {
    steps.RunTwice([&] { heard = HearWindow(inspectors.Item(i)); });
  }
  return heard;
}

bool clsPROutlook::HearWindow(const office::Inspector& inspector) {
  const office::Item item = inspector.CurrentItem();
  if (item.Class() != office::kClassMail) return false;
  const office::CommandBarControl control =
      inspector.CommandBars().FindControl(kInspectorButtonTag);
  if (!control || control.DescriptionText() == kLeft) return false;
  const std::shared_ptr<ButtonOwner> controller = shared_.gController;
  if (!controller) return false;
  const auto window = std::make_shared<OpenWindow>(OpenWindow{inspector, {}});
  Watch(window);
  controller->ListenTo(ButtonIn(window, item, control));
  return true;
}

void clsPROutlook::Quit() {
  // The user switched the add-in off before: no OnBeginShutdown will come.
  const bool disconnected = !shared_.gController;
  Steps steps;
  if (const auto controller = std::exchange(shared_.gController, nullptr)) {
    steps.RunTwice([&] { controller->Terminate(); });
  }
  if (disconnected || WaitsForReferences(m_olApp.object)) {
    SetApp({});
    shared_.gOutlook.reset();
  }
  steps.ThrowFirst();
}

}  // namespace postrove
