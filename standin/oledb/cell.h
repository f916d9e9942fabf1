#pragma once

#include <windows.h>

#include <oledb.h>

#include <cstdint>
#include <string>
#include <variant>

namespace standin {

// One value of a row: Null, a yes/no value, a whole number, a number or a text.
using Cell = std::variant<std::monostate, bool, std::int64_t, double, std::wstring>;

// The value in the type that Jet gives it: whole numbers are VT_I4 as long as they fit, Null is
// VT_NULL. The caller clears it. Throws std::bad_alloc.
VARIANT ToVariant(const Cell& cell);

// Writes the parts that `binding` names into the consumer's row buffer at `data`, as the status
// says, which is also the result; a value is written when the status is OK or truncated, and
// VT_NULL for Null in a VARIANT. The binding was accepted by CheckBinding.
DBSTATUS Store(const Cell& cell, const DBBINDING& binding, void* data);

// Whether values can be given out in this type of a binding.
bool CanStoreAs(DBTYPE type);

}  // namespace standin
