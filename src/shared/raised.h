#pragma once

namespace postrove {

// A flag raised for a scope.
class Raised {
 public:
  explicit Raised(bool& flag) : flag_(flag) { flag_ = true; }
  ~Raised() { flag_ = false; }
  Raised(const Raised&) = delete;
  Raised& operator=(const Raised&) = delete;

 private:
  bool& flag_;
};

}  // namespace postrove
