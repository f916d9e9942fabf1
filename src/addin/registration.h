#pragma once

#include <windows.h>

namespace postrove::addin {

// Registers this DLL as a COM server and as an Outlook add-in, for the current user only: no
// administrator is needed and nothing is written outside HKEY_CURRENT_USER. Registering again
// overwrites. When a step fails, everything of this DLL's width is taken back and the step's
// HRESULT is returned.
//
// A 32-bit and a 64-bit DLL can be registered side by side: Windows keeps a CLSID key for each
// width, while the ProgID, the type library and the add-in entry are common to both.
HRESULT RegisterServer();

// Removes what RegisterServer wrote for this DLL's width; what both widths share goes with the last
// of them. Keys above ours go as well when nothing at all is left in them. Not being registered is
// no error.
HRESULT UnregisterServer();

}  // namespace postrove::addin
