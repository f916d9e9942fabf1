#pragma once

#include <windows.h>

#include <oleauto.h>

#include <optional>

#include "shared/clsDatabase.h"

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

// The text, number or Boolean that a VARIANT holds, as a cell; the empty one for Empty and Null.
// Whole numbers are whole unless 63 bits cannot hold them; currency, decimals and dates are
// doubles. Nothing for an object, an array or an error.
std::optional<Cell> ToCell(VARIANT& value);

}  // namespace postrove
