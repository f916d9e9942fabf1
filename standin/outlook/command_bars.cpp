#include "outlook/command_bars.h"

#include <algorithm>

#include "outlook/application.h"
#include "outlook/ids.h"
#include "outlook/inspector_object.h"
#include "outlook/session.h"
#include "shared/text.h"

namespace standin {
namespace {

constexpr long kNoCustomize = 1;  // MsoBarProtection

// What Office answers to an argument out of range.
HostError InvalidArgument() { return {E_INVALIDARG, L"Invalid procedure call or argument"}; }

ControlQuery QueryFrom(const Arguments& arguments) {
  ControlQuery query;
  query.byType = arguments.Has(0);
  query.byId = arguments.Has(1);
  query.byTag = arguments.Has(2);
  query.type = arguments.LongOr(0, 0);
  query.id = arguments.LongOr(1, 0);
  query.tag = arguments.TextOr(2, L"");
  query.visibleOnly = arguments.BoolOr(3, false);
  return query;
}

// A bar's part of an inspector that may be closed meanwhile.
class BarPart : public Object {
 public:
  BarPart(const std::shared_ptr<Inspector>& owner, std::shared_ptr<BarModel> shown,
          const wchar_t* name, const Interface& table)
      : Object(owner->Owner().shared_from_this(), name, {&table}),
        inspector(owner),
        bar(std::move(shown)) {}

  BarModel& Open() const {
    inspector->RequireOpen();
    return *bar;
  }
  Session& Owner() const { return inspector->Owner(); }

  const std::shared_ptr<Inspector> inspector;
  const std::shared_ptr<BarModel> bar;  // null for the collection of bars
};

class ControlObject final : public Object {
 public:
  ControlObject(Session& session, ControlPointer shown)
      : Object(session.shared_from_this(),
               shown->type == kButtonType ? L"CommandBarButton" : L"CommandBarControl",
               shown->type == kButtonType
                   ? std::initializer_list<const Interface*>{&ControlTable(), &ButtonTable()}
                   : std::initializer_list<const Interface*>{&ControlTable()},
               {{kCommandBarButtonEventsId, shown->events}}),
        owner(session),
        control(std::move(shown)) {}

  ControlModel& Alive() const {
    if (control->deleted) throw HostError{E_FAIL, L"The control has been deleted."};
    return *control;
  }
  void Changed() const { control->bar->inspector->Changed(); }

  Session& owner;
  const ControlPointer control;

 private:
  static const Interface& ControlTable();
  static const Interface& ButtonTable();
};

class ControlsObject final : public BarPart {
 public:
  ControlsObject(const std::shared_ptr<Inspector>& owner, std::shared_ptr<BarModel> shown)
      : BarPart(owner, std::move(shown), L"CommandBarControls", Table()) {}

 private:
  static const Interface& Table();
};

class BarObject final : public BarPart {
 public:
  BarObject(const std::shared_ptr<Inspector>& owner, std::shared_ptr<BarModel> shown)
      : BarPart(owner, std::move(shown), L"CommandBar", Table()) {}

 private:
  static const Interface& Table();
};

class BarsObject final : public BarPart {
 public:
  explicit BarsObject(const std::shared_ptr<Inspector>& owner)
      : BarPart(owner, nullptr, L"CommandBars", Table()) {}

