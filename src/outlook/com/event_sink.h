#pragma once

#include <windows.h>

#include <oaidl.h>

#include "outlook/office/object.h"

namespace postrove::com {

// Delivers the events of `eventInterface` of `source` to `handler` until the subscription ends; the
// subscription holds a reference on the source. Throws Error with source "Subscribe" when the
// object has no such events or refuses; nothing is then held.
office::Subscription Advise(IDispatch* source, const GUID& eventInterface,
                            office::EventHandler handler);

}  // namespace postrove::com
