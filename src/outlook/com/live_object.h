#pragma once

namespace postrove::com {

// Counts what keeps the module's code in use: COM objects handed to the host and references held on
// host objects. A class that is one of these derives from LiveObject; the module may be unloaded
// when none is left.
class LiveObject {
 public:
  LiveObject() noexcept;
  ~LiveObject();
  LiveObject(const LiveObject&) = delete;
  LiveObject& operator=(const LiveObject&) = delete;

  static long Count() noexcept;

  // A server lock counts as one object.
  static void Lock() noexcept;
  static void Unlock() noexcept;
};

}  // namespace postrove::com
