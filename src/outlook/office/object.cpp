#include "outlook/office/object.h"

#include <cmath>
#include <limits>
#include <optional>

#include "shared/error.h"
#include "shared/text.h"

namespace postrove::office {

namespace {

[[noreturn]] void ThrowTypeMismatch(const wchar_t* wanted) {
  throw Error(kTypeMismatch, L"office::Value",
              std::wstring(L"A value from Outlook is not ") + wanted + L".");
}

// What a text is read as; nothing when it is no such thing.
template <class T>
T Known(const std::optional<T>& read, const wchar_t* wanted) {
  if (!read) ThrowTypeMismatch(wanted);
  return *read;
}

std::int32_t Rounded(double number) {
  if (!(std::abs(number) < std::numeric_limits<std::int32_t>::max())) {
    ThrowTypeMismatch(L"a whole number");
  }
  return static_cast<std::int32_t>(std::nearbyint(number));
}

}  // namespace

bool ToBool(const Value& value) {
  if (const auto* flag = std::get_if<bool>(&value)) return *flag;
  if (const auto* whole = std::get_if<std::int32_t>(&value)) return *whole != 0;
  if (const auto* number = std::get_if<double>(&value)) return *number != 0;
  if (std::holds_alternative<Empty>(value)) return false;
  if (const auto* words = std::get_if<std::wstring>(&value)) {
    return Known(text::ToBoolean(*words), L"true or false");
  }
  ThrowTypeMismatch(L"true or false");
}

std::int32_t ToLong(const Value& value) {
  if (const auto* whole = std::get_if<std::int32_t>(&value)) return *whole;
  if (const auto* flag = std::get_if<bool>(&value)) return *flag ? -1 : 0;
  if (const auto* number = std::get_if<double>(&value)) return Rounded(*number);
  if (std::holds_alternative<Empty>(value)) return 0;
  if (const auto* words = std::get_if<std::wstring>(&value)) {
    return Rounded(Known(text::ToNumber(*words), L"a whole number"));
  }
  ThrowTypeMismatch(L"a whole number");
}

std::wstring ToText(const Value& value) {
  if (const auto* words = std::get_if<std::wstring>(&value)) return *words;
  if (const auto* whole = std::get_if<std::int32_t>(&value)) return text::FromNumber(*whole);
  if (const auto* flag = std::get_if<bool>(&value)) return *flag ? L"True" : L"False";
  if (std::holds_alternative<Empty>(value)) return {};
  ThrowTypeMismatch(L"a text");
}

ObjectPtr ToObject(const Value& value) {
  if (const auto* object = std::get_if<ObjectPtr>(&value)) return *object;
  if (std::holds_alternative<Empty>(value)) return nullptr;
  ThrowTypeMismatch(L"an object");
}

}  // namespace postrove::office
