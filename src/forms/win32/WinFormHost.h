#pragma once

#include <windows.h>

#include <memory>

#include "forms/kit/form_host.h"

namespace postrove::forms {

// The renderer that shows forms as real windows. `module` carries the icons and, as resource 2, the
// manifest that selects visual styles; without either the windows only look plainer.
// Thread: the host and everything it shows belong to the thread that calls ShowModal. Destroy the
// host after the last ShowModal returned; it then unregisters its window class.
std::shared_ptr<FormHost> CreateWinFormHost(HINSTANCE module);

}  // namespace postrove::forms
