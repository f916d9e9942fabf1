#pragma once

#include <windows.h>

#include <string>

// Interface identifiers of the Outlook 9.0 and Office 9.0 type libraries, kept apart from the
// add-in's own list so that a wrong number there cannot agree with itself.
namespace standin {

constexpr GUID OfficeId(unsigned long first) {
  return {first, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
}

inline constexpr GUID kApplicationId = OfficeId(0x00063001);
inline constexpr GUID kNameSpaceId = OfficeId(0x00063002);
inline constexpr GUID kInspectorId = OfficeId(0x00063005);
inline constexpr GUID kAttachmentId = OfficeId(0x00063007);
inline constexpr GUID kInspectorsId = OfficeId(0x00063008);
inline constexpr GUID kContactItemId = OfficeId(0x00063021);
inline constexpr GUID kNoteItemId = OfficeId(0x00063025);
inline constexpr GUID kAppointmentItemId = OfficeId(0x00063033);
inline constexpr GUID kMailItemId = OfficeId(0x00063034);
inline constexpr GUID kRecipientsId = OfficeId(0x0006303B);
inline constexpr GUID kAttachmentsId = OfficeId(0x0006303C);
inline constexpr GUID kRecipientId = OfficeId(0x00063045);

inline constexpr GUID kApplicationEventsId = OfficeId(0x0006304E);
inline constexpr GUID kInspectorsEventsId = OfficeId(0x00063079);
inline constexpr GUID kInspectorEventsId = OfficeId(0x0006307D);
inline constexpr GUID kItemEventsId = OfficeId(0x0006303A);

inline constexpr GUID kCommandBarsId = OfficeId(0x000C0302);
inline constexpr GUID kCommandBarId = OfficeId(0x000C0304);
inline constexpr GUID kCommandBarControlsId = OfficeId(0x000C0306);
inline constexpr GUID kCommandBarControlId = OfficeId(0x000C0308);
inline constexpr GUID kCommandBarButtonId = OfficeId(0x000C030E);
inline constexpr GUID kCommandBarButtonEventsId = OfficeId(0x000C0351);
inline constexpr GUID kComAddInId = OfficeId(0x000C033A);

inline constexpr GUID kExtensibility2Id = {
    0xB65AD801, 0xABAF, 0x11D0, {0xBB, 0x8B, 0x00, 0xA0, 0xC9, 0x0F, 0x27, 0x44}};

// For the call log: the name of an interface above or of a common COM interface, else the GUID.
std::wstring InterfaceName(const GUID& id);

}  // namespace standin
