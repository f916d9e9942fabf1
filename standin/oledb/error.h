#pragma once

#include <windows.h>

#include <oleauto.h>

#include <new>
#include <string>
#include <utility>

#include "oledb/fault_hook.h"

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

// Makes the error the calling thread's error object.
void Publish(const ProviderError& error) noexcept;

// Runs the body of an interface's method: its result is the method's, an exception becomes an
// HRESULT and, when it has a text, an error object. An older one is left as it is: the consumer
// must not take it for the reason.
template <typename Body>
HRESULT Entry(const char* method, Body body) noexcept {
  try {
    const HRESULT planned = faultHook ? faultHook->Enter(method) : S_OK;
    if (FAILED(planned)) return planned;
    const HRESULT result = body();
    return planned != S_OK && SUCCEEDED(result) ? planned : result;
  } catch (const ProviderError& error) {
    Publish(error);
    return error.Code();
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  } catch (...) {
    return E_UNEXPECTED;
  }
}

}  // namespace standin
