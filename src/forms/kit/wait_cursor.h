#pragma once

#include "forms/kit/form_host.h"

namespace postrove::forms {

// The wait cursor for a scope.
class WaitCursor {
 public:
  explicit WaitCursor(FormHost& host) : host_(host) { host_.SetWaitCursor(true); }
  ~WaitCursor() { host_.SetWaitCursor(false); }
  WaitCursor(const WaitCursor&) = delete;
  WaitCursor& operator=(const WaitCursor&) = delete;

 private:
  FormHost& host_;
};

}  // namespace postrove::forms
