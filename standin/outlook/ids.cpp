#include "outlook/ids.h"

#include <ocidl.h>

#include <array>

namespace standin {

std::wstring InterfaceName(const GUID& id) {
  struct Known {
    GUID id;
    const wchar_t* name;
  };
  static const std::array known = {
      Known{kApplicationId, L"_Application"},
      Known{kNameSpaceId, L"_NameSpace"},
      Known{kInspectorId, L"_Inspector"},
      Known{kAttachmentId, L"Attachment"},
      Known{kInspectorsId, L"_Inspectors"},
      Known{kContactItemId, L"_ContactItem"},
      Known{kNoteItemId, L"_NoteItem"},
      Known{kAppointmentItemId, L"_AppointmentItem"},
      Known{kMailItemId, L"_MailItem"},
      Known{kRecipientsId, L"Recipients"},
      Known{kAttachmentsId, L"Attachments"},
      Known{kRecipientId, L"Recipient"},
      Known{kApplicationEventsId, L"ApplicationEvents"},
      Known{kInspectorsEventsId, L"InspectorsEvents"},
      Known{kInspectorEventsId, L"InspectorEvents"},
      Known{kItemEventsId, L"ItemEvents"},
      Known{kCommandBarsId, L"_CommandBars"},
      Known{kCommandBarId, L"CommandBar"},
      Known{kCommandBarControlsId, L"CommandBarControls"},
      Known{kCommandBarControlId, L"CommandBarControl"},
      Known{kCommandBarButtonId, L"_CommandBarButton"},
      Known{kCommandBarButtonEventsId, L"_CommandBarButtonEvents"},
      Known{kComAddInId, L"COMAddIn"},
      Known{IID_IUnknown, L"IUnknown"},
      Known{IID_IDispatch, L"IDispatch"},
      Known{IID_IConnectionPointContainer, L"IConnectionPointContainer"},
      Known{IID_IConnectionPoint, L"IConnectionPoint"},
  };
  for (const Known& entry : known) {
    if (IsEqualGUID(entry.id, id)) return entry.name;
  }
  wchar_t text[40] = {};
  StringFromGUID2(id, text, 40);
  return text;
}

}  // namespace standin
