// The defaults setup dialog above the save dialog: checking its fields, the way back.
#include "setup_fixture.h"

namespace postrove::testing {
namespace {

TEST_F(SetupDialog, EveryFieldWrongOnce) {
  const std::wstring cd = L"-Drive E: is a CD-ROM drive.  (Select a different ";
  const struct {
    int field;
    const wchar_t* text;
    const wchar_t* name;
    std::wstring lines;
  } cases[] = {
      {0, L"", L"Server Folder", L"-The Server Folder must have a value."},
      {1, L"", L"Delimiters", L"-The Delimiters must have a value."},
      {2, L"", L"Delimiters", L"-The Delimiters must have a value."},
      {3, L"  ", L"Email Sub-Folder", L"-The Email Sub-Folder must have a value."},
      {4, L"", L"Database Location", L"-The Database Location must have a value."},
      {5, L"", L"Settings Location", L"-The Settings Location must have a value."},
      {6, L" ", L"Work Unit Type", L"-The Work Unit Type must have a value."},
      {0, L"E:\\A", L"Server Folder", cd + L"Server Folder.)\r\n-Select a different Server Folder"},
      {4, L"E:\\A", L"Database Location",
       cd + L"Database Location.)\r\n-Select a different Database Location"},
      {5, L"E:\\A", L"Settings Location",
       cd + L"Settings Location.)\r\n-Select a different Settings Location"},
      {0, L"P:\\None", L"Server Folder", L"-Select a different Server Folder"},
      {4, L"\\\\server\\None", L"Database Location", L"-Select a different Database Location"},
      {5, L"P:\\None", L"Settings Location", L"-Select a different Settings Location"},
  };
  for (const auto& one : cases) {
    SCOPED_TRACE(text::ToUtf8(std::wstring(one.name) + L" = " + one.text));
    Renew();
    utility_->SetDriveType(L"E:\\", DriveKind::CdRom);
    const bool folder = text::IsRootedPath(one.text);
    Use([&](forms::frmSetup& setup) {
      const std::wstring before = Field(setup, one.field).Text();
      if (folder && one.text[0] != L'E') ExpectFolderQuestion(L"", 1);
      utility_->ExpectMessage();
      Enter(setup, one.field, one.text);
      const std::vector<std::wstring>& actions = product_->forms->actions;
      EXPECT_EQ(actions.back() == L"focus txtSetup", folder);
      EXPECT_EQ(Field(setup, one.field).SelectionLength(),
                folder ? static_cast<int>(std::wstring(one.text).size()) : 0);
      EXPECT_EQ(setup.lblAlert(one.field).Visible(), !folder);
      // A refused folder gives the field free at the second try, an empty field must be filled.
      if (!folder) utility_->ExpectMessage();
      Field(setup, one.field).UserLeft();
      EXPECT_EQ(Field(setup, one.field).Text(), folder ? before : L"");
      Field(setup, one.field).SetText(before);
    });
    ASSERT_FALSE(utility_->Messages().empty());
    EXPECT_EQ(utility_->Messages()[0],
              (ShownMessage{kCorrect + L"\r\n" + one.lines, std::wstring(L"Invalid ") + one.name,
                            MessageButtons::Ok, MessageIcon::Information}));
    EXPECT_EQ(File(kLocalIni), "(none)");
    EXPECT_TRUE(utility_->File(kDataFolder + L"Postrove.mdb"));
  }
}

TEST_F(SetupDialog, FieldsAreStoredAsTheyAreLeft) {
  Use(
      [&](forms::frmSetup& setup) {
        EXPECT_FALSE(setup.optDbType(forms::kSetupSiblingDb).Enabled());
        EXPECT_TRUE(setup.optDbType(forms::kSetupOwnDb).Checked());
        EXPECT_EQ(setup.lblSavePathSample.Text(),
                  L"C:\\Corr_Out\\<Project No.>-<Project>=><email subject>");
        Enter(setup, 0, L"Relative");  // not looked for
        EXPECT_EQ(File(kLocalIni), "[Setup]\r\nRoot=Relative\\\r\n");
        ExpectFolderQuestion(L"P:\\Made", 0);
        Enter(setup, 0, L" P:\\Misspelt");
        EXPECT_TRUE(utility_->FolderExists(L"P:\\Made"));
        EXPECT_FALSE(utility_->FolderExists(L"P:\\Misspelt"));
        Enter(setup, 1, L" _ ");
        Enter(setup, 2, L"::");
        Enter(setup, 3, L"Mail");
        EXPECT_EQ(setup.txtSetup(3).Text(), L"Mail\\");
        EXPECT_EQ(setup.lblSavePathSample.Text(),
                  L"P:\\Made\\Mail\\<Project No.> _ <Project>::<email subject>");
        const int before = utility_->FileOperations();  // what did not change is not looked at
        Enter(setup, 0, L"p:\\MADE\\");
        Enter(setup, forms::kSetupWorkType, L"pROJECT");
        EXPECT_EQ(utility_->FileOperations(), before);
      },
      [](forms::frmPostrove& save) {
        EXPECT_EQ(save.txtSaveFolder.Text(), L"P:\\Made\\Corr_Out\\");
      });
  EXPECT_EQ(File(kLocalIni),
            "[Setup]\r\nRoot=P:\\Made\\\r\nProjDelim=\" _ \"\r\nSubjDelim=::\r\n"
            "EmailFolder=Mail\\\r\n");
}

TEST_F(SetupDialog, ReturnListsWhatIsMissing) {
  const std::wstring all =
      L"-You must select a Work Unit Type.\r\n-The Project Delimiter must have a value.\r\n"
      L"-The Subject Delimiter must have a value.\r\n-The Server Folder must have a value.\r\n"
      L"-The Email Sub-Folder must have a value.\r\n-The Database Location must have a value.\r\n"
      L"-The Settings Location must have a value.";
  Use([&](forms::frmSetup& setup) {
    std::vector<std::wstring> values;
    for (int index = 0; index <= 6; ++index) {
      values.push_back(Field(setup, index).Text());
      Field(setup, index).UserTyped(L"", 0, 0);
    }
    setup.txtSetup(2).UserTyped(L"x", 1, 0);
    EXPECT_EQ(setup.lblFieldLabel(forms::kSetupDelimiterLabel).ForeColor(), forms::kRed)
        << "the other delimiter is missing";
    setup.txtSetup(2).UserTyped(L"", 0, 0);
    utility_->ExpectMessage();
    setup.cmdSetup(forms::kSetupReturn).UserClicked();
    EXPECT_FALSE(setup.IsUnloaded());
    EXPECT_EQ(utility_->Messages().at(0),
              (ShownMessage{kCorrect + all, L"Invalid Form Entries", MessageButtons::Ok,
                            MessageIcon::Information}));
    for (int index = 0; index <= 6; ++index) {
      Field(setup, index).SetText(values[static_cast<std::size_t>(index)]);
      EXPECT_EQ(Field(setup, index).BackColor(), forms::kSystemWindow);
    }
  });
}

TEST_F(SetupDialog, TheWorkUnitListCompletesAndTakesNewWords) {
  const std::string words =
      "\xEF\xBB\xBFProject\r\nJob\r\nJoint venture\r\n\xC3\x9C"
      "ber\r\n\xCE\xA9\r\n";
  utility_->AddFile(kDataFolder + kTypes, words);
  utility_->AddFile(
      kDataFolder + L"Postrove.cnt",
      "2\r\nh\r\na|x\r\n[Form]\r\no|own\r\ns|shared\r\n1|1\r\n2|2\r\n3|3\r\n4|DB of a "
      "~unit~\r\n5|5\r\n6|<WorkUnit>\r\n[Form]\r\n");
  Use(
      [&](forms::frmSetup& setup) {
        EXPECT_EQ(setup.rtfFieldHints.Text(), L"Hint:\r\nown");
        forms::Control& combo = setup.cboWorkType;
        Enter(setup, forms::kSetupWorkType, L"jOB");  // known, and not listed again
        Enter(setup, forms::kSetupWorkType, L"Project");
        combo.UserEntered();
        EXPECT_EQ(setup.rtfFieldHints.Text(), L"Hint:\r\nProject");
        combo.UserTyped(L"", 0, 0);
        EXPECT_EQ(setup.lblDelimLabel(0).Text(), L"<Project No.>");
        for (const auto& [key, word] : {std::pair{0xFC, L"\u00dcber"}, {0x3C9, L"\u03a9"}}) {
          EXPECT_TRUE(combo.UserPressed(key));
          EXPECT_EQ(combo.Text(), word);
          combo.UserTyped(L"", 0, 0);
        }
        for (const wchar_t c : std::wstring(L"jo")) EXPECT_TRUE(combo.UserPressed(c));
        EXPECT_EQ(combo.Text(), L"Job");
        EXPECT_EQ(setup.lblDelimLabel(0).Text(), L"<Job No.>");
        EXPECT_TRUE(combo.UserPressed(8));
        EXPECT_FALSE(combo.UserPressed(L'x'));
        EXPECT_TRUE(combo.UserPressed(13));
        EXPECT_EQ(product_->forms->actions.back(), L"tab frmSetup");
        EXPECT_FALSE(setup.IsUnloaded());
        combo.UserTyped(L"Jobs", 4, 0);
        EXPECT_FALSE(combo.UserPressed(8)) << "nothing is being completed";
        combo.UserTyped(L"", 0, 0);
        for (const wchar_t c : std::wstring(L"jo")) combo.UserPressed(c);
        combo.UserLeft();
        EXPECT_FALSE(combo.UserPressed(8)) << "left meanwhile";
        Enter(setup, forms::kSetupWorkType, L"Matter");
        EXPECT_EQ(combo.Items(), (std::vector<std::wstring>{L"Project", L"Job", L"Joint venture",
                                                            L"\u00dcber", L"\u03a9", L"Matter"}));
        EXPECT_EQ(setup.lblDelimLabel(1).Text(), L"<Matter>");
        setup.txtSetup(4).UserEntered();
        EXPECT_EQ(setup.rtfFieldHints.Text(), L"***IMPORTANT***:\r\nDB of a Matter");
      },
      [](forms::frmPostrove& save) {
        EXPECT_EQ(save.lblFormTitle.Text(), L"Postrove Matter EMail and File Location");
        EXPECT_EQ(save.lblProjectLabel.Text(), L"Matter: ");
      });
  EXPECT_EQ(File(kDataFolder + kTypes), words + "Matter\r\n");
  EXPECT_EQ(File(kLocalIni), "[Setup]\r\nWorkUnit=Matter\r\n");
  EXPECT_EQ(product_->forms->actions.back(), L"focus cboPostrove");
}

TEST_F(SetupDialog, EscapeForgetsWhatIsNotStored) {
  Use([&](forms::frmSetup& setup) {
    utility_->ExpectMessage();
    Enter(setup, 1, L"");
    setup.txtSetup(4).UserEntered();
    setup.txtSetup(4).UserTyped(L"S:\\Db", 5, 0);
    setup.UserEscaped();
    EXPECT_TRUE(setup.IsUnloaded());
    EXPECT_EQ(setup.txtSetup(4).Text(), kDataFolder);
  });
  EXPECT_EQ(File(kLocalIni), "(none)");
}

TEST_F(SetupDialog, BrowsedFoldersAreCheckedAndStoredAtOnce) {
  utility_->SetDriveType(L"E:\\", DriveKind::CdRom);
  const auto inSetup = [&](forms::frmSetup& setup) {
    for (const wchar_t* chosen : {L"", L"C:\\"}) {  // a drive has no name of a sub-folder
      utility_->ExpectBrowse(chosen);
      setup.cmdBrowse(forms::kSetupBrowseEmailFolder).UserClicked();
    }
    EXPECT_EQ(File(kLocalIni), "(none)");
    utility_->ExpectBrowse(L"P:\\Jobs\\2231\\Mail");
    setup.cmdBrowse(forms::kSetupBrowseEmailFolder).UserClicked();
    utility_->ExpectBrowse(L"P:\\Jobs");
    setup.cmdBrowse(forms::kSetupBrowseServerFolder).UserClicked();
    for (const int browse : {forms::kSetupBrowseDatabase, forms::kSetupBrowseSettings}) {
      utility_->ExpectBrowse(L"E:\\A");
      utility_->ExpectMessage();
      setup.cmdBrowse(browse).UserClicked();
      EXPECT_EQ(product_->forms->actions.back(), L"focus txtSetup");
    }
    for (const int field : {5, 4}) setup.txtSetup(field).UserTyped(kDataFolder, 0, 0);
    setup.cmdSetup(forms::kSetupHelp).UserClicked();
    setup.lblWebSite(0).SetText(L"Http://elsewhere.example");
    for (const int site : {0, 1}) setup.lblWebSite(site).UserClicked();
    EXPECT_FALSE(setup.IsUnloaded());
  };
  Use(inSetup, [](forms::frmPostrove& save) {
    save.lblWebSite.SetText(L"httpd");
    save.lblWebSite.UserClicked();
  });
  EXPECT_EQ(File(kLocalIni), "[Setup]\r\nEmailFolder=Mail\\\r\nRoot=P:\\Jobs\\\r\n");
  EXPECT_EQ(utility_->BrowsePrompts(),
            (std::vector<std::wstring>{
                L"Select Default Email Folder:", L"Select Default Email Folder:",
                L"Select Default Email Folder:", L"Select Default Root Folder:",
                L"Select the Postrove Database Location:", L"Select the Settings File Location:"}));
  const std::wstring site = L"https://www.postrove.example";
  EXPECT_EQ(utility_->OpenedDocuments(),
            (std::vector<std::wstring>{site + L"/PostroveHelp_files/programsetup.htm",
                                       L"Http://elsewhere.example", site, site}));
}

TEST_F(SetupDialog, WhatTheUserEnteredInTheSaveDialogStays) {
  enum { kOwn, kListed, kNumberless, kDouble, kGone, kUnread };
  for (const int what : {kOwn, kListed, kNumberless, kDouble, kGone, kUnread}) {
    SCOPED_TRACE(what);
    Renew();
    const bool own = what == kOwn;
    if (what == kNumberless) {
      product_->database->SetRows(sql::ListProjects(L"Access"),
                                  {{L"", L"Library", L"", true, std::int64_t{8}}});
    } else if (what == kDouble) {  // the first of two projects with one number is meant
      product_->database->SetRows(sql::ListProjects(L"Access"),
                                  {{L"7", L"Annex", L"", true, std::int64_t{8}},
                                   {L"7", L"Wing", L"", true, std::int64_t{9}}});
    }
    if (what == kGone || what == kUnread) {
      product_->database->SetRows(sql::ListProjects(L"Access"),
                                  {{L"9", L"Hall", L"D:\\Hall", true, std::int64_t{8}}});
      // Whether to add it, or that the list cannot be read.
      utility_->ExpectMessage(what == kGone ? MessageAnswer::No : MessageAnswer::Ok);
    }
    Use(
        [&](forms::frmSetup& setup) {
          if (what == kGone) product_->database->SetRows(sql::ListProjects(L"Access"), {});
          if (what == kUnread) product_->database->FailOperation(1);
          Enter(setup, 0, L"P:\\Jobs");
        },
        [&](forms::frmPostrove& save) {
          const wchar_t* const kProjects[] = {L"Harbour: 9", L"Mill Street: 2231", L"Library",
                                              L"Annex: 7",   L"Hall: 9",           L"Hall: 9"};
          const wchar_t* const kFolders[] = {L"D:\\Mine",
                                             L"P:\\Jobs\\2231\\Corr_Out\\",
                                             L"P:\\Jobs\\Corr_Out\\",
                                             L"P:\\Jobs\\7\\Corr_Out\\",
                                             L"D:\\Hall\\Corr_Out\\",
                                             L"D:\\Hall\\Corr_Out\\"};
          EXPECT_EQ(save.cboPostrove.Text(), kProjects[what]);
          EXPECT_EQ(save.txtSaveFolder.Text(), kFolders[what]);
          EXPECT_EQ(save.txtSaveAsName.Text(), L"A name");
          if (what != kUnread) return;
          save.cboPostrove.UserTyped(L"x", 1, 0);
          save.cboPostrove.UserPicked(0);  // the one item of a list that cannot be read
          EXPECT_EQ(save.txtSaveFolder.Text(), kFolders[what]);
          save.txtSaveFolder.UserTyped(L"", 0, 0);
          utility_->ExpectMessage();  // of that alone: the project is known
          save.cmdPostrove(forms::kMainButton).UserClicked();
        },
        [&](forms::frmPostrove& save) {
          save.cboPostrove.UserPicked(0);
          save.txtSaveAsName.UserTyped(L"A name", 6, 0);
          if (!own) return;
          save.cboPostrove.UserTyped(L"Harbour: 9", 10, 0);
          save.txtSaveFolder.UserTyped(L"D:\\Mine", 7, 0);
        });
  }
}

}  // namespace
}  // namespace postrove::testing
