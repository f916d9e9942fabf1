#include <stdexcept>

#include "benchmarks.h"
#include "controller/project_box.h"
#include "measure.h"
#include "memory/Product.h"

namespace postrove::bench {
namespace {

constexpr int kProjects = 100000;
constexpr int kRuns = 40;
constexpr double kAim = 1.5;

// All but the last share a long beginning, as the parts of one large site do.
std::vector<Project> Projects() {
  std::vector<Project> projects;
  for (int i = 1; i <= kProjects; ++i) {
    const std::wstring number = text::FromNumber(1000000 + i);
    const bool last = i == kProjects;
    projects.push_back({L"24-" + number, last ? L"Yard" : L"Harbour Bridge, Section " + number,
                        i % 2 == 0 ? std::wstring() : L"C:\\Projects\\24-" + number + L"\\", true,
                        i});
  }
  return projects;
}

wchar_t Lower(wchar_t c) { return c >= L'A' && c <= L'Z' ? static_cast<wchar_t>(c + 32) : c; }

// The plainest scan: ASCII only.
std::size_t Scan(const std::vector<std::wstring>& items, const std::wstring& prefix) {
  for (std::size_t row = 0; row < items.size(); ++row) {
    const std::wstring& item = items[row];
    std::size_t i = 0;
    while (i < prefix.size() && i < item.size() && Lower(item[i]) == Lower(prefix[i])) ++i;
    if (i == prefix.size()) return row;
  }
  return items.size();
}

void MeasureKey(forms::frmPostrove& form, const char* what, const std::wstring& typed) {
  forms::Control& combo = form.cboPostrove;
  const std::wstring before = typed.substr(0, typed.size() - 1);
  std::size_t scanned = 0;
  const auto scan = [&] { return Milliseconds([&] { scanned = Scan(combo.Items(), typed); }); };
  const auto key = [&] {
    combo.UserTyped(before, static_cast<int>(before.size()), 0);
    return Milliseconds([&] { combo.UserPressed(typed.back()); });
  };
  const Times times = Compare(scan, key);
  if (combo.ListIndex() != static_cast<int>(scanned)) throw std::runtime_error("not completed");
  PrintTimes(what, times, kAim);
}

}  // namespace

void MeasureTyping() {
  testing::Product product;
  product.Start();
  postrove::Projects& projects = product.Data().projects;
  product.forms->Expect([&](forms::Form& shown) {
    auto& form = static_cast<forms::frmPostrove&>(shown);
    projects.ProjectList = Projects();
    PrintTitle("A key in the project box of 100,000 projects", "a plain scan of its items");
    double fill = 1e9, find = 1e9;
    for (int i = 0; i < kRuns; ++i) {
      fill = std::min(fill, Milliseconds([&] {
                        FillProjectCombo(form.cboPostrove, projects.ProjectList, {});
                      }));
      find = std::min(find, Milliseconds([&] { projects.FindProject(L"missing", {}); }));
    }
    MeasureKey(form, "completed by the last, first letter", L"y");
    MeasureKey(form, "completed by the last, whole text", L"yard: 24-1100000");
    MeasureKey(form, "by one in the middle, its name", L"harbour bridge, section 1050000");
    MeasureKey(form, "by the last but one, its name", L"harbour bridge, section 1099999");
    PrintTime("filling the project box", fill);
    PrintTime("looking for a number that is not there", find);
    form.Unload();
  });
  product.Click();
}

}  // namespace postrove::bench
