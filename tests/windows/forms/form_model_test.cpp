// Changes of the model reach the windows, and come back from them only once.
#include <windows.h>

#include <commctrl.h>
#include <objbase.h>
#include <richedit.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "dialog_user.h"
#include "forms/frmPostrove.h"
#include "forms/win32/WinFormHost.h"
#include "gtest/gtest.h"
#include "shared/text.h"

namespace postrove::forms {
namespace {

using testing::Dialog;
using testing::DialogUser;
using testing::EventLog;
using testing::Record;
using testing::WaitFor;

class FormModel : public ::testing::Test {
 protected:
  FormModel() { Record(form, log); }

  // `change` runs in the dialog's thread, within a click; then the user looks.
  void Show(const std::function<void()>& change, const std::function<void(Dialog&)>& look) {
    form.cmdPostrove(kHelpButton).onClick = [&] {
      change();
      log.Add("changed");
    };
    const DialogUser user([&] {
      Dialog dialog(L"Postrove");
      dialog.Click(form.cmdPostrove(kHelpButton));
      WaitFor("the change", [&] { return log.Has("changed"); });
      look(dialog);
      dialog.Close();
    });
    host->ShowModal(form);
  }

  std::shared_ptr<FormHost> host = CreateWinFormHost(GetModuleHandleW(nullptr));
  EventLog log;
  frmPostrove form{{}};
};

TEST_F(FormModel, ShowsWhatWasSetBeforeAndEveryLaterChange) {
  RECT before = {};
  form.cmdPostrove(kAddProjectButton).SetVisible(false);
  form.txtSaveAsName.SetEnabled(false);
  form.txtSaveAsName.SetText(L"name");
  Show(
      [&] {
        form.txtSaveFolder.SetText(L"new");
        form.txtSaveFolder.Select(1, 2);
        form.txtSaveFolder.SetLocked(true);
        form.rtfFieldHints.SetText(L"\r\nHint: x");
        form.lblVersion.SetText(L"1.0 0");
        form.lblAlert(kNameLabel).SetVisible(true);
        form.cmdPostrove(kEditProjectButton).SetEnabled(false);
        form.cmdPostrove(kMainButton).SetText(L"Save");
        Box place = form.lblAlert(kNameLabel).Place();
        place.left += 1440;
        form.lblAlert(kNameLabel).SetPlace(place);
        form.cboPostrove.SetItems({L"A: 1"});
        form.cboPostrove.AddItem(L"B: 2");
        form.cboPostrove.SetListIndex(1);
      },
      [&](Dialog& dialog) {
        const HWND folder = dialog.Item(form.txtSaveFolder);
        EXPECT_FALSE(IsWindowVisible(dialog.Item(form.cmdPostrove(kAddProjectButton))));
        EXPECT_FALSE(IsWindowEnabled(dialog.Item(form.txtSaveAsName)));
        EXPECT_EQ(dialog.TextOf(form.txtSaveAsName), L"name");
        EXPECT_EQ(dialog.TextOf(form.txtSaveFolder), L"new");
        EXPECT_EQ(SendMessageW(folder, EM_GETSEL, 0, 0), MAKELONG(1, 3));
        EXPECT_NE(GetWindowLongPtrW(folder, GWL_STYLE) & ES_READONLY, 0);
        EXPECT_NE(dialog.TextOf(form.rtfFieldHints).find(L"Hint: x"), std::wstring::npos);
        EXPECT_EQ(dialog.TextOf(form.lblVersion), L"1.0 0");
        EXPECT_TRUE(IsWindowVisible(dialog.Item(form.lblAlert(kNameLabel))));
        EXPECT_FALSE(IsWindowEnabled(dialog.Item(form.cmdPostrove(kEditProjectButton))));
        EXPECT_EQ(dialog.TextOf(form.cmdPostrove(kMainButton)), L"&Save");
        EXPECT_EQ(dialog.TextOf(form.cboPostrove), L"B: 2");
        GetWindowRect(dialog.Item(form.lblAlert(kNameLabel)), &before);
        RECT button;
        GetWindowRect(dialog.Item(form.cmdPostrove(kEditProjectButton)), &button);
        // The design puts the marker 75 twips beside the button.
        EXPECT_GT(before.left - button.right, 90);
        // Of the common controls that have the system's themes.
        HMODULE library = nullptr;
        GetModuleHandleExW(
            GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
            reinterpret_cast<const wchar_t*>(
                GetClassLongPtrW(dialog.Item(form.cmdPostrove(kMainButton)), GCLP_WNDPROC)),
            &library);
        wchar_t path[MAX_PATH] = {};
        GetModuleFileNameW(library, path, MAX_PATH);
        EXPECT_NE(text::ReplaceIgnoreCase(path, L"comctl32", L""), path);
      });
  int changes = 0;
  for (const std::string& event : log.All()) {
    changes += event == "txtSaveFolder change new" || event == "cboPostrove change B: 2";
    EXPECT_EQ(event.find("cboPostrove click"), std::string::npos);
  }
  EXPECT_EQ(changes, 2) << "a change from code is told once";
}

// The text colour and the ground that a control is painted with.
std::pair<COLORREF, COLORREF> ColorsOf(const Dialog& dialog, const Control& control) {
  const HWND window = dialog.Item(control);
  const HDC dc = GetDC(window);
  const auto brush = reinterpret_cast<HBRUSH>(SendMessageW(dialog.Window(), WM_CTLCOLOREDIT,
                                                           reinterpret_cast<WPARAM>(dc),
                                                           reinterpret_cast<LPARAM>(window)));
  LOGBRUSH ground = {};
  GetObjectW(brush, sizeof ground, &ground);
  const std::pair<COLORREF, COLORREF> colors{GetTextColor(dc), ground.lbColor};
  ReleaseDC(window, dc);
  return colors;
}

// Whatever colours the system has, also when they change while the dialog is open: a text can be
// told from its ground, and a locked box from others.
TEST_F(FormModel, ShowsReadableColors) {
  constexpr Color kWhite = 0xFFFFFF;
  constexpr Color kBlack = 0;
  constexpr Color kBlue = 0xCC6600;
  const struct {
    Color text;
    COLORREF ground, shown;
  } kCases[] = {{kBlack, kYellow, RGB(0, 0, 0)},     {kWhite, kYellow, RGB(0, 0, 0)},
                {kRed, kYellow, RGB(255, 0, 0)},     {kRed, kBlack, RGB(255, 255, 255)},
                {kBlue, kBlack, RGB(255, 255, 255)}, {kBlue, kWhite, RGB(0, 102, 204)}};
  const int kParts[] = {COLOR_WINDOW, COLOR_BTNFACE, COLOR_INFOBK, COLOR_GRAYTEXT, COLOR_HOTLIGHT};
  constexpr int kCount = 5;
  const COLORREF kDark[kCount] = {0, 0, 0, RGB(63, 242, 63), RGB(255, 255, 0)};
  COLORREF before[kCount];
  for (int i = 0; i < kCount; ++i) before[i] = GetSysColor(kParts[i]);
  Show([&] { form.txtSaveFolder.SetLocked(true); },
       [&](Dialog& dialog) {
         for (const auto& one : kCases) {
           form.txtSaveAsName.SetForeColor(one.text);
           form.txtSaveAsName.SetBackColor(one.ground);
           EXPECT_EQ(ColorsOf(dialog, form.txtSaveAsName), (std::pair{one.shown, one.ground}));
         }
         EXPECT_EQ(ColorsOf(dialog, form.txtSaveFolder).first, GetSysColor(COLOR_WINDOWTEXT));
         SetSysColors(kCount, kParts, kDark);
         SendMessageW(dialog.Window(), WM_SYSCOLORCHANGE, 0, 0);
         EXPECT_EQ(ColorsOf(dialog, form.txtSaveFolder), (std::pair{kDark[3], kDark[0]}));
         EXPECT_EQ(ColorsOf(dialog, form.lblWebSite).first, kDark[4]);
         // Rich text answers with the ground that it had.
         EXPECT_EQ(SendMessageW(dialog.Item(form.rtfFieldHints), EM_SETBKGNDCOLOR, 0, 0), 0);
       });
  SetSysColors(kCount, kParts, before);
}

// The tool tip over a part of a dialog, as its window of tips asks for it.
std::wstring TipOver(const Dialog& dialog, HWND part) {
  TTTOOLINFOW tool = {};
  tool.cbSize = TTTOOLINFOW_V2_SIZE;
  tool.hwnd = dialog.Window();
  tool.uId = reinterpret_cast<UINT_PTR>(part);
  HWND tips = nullptr;
  do {
    tips = FindWindowExW(nullptr, tips, L"tooltips_class32", nullptr);
    if (!tips) return L"none";
  } while (GetWindowThreadProcessId(tips, nullptr) !=
               GetWindowThreadProcessId(dialog.Window(), nullptr) ||
           !SendMessageW(tips, TTM_GETTOOLINFOW, 0, reinterpret_cast<LPARAM>(&tool)));
  NMTTDISPINFOW question = {};
  question.hdr.code = TTN_GETDISPINFOW;
  question.hdr.idFrom = tool.uId;
  SendMessageW(dialog.Window(), WM_NOTIFY, 0, reinterpret_cast<LPARAM>(&question));
  return question.lpszText;
}

// A caption moves its column, the window grows; what still has no room is in the tool tip, and of a
// path the end is seen.
TEST_F(FormModel, GivesTextsRoomAndTellsTheRest) {
  const std::wstring word(300, L'w');
  const std::wstring path = L"P:\\" + word;
  form.txtSaveFolder.SetText(path);
  form.cboPostrove.SetText(word);
  form.cboPostrove.SetItems({L"a", word});
  RECT work;
  SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
  Show([] {},
       [&](Dialog& dialog) {
         const auto place = [&](const Control& control) {
           RECT area;
           GetWindowRect(dialog.Item(control), &area);
           return area;
         };
         const HWND combo = dialog.Item(form.cboPostrove);
         const HWND folder = dialog.Item(form.txtSaveFolder);
         for (const std::wstring& caption : {std::wstring(L"Construction Site Office: "), word}) {
           form.lblProjectLabel.SetText(caption);
           EXPECT_EQ(TipOver(dialog, dialog.Item(form.lblProjectLabel)),
                     caption == word ? word : L"");
           EXPECT_EQ(place(form.cboPostrove).left, place(form.txtSaveAsName).left);
           EXPECT_GT(place(form.cboPostrove).left, place(form.lblProjectLabel).right);
           EXPECT_GT(place(form.txtSaveFolder).right - place(form.txtSaveFolder).left, 300);
           RECT window;
           GetWindowRect(dialog.Window(), &window);
           EXPECT_LT(place(form.cmdPostrove(kCloseButton)).right, window.right);
           EXPECT_LE(window.right, work.right);
         }
         RECT box;
         GetClientRect(folder, &box);
         EXPECT_LT(LOWORD(SendMessageW(folder, EM_POSFROMCHAR, path.size() - 1, 0)), box.right);
         EXPECT_EQ(TipOver(dialog, folder), path + L"\r\n" + form.txtSaveFolder.ToolTip());
         for (const HWND part : {dialog.Edit(form.cboPostrove), combo}) {
           EXPECT_EQ(TipOver(dialog, part), word + L"\r\n" + form.cboPostrove.ToolTip());
         }
         EXPECT_EQ(TipOver(dialog, dialog.Item(form.cmdPostrove(kHelpButton))), L"Show Help");
         SendMessageW(combo, CB_SHOWDROPDOWN, TRUE, 0);
         EXPECT_EQ(SendMessageW(combo, CB_GETDROPPEDWIDTH, 0, 0),
                   work.right - place(form.cboPostrove).left);
       });
}

// Stands for Windows' service that tells screen readers, and writes down what it is told: one
// object for it and for its class, of whose methods none but these are called.
class Readers {
  void* const* const table_ = methods_;  // first, where callers look for it

