#pragma once

#include <memory>
#include <optional>
#include <string>

#include "controller/dialog_stack.h"
#include "forms/frmFolderMessage.h"
#include "shared/clsSharedUtil.h"

namespace postrove {

// The folder message dialog: states a problem with the name of a folder or a file, and lets the
// user correct it.
class FolderMessageDialog final : public forms::frmFolderMessageEvents {
 public:
  struct Texts {
    std::wstring caption;
    std::wstring message;
    std::wstring name;
    std::wstring instructions;
  };

  // Shows the dialog above the save dialog. The accepted name; nothing on Cancel, or when the
  // dialog went without an answer.
  static std::optional<std::wstring> Ask(DialogStack& dialogs, clsSharedUtil& utility,
                                         const Texts& texts);

  void frmFolderMessageEvent_ButtonClicked(int Index) override;
  void frmFolderMessageEvent_FormActivate() override;
  void frmFolderMessageEvent_FormHelp() override;

 private:
  FolderMessageDialog(DialogStack& dialogs, clsSharedUtil& utility, const Texts& texts);

  DialogStack& dialogs_;
  clsSharedUtil& utility_;
  const std::shared_ptr<forms::frmFolderMessageEvents> events_;
  const std::shared_ptr<forms::frmFolderMessage> form_;
  std::wstring FolderMessageReturn;  // empty is Cancel
};

}  // namespace postrove
