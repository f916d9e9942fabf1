#include "outlook/com/dispatch_object.h"

#include <bit>
#include <vector>

#include "outlook/com/com_error.h"
#include "outlook/com/event_sink.h"
#include "outlook/com/live_object.h"
#include "outlook/com/variant.h"
#include "shared/error.h"

using Microsoft::WRL::ComPtr;

namespace postrove::com {
namespace {

static_assert(sizeof(office::Guid) == sizeof(GUID));

class DispatchObject final : public office::Object, private LiveObject {
 public:
  explicit DispatchObject(ComPtr<IDispatch> dispatch) : dispatch_(std::move(dispatch)) {}

  const ComPtr<IDispatch>& Dispatch() const { return dispatch_; }

  office::Value Get(const wchar_t* member, const office::Arguments& arguments) override {
    // An indexed get such as Item is a property of one library and a method of another.
    const WORD flags =
        arguments.empty() ? DISPATCH_PROPERTYGET : DISPATCH_PROPERTYGET | DISPATCH_METHOD;
    return Invoke(member, flags, arguments);
  }

  void Put(const wchar_t* member, const office::Value& value) override {
    const bool isObject = std::holds_alternative<office::ObjectPtr>(value);
    Invoke(member, isObject ? DISPATCH_PROPERTYPUTREF : DISPATCH_PROPERTYPUT, {value});
  }

  office::Value Call(const wchar_t* member, const office::Arguments& arguments) override {
    return Invoke(member, DISPATCH_METHOD, arguments);
  }

  office::ObjectPtr As(const office::Guid& interfaceId) override {
    // The interface is dual: its pointer is an IDispatch of its own, with names and numbers that
    // can differ from those of the object's default interface.
    ComPtr<IDispatch> dual;
    const HRESULT result = dispatch_->QueryInterface(std::bit_cast<GUID>(interfaceId),
                                                     reinterpret_cast<void**>(dual.GetAddressOf()));
    if (FAILED(result)) ThrowHresult(result, L"QueryInterface");
    return WrapDispatch(dual.Get());
  }

  office::Subscription Subscribe(const office::Guid& eventInterface,
                                 office::EventHandler handler) override {
    return Advise(dispatch_.Get(), std::bit_cast<GUID>(eventInterface), std::move(handler));
  }

 private:
  office::Value Invoke(const wchar_t* member, WORD flags, const office::Arguments& arguments) {
    // Host code that runs inside may let go of this object.
    const ComPtr<IDispatch> dispatch = dispatch_;

    DISPID id = DISPID_UNKNOWN;
    LPOLESTR name = const_cast<LPOLESTR>(member);
    HRESULT result = dispatch->GetIDsOfNames(GUID{}, &name, 1, LOCALE_USER_DEFAULT, &id);
    if (FAILED(result)) ThrowHresult(result, member);

    std::vector<Variant> owned;
    std::vector<VARIANT> reversed;
    owned.reserve(arguments.size());
    reversed.reserve(arguments.size());
    for (auto argument = arguments.rbegin(); argument != arguments.rend(); ++argument) {
      owned.push_back(ToVariant(*argument));
      reversed.push_back(*owned.back().Get());
    }
    const bool isPut = (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
    DISPID putName = DISPID_PROPERTYPUT;
    DISPPARAMS parameters{reversed.data(), isPut ? &putName : nullptr,
                          static_cast<UINT>(reversed.size()), isPut ? 1u : 0u};

    Variant value;
    EXCEPINFO exception{};
    UINT badArgument = 0;
    result = dispatch->Invoke(id, GUID{}, LOCALE_USER_DEFAULT, flags, &parameters,
                              isPut ? nullptr : value.Get(), &exception, &badArgument);
    if (result == DISP_E_EXCEPTION) ThrowException(exception, member);
    if (FAILED(result)) ThrowHresult(result, member);
    return FromVariant(*value.Get(), member);
  }

  ComPtr<IDispatch> dispatch_;
};

}  // namespace

office::ObjectPtr WrapDispatch(IDispatch* dispatch) {
  if (!dispatch) return nullptr;
  return std::make_shared<DispatchObject>(ComPtr<IDispatch>(dispatch));
}

ComPtr<IDispatch> UnwrapDispatch(const office::ObjectPtr& object) {
  if (!object) return nullptr;
  const auto* wrapped = dynamic_cast<const DispatchObject*>(object.get());
  if (!wrapped) throw Error(kTypeMismatch, L"UnwrapDispatch", L"Type mismatch");
  return wrapped->Dispatch();
}

}  // namespace postrove::com
