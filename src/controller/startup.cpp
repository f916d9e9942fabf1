#include <utility>

#include "controller/clsPostrove.h"
#include "outlook/inspector_button.h"
#include "outlook/office/ids.h"

namespace postrove {

namespace {

constexpr wchar_t kShellFolders[] =
    L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders";
constexpr wchar_t kCurrentVersion[] = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion";
constexpr std::int32_t kButtonFace = 325;

// "1" and "0" as Visual Basic reads a Boolean. What it could not read counts as the default: an
// installed Quillion is shared.
bool ReadsAsTrue(const std::wstring& setting) {
  try {
    return office::ToBool(setting);
  } catch (const Error&) {
    return true;
  }
}

}  // namespace

clsPostrove::clsPostrove(SharedObjects& shared, std::shared_ptr<forms::FormHost> forms,
                         ProductVersion version)
    : shared_(shared),
      database_(shared.gDatabase),
      utility_(shared.gUtility),
      forms_(std::move(forms)),
      version_(version) {}

std::shared_ptr<clsPostrove> clsPostrove::Create(SharedObjects& shared,
                                                 std::shared_ptr<forms::FormHost> forms,
                                                 std::unique_ptr<clsRegistry> registry,
                                                 ProductVersion version) {
  const std::shared_ptr<clsPostrove> controller(new clsPostrove(shared, std::move(forms), version));
  Reporting(*controller->utility_, L"clsPostrove", L"Class_Initialize()",
            [&] { controller->Class_Initialize(*registry); });
  return controller;
}

void clsPostrove::Class_Initialize(clsRegistry& registry) {
  gCommonAppData_ = registry.GetRegistryValue(kShellFolders, L"Common AppData");
  gProgramFiles_ = registry.GetRegistryValue(kCurrentVersion, L"ProgramFilesDir");
  quillionInstalled_ =
      !gProgramFiles_.empty() && utility_->FolderExists(gProgramFiles_ + L"\\Quillion");
  // What cannot be read now is told at the first click, which tries again: a share that comes up
  // after Outlook is the ordinary case, and Outlook puts add-ins out of use that hold up its start.
  TryToReadSettings(Search::Ask);
}

bool clsPostrove::ReadSharing() {
  return quillionInstalled_ && ReadsAsTrue(ReadSetup(L"UseQuillion", L"1", LocalIniFile()));
}

void clsPostrove::ListenTo(HeardButton button) {
  if (button) {
    button.Hear([self = weak_from_this()] {
      if (const auto controller = self.lock()) controller->mcbPostroveMenuButton_Click();
    });
  }
  buttonIsNew_ = true;
  // Out of sight before it is let go, which can run host code that looks at this again.
  const HeardButton last = std::exchange(mcbPostroveMenuButton_, std::move(button));
}

void clsPostrove::Terminate() {
  ListenTo({});
  clickedInspector_ = {};
  writing_ = false;
  // The dialogs above the save dialog go first.
  if (const auto form = frmFolderMessageEvent_) form->Unload();
  if (const auto form = frmProjInfoEvent_) form->Unload();
  if (const auto form = frmSetupEvent_) form->Unload();
  if (const auto form = frmPostroveEvent_) form->Unload();
}

void clsPostrove::SetPostroveMenuButton(HeardButton heard) {
  const office::CommandBarButton button = heard.Button();
  button.SetTag(kInspectorButtonTag);
  ListenTo(std::move(heard));

  // A button that lacks one of its looks still files messages.
  const auto format = [](auto&& step) {
    try {
      step();
    } catch (const Error&) {
    }
  };
  format([&] { button.SetCaption(ItemIsSent ? L"SaveToProject" : L"Pos&trove"); });
  format([&] { button.SetStyle(office::kButtonIconAndCaption); });
  format([&] { button.SetFaceId(kButtonFace); });
  format([&] { button.SetBeginGroup(true); });
  format([&] { button.SetOnAction(L"!<Postrove.Connect>"); });
  format([&] { button.SetVisible(true); });
}

}  // namespace postrove
