#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <memory>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "shared/empty.h"

// Late-bound access to Outlook's and Office's objects, free of Windows types, so that the same code
// runs against Outlook, a stand-in host and a recording fake.
//
// Thread: Outlook's user-interface thread only.
// Re-entrancy: every Get, Put and Call can run host code that raises events before it returns; in
// particular Send and a modal dialog close inspectors while they run. Whoever uses an object across
// such a call holds an ObjectPtr of its own; what the tracker holds can be gone afterwards.
namespace postrove::office {

class Object;
using ObjectPtr = std::shared_ptr<Object>;  // empty: Visual Basic's Nothing

// An optional argument that is left out although later ones follow.
struct Missing {
  bool operator==(const Missing&) const = default;
};

// A value that travels to or from a host object. The empty alternative is Empty or Null.
using Value = std::variant<Empty, Missing, bool, std::int32_t, double, std::wstring, ObjectPtr>;
using Arguments = std::vector<Value>;

// Conversions as Visual Basic makes them: true is -1 as a number, texts are read as numbers or
// "True"/"False". Each throws Error 13 when there is none.
bool ToBool(const Value& value);
std::int32_t ToLong(const Value& value);
std::wstring ToText(const Value& value);
// The object; empty for Nothing, Empty and Null. Throws Error 13 for anything else.
ObjectPtr ToObject(const Value& value);

// An interface identifier with the layout of Windows' GUID.
struct Guid {
  std::uint32_t data1;
  std::uint16_t data2;
  std::uint16_t data3;
  std::array<std::uint8_t, 8> data4;
  bool operator==(const Guid&) const = default;
};

// Receives events by number, arguments in declared order. A by-reference argument (Cancel) arrives
// as its current value. What the handler throws is dropped at the host's edge.
using EventHandler = std::function<void(std::int32_t dispid, const Arguments& arguments)>;

// The live end of a subscription. Its destructor ends the events first and then lets the source go.
class Connection {
 public:
  virtual ~Connection() = default;
};

// One subscription as a movable value. Ending it inside the event that it delivers is allowed: the
// handler stays alive until it returns.
class Subscription {
 public:
  Subscription() = default;
  explicit Subscription(std::unique_ptr<Connection> connection)
      : connection_(std::move(connection)) {}

  explicit operator bool() const { return connection_ != nullptr; }
  void Reset() { connection_.reset(); }

 private:
  std::unique_ptr<Connection> connection_;
};

// One host object. Failures throw Error: number is the HRESULT, source the member's name, the
// description what the server said, or the system's text of the HRESULT.
class Object {
 public:
  virtual ~Object() = default;

  virtual Value Get(const wchar_t* member, const Arguments& arguments = {}) = 0;
  virtual void Put(const wchar_t* member, const Value& value) = 0;
  virtual Value Call(const wchar_t* member, const Arguments& arguments = {}) = 0;

  // The same object seen through another of its interfaces. Throws Error when it has none such.
  virtual ObjectPtr As(const Guid& interfaceId) = 0;

  // Events of the given event interface go to `handler` until the subscription ends.
  virtual Subscription Subscribe(const Guid& eventInterface, EventHandler handler) = 0;
};

}  // namespace postrove::office
