#pragma once

#include <memory>
#include <string>

#include "controller/dialog_stack.h"
#include "controller/filing.h"
#include "controller/project_dialog.h"
#include "data/office_data.h"
#include "forms/frmPostrove.h"

namespace postrove {

// Which project the message is filed under: chosen, typed, named by the subject, added or edited;
// and what the save dialog shows of it.
class ProjectChoice {
 public:
  ProjectChoice(OfficeData& data, clsSharedUtil& utility, DialogStack& dialogs, Filing& filing,
                forms::frmPostrove& form)
      : data_(data), utility_(utility), dialogs_(dialogs), filing_(filing), form_(form) {}

  // Proposes project and name for the message, from its subject where projects are shared. Can ask.
  // Throws Error for a subject that cannot be taken apart.
  void ProposeFromSubject();

  // Makes the current project one that the list knows: its row, else, as the user decides, one
  // added to the database or a temporary row for this message. A project that the user typed and
  // that the list knows stays as it was typed, with the folder of the listed one.
  void ResolveSubjectProject();

  // A typed project becomes the current one, once.
  void ResolveTypedProject();

  // The user typed or emptied the text of the project box, chose an item, left the box.
  void TextChanged(const std::wstring& text);
  void ChooseListedProject(int row);
  void ChooseTypedItem();

  // Fills the dialog when it opens.
  void FillProjects();

  // The dialogs that add a project and edit the current one. A saved project is the current one
  // then.
  void AddProject();
  void EditProject();

  // Back from other settings, perhaps another database: the current project is looked for in the
  // new list, which can ask; then the dialog is filled anew, but for what the user entered.
  void FindAgain();
  void ShowAgain();

 private:
  void OpenProjectInfo(ProjInfoMode mode, const Project& proposal);
  void ShowSavedProject(const Project& saved, ProjInfoMode mode);
  bool AskToAddProject() const;
  void TellTemporaryProject() const;
  void AddTemporaryProject();
  void SelectProject(const Project& listed);
  void FillSaveFields();
  void ShowProject();
  void ProposeFolder();
  bool FolderIsProposed() const;  // and not the user's own
  const Project* CurrentRow() const;

  OfficeData& data_;
  clsSharedUtil& utility_;
  DialogStack& dialogs_;
  Filing& filing_;
  forms::frmPostrove& form_;
  bool filling_ = false;  // the dialog is being filled, not typed into
};

}  // namespace postrove
