#pragma once

#include <string>

namespace postrove {

// Reads single text values from the machine-wide part of the registry (HKEY_LOCAL_MACHINE),
// read-only. It keeps no state, raises no error and shows no message: any failure is empty text.
class clsRegistry {
 public:
  virtual ~clsRegistry() = default;

  // Name of the default mail program: the unnamed value of "Software\Clients\Mail".
  virtual std::wstring GetDefaultMailClient() = 0;

  // The text of a value below a key given relative to HKEY_LOCAL_MACHINE; an empty name is the
  // default value. The text ends at its first null; one longer than 259 characters is empty text.
  virtual std::wstring GetRegistryValue(const std::wstring& key, const std::wstring& name) = 0;
};

}  // namespace postrove
