#pragma once

#include "outlook/office/object.h"

// Identifiers and numbers of the Outlook 9.0 and Office 9.0 type libraries; later versions keep
// them.
namespace postrove::office {

constexpr Guid OfficeGuid(std::uint32_t first) {
  return {first, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
}

inline constexpr Guid kApplicationEvents = OfficeGuid(0x0006304E);
inline constexpr Guid kInspectorsEvents = OfficeGuid(0x00063079);
inline constexpr Guid kInspectorEvents = OfficeGuid(0x0006307D);
inline constexpr Guid kItemEvents = OfficeGuid(0x0006303A);
inline constexpr Guid kCommandBarButtonEvents = OfficeGuid(0x000C0351);
inline constexpr Guid kCommandBarButton = OfficeGuid(0x000C030E);  // interface _CommandBarButton
inline constexpr Guid kMailItem = OfficeGuid(0x00063034);          // interface _MailItem

// Event numbers; each means something only together with its interface.
inline constexpr std::int32_t kApplicationQuit = 61447;
inline constexpr std::int32_t kInspectorsNewInspector = 61441;
inline constexpr std::int32_t kInspectorActivate = 61441;
inline constexpr std::int32_t kInspectorClose = 61448;
inline constexpr std::int32_t kItemClose = 61444;
inline constexpr std::int32_t kItemSend = 61445;
inline constexpr std::int32_t kButtonClick = 1;

inline constexpr std::int32_t kClassMail = 43;          // OlObjectClass.olMail
inline constexpr std::int32_t kSaveTypeMsg = 3;         // OlSaveAsType.olMSG
inline constexpr std::int32_t kSaveTypeMsgUnicode = 9;  // olMSGUnicode, from Outlook 2003 on
inline constexpr std::int32_t kEditorHtml = 2;          // OlEditorType
inline constexpr std::int32_t kEditorWord = 4;
inline constexpr std::int32_t kControlButton = 1;         // MsoControlType.msoControlButton
inline constexpr std::int32_t kButtonIconAndCaption = 3;  // MsoButtonStyle
inline constexpr std::int32_t kBarNoProtection = 0;       // MsoBarProtection
inline constexpr std::int32_t kBarNoChangeVisible = 8;

}  // namespace postrove::office
