#pragma once

#include <windows.h>

#include <oleauto.h>

#include <new>
#include <string>
#include <utility>

namespace standin {

// A failure with its text. Thrown inside the provider, never across an interface.
class ProviderError {
 public:
  ProviderError(HRESULT code, std::wstring text) : code_(code), text_(std::move(text)) {}

  HRESULT Code() const { return code_; }
  const std::wstring& Text() const { return text_; }

 private:
  HRESULT code_;
  std::wstring text_;
};

// Makes the error the calling thread's error object, as one of the interface `iid`.
void Publish(const ProviderError& error, REFIID iid) noexcept;

// Runs the body of an interface's method: its result is the method's, an exception becomes an
// HRESULT and, when it has a text, an error object. An older error object never survives.
template <typename Body>
HRESULT Entry(REFIID iid, Body body) noexcept {
  SetErrorInfo(0, nullptr);
  try {
    return body();
  } catch (const ProviderError& error) {
    Publish(error, iid);
    return error.Code();
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  } catch (...) {
    return E_UNEXPECTED;
  }
}

}  // namespace standin
