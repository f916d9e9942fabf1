// The add-in's life in Outlook, in every version: loading, windows that come and go, shutting down.

#include <atomic>

#include "product_run.h"

namespace {

using namespace standin;

constexpr int kVersions[] = {9, 10, 11, 12, 14, 15, 16};
constexpr ItemKind kOtherItems[] = {ItemKind::kAppointment, ItemKind::kContact, ItemKind::kNote};

// The captions of the add-in's buttons in a window.
std::vector<std::wstring> Buttons(const Inspector& inspector) {
  std::vector<std::wstring> captions;
  for (const auto& bar : inspector.Bars()) {
    for (const auto& control : bar->controls) {
      if (control->tag == kAddInButtonTag) captions.push_back(control->caption);
    }
  }
  return captions;
}

void Load(Host& host) {
  const auto loaded = host.LoadAddIns();
  ASSERT_EQ(loaded.size(), 1u);
  EXPECT_EQ(loaded[0].progId, L"Postrove.Connect");
  EXPECT_EQ(loaded[0].result, S_OK);
}

class Lifecycle : public ::testing::TestWithParam<int> {
 protected:
  std::unique_ptr<Host> Start() {
    Options options;
    options.version = GetParam();
    return std::make_unique<Host>(options);
  }
  const run::Registered registered_;
};

TEST_P(Lifecycle, TwoHundredWindowsLeaveNoReference) {
  const auto host = Start();
  Load(*host);
  std::vector<Inspector*> open;
  for (int i = 0; i < 200; ++i) {
    const bool sent = i % 2 == 0;
    const Editor editor = i % 3 == 0 ? Editor::kWord : i % 3 == 1 ? Editor::kHtml : Editor::kText;
    const std::size_t calls = host->CallCount();
    Inspector& inspector = host->Open(run::Mail(L"Mail"), sent, ItemKind::kMail, editor);
    EXPECT_LT(host->CallCount(), calls + 30) << "each can wait for a server";
    ASSERT_EQ(Buttons(inspector),
              std::vector<std::wstring>{sent ? L"SaveToProject" : L"Pos&trove"});
    open.push_back(&inspector);
    if (i % 10 == 9) {
      Inspector& other = host->Open(run::Mail(L"Other"), false, kOtherItems[i / 10 % 3]);
      EXPECT_TRUE(Buttons(other).empty());
      EXPECT_TRUE(host->Close(other));
    }
    if (open.size() == 4) {  // the one in the middle first
      for (const std::size_t n : {1u, 0u, 1u}) {
        EXPECT_TRUE(host->Close(*open[n]));
        open.erase(open.begin() + static_cast<std::ptrdiff_t>(n));
      }
    }
  }
  host->Quit();
  EXPECT_EQ(run::Held(*host), "");
  EXPECT_TRUE(host->Core().EventFailures().empty());
  EXPECT_EQ(registered_.Module().CanUnloadNow(), S_OK);
}

TEST_P(Lifecycle, SwitchedOffAndOnWhileOutlookRuns) {
  const auto host = Start();
  Load(*host);
  Inspector& before = host->Open(run::Mail(L"Before"));
  host->DisconnectAddIns();
  EXPECT_FALSE(host->Leaks().empty());  // the tracker keeps the application
  Inspector& during = host->Open(run::Mail(L"During"));
  EXPECT_TRUE(Buttons(during).empty());
  host->Click(before);  // nobody listens any more, and nothing breaks
  // Ticked again: Outlook is long up, so OnStartupComplete does not come.
  CLSID clsid;
  ASSERT_EQ(CLSIDFromProgID(L"Postrove.Connect", &clsid), S_OK);
  ComPtr<IUnknown> addIn;
  ASSERT_EQ(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&addIn)), S_OK);
  EXPECT_EQ(host->Connect(addIn.Get(), ConnectMode::kAfterStartup, true), S_OK);
  addIn.Reset();
  Inspector& after = host->Open(run::Mail(L"After"));
  EXPECT_EQ(Buttons(after).size(), 1u);
  host->Quit();
  EXPECT_EQ(run::Held(*host), "");
}

