#pragma once

#include <windows.h>

namespace standin {

// This provider's class.
// {C3CA9F78-FF5D-43AB-B732-7E4CD1DC6260}
inline constexpr CLSID kProviderClass = {
    0xc3ca9f78, 0xff5d, 0x43ab, {0xb7, 0x32, 0x7e, 0x4c, 0xd1, 0xdc, 0x62, 0x60}};

// Makes this module the machine's provider "Microsoft.Jet.OLEDB.4.0". Refused, with nothing
// changed, anywhere but under Wine (ERROR_NOT_SUPPORTED) and where another class has the name
// (ERROR_ALREADY_EXISTS), both as HRESULTs.
HRESULT Register(HMODULE module);

}  // namespace standin
