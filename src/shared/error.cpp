#include "shared/error.h"

#include <new>

#include "shared/text.h"

namespace postrove {

Error CurrentError() {
  constexpr wchar_t kSource[] = L"Postrove";
  try {
    throw;
  } catch (const Error& error) {
    return error;
  } catch (const std::bad_alloc&) {
    return {kOutOfMemory, kSource, L"There is not enough memory."};
  } catch (const std::exception& exception) {
    return {kInternalError, kSource,
            L"An internal error occurred (" + text::FromUtf8(exception.what()) + L")."};
  } catch (...) {
    return {kInternalError, kSource, L"An unknown internal error occurred."};
  }
}

}  // namespace postrove
