#include "outlook/dispatch.h"

#include <ocidl.h>
#include <olectl.h>

#include <algorithm>

#include "outlook/ids.h"

namespace standin {
namespace {

bool SameName(const wchar_t* a, const wchar_t* b) {
  return CompareStringOrdinal(a, -1, b, -1, TRUE) == CSTR_EQUAL;
}

const Member* FindMember(const Interface& table, DISPID id, WORD flags, int version) {
  for (const Member& member : table.members) {
    if (member.id == id && (static_cast<WORD>(member.kind) & flags) && member.since <= version) {
      return &member;
    }
  }
  return nullptr;
}

VARTYPE DeclaredType(Param param) {
  switch (param) {
    case Param::kText:
      return VT_BSTR;
    case Param::kLong:
      return VT_I4;
    case Param::kBool:
      return VT_BOOL;
    case Param::kObject:
      return VT_DISPATCH;
    default:
      return VT_EMPTY;  // as it comes
  }
}

Arguments TakeArguments(const Member& member, const DISPPARAMS& given, UINT* badArgument) {
  const bool put = member.kind == Kind::kPut;
  if (put) {
    if (given.cNamedArgs != 1 || given.rgdispidNamedArgs[0] != DISPID_PROPERTYPUT) {
      throw HostError::Bare(DISP_E_PARAMNOTFOUND);
    }
  } else if (given.cNamedArgs != 0) {
    throw HostError::Bare(DISP_E_NONAMEDARGS);
  }
  if (given.cArgs > member.params.size()) throw HostError::Bare(DISP_E_BADPARAMCOUNT);

  std::vector<Variant> values;
  for (std::size_t i = 0; i < member.params.size(); ++i) {
    const Param param = member.params[i];
    if (i >= given.cArgs) {
      if (param != Param::kOptional) throw HostError::Bare(DISP_E_BADPARAMCOUNT);
      values.push_back(Variant::Missing());
      continue;
    }
    const UINT position = given.cArgs - 1 - static_cast<UINT>(i);
    try {
      Variant value = Variant::Copy(given.rgvarg[position]);
      if (V_VT(&value.Get()) == VT_ERROR && param != Param::kOptional) {
        throw HostError::Bare(DISP_E_PARAMNOTOPTIONAL);
      }
      if (DeclaredType(param) != VT_EMPTY) value.ChangeType(DeclaredType(param));
      values.push_back(std::move(value));
    } catch (const HostError&) {
      if (badArgument) *badArgument = position;
      throw;
    }
  }
  return Arguments(std::move(values));
}

void Describe(const HostError& error, EXCEPINFO* info) {
  if (!info) return;
  *info = {};
  info->scode = error.code;
  info->bstrSource = SysAllocString(L"Outlook");
  info->bstrDescription = SysAllocString(error.text.c_str());
}

}  // namespace

// One IDispatch pointer of an object.
class Object::Face final : public IDispatch {
 public:
  Face(Object& owner, const Interface& table) : owner_(owner), table_(table) {}
  virtual ~Face() = default;

  const Interface& Table() const { return table_; }

  STDMETHODIMP QueryInterface(REFIID id, void** object) override {
    return owner_.Query(id, object);
  }
  STDMETHODIMP_(ULONG) AddRef() override { return owner_.Retain(); }
  STDMETHODIMP_(ULONG) Release() override { return owner_.Drop(); }

  STDMETHODIMP GetTypeInfoCount(UINT* count) override {
    if (!count) return E_POINTER;
    *count = 0;
    return S_OK;
  }
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }

  STDMETHODIMP GetIDsOfNames(REFIID id, LPOLESTR* names, UINT count, LCID, DISPID* ids) override {
    if (!IsEqualGUID(id, GUID{})) return DISP_E_UNKNOWNINTERFACE;
    if (!names || !ids || count == 0) return E_INVALIDARG;
    std::fill_n(ids, count, DISPID_UNKNOWN);
    for (const Member& member : table_.members) {
      if (SameName(member.name, names[0]) && member.since <= owner_.Shared().Version()) {
        ids[0] = member.id;
        break;
      }
    }
    return ids[0] == DISPID_UNKNOWN || count > 1 ? DISP_E_UNKNOWNNAME : S_OK;
  }

  STDMETHODIMP Invoke(DISPID id, REFIID reserved, LCID, WORD flags, DISPPARAMS* given,
                      VARIANT* result, EXCEPINFO* info, UINT* badArgument) override {
    if (!IsEqualGUID(reserved, GUID{})) return DISP_E_UNKNOWNINTERFACE;
    if (!given) return E_INVALIDARG;
    if (!owner_.Shared().OnThread()) return RPC_E_WRONG_THREAD;
    // The member may run events in which the caller lets go of this object.
    const ComPtr<IDispatch> self(this);
    try {
      return Run(id, flags, *given, result, badArgument);
    } catch (const HostError& error) {
      if (error.bare) return error.code;
      Describe(error, info);
      return DISP_E_EXCEPTION;
    } catch (const std::bad_alloc&) {
      return E_OUTOFMEMORY;
    } catch (...) {
      return E_UNEXPECTED;
    }
  }

