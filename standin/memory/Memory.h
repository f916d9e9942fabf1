#pragma once

#include <utility>

// Memory that runs out for the product alone: its n-th allocation fails. A program that wants that
// brings operators new which ask Fails().
namespace postrove::testing::memory {

inline bool inProduct = false;
inline int allocations = 0;  // of the product
inline int failAt = 0;       // 0 for none

inline bool Fails() { return inProduct && ++allocations == failAt; }

// From here on the product is at work, or the fakes are, for whom there is always enough.
class Scope {
 public:
  explicit Scope(bool product) : before_(std::exchange(inProduct, product)) {}
  ~Scope() { inProduct = before_; }
  Scope(const Scope&) = delete;
  Scope& operator=(const Scope&) = delete;

 private:
  const bool before_;
};

}  // namespace postrove::testing::memory
