#pragma once

#include <windows.h>

#include <oleauto.h>

namespace postrove {

// An owned VARIANT.
class Variant {
 public:
  Variant() noexcept { VariantInit(&variant_); }
  ~Variant() { VariantClear(&variant_); }
  Variant(Variant&& other) noexcept : variant_(other.variant_) { VariantInit(&other.variant_); }
  Variant(const Variant&) = delete;
  Variant& operator=(const Variant&) = delete;
  Variant& operator=(Variant&&) = delete;

  VARIANT* Get() { return &variant_; }
  VARIANT* operator->() { return &variant_; }

 private:
  VARIANT variant_;
};

}  // namespace postrove