 private:
  HRESULT Run(DISPID id, WORD flags, const DISPPARAMS& given, VARIANT* result, UINT* badArgument) {
    Runtime& runtime = owner_.Shared();
    const Member* member = FindMember(table_, id, flags, runtime.Version());
    std::wstring name = std::wstring(table_.PlainName()) + L'.';
    if (!member) {
      name += L'#' + std::to_wstring(id);
      const HRESULT fault = runtime.Enter(name);
      return FAILED(fault) ? fault : DISP_E_MEMBERNOTFOUND;
    }
    std::wstring text = name + member->name;
    std::unique_ptr<Arguments> arguments;
    HostError refusal;
    try {
      arguments = std::make_unique<Arguments>(TakeArguments(*member, given, badArgument));
      const std::wstring listed = arguments->Describe();
      if (member->kind == Kind::kPut) text += L'=' + listed;
      if (member->kind != Kind::kPut && !member->params.empty()) text += L'(' + listed + L')';
    } catch (const HostError& error) {
      refusal = error;
    }
    const HRESULT fault = runtime.Enter(std::move(text));
    if (FAILED(fault)) return fault;
    if (!arguments) throw refusal;

    Variant value = member->run(owner_, *arguments);
    if (result) *result = value.Detach();
    return S_OK;
  }

  Object& owner_;
  const Interface& table_;
};

// The object's list of event interfaces.
class Object::Container final : public IConnectionPointContainer {
 public:
  Container(Object& owner, std::vector<Source> sources)
      : owner_(owner), sources_(std::move(sources)) {}
  virtual ~Container() {
    for (const Source& source : sources_) source.hub->Forget(&owner_);
  }

  STDMETHODIMP QueryInterface(REFIID id, void** object) override {
    return owner_.Query(id, object);
  }
  STDMETHODIMP_(ULONG) AddRef() override { return owner_.Retain(); }
  STDMETHODIMP_(ULONG) Release() override { return owner_.Drop(); }

  STDMETHODIMP EnumConnectionPoints(IEnumConnectionPoints**) override { return E_NOTIMPL; }
  STDMETHODIMP FindConnectionPoint(REFIID id, IConnectionPoint** point) override {
    if (!point) return E_POINTER;
    *point = nullptr;
    try {
      const HRESULT fault = owner_.Shared().Enter(owner_.Name() + L":FindConnectionPoint(" +
                                                  InterfaceName(id) + L')');
      if (FAILED(fault)) return fault;
      for (const Source& source : sources_) {
        if (IsEqualGUID(source.id, id)) {
          *point = MakeConnectionPoint(owner_, this, source.id, source.hub).Detach();
          return S_OK;
        }
      }
      return CONNECT_E_NOCONNECTION;
    } catch (...) {
      return E_OUTOFMEMORY;
    }
  }

 private:
  Object& owner_;
  std::vector<Source> sources_;
};

Object::Object(std::shared_ptr<Runtime> runtime, std::wstring name,
               std::initializer_list<const Interface*> interfaces, std::vector<Source> sources)
    : Tracked(std::move(runtime), std::move(name)) {
  for (const Interface* table : interfaces) {
    faces_.push_back(std::make_unique<Face>(*this, *table));
  }
  if (!sources.empty()) container_ = std::make_unique<Container>(*this, std::move(sources));
}

Object::~Object() = default;

IDispatch* Object::Pointer(std::size_t index) const { return faces_[index].get(); }

HRESULT Object::Query(REFIID id, void** object) {
  if (!object) return E_POINTER;
  *object = nullptr;
  if (IsEqualGUID(id, IID_IUnknown)) {
    *object = Pointer();
    Retain();
    return S_OK;
  }
  try {
    const HRESULT fault = Shared().Enter(Name() + L":QueryInterface(" + InterfaceName(id) + L')');
    if (FAILED(fault)) return fault;
  } catch (...) {
    return E_OUTOFMEMORY;
  }
  if (IsEqualGUID(id, IID_IDispatch)) {
    *object = Pointer();
  } else if (container_ && IsEqualGUID(id, IID_IConnectionPointContainer)) {
    *object = static_cast<IConnectionPointContainer*>(container_.get());
  } else {
    for (const auto& face : faces_) {
      if (IsEqualGUID(face->Table().id, id)) *object = static_cast<IDispatch*>(face.get());
    }
  }
  if (!*object) return E_NOINTERFACE;
  Retain();
  return S_OK;
}

}  // namespace standin
