#pragma once

#include <memory>
#include <string>
#include <vector>

#include "outlook/events.h"

namespace standin {

class Inspector;
struct BarModel;

inline constexpr long kButtonType = 1;  // MsoControlType.msoControlButton

// What a control shows and carries; a permanent control is remembered as this.
struct ControlLook {
  long type = kButtonType;
  long id = 1;  // 1 is a custom control
  bool builtIn = false;
  bool temporary = false;
  bool beginGroup = false;
  bool visible = true;
  bool enabled = true;
  long style = 0;
  long faceId = 0;
  long state = 0;
  std::wstring caption;
  std::wstring tag;
  std::wstring onAction;
  std::wstring parameter;
  std::wstring tooltip;
  std::wstring description;
};

struct ControlModel : ControlLook {
  ControlModel(Runtime& runtime, const ControlLook& look, BarModel& owner)
      : ControlLook(look), bar(&owner), events(std::make_shared<EventHub>(runtime)) {}

  BarModel* bar;
  bool deleted = false;  // also when its inspector is closed
  std::shared_ptr<EventHub> events;
};

using ControlPointer = std::shared_ptr<ControlModel>;

struct BarModel {
  Inspector* inspector = nullptr;
  std::wstring name;
  bool visible = true;
  long protection = 0;
  long type = 0;
  std::vector<ControlPointer> controls;

  ControlPointer Insert(Runtime& runtime, const ControlLook& look, std::size_t position);
};

// Search of FindControl: what is left out does not count.
struct ControlQuery {
  bool byType = false;
  bool byId = false;
  bool byTag = false;
  bool visibleOnly = false;
  long type = 0;
  long id = 0;
  std::wstring tag;

  bool Matches(const ControlModel& control) const;
};

ControlPointer Find(const BarModel& bar, const ControlQuery& query);

// The bars of a new inspector: "Menu Bar", "Standard" with the built-in buttons of a message being
// written or read, and "Formatting".
std::vector<std::shared_ptr<BarModel>> BuiltInBars(Runtime& runtime, Inspector& inspector,
                                                   bool composing);

inline constexpr long kSendControlId = 2617;  // the built-in Send button

}  // namespace standin
