#pragma once

#include <windows.h>

#include <oaidl.h>
#include <wrl/client.h>

#include "outlook/office/object.h"

// The adapter of office::Object onto IDispatch: the one place that binds late. A wrapped object
// counts as a LiveObject as long as it holds its reference.
namespace postrove::com {

// Takes a reference of its own; null is Nothing.
office::ObjectPtr WrapDispatch(IDispatch* dispatch);

// The interface that an object was wrapped from; null for Nothing. Throws Error 13 when the object
// was not made by WrapDispatch.
Microsoft::WRL::ComPtr<IDispatch> UnwrapDispatch(const office::ObjectPtr& object);

}  // namespace postrove::com
