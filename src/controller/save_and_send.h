#pragma once

#include <string>

#include "controller/dialog_stack.h"
#include "controller/file_place.h"
#include "controller/filing.h"
#include "data/settings.h"
#include "outlook/shared_objects.h"

namespace postrove {

// Writes the message of a filing and sends it when it is new.
class SaveAndSend {
 public:
  // `writing` is true as long as Outlook writes or sends.
  SaveAndSend(const SharedObjects& shared, clsSharedUtil& utility, DialogStack& dialogs,
              Filing& filing, bool& writing)
      : shared_(shared), utility_(utility), dialogs_(dialogs), filing_(filing), writing_(writing) {}

  // Writes the message into the folder, which exists, and sends it when it is new. True when it was
  // handled and the dialog may close. A failure is reported and answers false: nothing is sent that
  // was not written.
  bool SaveAndSendMail(const std::wstring& folder, const Settings& settings);

 private:
  bool File(const office::MailItem& mail, const IclsOutlook& outlook, const std::wstring& folder,
            const Settings& settings);
  bool ChooseFileName(FilePlace& place, const std::wstring& folder, std::wstring fileName);
  bool KeepsLetters(const office::MailItem& mail, const std::wstring& subject,
                    const office::Attachments& attachments, bool unicodeFiles);
  void WriteAndSend(const office::MailItem& mail, FilePlace& place, std::int32_t saveType);
  void SendUnfiled(const office::MailItem& mail);

  const SharedObjects& shared_;
  clsSharedUtil& utility_;
  DialogStack& dialogs_;
  Filing& filing_;
  bool& writing_;
};

}  // namespace postrove
