#pragma once

#include <windows.h>

#include <ocidl.h>
#include <wrl/client.h>

#include <memory>
#include <vector>

#include "outlook/runtime.h"
#include "outlook/variant.h"

namespace standin {

class Object;

// The sinks of everything that one thing of the host raises: an item, an inspector, a button. The
// thing owns it; its COM objects come and go, and a sink lives as long as the object that it was
// advised through.
class EventHub {
 public:
  explicit EventHub(Runtime& runtime) : runtime_(runtime) {}

  // `sink` is the pointer of the event interface itself.
  DWORD Advise(const GUID& id, const Object* owner, ComPtr<IDispatch> sink);
  bool Unadvise(DWORD cookie, const Object* owner);
  void Forget(const Object* owner);  // the object is gone

  // Calls every sink of the event interface with the arguments in declared order. Sinks that end
  // while it runs are not called any more.
  void Raise(const GUID& id, DISPID event, std::vector<Variant> arguments = {}) const;

  // The same with a Cancel argument at the end. True when a sink cancelled.
  bool RaiseCancellable(const GUID& id, DISPID event, std::vector<Variant> arguments = {}) const;

  std::size_t Sinks() const { return sinks_.size(); }

 private:
  struct Sink {
    GUID id;
    DWORD cookie;
    const Object* owner;
    ComPtr<IDispatch> target;
  };

  Runtime& runtime_;
  std::vector<Sink> sinks_;
  DWORD nextCookie_ = 1;
};

// A connection point of the object, which it keeps alive through the container.
ComPtr<IConnectionPoint> MakeConnectionPoint(const Object& owner,
                                             IConnectionPointContainer* container, const GUID& id,
                                             std::shared_ptr<EventHub> hub);

}  // namespace standin
