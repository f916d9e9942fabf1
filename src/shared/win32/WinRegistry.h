#pragma once

#include "shared/clsRegistry.h"

namespace postrove {

// clsRegistry over the registry's ANSI calls: key path and value name go through the system code
// page, and so does the value.
class WinRegistry final : public clsRegistry {
 public:
  std::wstring GetDefaultMailClient() override;
  std::wstring GetRegistryValue(const std::wstring& key, const std::wstring& name) override;
};

}  // namespace postrove
