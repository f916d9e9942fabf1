#include "addin/Connect.h"

#include <oleauto.h>

#include <utility>

#include "addin/modMain.h"
#include "addin/module.h"
#include "outlook/IclsOutlook.h"
#include "outlook/button_owner.h"
#include "outlook/com/dispatch_object.h"
#include "outlook/com/variant.h"
#include "shared/clsSharedUtil.h"
#include "shared/text.h"

using Microsoft::WRL::ComPtr;

namespace postrove::addin {
namespace {

struct Method {
  const wchar_t* name;
  DISPID id;
  UINT argumentCount;
};

constexpr DISPID kOnConnection = 1;
constexpr DISPID kOnDisconnection = 2;
constexpr DISPID kOnAddInsUpdate = 3;
constexpr DISPID kOnStartupComplete = 4;
constexpr DISPID kOnBeginShutdown = 5;

constexpr Method kMethods[] = {{L"OnConnection", kOnConnection, 4},
                               {L"OnDisconnection", kOnDisconnection, 2},
                               {L"OnAddInsUpdate", kOnAddInsUpdate, 1},
                               {L"OnStartupComplete", kOnStartupComplete, 1},
                               {L"OnBeginShutdown", kOnBeginShutdown, 1}};

const Method* FindMethod(DISPID id) {
  for (const Method& method : kMethods) {
    if (method.id == id) return &method;
  }
  return nullptr;
}

// Arguments of a call by IDispatch, in declared order.
class CallArguments {
 public:
  CallArguments(const DISPPARAMS& parameters, UINT* badArgument)
      : parameters_(parameters), badArgument_(badArgument) {}

  ComPtr<IDispatch> Object(UINT index) const {
    return com::UnwrapDispatch(office::ToObject(Read(index)));
  }
  long Number(UINT index) const { return office::ToLong(Read(index)); }

 private:
  // What throws while an argument is read is that argument's fault.
  office::Value Read(UINT index) const {
    const UINT position = parameters_.cArgs - 1 - index;
    if (badArgument_) *badArgument_ = position;
    return com::FromVariant(parameters_.rgvarg[position], L"Invoke");
  }

  const DISPPARAMS& parameters_;
  UINT* badArgument_;
};

}  // namespace

STDMETHODIMP Connect::QueryInterface(REFIID iid, void** object) {
  if (!object) return E_POINTER;
  if (iid == __uuidof(IUnknown) || iid == __uuidof(IDispatch) ||
      iid == __uuidof(IDTExtensibility2)) {
    *object = static_cast<IDTExtensibility2*>(this);
    AddRef();
    return S_OK;
  }
  *object = nullptr;
  return E_NOINTERFACE;
}

STDMETHODIMP_(ULONG) Connect::AddRef() { return ++references_; }

STDMETHODIMP_(ULONG) Connect::Release() {
  const ULONG left = --references_;
  if (left == 0) delete this;
  return left;
}

STDMETHODIMP Connect::GetTypeInfoCount(UINT* count) {
  if (!count) return E_POINTER;
  *count = 1;
  return S_OK;
}

STDMETHODIMP Connect::GetTypeInfo(UINT index, LCID, ITypeInfo** info) {
  if (!info) return E_POINTER;
  *info = nullptr;
  if (index != 0) return DISP_E_BADINDEX;
  return Guarded([&] {
    ComPtr<ITypeLib> library;
    const HRESULT result = LoadModuleTypeLibrary(&library);
    if (FAILED(result)) return result;
    return library->GetTypeInfoOfGuid(__uuidof(IDTExtensibility2), info);
  });
}

STDMETHODIMP Connect::GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID,
                                    DISPID* ids) {
  if (reserved != GUID{}) return DISP_E_UNKNOWNINTERFACE;
  if (!names || !ids || count == 0) return E_INVALIDARG;
  for (UINT i = 0; i < count; ++i) ids[i] = DISPID_UNKNOWN;
  for (const Method& method : kMethods) {
    if (text::EqualsIgnoreCase(method.name, names[0])) ids[0] = method.id;
  }
  return count == 1 && ids[0] != DISPID_UNKNOWN ? S_OK : DISP_E_UNKNOWNNAME;
}

STDMETHODIMP Connect::Invoke(DISPID id, REFIID reserved, LCID, WORD flags, DISPPARAMS* parameters,
                             VARIANT* result, EXCEPINFO*, UINT* badArgument) {
  if (reserved != GUID{}) return DISP_E_UNKNOWNINTERFACE;
  if (!parameters) return E_INVALIDARG;
  const Method* method = FindMethod(id);
  if (!method || (flags & DISPATCH_METHOD) == 0) return DISP_E_MEMBERNOTFOUND;
  if (parameters->cNamedArgs != 0) return DISP_E_NONAMEDARGS;
  if (parameters->cArgs != method->argumentCount &&
      parameters->cArgs + 1 != method->argumentCount) {
    return DISP_E_BADPARAMCOUNT;
  }
  if (result) VariantInit(result);

  return Guarded([&]() -> HRESULT {
    const CallArguments arguments(*parameters, badArgument);
    switch (id) {
      case kOnConnection: {
        const ComPtr<IDispatch> application = arguments.Object(0);
        const auto mode = static_cast<ext_ConnectMode>(arguments.Number(1));
        return OnConnection(application.Get(), mode, arguments.Object(2).Get(), nullptr);
      }
      case kOnDisconnection:
        return OnDisconnection(static_cast<ext_DisconnectMode>(arguments.Number(0)), nullptr);
      case kOnAddInsUpdate:
        return OnAddInsUpdate(nullptr);
      case kOnStartupComplete:
        return OnStartupComplete(nullptr);
      default:
        return OnBeginShutdown(nullptr);
    }
  });
}

STDMETHODIMP Connect::OnConnection(IDispatch* Application, ext_ConnectMode, IDispatch*,
                                   SAFEARRAY**) {
  Guarded([&] {
    // Setting the application subscribes to it, and events can release the tracker.
    const std::shared_ptr<IclsOutlook> outlook = modMain::Shared().gOutlook;
    if (outlook) outlook->SetApp(office::Application(com::WrapDispatch(Application)));
    return S_OK;
  });
  return S_OK;
}

STDMETHODIMP Connect::OnDisconnection(ext_DisconnectMode, SAFEARRAY**) {
  Guarded([] {
    SharedObjects& shared = modMain::Shared();
    if (const auto controller = std::exchange(shared.gController, nullptr)) {
      Guarded([&] {
        controller->Terminate();
        return S_OK;
      });
    }
    if (shared.gUtility) shared.gUtility.reset();
    return S_OK;
  });
  return S_OK;
}

STDMETHODIMP Connect::OnAddInsUpdate(SAFEARRAY**) { return S_OK; }

STDMETHODIMP Connect::OnStartupComplete(SAFEARRAY**) { return S_OK; }

STDMETHODIMP Connect::OnBeginShutdown(SAFEARRAY**) {
  Guarded([] {
    const std::shared_ptr<IclsOutlook> outlook = modMain::Shared().gOutlook;
    if (outlook && outlook->App()) outlook->SetApp({});
    return S_OK;
  });
  // Released even when Outlook refused something: it is leaving in any case.
  modMain::Shared().gOutlook.reset();
  return S_OK;
}

}  // namespace postrove::addin
