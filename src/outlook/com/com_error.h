#pragma once

#include <windows.h>

#include <oaidl.h>

namespace postrove::com {

// Throws Error: number is the HRESULT, source the member, description the system's text.
[[noreturn]] void ThrowHresult(HRESULT result, const wchar_t* member);

// Throws Error for what a server reported with DISP_E_EXCEPTION; frees the texts of `exception`.
[[noreturn]] void ThrowException(EXCEPINFO& exception, const wchar_t* member);

}  // namespace postrove::com
