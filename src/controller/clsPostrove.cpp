#include "controller/clsPostrove.h"

#include <utility>

#include "controller/save_dialog.h"
#include "outlook/inspector_button.h"
#include "outlook/office/ids.h"
#include "shared/raised.h"

namespace postrove {

namespace {
constexpr std::int32_t kButtonFace = 325;
}  // namespace

clsPostrove::clsPostrove(SharedObjects& shared, std::shared_ptr<forms::FormHost> forms,
                         ProductVersion version)
    : shared_(shared),
      database_(shared.gDatabase),
      utility_(shared.gUtility),
      forms_(std::move(forms)),
      version_(version),
      data_(*database_, *utility_) {}

std::shared_ptr<clsPostrove> clsPostrove::Create(SharedObjects& shared,
                                                 std::shared_ptr<forms::FormHost> forms,
                                                 std::unique_ptr<clsRegistry> registry,
                                                 ProductVersion version) {
  const std::shared_ptr<clsPostrove> controller(new clsPostrove(shared, std::move(forms), version));
  Reporting(*controller->utility_, L"clsPostrove", L"Class_Initialize()",
            [&] { controller->data_.Start(*registry); });
  return controller;
}

void clsPostrove::SetPostroveMenuButton(HeardButton heard, bool itemIsSent) {
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
  format([&] { button.SetCaption(itemIsSent ? L"SaveToProject" : L"Pos&trove"); });
  format([&] { button.SetStyle(office::kButtonIconAndCaption); });
  format([&] { button.SetFaceId(kButtonFace); });
  format([&] { button.SetBeginGroup(true); });
  format([&] { button.SetOnAction(L"!<Postrove.Connect>"); });
  format([&] { button.SetVisible(true); });
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

void clsPostrove::mcbPostroveMenuButton_Click() {
  if (clicked_) {  // a dialog is modal to its own mail window only, and so is a message box
    if (dialog_) dialog_->BringToFront();
    return;
  }
  // A button that is listened to since the middle of a click can hear of that click as well.
  if (std::exchange(buttonIsNew_, false) && forms_->InputTime() == clickedInput_) return;
  const Raised clicked(clicked_);
  Reporting(*utility_, L"clsPostrove", L"PostroveMenuButton_Click()",
            [this] { FileActiveMessage(); });
  clickedInput_ = forms_->InputTime();
}

void clsPostrove::FileActiveMessage() {
  // First the message: what is told about the list is modal to one mail window only.
  SaveDialog dialog(shared_, data_, *utility_, *forms_, TakeActiveMessage(shared_));
  const struct Shown {
    SaveDialog*& shown;
    ~Shown() { shown = nullptr; }
  } shown{dialog_};
  dialog_ = &dialog;
  data_.ReadMissing();
  data_.projects.GetProjectList();
  dialog.Show(version_);
}

void clsPostrove::Terminate() {
  ListenTo({});
  if (dialog_) dialog_->Close();
}

}  // namespace postrove
