#include "outlook/com/live_object.h"

#include <atomic>

namespace postrove::com {
namespace {

// Outlook uses one thread, but a host may release the last reference on any.
std::atomic<long> liveObjects{0};

}  // namespace

LiveObject::LiveObject() noexcept { Lock(); }
LiveObject::~LiveObject() { Unlock(); }

long LiveObject::Count() noexcept { return liveObjects; }
void LiveObject::Lock() noexcept { ++liveObjects; }
void LiveObject::Unlock() noexcept { --liveObjects; }

}  // namespace postrove::com
