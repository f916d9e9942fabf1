#pragma once

namespace postrove::forms {

// Runs an event's handler within a window procedure. Nothing may be thrown through Windows' frames;
// a handler that reports its failure did so before it threw, so an exception ends here.
template <typename Action>
void Guarded(Action&& action) noexcept {
  try {
    action();
  } catch (...) {
  }
}

}  // namespace postrove::forms
