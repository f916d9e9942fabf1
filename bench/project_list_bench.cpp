#include <stdexcept>

#include "benchmarks.h"
#include "measure.h"
#include "product_on.h"

namespace postrove::bench {
namespace {

constexpr int kRuns = 7;
constexpr double kAim = 1.2;

}  // namespace

void MeasureProjectList(const Folders& folders) {
  PrintTitle("Loading the project list", "the bare provider");
  for (const std::wstring& folder : folders) {
    ProductOn product(folder);
    product.Create();
    std::size_t rows = 0;
    const auto bare = [&] {
      return Milliseconds([&] { rows = ReadBare(*product.shared.gDatabase); });
    };
    const auto list = [&] {
      product.Data().projects.ProjectList = {};
      return Milliseconds([&] { product.Data().projects.GetProjectList(); });
    };
    const Times times = Compare(kRuns, bare, list);
    if (rows == 0 || product.Data().projects.ProjectList.size() != rows) {
      throw std::runtime_error("the list and the rowset differ");
    }
    PrintTimes(std::to_string(rows) + " projects", times, kAim);
  }
}

}  // namespace postrove::bench
