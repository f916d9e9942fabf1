#pragma once

namespace postrove {

// The empty alternative of a variant with texts: a NULL, or Visual Basic's Empty. It is copied by
// code and not bitwise, or libstdc++ takes the variant for one that always holds a value, and ends
// the process when the copy of a text fails for want of memory.
struct Empty {
  Empty() = default;
  Empty(const Empty&) noexcept {}
  Empty& operator=(const Empty&) noexcept { return *this; }
  bool operator==(const Empty&) const { return true; }
};

}  // namespace postrove
