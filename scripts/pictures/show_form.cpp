// show_form SCENE|all LABELFILE WORD [FOLDER] [--plain]
// Shows a scene, the save dialog or one that it opens, as the product's controller fills it on a
// machine with two projects; or leaves a picture of it, as a bitmap, in the folder. SCENE is "all"
// or one of the names below; WORD stands for a project in labels; --plain is without visual styles.
// Nothing is saved anywhere.
#include <windows.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "data/project_sql.h"
#include "forms/frmPostrove.h"
#include "forms/win32/WinFormHost.h"
#include "memory/Product.h"
#include "outlook/screenshot.h"

using namespace postrove::forms;
using namespace postrove::testing;

namespace {

// Does in the save dialog what opens another one.
using Act = void (*)(frmPostrove& form);

// Acts in the save dialog, or takes a picture of the dialog in front and ends it; without a folder
// the user does everything.
class PicturingHost final : public FormHost {
 public:
  PicturingHost(HINSTANCE module, std::wstring folder)
      : host_(CreateWinFormHost(module)), folder_(std::move(folder)) {}

  void ShowModal(Form& form) override {
    if (folder_.empty()) return host_->ShowModal(form);
    shown_ = &form;
    // Late enough for what the dialog does after it was shown.
    timer_ = SetTimer(nullptr, 0, 500, Take);
    self_ = this;
    host_->ShowModal(form);
  }
  void SetTopmost(Form& form, bool topmost) override { host_->SetTopmost(form, topmost); }
  void BringToFront(Form& form) override { host_->BringToFront(form); }
  void SetFocus(Control& control) override { host_->SetFocus(control); }
  void DropDownList(Control& combo) override { host_->DropDownList(combo); }
  void SendTab(Form& form) override { host_->SendTab(form); }
  void SetWaitCursor(bool on) override { host_->SetWaitCursor(on); }
  std::uint32_t InputTime() const override { return host_->InputTime(); }

  void Next(const std::wstring& picture, Act act) {
    path_ = folder_ + L"\\" + picture + L".bmp";
    act_ = act;
  }

 private:
  static void CALLBACK Take(HWND, UINT, UINT_PTR, DWORD) { self_->TakePicture(); }

