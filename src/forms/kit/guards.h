#pragma once

#include <memory>
#include <utility>

#include "forms/kit/form.h"
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

// A topmost form lowered for a scope, while a dialog that it opened is up. Scopes nest: `depth`
// counts those that are open, and the form rises again with the last one.
class Lowered {
 public:
  Lowered(FormHost& host, std::shared_ptr<Form> form, int& depth)
      : host_(host), form_(std::move(form)), depth_(depth) {
    if (depth_++ == 0) host_.SetTopmost(*form_, false);
  }
  ~Lowered() {
    if (--depth_ == 0 && !form_->IsUnloaded()) host_.SetTopmost(*form_, true);
  }
  Lowered(const Lowered&) = delete;
  Lowered& operator=(const Lowered&) = delete;

 private:
  FormHost& host_;
  const std::shared_ptr<Form> form_;
  int& depth_;
};

}  // namespace postrove::forms
