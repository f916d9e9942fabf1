#include "forms/win32/visual_styles.h"

#include <commctrl.h>

namespace postrove::forms {

VisualStyles::VisualStyles(HINSTANCE module) {
  ACTCTXW request = {};
  request.cbSize = sizeof request;
  request.dwFlags = ACTCTX_FLAG_HMODULE_VALID | ACTCTX_FLAG_RESOURCE_NAME_VALID;
  request.hModule = module;
  request.lpResourceName = MAKEINTRESOURCEW(2);
  // A source file is asked for even though the module is given.
  wchar_t path[MAX_PATH] = {};
  GetModuleFileNameW(module, path, MAX_PATH - 1);
  request.lpSource = path;
  context_ = CreateActCtxW(&request);
  const Scope scope(*this);
  const INITCOMMONCONTROLSEX classes = {sizeof classes, ICC_STANDARD_CLASSES | ICC_WIN95_CLASSES};
  InitCommonControlsEx(&classes);
}

VisualStyles::~VisualStyles() {
  if (context_ != INVALID_HANDLE_VALUE) ReleaseActCtx(context_);
}

VisualStyles::Scope::Scope(const VisualStyles& styles)
    : active_(styles.context_ != INVALID_HANDLE_VALUE &&
              ActivateActCtx(styles.context_, &cookie_)) {}

VisualStyles::Scope::~Scope() {
  if (active_) DeactivateActCtx(0, cookie_);
}

}  // namespace postrove::forms
