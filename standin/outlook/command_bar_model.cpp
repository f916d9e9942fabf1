#include "outlook/command_bar_model.h"

#include <array>

namespace standin {

ControlPointer BarModel::Insert(Runtime& runtime, const ControlLook& look, std::size_t at) {
  auto control = std::make_shared<ControlModel>(runtime, look, *this);
  controls.insert(controls.begin() + static_cast<std::ptrdiff_t>(at), control);
  return control;
}

bool ControlQuery::Matches(const ControlModel& control) const {
  return (!byType || control.type == type) && (!byId || control.id == id) &&
         (!byTag || control.tag == tag) && (!visibleOnly || control.visible);
}

ControlPointer Find(const BarModel& bar, const ControlQuery& query) {
  for (const ControlPointer& control : bar.controls) {
    if (query.Matches(*control)) return control;
  }
  return nullptr;
}

std::vector<std::shared_ptr<BarModel>> BuiltInBars(Runtime& runtime, Inspector& inspector,
                                                   bool composing) {
  struct BuiltIn {
    long id;
    const wchar_t* caption;
  };
  static constexpr std::array kComposing = {BuiltIn{kSendControlId, L"&Send"},
                                            BuiltIn{3, L"&Save"},
                                            BuiltIn{4, L"&Print"},
                                            BuiltIn{21, L"Cu&t"},
                                            BuiltIn{19, L"&Copy"},
                                            BuiltIn{22, L"&Paste"}};
  static constexpr std::array kReading = {
      BuiltIn{354, L"&Reply"}, BuiltIn{355, L"Reply to A&ll"},    BuiltIn{356, L"For&ward"},
      BuiltIn{4, L"&Print"},   BuiltIn{1679, L"&Move to Folder"}, BuiltIn{478, L"&Delete"}};
  std::vector<std::shared_ptr<BarModel>> bars;
  for (const wchar_t* name : {L"Menu Bar", L"Standard", L"Formatting"}) {
    bars.push_back(std::make_shared<BarModel>());
    bars.back()->inspector = &inspector;
    bars.back()->name = name;
  }
  bars[0]->type = 1;
  for (const BuiltIn& builtIn : composing ? kComposing : kReading) {
    ControlLook look;
    look.id = builtIn.id;
    look.builtIn = true;
    look.caption = builtIn.caption;
    bars[1]->Insert(runtime, look, bars[1]->controls.size());
  }
  return bars;
}

}  // namespace standin
