#include "outlook/com/event_sink.h"

#include <ocidl.h>
#include <wrl/client.h>

#include <atomic>
#include <memory>
#include <new>

#include "outlook/com/com_error.h"
#include "outlook/com/live_object.h"
#include "outlook/com/variant.h"

using Microsoft::WRL::ComPtr;

namespace postrove::com {
namespace {

// What a host calls with its events. Events come by number only; the sink is never asked for names.
class EventSink final : public IDispatch, private LiveObject {
 public:
  EventSink(const GUID& eventInterface, office::EventHandler handler)
      : eventInterface_(eventInterface),
        handler_(std::make_shared<office::EventHandler>(std::move(handler))) {}

  // Later events do nothing; one that is being delivered ends undisturbed.
  void Disconnect() { handler_.reset(); }

  STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
    if (!object) return E_POINTER;
    if (iid == __uuidof(IUnknown) || iid == __uuidof(IDispatch) || iid == eventInterface_) {
      *object = static_cast<IDispatch*>(this);
      AddRef();
      return S_OK;
    }
    *object = nullptr;
    return E_NOINTERFACE;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return ++references_; }
  STDMETHODIMP_(ULONG) Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }

  STDMETHODIMP GetTypeInfoCount(UINT* count) override {
    if (!count) return E_POINTER;
    *count = 0;
    return S_OK;
  }
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo** info) override {
    if (info) *info = nullptr;
    return E_NOTIMPL;
  }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }

  STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* parameters, VARIANT* result,
                      EXCEPINFO*, UINT*) override {
    if (result) VariantInit(result);
    // The handler may end its own subscription, which lets go of the sink and of the handler.
    const ComPtr<EventSink> self(this);
    const std::shared_ptr<office::EventHandler> handler = handler_;
    if (!handler) return S_OK;
    try {
      office::Arguments arguments;
      for (UINT i = parameters ? parameters->cArgs : 0; i > 0; --i) {
        arguments.push_back(FromVariant(parameters->rgvarg[i - 1], L"Invoke"));
      }
      (*handler)(id, arguments);
    } catch (...) {
      // Nobody in the host could make use of it.
    }
    return S_OK;
  }

 private:
  ~EventSink() = default;

  const GUID eventInterface_;
  std::shared_ptr<office::EventHandler> handler_;
  std::atomic<ULONG> references_{0};
};

class SinkConnection final : public office::Connection {
 public:
  SinkConnection(IDispatch* source, const GUID& eventInterface, office::EventHandler handler)
      : source_(source), sink_(new EventSink(eventInterface, std::move(handler))) {
    ComPtr<IConnectionPointContainer> container;
    HRESULT result = source_.As(&container);
    if (SUCCEEDED(result)) result = container->FindConnectionPoint(eventInterface, &point_);
    if (SUCCEEDED(result)) result = point_->Advise(sink_.Get(), &cookie_);
    if (FAILED(result)) {
      // A host that keeps the sink although it refused it must not reach the handler.
      sink_->Disconnect();
      ThrowHresult(result, L"Subscribe");
    }
  }

  ~SinkConnection() override {
    sink_->Disconnect();
    point_->Unadvise(cookie_);
    point_.Reset();
    source_.Reset();
  }

 private:
  ComPtr<IDispatch> source_;
  ComPtr<EventSink> sink_;
  ComPtr<IConnectionPoint> point_;
  DWORD cookie_ = 0;
};

}  // namespace

office::Subscription Advise(IDispatch* source, const GUID& eventInterface,
                            office::EventHandler handler) {
  return office::Subscription(
      std::make_unique<SinkConnection>(source, eventInterface, std::move(handler)));
}

}  // namespace postrove::com
