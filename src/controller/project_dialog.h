#pragma once

#include <functional>
#include <memory>
#include <string>

#include "controller/dialog_stack.h"
#include "data/office_data.h"
#include "forms/frmProjInfo.h"

namespace postrove {

// What the project information dialog is opened for: a project from scratch, one that was typed or
// named by a subject, one of the list.
enum class ProjInfoMode { add, addmanual, edit };

// The project information dialog: adds or edits a project in the database.
class ProjectDialog final : public forms::frmProjInfoEvents {
 public:
  // Is told of a project that was saved, while the dialog is still shown.
  using Saved = std::function<void(const Project& saved)>;

  // Shows the dialog above the save dialog, whether that is shown yet or not, and returns when it
  // is closed. `proposal` is what it begins with.
  static void Show(OfficeData& data, clsSharedUtil& utility, DialogStack& dialogs,
                   ProjInfoMode mode, const Project& proposal, Saved saved);

  void frmProjInfoEvent_BrowseClicked(int Index) override;
  void frmProjInfoEvent_ButtonClicked(int Index) override;
  void frmProjInfoEvent_FormActivate() override;
  void frmProjInfoEvent_ProjInfoFieldChange(int Index) override;
  void frmProjInfoEvent_ProjInfoWebLabelClick(const std::wstring& Caption) override;

 private:
  ProjectDialog(OfficeData& data, clsSharedUtil& utility, DialogStack& dialogs, ProjInfoMode mode,
                const Project& proposal, Saved saved);

  void Fill();
  void Mark(int field);
  void SaveClicked();
  std::wstring Faults();
  std::wstring Entry(int field) const;

  OfficeData& data_;
  clsSharedUtil& utility_;
  DialogStack& dialogs_;
  const ProjInfoMode mode_;
  const Project proposal_;
  const Saved saved_;
  const std::shared_ptr<forms::frmProjInfoEvents> events_;
  const std::shared_ptr<forms::frmProjInfo> form_;
};

}  // namespace postrove
