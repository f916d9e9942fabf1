#pragma once

#include <windows.h>

#include <oleauto.h>

#include "outlook/office/object.h"
#include "shared/win32/variant.h"

namespace postrove::com {

// An argument for a host object. Missing becomes the "parameter not found" error value, an object
// the interface it was wrapped from. Throws Error 13 for an object that is not a host's.
Variant ToVariant(const office::Value& value);

// A value from a host object; by-reference forms are read through. Whole numbers that do not fit 32
// bits, currency, decimals and dates become doubles; an IUnknown is asked for IDispatch. Throws
// Error 13, with `source` as its source, for what has no Value (an array, an object without
// IDispatch).
office::Value FromVariant(const VARIANT& variant, const wchar_t* source);

}  // namespace postrove::com
