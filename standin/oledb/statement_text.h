#pragma once

#include <string_view>

namespace standin {

// Refuses, as Jet does, what SQLite would take: anything but blanks behind the semicolon that ends
// a statement, and comments. Quoted texts and bracketed names are left alone. Throws ProviderError
// with DB_E_ERRORSINCOMMAND.
void CheckStatementText(std::wstring_view text);

}  // namespace standin
