#pragma once

#include <functional>

#include "shared/clsDatabase.h"

struct IRowset;

namespace postrove::ole_db {

// Hands all rows from where the rowset stands to `visit`, fetched in blocks; every row handle and
// the accessor are given back, whatever happens. Whole numbers become std::int64_t; fractions,
// currency, decimals and dates (days since 30 December 1899) double. Throws Error with `source`:
// for what the provider reports, and 13 for a value that cannot be read or has no Cell, such as
// binary data.
void ReadRows(IRowset* rowset, const std::function<void(Row& row)>& visit, const wchar_t* source);

}  // namespace postrove::ole_db
