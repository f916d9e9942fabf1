#include <windows.h>

#include <stdexcept>

#include "benchmarks.h"
#include "forms/win32/WinFormHost.h"
#include "measure.h"
#include "product_on.h"

namespace postrove::bench {
namespace {

constexpr double kAim = 1.3;

// Shows real windows, and closes each once it was activated and painted.
class ClosingHost final : public testing::ScriptedFormHost {
 public:
  std::chrono::steady_clock::time_point painted;

  void ShowModal(forms::Form& form) override {
    const auto activated = form.onActivate;
    form.onActivate = [this, &form, activated] {
      if (activated) activated();
      const HWND window = FindWindowW(nullptr, form.Caption().c_str());
      if (window && IsWindowVisible(window)) {
        RedrawWindow(window, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
        painted = std::chrono::steady_clock::now();
      }
      form.Unload();
    };
    host_->ShowModal(form);
  }
  void SetTopmost(forms::Form& form, bool topmost) override { host_->SetTopmost(form, topmost); }

 private:
  const std::shared_ptr<forms::FormHost> host_ =
      forms::CreateWinFormHost(GetModuleHandleW(nullptr));
};

}  // namespace

void MeasureClick(const Folders& folders) {
  PrintTitle("From a click to the painted dialog",
             "the bare provider and the dialog with an empty list");
  for (const std::wstring& folder : folders) {
    ProductOn product(folder);
    const auto host = std::make_shared<ClosingHost>();
    product.host = host;
    product.Start();
    product.outlook.Open(true)->item->properties[L"Subject"] = L"Minutes of the site meeting";

    const auto timed = [&](auto action) {
      const auto start = std::chrono::steady_clock::now();
      host->painted = {};
      action();
      if (host->painted < start) throw std::runtime_error("the dialog was not shown");
      return std::chrono::duration<double, std::milli>(host->painted - start).count();
    };
    std::size_t rows = 0;
    const auto bare = [&] {
      return timed([&] {
        rows = ReadBare(*product.shared.gDatabase);
        forms::frmPostrove form({});
        form.onActivate = [&] { host->SetTopmost(form, true); };
        host->ShowModal(form);
      });
    };
    const auto click = [&] {
      return timed([&] { product.Controller().mcbPostroveMenuButton_Click(); });
    };
    const Times times = Compare(bare, click);
    if (product.Data().projects.ProjectList.size() != rows) {
      throw std::runtime_error("the list and the rowset differ");
    }
    PrintTimes(std::to_string(rows) + " projects", times, kAim);
  }
}

}  // namespace postrove::bench