  void TakePicture() {
    KillTimer(nullptr, timer_);
    Form& form = *shown_;
    if (const Act act = std::exchange(act_, nullptr)) act(dynamic_cast<frmPostrove&>(form));
    if (shown_ == &form) {
      const HWND window = FindWindowW(L"PostroveForm", form.Caption().c_str());
      RedrawWindow(window, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
      if (!standin::SaveScreenshot(window, path_)) std::fprintf(stderr, "no picture\n");
    }
    form.Unload();
  }

  const std::shared_ptr<FormHost> host_;
  const std::wstring folder_;
  std::wstring path_;
  Act act_ = nullptr;
  Form* shown_ = nullptr;  // the one in front
  UINT_PTR timer_ = 0;
  static inline PicturingHost* self_ = nullptr;
};

std::string ReadFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

// One message, the machine that it is filed on, and what is done with it.
struct Scene {
  const wchar_t* name;
  bool sent;
  bool shared;
  const wchar_t* subject;
  const wchar_t* folder;  // of the project
  Act act = nullptr;
};

void Pick(frmPostrove& form) { form.cboPostrove.UserPicked(0); }

template <int Button>
void Press(frmPostrove& form) {
  Pick(form);
  form.cmdPostrove(Button).UserClicked();
}

constexpr wchar_t kLong[] =
    L"2025-06-12 Minutes of the site meeting, of the inspection of the eastern abutment that "
    L"followed it, and of what was agreed on the way back about the deliveries of next month";
constexpr wchar_t kLongFolder[] =
    L"\\\\files.example.com\\Engineering Projects\\Bridges and Tunnels\\04-123 Harbour Bridge, "
    L"Second Stage of the Refurbishment\\";
constexpr wchar_t kFolder[] = L"P:\\04-123 Harbour Bridge\\";
constexpr wchar_t kSubject[] = L"Minutes of the site meeting";
constexpr Scene kScenes[] = {
    {L"save-received", true, false, kSubject, kFolder},
    {L"save-new", false, false, L"Fee letter", kFolder, Pick},
    {L"save-required", false, false, L"", L""},
    {L"save-shared", true, true, L"04-123-Harbour Bridge=>Fee letter", kFolder},
    {L"save-long", true, false, kLong, kLongFolder, Pick},
    {L"folder-not-found", true, false, kSubject, L"P:\\04-124 Harbour Bridge\\",
     Press<kMainButton>},
    {L"existing-file", true, false, kSubject, kFolder, Press<kMainButton>},
    {L"project-add", true, false, kSubject, kFolder, Press<kAddProjectButton>},
    {L"project-edit", true, false, kSubject, kFolder, Press<kEditProjectButton>},
    {L"setup-own", true, false, kSubject, kFolder, Press<kDefaultsButton>},
    {L"setup-shared", true, true, kSubject, kFolder, Press<kDefaultsButton>},
};

void Show(const std::shared_ptr<PicturingHost>& host, const std::string& labels,
          const std::string& word, const Scene& scene) {
  Product product;
  product.host = host;
  FakeSharedUtil& machine = *product.utility;
  machine.AnswerTheRest();
  const std::wstring data = std::wstring(kAppData) + L"\\Postrove\\";
  machine.AddFile(data + L"Postrove.cnt", labels);
  machine.AddFile(data + L"WorkUnitType.cnt", "Project\r\nJob\r\nContract\r\n");
  machine.AddFile(data + L"Postrove.ini", "[Setup]\r\nRoot=P:\\\r\nWorkUnit=" + word + "\r\n");
  machine.AddFile(std::wstring(kFolder) + L"Corr_Out\\" + kSubject + L".msg", "filed");
  if (scene.shared) {
    machine.AddFolder(std::wstring(kPrograms) + L"\\Quillion");
    machine.AddFile(std::wstring(kAppData) + L"\\Quillion\\Qulln.ini",
                    "[FilePathsPrj]\r\n1=P:\\\r\n[FilePathsMDB]\r\n1=P:\\Data\\Quillion.mdb\r\n");
  }
  const bool longTexts = scene.folder == kLongFolder;
  const std::wstring name = longTexts ? kLong : L"Harbour Bridge";
  product.database->SetHandler([&](const RanStatement& ran) -> postrove::Rows {
    if (ran.text == postrove::sql::GreatestProjectNumber()) return {{L"04-130"}};
    return {{L"04-123", name, scene.folder, true, std::int64_t{7}},
            {L"04-130", L"Library Roof", L"", true, std::int64_t{8}}};
  });
  product.Start();
  const auto mail = product.outlook.Open(scene.sent);
  mail->item->properties[L"Subject"] = scene.subject;
  product.outlook.RaiseNew(mail);
  host->Next(scene.name, scene.act);
  product.outlook.Click(mail);
}

std::wstring Wide(const std::string& text) { return {text.begin(), text.end()}; }

}  // namespace

int main(int count, char** arguments) {
  std::vector<std::string> words(arguments + 1, arguments + count);
  const bool plain = std::erase(words, "--plain") > 0;
  if (words.size() != 3 && words.size() != 4) {
    std::fprintf(stderr, "usage: show_form SCENE|all LABELFILE WORD [FOLDER] [--plain]\n");
    return 2;
  }
  // A module without the manifest has no visual styles.
  const HMODULE module = GetModuleHandleW(plain ? L"gdi32.dll" : nullptr);
  const auto host =
      std::make_shared<PicturingHost>(module, words.size() == 4 ? Wide(words[3]) : L"");
  const std::string labels = ReadFile(words[1]);
  for (const Scene& scene : kScenes) {
    if (words[0] == "all" || Wide(words[0]) == scene.name) {
      Show(host, labels, words[2], scene);
    }
  }
  return 0;
}
