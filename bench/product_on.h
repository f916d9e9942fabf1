#pragma once

#include <windows.h>

#include <string>

#include "memory/Product.h"
#include "shared/clsDatabase.h"

namespace postrove::bench {

// Throws when a call of COM failed.
void Check(HRESULT result);

// The product on a fake machine, with the real database of a folder that holds a Postrove.mdb.
class ProductOn : public testing::Product {
 public:
  explicit ProductOn(const std::wstring& folder);
};

// Reads the rows of the project list's statement in a bare loop over the provider's rowset, which
// looks at every value and keeps none. The number of rows. Throws when the provider fails.
std::size_t ReadBare(const clsDatabase& database);

}  // namespace postrove::bench
