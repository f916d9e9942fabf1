#include "outlook/runtime.h"

#include <algorithm>

namespace standin {

HRESULT Runtime::Enter(std::wstring call) {
  calls_.push_back(std::move(call));
  return calls_.size() == failingCall_ ? failingCode_ : S_OK;
}

void Runtime::FailCall(std::size_t n, HRESULT code) {
  failingCall_ = n == 0 ? 0 : calls_.size() + n;
  failingCode_ = code;
}

std::vector<Leak> Runtime::Living() const {
  std::vector<Leak> result;
  for (const Tracked* object : living_) {
    const auto known = std::find_if(result.begin(), result.end(),
                                    [&](const Leak& leak) { return leak.name == object->Name(); });
    if (known == result.end()) {
      result.push_back({object->Name(), object->References()});
    } else {
      known->references += object->References();
    }
  }
  return result;
}

Tracked::Tracked(std::shared_ptr<Runtime> runtime, std::wstring name)
    : runtime_(std::move(runtime)), name_(std::move(name)) {
  runtime_->living_.push_back(this);
}

Tracked::~Tracked() { std::erase(runtime_->living_, this); }

ULONG Tracked::Drop() {
  const ULONG left = --references_;
  if (left == 0) delete this;
  return left;
}

}  // namespace standin
