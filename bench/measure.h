#pragma once

#include <algorithm>
#include <chrono>
#include <limits>
#include <string>

// Two ways to the same result, timed in turns.
namespace postrove::bench {

// Milliseconds, the best of all runs.
struct Times {
  double floor = std::numeric_limits<double>::max();
  double product = std::numeric_limits<double>::max();
};

template <typename Action>
double Milliseconds(Action action) {
  const auto start = std::chrono::steady_clock::now();
  action();
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start)
      .count();
}

// Either action gives back the milliseconds that count.
template <typename Floor, typename Product>
Times Compare(int runs, Floor floor, Product product) {
  Times best;
  for (int i = 0; i < runs; ++i) {
    best.floor = std::min(best.floor, floor());
    best.product = std::min(best.product, product());
  }
  return best;
}

// One line each: what is measured and what with; then a size, its times, their ratio and the aim.
void PrintTitle(const char* product, const char* floor);
void PrintTimes(const std::string& what, const Times& times, double aim);

// A time that has no floor.
void PrintTime(const std::string& what, double milliseconds);

}  // namespace postrove::bench
