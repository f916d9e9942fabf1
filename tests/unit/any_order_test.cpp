#include "support/AnyOrder.h"

#include <cstdlib>
#include <new>
#include <random>

#include "gtest/gtest.h"

[[gnu::noinline]] void* operator new(std::size_t size) {
  void* const memory = postrove::testing::memory::Fails() ? nullptr : std::malloc(size);
  if (!memory) throw std::bad_alloc();
  return memory;
}
[[gnu::noinline]] void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return std::malloc(size);
}
[[gnu::noinline]] void operator delete(void* memory) noexcept { std::free(memory); }
[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }

namespace postrove::testing {
namespace {

// How many days POSTROVE_DAYS says; 0 when it says nothing.
long DaysTold() {
  const char* const told = std::getenv("POSTROVE_DAYS");
  return told ? std::atol(told) : 0;
}

// A thousand days, or as many as POSTROVE_DAYS says.
TEST(AnyOrder, BreaksNoPromise) {
  const long days = DaysTold() > 0 ? DaysTold() : 1000;
  long steps = 0;
  for (long day = 0; day < days && !HasFailure(); ++day) {
    SCOPED_TRACE(day);
    std::mt19937 random(static_cast<unsigned>(day));
    AnyOrder desk([&random](std::size_t count) { return random() % count; });
    steps += desk.Run(100);
  }
  RecordProperty("steps", std::to_string(steps));
}

// Five days, or a thousandth of POSTROVE_DAYS, again and again until each of their calls and
// allocations has failed once.
TEST(AnyOrder, AnySingleFailureLosesNothing) {
  const long days = DaysTold() > 0 ? DaysTold() / 1000 : 5;
  long runs = 0;
  for (long day = 0; day < days; ++day) {
    for (const AnyOrder::Kind kind :
         {AnyOrder::kOffice, AnyOrder::kFiles, AnyOrder::kDatabase, AnyOrder::kMemory}) {
      int made = 0;
      for (int n = 0; n <= made && !HasFailure(); ++n, ++runs) {
        SCOPED_TRACE(::testing::Message() << "day " << day << ", kind " << kind << ", call " << n);
        std::mt19937 random(static_cast<unsigned>(day));
        AnyOrder desk([&random](std::size_t count) { return random() % count; },
                      AnyOrder::Failure{kind, n});
        desk.Run(40);
        if (n == 0) made = desk.Count(kind);
      }
      EXPECT_TRUE(made > 0 || HasFailure());
    }
  }
  RecordProperty("runs", std::to_string(runs));
}

}  // namespace
}  // namespace postrove::testing
