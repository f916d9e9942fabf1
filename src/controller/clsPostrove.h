#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "controller/version.h"
#include "data/office_data.h"
#include "forms/kit/form_host.h"
#include "outlook/button_owner.h"
#include "outlook/shared_objects.h"

namespace postrove {

class SaveDialog;

// The controller, held in gController: owns the parts, takes the inspector button and its click,
// and opens the save dialog for the message.
//
// Thread: Outlook's user-interface thread only. A click keeps the controller alive while it is
// handled, so gController can be released during it.
class clsPostrove final : public ButtonOwner, public std::enable_shared_from_this<clsPostrove> {
 public:
  // The start-up: finds the folders, decides whether Quillion's data is shared, locates and reads
  // the settings. A failure is reported to the user; the rest then keeps its defaults. `shared`
  // supplies gOutlook at each click; database, utility and forms are held.
  static std::shared_ptr<clsPostrove> Create(SharedObjects& shared,
                                             std::shared_ptr<forms::FormHost> forms,
                                             std::unique_ptr<clsRegistry> registry,
                                             ProductVersion version);

  // Settings, database, labels and projects.
  OfficeData& Data() { return data_; }

  // A click on the inspector button: files the message of the active window. One click is handled
  // at a time; a second one brings its dialog to the front.
  void mcbPostroveMenuButton_Click();

  void SetPostroveMenuButton(HeardButton button, bool itemIsSent) override;
  HeardButton& PostroveMenuButton() override { return mcbPostroveMenuButton_; }
  void ListenTo(HeardButton button) override;
  void Terminate() override;

 private:
  clsPostrove(SharedObjects& shared, std::shared_ptr<forms::FormHost> forms,
              ProductVersion version);

  void FileActiveMessage();

  SharedObjects& shared_;
  const std::shared_ptr<clsDatabase> database_;
  const std::shared_ptr<clsSharedUtil> utility_;
  const std::shared_ptr<forms::FormHost> forms_;
  const ProductVersion version_;
  OfficeData data_;

  HeardButton mcbPostroveMenuButton_;
  bool buttonIsNew_ = false;                   // not clicked yet
  std::optional<std::uint32_t> clickedInput_;  // the user's input with which the last click ended
  bool clicked_ = false;                       // a click is being handled
  SaveDialog* dialog_ = nullptr;               // its dialog, while there is one
};

}  // namespace postrove
