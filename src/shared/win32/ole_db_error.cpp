#include "shared/win32/ole_db_error.h"

#include <algorithm>
#include <string>
#include <vector>

#include "shared/error.h"
#include "shared/win32/ole_db.h"
#include "shared/win32/system_error.h"
#include "shared/win32/variant.h"

using Microsoft::WRL::ComPtr;

namespace postrove::ole_db {
namespace {

std::wstring TextOf(IErrorInfo* info) {
  Variant text;
  if (FAILED(info->GetDescription(&text->bstrVal)) || !text->bstrVal) return {};
  text->vt = VT_BSTR;
  std::wstring description(text->bstrVal, SysStringLen(text->bstrVal));
  while (!description.empty() && description.back() <= L' ') description.pop_back();
  return description;
}

// The texts of all records, newest first, each text once.
std::wstring TextOfRecords(IErrorRecords* records) {
  ULONG count = 0;
  if (FAILED(records->GetRecordCount(&count))) return {};
  std::vector<std::wstring> texts;
  std::wstring all;
  for (ULONG i = 0; i < count; ++i) {
    ComPtr<IErrorInfo> info;
    if (FAILED(records->GetErrorInfo(i, GetUserDefaultLCID(), info.GetAddressOf())) || !info) {
      continue;
    }
    std::wstring text = TextOf(info.Get());
    if (text.empty() || std::find(texts.begin(), texts.end(), text) != texts.end()) continue;
    if (!all.empty()) all += L"\r\n";
    all += text;
    texts.push_back(std::move(text));
  }
  return all;
}

std::wstring ProviderText() {
  ComPtr<IErrorInfo> info;
  if (GetErrorInfo(0, info.GetAddressOf()) != S_OK) return {};
  ComPtr<IErrorRecords> records;
  if (SUCCEEDED(info->QueryInterface(IID_IErrorRecords,
                                     reinterpret_cast<void**>(records.GetAddressOf())))) {
    std::wstring text = TextOfRecords(records.Get());
    if (!text.empty()) return text;
  }
  return TextOf(info.Get());
}

}  // namespace

void ForgetErrors() { SetErrorInfo(0, nullptr); }

void Check(HRESULT result, const wchar_t* source) {
  if (result == DB_S_STOPLIMITREACHED) {
    throw Error(E_FAIL, source, L"The database stopped before the last row.");
  }
  if (SUCCEEDED(result)) return;
  std::wstring description = ProviderText();
  if (description.empty()) description = SystemMessage(static_cast<DWORD>(result));
  throw Error(result, source, description);
}

}  // namespace postrove::ole_db
