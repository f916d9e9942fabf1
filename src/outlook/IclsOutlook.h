#pragma once

#include <cstdint>

#include "outlook/office/outlook.h"

namespace postrove {

// The host-object interface of the tracker: Outlook's objects as the rest of the system sees them.
// Setting a wrapper that is Nothing lets the held object go. Setters throw Error when Outlook
// refuses; thread: Outlook's user-interface thread only.
class IclsOutlook {
 public:
  virtual ~IclsOutlook() = default;

  // Setting the application also takes its "MAPI" name space and its inspectors.
  virtual void SetApp(const office::Application& application) = 0;
  virtual office::Application App() const = 0;

  virtual void SetNameSpace(const office::NameSpace& nameSpace) = 0;
  virtual office::NameSpace NameSpace() const = 0;

  // Not kept: the getter is always Nothing.
  virtual void SetMailFolder(const office::Wrapper& folder) = 0;
  virtual office::Wrapper MailFolder() const = 0;

  // The setter ignores its argument and takes App's inspectors; the getter runs the setter with the
  // held collection and is Nothing.
  virtual void SetInspectors(const office::Inspectors& inspectors) = 0;
  virtual office::Inspectors Inspectors() = 0;

  // The inspector opened last.
  virtual void SetInspector(const office::Inspector& inspector) = 0;
  virtual office::Inspector Inspector() const = 0;

  // The mail item being filed.
  virtual void SetMailItem(const office::MailItem& item) = 0;
  virtual office::MailItem MailItem() const = 0;

  // Not kept: the getters are always Nothing.
  virtual void SetApptItem(const office::Item& item) = 0;
  virtual office::Item ApptItem() const = 0;
  virtual void SetContactItem(const office::Item& item) = 0;
  virtual office::Item ContactItem() const = 0;
  virtual void SetAttachment(const office::Wrapper& attachment) = 0;
  virtual office::Wrapper Attachment() const = 0;

  // A number of Outlook's save-as type enumeration; 3 is a message file.
  virtual void SetSaveType(std::int32_t type) = 0;
  virtual std::int32_t SaveType() const = 0;
};

}  // namespace postrove
