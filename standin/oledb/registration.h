#pragma once

#include <windows.h>

namespace standin {

// Makes this module the machine's provider "Microsoft.Jet.OLEDB.4.0". Refused, with nothing
// changed, anywhere but under Wine (ERROR_NOT_SUPPORTED) and where another class has the name
// (ERROR_ALREADY_EXISTS), both as HRESULTs.
HRESULT Register(HMODULE module);

// Takes back what Register wrote, and only that.
HRESULT Unregister();

}  // namespace standin
