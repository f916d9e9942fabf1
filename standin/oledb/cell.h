#pragma once

#include <windows.h>

#include <oledb.h>

#include <cstdint>
#include <string>
#include <variant>

namespace standin {

// One value of a row: Null, a yes/no value, a whole number, a number or a text.
using Cell = std::variant<std::monostate, bool, std::int64_t, double, std::wstring>;

// Writes the value, its length and its status as `binding` says, as a VARIANT or as a text in
// memory of the task allocator, into the consumer's row at `data`. The status, which is OK, Null or
// what the fault hook makes of it.
DBSTATUS Store(const Cell& cell, const DBBINDING& binding, void* data);

}  // namespace standin
