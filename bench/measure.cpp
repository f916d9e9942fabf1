#include "measure.h"

#include <cstdio>

namespace postrove::bench {

void PrintTitle(const char* product, const char* floor) {
  std::printf("\n%s, against %s\n%-40s %10s %10s %7s %5s\n", product, floor, "", "floor ms",
              "product ms", "ratio", "aim");
  std::fflush(stdout);
}

void PrintTimes(const std::string& what, const Times& times, double aim) {
  const double ratio = times.product / times.floor;
  std::printf("%-40s %10.3f %10.3f %7.2f %5.1f%s\n", what.c_str(), times.floor, times.product,
              ratio, aim, ratio <= aim ? "" : "  missed");
  std::fflush(stdout);
}

void PrintTime(const std::string& what, double milliseconds) {
  std::printf("%-40s %10s %10.3f\n", what.c_str(), "", milliseconds);
  std::fflush(stdout);
}

void PrintCount(const std::string& what, long count) {
  std::printf("%-40s %10s %10ld\n", what.c_str(), "", count);
  std::fflush(stdout);
}

}  // namespace postrove::bench
