#include <windows.h>

#include <psapi.h>

#include <stdexcept>

#include "benchmarks.h"
#include "measure.h"
#include "product_on.h"

namespace postrove::bench {
namespace {

constexpr double kAim = 1.2;
constexpr double kAimOfMemory = 4;

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
    const Times times = Compare(bare, list);
    if (rows == 0 || product.Data().projects.ProjectList.size() != rows) {
      throw std::runtime_error("the list and the rowset differ");
    }
    PrintTimes(std::to_string(rows) + " projects", times, kAim);
  }
}

void MeasureMemory(const std::wstring& folder) {
  PrintTitle("Memory of the project list, in MB", "its texts alone");
  ProductOn product(folder);
  product.Create();
  const auto used = [] {
    PROCESS_MEMORY_COUNTERS counters{};
    GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
    return static_cast<double>(counters.PagefileUsage) / (1 << 20);
  };
  const double before = used();
  product.Data().projects.GetProjectList();
  const std::vector<Project>& list = product.Data().projects.ProjectList;
  Times sizes{0, used() - before};
  for (const Project& one : list) {
    sizes.floor += static_cast<double>(one.number.size() + one.name.size() + one.filePath.size()) *
                   sizeof(wchar_t) / (1 << 20);
  }
  PrintTimes(std::to_string(list.size()) + " projects", sizes, kAimOfMemory);
}

}  // namespace postrove::bench
