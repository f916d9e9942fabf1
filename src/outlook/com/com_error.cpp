#include "outlook/com/com_error.h"

#include <oleauto.h>

#include "shared/error.h"

namespace postrove::com {

std::wstring SystemText(HRESULT result) {
  wchar_t buffer[512];
  DWORD length = FormatMessageW(
      FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_MAX_WIDTH_MASK,
      nullptr, static_cast<DWORD>(result), 0, buffer, 512, nullptr);
  while (length > 0 && buffer[length - 1] <= L' ') --length;
  if (length > 0) return std::wstring(buffer, length);
  std::wstring number = L"Error 0x";
  for (int shift = 28; shift >= 0; shift -= 4) {
    number += L"0123456789ABCDEF"[static_cast<unsigned long>(result) >> shift & 0xF];
  }
  return number;
}

void ThrowHresult(HRESULT result, const wchar_t* member) {
  throw Error(result, member, SystemText(result));
}

void ThrowException(EXCEPINFO& exception, const wchar_t* member) {
  if (exception.pfnDeferredFillIn) exception.pfnDeferredFillIn(&exception);
  HRESULT number = exception.scode;
  if (!FAILED(number)) {
    // Old servers give a number of their own instead; Visual Basic shows it in the control
    // facility.
    number = exception.wCode != 0 ? MAKE_HRESULT(SEVERITY_ERROR, FACILITY_CONTROL, exception.wCode)
                                  : DISP_E_EXCEPTION;
  }
  std::wstring description;
  if (exception.bstrDescription) {
    description.assign(exception.bstrDescription, SysStringLen(exception.bstrDescription));
  }
  SysFreeString(exception.bstrSource);
  SysFreeString(exception.bstrDescription);
  SysFreeString(exception.bstrHelpFile);
  throw Error(number, member, description.empty() ? SystemText(number) : description);
}

}  // namespace postrove::com