 private:
  static const Interface& Table();
};

template <class T, class F>
void AddText(InterfaceOf<T>& table, const wchar_t* name, DISPID id, F field) {
  table.Get(name, id, [field](T& self) { return Variant::Text(self.Alive().*field); })
      .Put(name, id, Param::kText, [field](T& self, const Arguments& arguments) {
        self.Alive().*field = arguments.Text(0);
        self.Changed();
      });
}

template <class T, class F>
void AddBool(InterfaceOf<T>& table, const wchar_t* name, DISPID id, F field) {
  table.Get(name, id, [field](T& self) { return Variant::Bool(self.Alive().*field); })
      .Put(name, id, Param::kBool, [field](T& self, const Arguments& arguments) {
        self.Alive().*field = arguments.Bool(0);
        self.Changed();
      });
}

template <class T, class F>
void AddLong(InterfaceOf<T>& table, const wchar_t* name, DISPID id, F field) {
  table.Get(name, id, [field](T& self) { return Variant::Long(self.Alive().*field); })
      .Put(name, id, Param::kLong, [field](T& self, const Arguments& arguments) {
        self.Alive().*field = arguments.Long(0);
        self.Changed();
      });
}

Variant IndexOf(ControlObject& self) {
  const auto& all = self.Alive().bar->controls;
  const auto at = std::find(all.begin(), all.end(), self.control);
  return Variant::Long(static_cast<long>(at - all.begin()) + 1);
}

void DeleteControl(ControlObject& self) {
  self.Alive().deleted = true;
  std::erase(self.control->bar->controls, self.control);
  self.Changed();
}

const Interface& ControlObject::ControlTable() {
  using Self = ControlObject;
  static const Interface table = [] {
    InterfaceOf<Self> members(L"CommandBarControl", kCommandBarControlId);
    AddBool(members, L"BeginGroup", 1610874880, &ControlModel::beginGroup);
    AddText(members, L"Caption", 1610874883, &ControlModel::caption);
    AddText(members, L"DescriptionText", 1610874888, &ControlModel::description);
    AddBool(members, L"Enabled", 1610874890, &ControlModel::enabled);
    AddText(members, L"OnAction", 1610874906, &ControlModel::onAction);
    AddText(members, L"Parameter", 1610874909, &ControlModel::parameter);
    AddText(members, L"Tag", 1610874915, &ControlModel::tag);
    AddText(members, L"TooltipText", 1610874917, &ControlModel::tooltip);
    AddBool(members, L"Visible", 1610874921, &ControlModel::visible);
    members.Get(L"Index", 1610874900, IndexOf)
        .Get(L"Type", 1610874920, [](Self& self) { return Variant::Long(self.Alive().type); })
        .Method(L"Delete", 1610874887, {Param::kOptional}, DeleteControl);
    return members.Done();
  }();
  return table;
}

const Interface& ControlObject::ButtonTable() {
  using Self = ControlObject;
  static const Interface table = [] {
    InterfaceOf<Self> members(L"_CommandBarButton", kCommandBarButtonId);
    members.Inherit(ControlTable());
    AddLong(members, L"FaceId", 1610940419, &ControlModel::faceId);
    AddLong(members, L"State", 1610940424, &ControlModel::state);
    AddLong(members, L"Style", 1610940426, &ControlModel::style);
    return members.Done();
  }();
  return table;
}

Variant AddControl(ControlsObject& self, const Arguments& arguments) {
  BarModel& bar = self.Open();
  if (bar.protection & kNoCustomize) throw HostError{E_FAIL, L"The bar is protected."};
  constexpr long kTypes[] = {1, 2, 3, 4, 10};  // those that Add can make
  ControlLook look;
  look.type = arguments.LongOr(0, kButtonType);
  if (std::find(std::begin(kTypes), std::end(kTypes), look.type) == std::end(kTypes)) {
    throw InvalidArgument();
  }
  look.id = arguments.LongOr(1, 1);
  look.parameter = arguments.TextOr(2, L"");
  look.temporary = arguments.BoolOr(4, false);
  const long count = static_cast<long>(bar.controls.size());
  const long before = arguments.LongOr(3, count + 1);
  if (before < 1 || (arguments.Has(3) && before > count)) throw InvalidArgument();
  const ControlPointer control =
      bar.Insert(self.Owner(), look, static_cast<std::size_t>(before - 1));
  self.inspector->Changed();
  return Variant::Object(MakeControlObject(self.Owner(), control));
}

Variant ControlAt(ControlsObject& self, const Arguments& arguments) {
  const BarModel& bar = self.Open();
  if (V_VT(&arguments.Any(0)) == VT_BSTR) {
    const std::wstring caption = arguments.Text(0);
    for (const ControlPointer& control : bar.controls) {
      const std::wstring plain = postrove::text::Replace(control->caption, L"&", L"");
      if (postrove::text::EqualsIgnoreCase(plain, caption)) {
        return Variant::Object(MakeControlObject(self.Owner(), control));
      }
    }
    throw InvalidArgument();
  }
  const long index = arguments.LongOr(0, 0);
  if (index < 1 || index > static_cast<long>(bar.controls.size())) throw InvalidArgument();
  return Variant::Object(
      MakeControlObject(self.Owner(), bar.controls[static_cast<std::size_t>(index - 1)]));
}

const Interface& ControlsObject::Table() {
  using Self = ControlsObject;
  static const Interface table =
      InterfaceOf<Self>(L"CommandBarControls", kCommandBarControlsId)
          .Method(L"Add", 1610809344,
                  {Param::kOptional, Param::kOptional, Param::kOptional, Param::kOptional,
                   Param::kOptional},
                  AddControl)
          .Get(L"Count", 1610809345,
               [](Self& self) {
                 return Variant::Long(static_cast<long>(self.Open().controls.size()));
               })
          .GetIndexed(L"Item", 0, {Param::kAny}, ControlAt)
          .Done();
  return table;
}

Variant Found(Session& session, const ControlPointer& control) {
  return Variant::Object(control ? MakeControlObject(session, control) : nullptr);
}

const Interface& BarObject::Table() {
  using Self = BarObject;
  static const Interface table =
      InterfaceOf<Self>(L"CommandBar", kCommandBarId)
          .Get(L"Controls", 1610874883,
               [](Self& self) {
                 self.Open();
                 return Variant::Object(Make<ControlsObject>(self.inspector, self.bar));
               })
          .Get(L"Visible", 1610874910,
               [](Self& self) { return Variant::Bool(self.Open().visible); })
          .Put(L"Visible", 1610874910, Param::kBool,
               [](Self& self, const Arguments& arguments) {
                 self.Open().visible = arguments.Bool(0);
                 self.inspector->Changed();
               })
          .Get(L"Protection", 1610874903,
               [](Self& self) { return Variant::Long(self.Open().protection); })
          .Put(L"Protection", 1610874903, Param::kLong,
               [](Self& self, const Arguments& arguments) {
                 self.Open().protection = arguments.Long(0);
               })
          .Method(L"FindControl", 1610874887,
                  {Param::kOptional, Param::kOptional, Param::kOptional, Param::kOptional,
                   Param::kOptional},
                  [](Self& self, const Arguments& arguments) {
                    return Found(self.Owner(), Find(self.Open(), QueryFrom(arguments)));
                  })
          .Get(L"Type", 1610874909, [](Self& self) { return Variant::Long(self.Open().type); })
          .Done();
  return table;
}

std::shared_ptr<BarModel> BarAt(BarsObject& self, const Arguments& arguments) {
  self.inspector->RequireOpen();
  std::shared_ptr<BarModel> bar;
  if (V_VT(&arguments.Any(0)) == VT_BSTR) {
    bar = self.inspector->Bar(arguments.Text(0));
  } else {
    const auto& bars = self.inspector->Bars();
    const long index = arguments.LongOr(0, 0);
    if (index >= 1 && index <= static_cast<long>(bars.size())) {
      bar = bars[static_cast<std::size_t>(index - 1)];
    }
  }
  if (!bar) throw InvalidArgument();
  return bar;
}

Variant FindInBars(BarsObject& self, const Arguments& arguments) {
  self.inspector->RequireOpen();
  const ControlQuery query = QueryFrom(arguments);
  for (const auto& bar : self.inspector->Bars()) {
    if (const ControlPointer control = Find(*bar, query)) return Found(self.Owner(), control);
  }
  return Found(self.Owner(), nullptr);
}

const Interface& BarsObject::Table() {
  using Self = BarsObject;
  const std::vector<Param> search = {Param::kOptional, Param::kOptional, Param::kOptional,
                                     Param::kOptional};
  static const Interface table =
      InterfaceOf<Self>(L"_CommandBars", kCommandBarsId)
          .GetIndexed(
              L"Item", 0, {Param::kAny},
              [](Self& self, const Arguments& arguments) {
                return Variant::Object(Make<BarObject>(self.inspector, BarAt(self, arguments)));
              })
          .Get(L"Count", 1610809347,
               [](Self& self) {
                 self.inspector->RequireOpen();
                 return Variant::Long(static_cast<long>(self.inspector->Bars().size()));
               })
          .Method(L"FindControl", 1610809352, search, FindInBars)
          .Done();
  return table;
}

}  // namespace

ComPtr<IDispatch> MakeCommandBarsObject(const std::shared_ptr<Inspector>& inspector) {
  return Make<BarsObject>(inspector);
}

ComPtr<IDispatch> MakeControlObject(Session& session, const ControlPointer& control) {
  return Make<ControlObject>(session, control);
}

ComPtr<IDispatch> MakeButtonObject(Session& session, const ControlPointer& control) {
  return Own((new ControlObject(session, control))->Pointer(control->type == kButtonType ? 1 : 0));
}

}  // namespace standin
