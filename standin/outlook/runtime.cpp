#include "outlook/runtime.h"

#include <algorithm>

namespace standin {

Runtime::Fault Runtime::Enter(const std::wstring& member, std::wstring text, bool invoke) {
  calls_.push_back({std::move(text), invoke});
  if (calls_.size() == failingCall_) return {failingCode_, true};
  const auto fault =
      std::find_if(memberFaults_.begin(), memberFaults_.end(),
                   [&](const MemberFault& candidate) { return candidate.member == member; });
  if (fault == memberFaults_.end()) return {};
  const HRESULT code = fault->code;
  memberFaults_.erase(fault);
  return {code, false};
}

void Runtime::FailCall(std::size_t n, HRESULT code) {
  failingCall_ = n == 0 ? 0 : calls_.size() + n;
  failingCode_ = code;
}

void Runtime::FailMember(std::wstring member, HRESULT code) {
  memberFaults_.push_back({std::move(member), code});
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
