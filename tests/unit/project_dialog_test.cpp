#include <algorithm>

#include "data/project_sql.h"
#include "gtest/gtest.h"
#include "memory/Product.h"

namespace postrove::testing {
namespace {

using office::Value;

// The project information dialog above the save dialog of a received message. The table has two
// projects; what a statement writes appears in the next list, as `written` says.
class ProjectDialog : public ::testing::Test {
 protected:
  using SaveUser = std::function<void(forms::frmPostrove&)>;
  using ProjectUser = std::function<void(forms::frmProjInfo&)>;

  void Start(const char* settings = "[Setup]\r\nRoot=C:\\Projects\r\n") {
    product_.utility->AddFile(kLocalIni, settings);
    product_.utility->AddFolder(L"D:\\Files\\Corr_Out");
    product_.utility->AddFolder(L"C:\\Projects\\Corr_Out");
    product_.utility->AddFolder(L"C:\\Projects\\17\\Corr_Out");
    product_.Start();
    list_ = sql::ListProjects(product_.database->DbType);
    product_.database->SetHandler([this](const RanStatement& ran) {
      if (ran.query) return Rows{};
      writes_.push_back(ran.text);
      product_.database->SetRows(list_, written);
      return Rows{};
    });
    product_.database->SetRows(list_, rows_);
    product_.database->SetRows(sql::GreatestProjectNumber(), {{L"2231"}});
    product_.database->SetRows(sql::FindProjectNumber(L"2231"), {{L"2231"}});
    mail_ = product_.outlook.Open(true);
    mail_->item->properties[L"Subject"] = L"Minutes";
    mail_->item->functions[L"SaveAs"] = [this](const office::Arguments& arguments) {
      saved_.push_back(office::ToText(arguments.at(0)));
      product_.utility->AddFile(saved_.back(), "message");
      return Value();
    };
    product_.outlook.RaiseNew(mail_);
  }

  void Click(const SaveUser& user, const std::vector<ProjectUser>& projectUsers = {}) {
    product_.forms->Expect([user](forms::Form& form) {
      user(dynamic_cast<forms::frmPostrove&>(form));
      form.Unload();
    });
    for (const ProjectUser& one : projectUsers) {
      product_.forms->Expect([one](forms::Form& form) {
        one(dynamic_cast<forms::frmProjInfo&>(form));
        form.Unload();
      });
    }
    product_.outlook.Click(mail_);
    EXPECT_TRUE(product_.forms->Finished());
    EXPECT_EQ(product_.forms->waiting, 0);
  }

  static std::vector<std::wstring> Fields(const forms::frmProjInfo& form) {
    return {form.Caption(), form.txtProjInfo(0).Text(), form.txtProjInfo(1).Text(),
            form.txtProjInfo(2).Text()};
  }
  static void Type(forms::frmProjInfo& form, const std::wstring& number, const std::wstring& name,
                   const std::wstring& folder) {
    form.txtProjInfo(0).UserTyped(number, 0, 0);
    form.txtProjInfo(1).UserTyped(name, 0, 0);
    form.txtProjInfo(2).UserTyped(folder, 0, 0);
  }
  static void Save(forms::frmProjInfo& form) {
    form.cmdProjInfo(forms::kProjInfoSave).UserClicked();
  }
  static void Cancel(forms::frmProjInfo& form) {
    form.cmdProjInfo(forms::kProjInfoCancel).UserClicked();
  }
  static void TypeUnknown(forms::frmPostrove& dialog) {
    dialog.cboPostrove.UserTyped(L"Quay Wall: 17", 0, 0);
  }

