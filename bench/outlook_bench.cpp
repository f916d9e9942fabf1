// What the add-in costs Outlook: at its start, for each window, and to file a message.
#include <windows.h>

#include <algorithm>
#include <memory>
#include <stdexcept>
#include <utility>
#include <vector>

#include "benchmarks.h"
#include "measure.h"
#include "outlook/clsPROutlook.h"
#include "outlook/com/dispatch_object.h"
#include "outlook/events.h"
#include "outlook/host.h"
#include "outlook/ids.h"
#include "outlook/probe.h"
#include "product_on.h"
#include "shared/win32/WinSharedUtil.h"

namespace postrove::bench {
namespace {

using standin::ComPtr;

constexpr DISPID kNewInspector = 61441;
constexpr double kAimOfStart = 1.5;
constexpr double kAimOfWindow = 1.5;
constexpr double kAimOfFiling = 1.1;

standin::MessageData Minutes() {
  standin::MessageData message;
  message.subject = L"Minutes of the site meeting";
  message.senderName = L"Planning office";
  message.body = L"Please find the minutes attached.\r\n";
  message.html = L"<html><body><p>Please find the minutes attached.</p></body></html>";
  message.recipients.push_back({standin::RecipientKind::kTo, L"Site", L"site@example.com"});
  message.attachments.push_back(
      {L"minutes.pdf", L"application/pdf", L"", std::string(200000, 0x25)});
  return message;
}

// An Outlook with one add-in of a DLL, or with none.
class Office {
 public:
  explicit Office(const std::wstring& dll) {
    if (dll.empty()) return;
    module_ = LoadLibraryW(dll.c_str());
    const auto find = reinterpret_cast<decltype(&DllGetClassObject)>(
        reinterpret_cast<void*>(GetProcAddress(module_, "DllGetClassObject")));
    if (!find) throw std::runtime_error("no add-in");
    constexpr CLSID kConnect = {
        0x5A9FB8D1, 0xCDD3, 0x4CFF, {0x96, 0xC4, 0xCD, 0xD4, 0x6C, 0xBC, 0x7C, 0x5B}};
    ComPtr<IClassFactory> factory;
    Check(find(kConnect, IID_IClassFactory, reinterpret_cast<void**>(factory.GetAddressOf())));
    ComPtr<IUnknown> addIn;
    Check(factory->CreateInstance(nullptr, IID_IUnknown,
                                  reinterpret_cast<void**>(addIn.GetAddressOf())));
    Check(host.Connect(addIn.Get(), standin::ConnectMode::kStartup));
  }
  ~Office() {
    host.Quit();
    if (module_) FreeLibrary(module_);
  }
  Office(const Office&) = delete;
  Office& operator=(const Office&) = delete;

  standin::Host host;

 private:
  HMODULE module_ = nullptr;
};

}  // namespace

void MeasureStart(const AddIns& addIns) {
  PrintTitle("Start of Outlook, up to OnConnection", "a bare add-in that reads the same files");
  const auto start = [](const std::wstring& dll) {
    std::unique_ptr<Office> office;
    return Milliseconds([&] { office = std::make_unique<Office>(dll); });
  };
  PrintTimes("class creation to OnConnection",
             Compare([&] { return start(addIns.bare); }, [&] { return start(addIns.product); }),
             kAimOfStart);
}

void MeasureWindow(const AddIns& addIns) {
  PrintTitle("A mail window that opens", "a bare sink's button");
  Office bare(addIns.bare), product(addIns.product);
  const auto told = [](Office& office) {
    office.host.Open(Minutes());
    const ComPtr<IDispatch> active =
        standin::probe::Call(office.host.Application(), L"ActiveInspector").Object();
    return [&office, active] {
      const double time = Milliseconds([&] {
        std::vector<standin::Variant> arguments;
        arguments.push_back(standin::Variant::Object(active));
        office.host.Core().InspectorsEvents()->Raise(standin::kInspectorsEventsId, kNewInspector,
                                                     std::move(arguments));
      });
      office.host.Forget();
      return time;
    };
  };
  PrintTimes("NewInspector", Compare(told(bare), told(product)), kAimOfWindow);
}

void MeasureFiling(const std::wstring& folder) {
  PrintTitle("Filing a message with an attachment of 200 KB", "SaveAs alone");
  Office office(L"");
  testing::Product product;
  product.shared.gUtility = CreateWinSharedUtil();
  product.database->SetHandler([](const testing::RanStatement&) {
    return Rows{{L"2231", L"Mill Street", L"", true, std::int64_t{7}}};
  });
  product.Create();
  product.shared.gOutlook->SetApp(
      office::Application(com::WrapDispatch(office.host.Application().Get())));
  const std::wstring path = folder + L"\\Minutes.msg";
  const auto check = [&] {
    const std::vector<std::wstring>& saved = office.host.SavedFiles();
    if (saved.empty() || !DeleteFileW(saved.back().c_str())) {
      throw std::runtime_error("nothing was filed");
    }
    office.host.Forget();
  };
  const auto bare = [&] {
    standin::Inspector& window = office.host.Open(Minutes());
    const ComPtr<IDispatch> item = standin::probe::CurrentItem(office.host);
    const double time = Milliseconds([&] {
      standin::probe::Call(
          item, L"SaveAs",
          standin::probe::List(standin::Variant::Text(path), standin::Variant::Long(3)));
    });
    check();
    office.host.Close(window);
    return time;
  };
  double filing = 0;
  product.forms->everyone = [&](forms::Form& form) {
    auto& dialog = dynamic_cast<forms::frmPostrove&>(form);
    dialog.cboPostrove.UserTyped(L"Mill Street: 2231", 17, 0);
    dialog.txtSaveFolder.UserTyped(folder, 0, 0);
    dialog.txtSaveAsName.UserTyped(L"Minutes", 0, 0);
    filing = Milliseconds([&] { dialog.cmdPostrove(forms::kMainButton).UserClicked(); });
    form.Unload();
  };
  const auto click = [&] {
    standin::Inspector& window = office.host.Open(Minutes());
    ++product.outlook.clicks;  // each at a time of its own
    product.Controller().mcbPostroveMenuButton_Click();
    check();
    office.host.Close(window);
    return filing;
  };
  PrintTimes("from the main button to the file", Compare(bare, click), kAimOfFiling);
}

}  // namespace postrove::bench