// Its dialog is open when the user switches the add-in off: it goes with it.
TEST_P(Lifecycle, SwitchedOffAndThenOutlookCloses) {
  static Host* switchedOff = nullptr;
  static std::atomic<bool> seen;
  seen = false;
  const auto host = Start();
  Load(*host);
  Inspector& inspector = host->Open(run::Mail(L"Mail"));
  switchedOff = host.get();
  // Outlook does it on its own thread, in the dialog's message loop.
  struct Timer {
    static void CALLBACK Rang(HWND, UINT, UINT_PTR timer, DWORD) {
      if (!seen) return;
      KillTimer(nullptr, timer);
      switchedOff->DisconnectAddIns();
    }
  };
  SetTimer(nullptr, 0, 10, Timer::Rang);
  run::Click(*host, inspector, [](const run::Window&) {
    seen = true;
    run::WaitFor("the end of the dialog", [] { return !FindWindowW(L"PostroveForm", nullptr); });
  });
  host->Quit();
  EXPECT_EQ(run::Held(*host), "");
}

// Whatever opens, closes and comes to the front: the button of each window files the message of the
// window in front, once. Command bars can come late, an item's Close can leave its window open, and
// an item that is asked for its inspector meanwhile gets one that nobody sees.
TEST(Buttons, OfAllWindowsFileTheActiveMessageOnce) {
  const run::Registered registered;
  for (const int version : {9, 11, 16}) {
    for (const bool late : {false, true}) {
      SCOPED_TRACE(::testing::Message() << "version " << version << ", late bars " << late);
      Options options;
      options.version = version;
      options.commandBarsFromActivate = late;
      Host host(options);
      Load(host);
      std::vector<Inspector*> open;
      const auto show = [&](const wchar_t* subject, Editor editor) {
        open.push_back(&host.Open(run::Mail(subject), true, ItemKind::kMail, editor));
      };
      const auto close = [&](std::size_t n) {
        EXPECT_TRUE(host.Close(*open[n]));
        open.erase(open.begin() + static_cast<std::ptrdiff_t>(n));
      };
      const auto clickAll = [&] {
        for (Inspector* const window : open) {
          int dialogs = 0;
          run::Click(host, *window, [&](const run::Window& save) {
            EXPECT_EQ(save.Value(L"File Name"), window->Item()->Message().subject);
            ++dialogs;
            save.Press(L"Close");
          });
          EXPECT_EQ(dialogs, 1);
        }
      };
      show(L"A", Editor::kHtml);
      show(L"B", Editor::kWord);
      show(L"C", Editor::kText);
      close(2);
      close(1);
      clickAll();  // A alone
      show(L"D", Editor::kHtml);
      Inspector& contact = host.Open(run::Mail(L"Other"), false, ItemKind::kContact);
      host.Close(contact);
      host.CloseAndCancel(*open[1]);
      clickAll();
      host.CloseAndCancel(*open[0]);
      close(1);
      show(L"E", Editor::kWord);
      host.Activate(*open[0]);
      clickAll();
      close(0);
      clickAll();
      host.Quit();
      EXPECT_EQ(run::Held(host), "");
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Versions, Lifecycle, ::testing::ValuesIn(kVersions),
                         ::testing::PrintToStringParamName());

// Every call of loading, a first window, its closing and the shut-down fails once: nothing leaves
// the add-in, the next mail gets its button, and no reference stays.
TEST(LifecycleFailures, EachCallInTurn) {
  const run::Registered registered;
  for (const int version : {9, 16}) {
    std::size_t calls = 0;
    for (std::size_t n = 0; n == 0 || n <= calls; ++n) {
      SCOPED_TRACE(::testing::Message() << "version " << version << ", call " << n);
      Options options;
      options.version = version;
      Host host(options);
      host.FailCall(n, E_FAIL);
      host.LoadAddIns();
      const auto open = [&](Editor editor) -> Inspector& {
        const std::size_t before = host.CallCount();
        Inspector& inspector = host.Open(run::Mail(L"Mail"), true, ItemKind::kMail, editor);
        const bool struckHere = before < n && n <= host.CallCount();
        const std::size_t buttons = Buttons(inspector).size();
        EXPECT_TRUE(buttons == 1 || (struckHere && buttons == 0)) << buttons;
        return inspector;
      };
      Inspector& first = open(Editor::kWord);
      Inspector& second = open(Editor::kHtml);
      host.Close(second);
      host.Close(first);
      open(Editor::kText);
      host.Quit();
      EXPECT_EQ(run::Held(host), "");
      EXPECT_TRUE(host.Core().EventFailures().empty());
      if (n == 0) calls = host.CallCount();
    }
    EXPECT_GT(calls, 60u);
  }
}

}  // namespace
