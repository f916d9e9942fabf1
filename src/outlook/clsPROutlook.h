#pragma once

#include <memory>
#include <vector>

#include "outlook/IclsOutlook.h"
#include "outlook/heard_button.h"
#include "outlook/shared_objects.h"

namespace postrove {

// The tracker: the system's single window onto Outlook. Holds the objects of IclsOutlook, listens
// to Quit, NewInspector, the last inspector's Activate and Close and the mail item's Close and
// Send, and puts the one button on every inspector that shows a mail item. It also sees to it that
// one button of an open window is heard as long as there is one.
//
// Its event handlers let errors out to the event sink, which drops them; what a handler must let go
// is let go in any case. References are released in the order mail item, inspector, inspectors,
// name space, application, each after its events ended.
class clsPROutlook final : public IclsOutlook, public std::enable_shared_from_this<clsPROutlook> {
 public:
  // `shared` is where Quit releases the controller and the tracker itself; it outlives the tracker.
  static std::shared_ptr<clsPROutlook> Create(SharedObjects& shared);
  ~clsPROutlook() override;

  // Every step is tried twice before it counts as failed, and a failed step does not keep the
  // others from being done: a busy Outlook must not cost the buttons of the whole run.
  void SetApp(const office::Application& application) override;
  office::Application App() const override { return m_olApp.object; }
  void SetNameSpace(const office::NameSpace& nameSpace) override { m_olNameSpace = nameSpace; }
  office::NameSpace NameSpace() const override { return m_olNameSpace; }
  void SetMailFolder(const office::Wrapper&) override {}
  office::Wrapper MailFolder() const override { return {}; }
  void SetInspectors(const office::Inspectors& inspectors) override;
  office::Inspectors Inspectors() override;
  void SetInspector(const office::Inspector& inspector) override;
  office::Inspector Inspector() const override;
  void SetMailItem(const office::MailItem& item) override;
  office::MailItem MailItem() const override { return m_olMail.object; }
  void SetApptItem(const office::Item&) override {}
  office::Item ApptItem() const override { return {}; }
  void SetContactItem(const office::Item&) override {}
  office::Item ContactItem() const override { return {}; }
  void SetAttachment(const office::Wrapper&) override {}
  office::Wrapper Attachment() const override { return {}; }
  void SetSaveType(std::int32_t type) override { saveType_ = type; }
  std::int32_t SaveType() const override { return saveType_; }

 private:
  // A held object with its events.
  template <class T>
  struct Tracked {
    T object;
    office::Subscription events;

    void Clear() {
      // Emptied before the release: letting go can run host code that looks at this again.
      const T last = std::exchange(object, T());
      office::Subscription ending = std::exchange(events, office::Subscription());
      ending.Reset();
    }
  };

  using Handler = void (clsPROutlook::*)(std::int32_t dispid, const office::Arguments& arguments);

  using WindowPtr = std::shared_ptr<OpenWindow>;

  explicit clsPROutlook(SharedObjects& shared) : shared_(shared) {}

  // Replaces what is held by `object` and takes its events; Nothing just lets go.
  template <class T>
  void Track(Tracked<T>& held, const T& object, const office::Guid& events, Handler handler);
  void TrackWindow(const WindowPtr& window);
  void Watch(const WindowPtr& window);

  void OnApplicationEvent(std::int32_t dispid, const office::Arguments& arguments);
  void OnInspectorsEvent(std::int32_t dispid, const office::Arguments& arguments);
  void OnInspectorEvent(const WindowPtr& window, std::int32_t dispid);
  void OnMailEvent(std::int32_t dispid, const office::Arguments& arguments);

  void NewInspector(const office::Inspector& inspector);
  void InspectorClose();
  void Quit();

  void Furnish(const WindowPtr& window, bool lastTry);
  office::CommandBar PlaceButton(const WindowPtr& window);
  HeardButton ButtonIn(const WindowPtr& window, const office::Item& message,
                       const office::CommandBarControl& control);
  void LeaveHeardWindow(bool closed);
  bool HearOpenWindow();
  bool HearWindow(const office::Inspector& inspector);

  SharedObjects& shared_;
  Tracked<office::Application> m_olApp;
  office::NameSpace m_olNameSpace;
  Tracked<office::Inspectors> m_olInspectors;
  WindowPtr m_olInspector;  // the one opened last
  // Windows without a button, because they were not ready for it when they opened.
  std::vector<WindowPtr> unready_;
  Tracked<office::MailItem> m_olMail;
  std::int32_t saveType_ = 0;
};

}  // namespace postrove
