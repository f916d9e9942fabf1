#pragma once

#include <memory>

#include "shared/clsDatabase.h"

namespace postrove {

// The shared database object on OLE DB. The caller's thread has COM initialised.
std::shared_ptr<clsDatabase> CreateOleDbDatabase();

}  // namespace postrove
