#include "outlook/com/com_error.h"

#include <oleauto.h>

#include "shared/error.h"
#include "shared/win32/system_error.h"

namespace postrove::com {

namespace {

// Outlook up to 2003 leaves anything in bits 20 to 30 of its HRESULTs.
std::wstring TextOf(HRESULT result) {
  constexpr DWORD kStrayBits = 0x7FF00000;
  const auto code = static_cast<DWORD>(result);
  const std::wstring text = SystemText(code & ~kStrayBits);
  return text.empty() ? SystemMessage(code) : text;
}

}  // namespace

void ThrowHresult(HRESULT result, const wchar_t* member) {
  throw Error(result, member, TextOf(result));
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
  throw Error(number, member, description.empty() ? TextOf(number) : description);
}

}  // namespace postrove::com
