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

// Either action gives back the milliseconds that count. They take turns until neither has become
// faster for a while, so that what else the machine does falls out.
template <typename Floor, typename Product>
Times Compare(Floor floor, Product product) {
  constexpr int kSteady = 25;
  constexpr double kLongest = 8000;
  Times best;
  double spent = 0;
  for (int since = 0; since < kSteady && spent < kLongest; ++since) {
    const Times now{floor(), product()};
    spent += now.floor + now.product;
    if (now.floor < best.floor * 0.99 || now.product < best.product * 0.99) since = 0;
    best.floor = std::min(best.floor, now.floor);
    best.product = std::min(best.product, now.product);
  }
  return best;
}

// One line each: what is measured and what with; then a size, its times, their ratio and the aim.
void PrintTitle(const char* product, const char* floor);
void PrintTimes(const std::string& what, const Times& times, double aim);

// A figure that has no floor.
void PrintTime(const std::string& what, double milliseconds);
void PrintCount(const std::string& what, long count);

}  // namespace postrove::bench