 public:
  Readers() {
    CoInitialize(nullptr);
    CoRegisterClassObject(
        {0xB5F8350B, 0x0548, 0x48B1, {0xA6, 0xEE, 0x88, 0xBD, 0, 0xB4, 0xA5, 0xE7}},
        reinterpret_cast<IUnknown*>(this), CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &registered_);
  }
  ~Readers() {
    CoRevokeClassObject(registered_);
    CoUninitialize();
  }

  EventLog told;

 private:
  static HRESULT WINAPI Query(Readers* self, const IID&, void** object) {
    *object = self;
    return S_OK;
  }
  static ULONG WINAPI Count(Readers*) { return 1; }
  static HRESULT WINAPI Create(Readers* self, IUnknown*, const IID& id, void** object) {
    return Query(self, id, object);
  }
  static HRESULT WINAPI SetRole(Readers* self, HWND, DWORD, DWORD, GUID prop, VARIANT value) {
    if (prop.Data1 == 0xCB905FF2) self->told.Add("role " + std::to_string(value.lVal));
    return S_OK;
  }
  static HRESULT WINAPI Describe(Readers* self, HWND window, DWORD, DWORD, GUID prop,
                                 const wchar_t* value) {
    wchar_t name[64] = {};
    GetClassNameW(window, name, 64);
    if (prop.Data1 == 0x4D48DFE4) self->told.Add(text::ToUtf8(name) + ": " + text::ToUtf8(value));
    return S_OK;
  }
  static HRESULT WINAPI Clear(Readers* self, HWND, DWORD, DWORD, const GUID*, int count) {
    self->told.Add("cleared " + std::to_string(count));
    return S_OK;
  }
  template <typename Method>
  static void* Slot(Method method) {
    return reinterpret_cast<void*>(method);
  }