  Rows written;
  Product product_;
  std::wstring list_;
  const Rows rows_ = {{L"7", L"Harbour", L"D:\\Files", true, std::int64_t{4}},
                      {L"2231", L"Mill Street", L"", true, std::int64_t{9}}};
  std::shared_ptr<FakeOutlook::Inspector> mail_;
  std::vector<std::wstring> writes_;
  std::vector<std::wstring> saved_;
};

TEST_F(ProjectDialog, AddsFromScratchAndFilesIntoTheNewFolder) {
  Start();
  written = {rows_[0], {L"2232", L"Bridge", L"D:\\Files", true, std::int64_t{10}}, rows_[1]};
  product_.utility->ExpectBrowse(L"D:\\Files");
  Click(
      [](forms::frmPostrove& dialog) {
        dialog.txtSaveAsName.UserTyped(L"Mine", 0, 0);
        dialog.cmdPostrove(forms::kAddProjectButton).UserClicked();
        EXPECT_EQ(
            dialog.cboPostrove.Items(),
            (std::vector<std::wstring>{L"Harbour: 7", L"Bridge: 2232", L"Mill Street: 2231"}));
        EXPECT_EQ(dialog.cboPostrove.ListIndex(), 1);
        EXPECT_EQ(dialog.txtSaveFolder.Text(), L"D:\\Files\\Corr_Out\\");
        dialog.cmdPostrove(forms::kEditProjectButton).UserClicked();  // it has a row by now
        dialog.cmdPostrove(forms::kMainButton).UserClicked();
      },
      {[this](forms::frmProjInfo& form) {
         EXPECT_EQ(Fields(form), (std::vector<std::wstring>{L"Add a Project", L"2232",
                                                            L"New Project", L"C:\\Projects\\"}));
         EXPECT_FALSE(form.chkProjActive.Visible());
         EXPECT_EQ(product_.forms->actions.back(), L"focus txtProjInfo");
         EXPECT_EQ(form.txtProjInfo(1).SelectionLength(), 11);
         EXPECT_FALSE(form.lblAlert(0).Visible());
         form.txtProjInfo(0).UserTyped(L"", 0, 0);
         EXPECT_TRUE(form.lblAlert(0).Visible());
         form.txtProjInfo(0).UserTyped(L"2232", 0, 0);
         form.txtProjInfo(1).UserTyped(L"", 0, 0);
         EXPECT_EQ(form.txtProjInfo(1).BackColor(), forms::kYellow);
         form.txtProjInfo(1).UserTyped(L"Bridge", 0, 0);
         EXPECT_EQ(form.txtProjInfo(1).BackColor(), forms::kSystemWindow);
         form.cmdBrowse(0).UserClicked();
         form.cmdProjInfo(forms::kProjInfoHelp).UserClicked();
         EXPECT_FALSE(form.IsUnloaded());
         EXPECT_EQ(form.rtfFieldHints.Text(), L"");
         form.lblWebSite.SetText(L"howtouse.htm");
         form.lblWebSite.UserClicked();
         EXPECT_EQ(product_.utility->OpenedDocuments().back(), L"https://www.postrove.example");
         form.txtProjInfo(2).UserTyped(L"D:\\Files", 0, 0);
         Save(form);
         EXPECT_TRUE(form.IsUnloaded());
       },
       [](forms::frmProjInfo& form) {
         EXPECT_EQ(form.Caption(), L"Edit a Project");
         Cancel(form);
       }});
  EXPECT_EQ(product_.utility->BrowsePrompts().back(),
            L"Select the Folder for the Project Files and Emails:");
  EXPECT_TRUE(
      product_.utility->OpenedDocuments().at(0).ends_with(L"/PostroveHelp_files/howtouse.htm"));
  EXPECT_EQ(writes_, std::vector<std::wstring>{
                         sql::InsertProject({L"2232", L"Bridge", L"D:\\Files", true}, L"Access")});
  EXPECT_EQ(saved_, std::vector<std::wstring>{L"D:\\Files\\Corr_Out\\Mine.msg"});
  const auto& actions = product_.forms->actions;
  EXPECT_EQ(std::count(actions.begin(), actions.end(), L"lower frmPostrove"), 3);
}

TEST_F(ProjectDialog, EditsTheChosenProjectAndCancelTakesBack) {
  Start();
  written = {{L"7a", L"Harbour", L"C:\\Projects", true, std::int64_t{4}}, rows_[1]};
  const auto edit = [](forms::frmPostrove& dialog) {
    dialog.cmdPostrove(forms::kEditProjectButton).UserClicked();
  };
  const auto shows = [](const forms::frmProjInfo& form) {
    EXPECT_EQ(Fields(form),
              (std::vector<std::wstring>{L"Edit a Project", L"7", L"Harbour", L"D:\\Files\\"}));
    EXPECT_TRUE(form.chkProjActive.Visible() && form.chkProjActive.Checked());
    EXPECT_EQ(form.txtProjInfo(1).SelectionLength(), 0);
  };
  product_.utility->ExpectMessage();  // nothing is chosen yet
  product_.utility->ExpectMessage();  // a text of no project
  Click(
      [&](forms::frmPostrove& dialog) {
        edit(dialog);
        TypeUnknown(dialog);
        edit(dialog);
        EXPECT_EQ(product_.utility->Messages().back().text,
                  L"Select the Project to edit from the list first.");
        dialog.cboPostrove.UserPicked(0);
        dialog.txtSaveFolder.UserTyped(L"D:\\Mine", 7, 0);
        edit(dialog);
        EXPECT_EQ(dialog.cboPostrove.Text(), L"Harbour: 7");
        EXPECT_EQ(dialog.txtSaveFolder.Text(), L"D:\\Mine");
        dialog.txtSaveFolder.UserTyped(L"d:/files/corr_out", 17, 0);
        EXPECT_TRUE(writes_.empty());
        edit(dialog);
        EXPECT_EQ(dialog.cboPostrove.Text(), L"Harbour: 7a");
        EXPECT_EQ(dialog.txtSaveFolder.Text(), L"C:\\Projects\\Corr_Out\\");
        edit(dialog);
        dialog.cmdPostrove(forms::kMainButton).UserClicked();
      },
      {[&](forms::frmProjInfo& form) {
         shows(form);
         Type(form, L"8", L"Other", L"C:\\");
         Cancel(form);
       },
       [&](forms::frmProjInfo& form) {
         shows(form);
         Type(form, L"7a", L"Harbour", L"C:\\Projects");
         Save(form);
         EXPECT_TRUE(form.IsUnloaded());
       },
       [&](forms::frmProjInfo& form) {  // put aside: it leaves the list
         written = {rows_[1]};
         form.chkProjActive.UserClicked();
         Save(form);
       }});
  EXPECT_EQ(writes_,
            (std::vector<std::wstring>{
                sql::UpdateProject({L"7a", L"Harbour", L"C:\\Projects", true}, 4, L"Access"),
                sql::UpdateProject({L"7a", L"Harbour", L"C:\\Projects\\", false}, 4, L"Access")}));
  EXPECT_EQ(saved_, std::vector<std::wstring>{L"C:\\Projects\\Corr_Out\\Minutes.msg"});
}

TEST_F(ProjectDialog, AnUnknownProjectIsAddedOrStaysTemporary) {
  struct Case {
    MessageAnswer answer;
    bool saves;
    std::wstring typed;
    std::vector<std::wstring> proposal;
    std::wstring number;
  };
  const Case cases[] = {
      {MessageAnswer::Yes,
       true,
       L"Quay Wall: 17",
       {L"Add a Project", L"17", L"Quay Wall", L"C:\\Projects\\17\\"},
       L"17"},
      {MessageAnswer::Yes,
       true,
       L"Quay Wall",
       {L"Add a Project", L"2232", L"Quay Wall", L"C:\\Projects\\"},
       L"2232"},
      {MessageAnswer::Yes,
       false,
       L"Quay Wall: 17",
       {L"Add a Project", L"17", L"Quay Wall", L"C:\\Projects\\17\\"},
       L"17"},
      {MessageAnswer::No, false, L"Quay Wall: 17", {}, L"17"},
  };
  for (const Case& one : cases) {
    SCOPED_TRACE(text::ToUtf8(one.typed));
    writes_.clear();
    saved_.clear();
    Start();
    written = rows_;
    written.push_back({one.number, L"Quay Wall", L"D:\\Files", true, std::int64_t{12}});
    product_.utility->ExpectMessage(one.answer);
    std::vector<ProjectUser> users;
    if (one.answer == MessageAnswer::Yes) {
      users.push_back([&](forms::frmProjInfo& form) {
        EXPECT_EQ(Fields(form), one.proposal);
        EXPECT_TRUE(form.chkProjActive.Visible() && form.chkProjActive.Checked());
        form.txtProjInfo(2).UserTyped(L"D:\\Files", 0, 0);
        one.saves ? Save(form) : Cancel(form);
      });
    }
    Click(
        [&](forms::frmPostrove& dialog) {
          dialog.cboPostrove.UserTyped(one.typed, 0, 0);
          dialog.cmdPostrove(forms::kMainButton).UserClicked();
          EXPECT_TRUE(dialog.IsUnloaded());
        },
        users);
    EXPECT_EQ(writes_.size(), one.saves ? 1u : 0u);
    EXPECT_EQ(saved_,
              std::vector<std::wstring>{one.saves ? L"D:\\Files\\Corr_Out\\Minutes.msg"
                                                  : L"C:\\Projects\\17\\Corr_Out\\Minutes.msg"});
    product_.utility->Remove(saved_.at(0));
  }
}

TEST_F(ProjectDialog, RefusesWhatCannotBeSaved) {
  Start();
  product_.utility->SetDriveType(L"E:\\", DriveKind::CdRom);
  struct Case {
    const wchar_t* number;
    const wchar_t* name;
    const wchar_t* folder;
    std::vector<MessageAnswer> answers;
    const wchar_t* lines;
  };
  const Case cases[] = {
      {L"2231", L"x", L"D:\\", {MessageAnswer::No}, L"-Select a different Project Number."},
      {L"2231",
       L" ",
       L"",
       {MessageAnswer::No},
       L"-Select a different Project Number.\r\n-You must select a Project Name.\r\n-You must "
       L"select a Project Folder."},
      {L"",
       L"x",
       L"E:\\New",
       {},
       L"-Drive E: is a CD-ROM drive.  (Select a different Project Folder.)"},
      {L"",
       L"x",
       L"New",
       {},
       L"-The Folder must begin with a drive or a server, such as C:\\Projects or "
       L"\\\\Server\\Projects."},
  };
  std::size_t shown = 0;
  Click(
      [](forms::frmPostrove& dialog) {
        dialog.cmdPostrove(forms::kAddProjectButton).UserClicked();
      },
      {[&](forms::frmProjInfo& form) {
        for (const Case& one : cases) {
          Type(form, one.number, one.name, one.folder);
          for (const MessageAnswer answer : one.answers) product_.utility->ExpectMessage(answer);
          product_.utility->ExpectMessage();
          Save(form);
          shown += one.answers.size() + 1;
          const auto& messages = product_.utility->Messages();
          ASSERT_EQ(messages.size(), shown);
          EXPECT_EQ(messages.back(),
                    (ShownMessage{std::wstring(L"The Project Information cannot be saved... \r\n") +
                                      one.lines,
                                  L"Cannot Save", MessageButtons::Ok, MessageIcon::Information}));
          EXPECT_FALSE(form.IsUnloaded());
          EXPECT_EQ(form.txtProjInfo(0).SelectionLength(), one.answers.empty() ? 0 : 4);
        }
        EXPECT_TRUE(writes_.empty());
        Cancel(form);
      }});
}

TEST_F(ProjectDialog, AFailedWriteKeepsTheEntriesAndTheProjectBefore) {
  Start();
  const auto fails = [this](forms::frmProjInfo& form) {
    Type(form, L"", L"O'Hara", L"C:\\New");
    product_.database->FailOperation(1);
    product_.utility->ExpectMessage();
    Save(form);
    EXPECT_EQ(Fields(form)[2], L"O'Hara");
    EXPECT_FALSE(form.IsUnloaded());
    Cancel(form);
  };
  const auto rowIsGone = [this](forms::frmProjInfo& form) {
    product_.database->changedRows = 0;
    product_.utility->ExpectMessage();
    Save(form);
    EXPECT_EQ(product_.utility->Messages().back().title, L"Cannot Save");
    EXPECT_FALSE(form.IsUnloaded());
    product_.database->changedRows = -1;  // the provider does not tell
    Save(form);
    EXPECT_TRUE(form.IsUnloaded());
  };
  written = rows_;
  Click(
      [this](forms::frmPostrove& dialog) {
        dialog.cmdPostrove(forms::kAddProjectButton).UserClicked();
        dialog.cboPostrove.UserPicked(0);
        dialog.cmdPostrove(forms::kAddProjectButton).UserClicked();
        EXPECT_EQ(dialog.cboPostrove.Text(), L"Harbour: 7");
        dialog.cmdPostrove(forms::kEditProjectButton).UserClicked();
        dialog.cmdPostrove(forms::kMainButton).UserClicked();
      },
      {fails, fails, rowIsGone});
  EXPECT_EQ(saved_, std::vector<std::wstring>{L"D:\\Files\\Corr_Out\\Minutes.msg"});
}

TEST_F(ProjectDialog, ARowWithoutAKeyIsListedOnceAndSaysWhyItIsNotEdited) {
  Start();
  written = {{L"7", L"Harbour", L"D:\\Files", true, Cell()}};
  product_.database->SetRows(list_, written);
  product_.utility->ExpectMessage();
  product_.utility->ExpectMessage(MessageAnswer::No);
  product_.utility->ExpectMessage();
  Click(
      [this](forms::frmPostrove& dialog) {
        dialog.cboPostrove.UserPicked(0);
        dialog.cmdPostrove(forms::kEditProjectButton).UserClicked();
        EXPECT_EQ(product_.utility->Messages().back().text,
                  L"This Project cannot be edited here: its row in the database has no number in "
                  L"the column ProjectID.");
        TypeUnknown(dialog);
        dialog.txtSaveAsName.UserTyped(L"", 0, 0);  // the project is looked up all the same
        dialog.cmdPostrove(forms::kMainButton).UserClicked();
        dialog.cmdPostrove(forms::kAddProjectButton).UserClicked();
        EXPECT_EQ(
            dialog.cboPostrove.Items(),
            (std::vector<std::wstring>{L"Harbour: 7", L"New Project: 2232", L"Quay Wall: 17"}));
      },
      {Save});
}

// A typed project is split at its first colon, and is not filed into the folder of the one chosen
// before unless the user wants it.
TEST_F(ProjectDialog, ATypedProjectBringsItsFolder) {
  const struct {
    const wchar_t *typed, *folder;  // null leaves the box
    const wchar_t* saved;
    const wchar_t* name = nullptr;  // that is asked about; null: it is known
  } cases[] = {
      {L"Quay Wall: 17", nullptr, L"C:\\Projects\\17\\Corr_Out", L"Quay Wall"},
      {L"Quay Wall: 17", L"C:\\Projects\\Corr_Out", L"C:\\Projects\\Corr_Out", L"Quay Wall"},
      {L"Hall: 9: b", nullptr, L"C:\\Projects\\9- b\\Corr_Out", L"Hall"},
      {L" Hall ", nullptr, L"C:\\Projects\\Corr_Out", L"Hall"},
      {L": 9", nullptr, L"C:\\Projects\\9\\Corr_Out", L""},
      {L"A new name: 7", nullptr, L"D:\\Files\\Corr_Out"},
  };
  for (const auto& one : cases) {
    SCOPED_TRACE(text::ToUtf8(one.typed));
    Start();
    saved_.clear();
    product_.utility->AddFolder(one.saved);
    if (one.name) product_.utility->ExpectMessage(MessageAnswer::No);
    Click([&](forms::frmPostrove& dialog) {
      dialog.cboPostrove.UserPicked(one.name ? 0 : 1);
      if (one.name) dialog.txtSaveFolder.UserTyped(L"d:/files/corr_out", 0, 0);  // the same folder
      dialog.cboPostrove.UserTyped(one.typed, 0, 0);
      if (one.folder) dialog.txtSaveFolder.UserTyped(one.folder, 0, 0);
      dialog.cmdPostrove(forms::kMainButton).UserClicked();
    });
    EXPECT_EQ(saved_, std::vector<std::wstring>{std::wstring(one.saved) + L"\\Minutes.msg"});
    if (one.name) {
      EXPECT_TRUE(product_.utility->Messages().back().text.starts_with(
          L"Project name \"" + std::wstring(one.name) + L"\""));
    }
    product_.utility->Remove(saved_.at(0));
  }
}

}  // namespace
}  // namespace postrove::testing
