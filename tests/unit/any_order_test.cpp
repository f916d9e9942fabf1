#include "support/AnyOrder.h"

#include <cstdlib>
#include <random>

#include "gtest/gtest.h"

namespace postrove::testing {
namespace {

// A thousand days, or as many as POSTROVE_DAYS says.
TEST(AnyOrder, BreaksNoPromise) {
  const char* const told = std::getenv("POSTROVE_DAYS");
  const long days = told ? std::atol(told) : 1000;
  long steps = 0;
  for (long day = 0; day < days && !HasFailure(); ++day) {
    SCOPED_TRACE(day);
    std::mt19937 random(static_cast<unsigned>(day));
    AnyOrder desk([&random](std::size_t count) { return random() % count; });
    steps += desk.Run(100);
  }
  RecordProperty("steps", std::to_string(steps));
}

}  // namespace
}  // namespace postrove::testing