  void* const methods_[18] = {Slot(Query), Slot(Count), Slot(Count),   Slot(Create),
                              nullptr,     nullptr,     Slot(SetRole), Slot(Describe),
                              nullptr,     Slot(Clear)};
  DWORD registered_ = 0;
};

TEST_F(FormModel, TellsScreenReadersItsRoleAndItsHints) {
  Readers readers;
  form.rtfFieldHints.SetText(L"first");
  Show([&] { form.rtfFieldHints.SetText(L"Hint: x"); }, [](Dialog&) {});
  EXPECT_EQ(readers.told.All(),
            (std::vector<std::string>{"role 18", "PostroveForm: first", "Button: Hint: x",
                                      "cleared 2", "cleared 2", "cleared 2"}));
}

// Neither opening nor the first look at the list waits for all of it; the rest comes by itself.
TEST_F(FormModel, FillsALongListInPortions) {
  constexpr int kItems = 100000;
  std::vector<std::wstring> items;
  for (int i = 0; i < kItems; ++i) items.push_back(L"Project: " + std::to_wstring(i));
  form.cboPostrove.SetItems(items);
  form.cboPostrove.SetListIndex(77777);
  LRESULT listedAtFirst = -1;
  form.onActivate = [&] {
    if (listedAtFirst < 0) {
      listedAtFirst = SendMessageW(FindWindowExW(GetActiveWindow(), nullptr, L"ComboBox", nullptr),
                                   CB_GETCOUNT, 0, 0);
    }
  };
  Show([] {},
       [&](Dialog& dialog) {
         const HWND combo = dialog.Item(form.cboPostrove);
         EXPECT_EQ(dialog.TextOf(form.cboPostrove), L"Project: 77777");
         SendMessageW(combo, CB_SHOWDROPDOWN, TRUE, 0);
         EXPECT_EQ(SendMessageW(combo, CB_GETCURSEL, 0, 0), 77777);
         WaitFor("the rest", [&] { return SendMessageW(combo, CB_GETCOUNT, 0, 0) == kItems; });
         EXPECT_EQ(SendMessageW(combo, CB_GETCURSEL, 0, 0), 77777);
         EXPECT_EQ(dialog.TextOf(form.cboPostrove), L"Project: 77777");
         SendMessageW(combo, CB_SHOWDROPDOWN, FALSE, 0);
         dialog.Press(form.cboPostrove, VK_DOWN);
         WaitFor("the pick", [&] { return log.Has("cboPostrove click"); });
       });
  EXPECT_EQ(form.cboPostrove.ListIndex(), 77778);
  EXPECT_LE(listedAtFirst, 5000);
}

TEST_F(FormModel, ResizesWithItsFieldsAndNotBelowItsDesign) {
  Show([] {},
       [&](Dialog& dialog) {
         const auto width = [&](HWND window) {
           RECT area;
           GetWindowRect(window, &area);
           return area.right - area.left;
         };
         const HWND folder = dialog.Item(form.txtSaveFolder);
         const LONG designed = width(folder);
         const LONG least = width(dialog.Window());
         SetWindowPos(dialog.Window(), nullptr, 0, 0, least + 60, 600, SWP_NOMOVE);
         EXPECT_EQ(width(folder), designed + 60);
         MINMAXINFO limits = {};
         SendMessageW(dialog.Window(), WM_GETMINMAXINFO, 0, reinterpret_cast<LPARAM>(&limits));
         EXPECT_EQ(limits.ptMinTrackSize.x, least);
       });
}

// The user's size comes back at the next opening, whole on the monitor and not below the design.
TEST_F(FormModel, RemembersTheSizeThatTheUserGave) {
  const struct {
    int opened;  // larger than designed by that, in both directions; -1: it fills the monitor
    int sized;   // what the dialog then gets
    bool user;   // by dragging
  } kCases[] = {{0, 60, true}, {60, 200, false}, {60, -50, true}, {0, 9000, true}, {-1, 0, false}};
  constexpr wchar_t kKey[] = L"Software\\Postrove\\Forms";
  RegDeleteTreeW(HKEY_CURRENT_USER, kKey);
  LONG width = 0;
  LONG height = 0;
  const auto open = [&](int opened, int sized, bool byUser) {
    frmPostrove own({});
    const DialogUser user([&] {
      const Dialog dialog(L"Postrove");
      RECT place;
      RECT work;
      GetWindowRect(dialog.Window(), &place);
      SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
      if (!width) {
        width = place.right - place.left;
        height = place.bottom - place.top;
      }
      if (opened < 0) {
        EXPECT_TRUE(EqualRect(&place, &work));
      } else {
        EXPECT_NEAR(place.right - place.left, width + opened, 1);
        EXPECT_NEAR(place.bottom - place.top, height + opened, 1);
      }
      if (byUser) SendMessageW(dialog.Window(), WM_SIZING, WMSZ_BOTTOMRIGHT, 0);
      SetWindowPos(dialog.Window(), nullptr, 0, 0, width + sized, height + sized,
                   SWP_NOMOVE | SWP_NOSENDCHANGING);
      dialog.Close();
    });
    host->ShowModal(own);
  };
  for (const auto& one : kCases) {
    SCOPED_TRACE(one.sized);
    open(one.opened, one.sized, one.user);
  }
  // What others left there is no size.
  RegSetKeyValueW(HKEY_CURRENT_USER, kKey, L"frmPostrove", REG_SZ, L"wide", 10);
  open(0, 0, false);
  RegDeleteTreeW(HKEY_CURRENT_USER, kKey);
}

TEST_F(FormModel, ScalesWithTheMonitor) {
  Show([] {},
       [&](Dialog& dialog) {
         const HWND folder = dialog.Item(form.txtSaveFolder);
         const auto heights = [&] {
           LOGFONTW font = {};
           GetObjectW(reinterpret_cast<HFONT>(SendMessageW(folder, WM_GETFONT, 0, 0)), sizeof font,
                      &font);
           RECT box;
           GetWindowRect(folder, &box);
           return std::pair{-font.lfHeight, box.bottom - box.top};
         };
         RECT work;
         SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
         const HDC screen = GetDC(nullptr);
         const int dpi = GetDeviceCaps(screen, LOGPIXELSY);
         ReleaseDC(nullptr, screen);
         const auto scale = [&](int percent) {
           constexpr UINT kDpiChanged = 0x02E0;
           const auto scaled = static_cast<WORD>(MulDiv(dpi, percent, 100));
           SendMessageW(dialog.Window(), kDpiChanged, MAKEWPARAM(scaled, scaled),
                        reinterpret_cast<LPARAM>(&work));
         };
         const auto [font, box] = heights();
         scale(125);
         EXPECT_NEAR(heights().first, font * 1.25, 1);
         EXPECT_NEAR(heights().second, box * 1.25, 1);
         // The text stands in the middle, as its label does.
         for (const Control* field : {&form.txtSaveFolder, &form.cboPostrove}) {
           RECT whole;
           RECT line;
           GetWindowRect(dialog.Edit(*field), &whole);
           GetClientRect(dialog.Edit(*field), &line);
           MapWindowPoints(dialog.Edit(*field), nullptr, reinterpret_cast<POINT*>(&line), 2);
           EXPECT_NEAR(line.top - whole.top, whole.bottom - line.bottom, 1);
           EXPECT_GE(line.bottom - line.top, heights().first);
         }
         // Too large for the screen it is drawn smaller, so that every button can be reached.
         scale(500);
         RECT client;
         GetClientRect(dialog.Window(), &client);
         MapWindowPoints(dialog.Window(), nullptr, reinterpret_cast<POINT*>(&client), 2);
         for (const auto& control : form.Controls()) {
           RECT place;
           RECT shown;
           GetWindowRect(dialog.Item(*control), &place);
           EXPECT_TRUE(IntersectRect(&shown, &place, &client) && EqualRect(&shown, &place));
         }
       });
}

}  // namespace
}  // namespace postrove::forms
