#include "oledb/statement_text.h"

#include <windows.h>

#include <oledb.h>
#include <oledberr.h>

#include "oledb/error.h"

namespace standin {

namespace {

// The character that ends what `opening` begins, 0 when it begins nothing.
wchar_t Closing(wchar_t opening) {
  switch (opening) {
    case L'\'':
    case L'"':
    case L'`':
      return opening;
    case L'[':
      return L']';
    default:
      return 0;
  }
}

}  // namespace

void CheckStatementText(std::wstring_view text) {
  for (size_t i = 0; i < text.size(); ++i) {
    if (const wchar_t closing = Closing(text[i])) {
      i = text.find(closing, i + 1);
      if (i == std::wstring_view::npos) return;  // the database reports it better
    } else if (text[i] == L';') {
      if (text.find_first_not_of(L" \t\r\n", i + 1) != std::wstring_view::npos) {
        throw ProviderError(DB_E_ERRORSINCOMMAND, L"Characters found after end of SQL statement.");
      }
      return;
    } else if (text.substr(i, 2) == L"--" || text.substr(i, 2) == L"/*") {
      throw ProviderError(DB_E_ERRORSINCOMMAND, L"Syntax error in query expression '" +
                                                    std::wstring(text.substr(i)) + L"'.");
    }
  }
}

}  // namespace standin
