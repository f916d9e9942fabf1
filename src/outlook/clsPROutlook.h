#pragma once

#include <memory>

#include "controller/shared_objects.h"
#include "outlook/IclsOutlook.h"

namespace postrove {

// The tracker: the system's single window onto Outlook. Holds the objects of IclsOutlook, listens to
// Quit, NewInspector, the last inspector's Activate and Close and the mail item's Close and Send, and
// puts the one button on every inspector that shows a mail item.
//
// Its event handlers let errors out to the event sink, which drops them; what a handler must let go
// is let go in any case. References are released in the order mail item, inspector, inspectors, name
// space, application, each after its events ended.
class clsPROutlook final : public IclsOutlook, public std::enable_shared_from_this<clsPROutlook> {
 public:
  // `shared` is where Quit releases the controller and the tracker itself.
  static std::shared_ptr<clsPROutlook> Create(SharedObjects& shared);
  ~clsPROutlook() override;
};

}  // namespace postrove
