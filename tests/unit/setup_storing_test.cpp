// What the defaults setup dialog stores and moves, and what is left when that fails.
#include "setup_fixture.h"

namespace postrove::testing {
namespace {

TEST_F(SetupDialog, DatabaseAndSettingsMoveFromTheirFields) {
  utility_->AddFile(L"S:\\Taken\\Postrove.mdb", "other rows");
  utility_->AddFile(kDataFolder + L"Moved_By_Postrove20240512.mdb", "from this morning");
  utility_->AddFolder(L"S:\\Db");
  utility_->AddFile(L"S:\\Set\\Postrove.ini", "[Setup]\r\nRoot=P:\\Jobs\\\r\nWorkUnit=Job\r\n");
  Use([&](forms::frmSetup& setup) {
    utility_->ExpectMessage(MessageAnswer::No);
    Enter(setup, 4, L"S:\\Taken");
    EXPECT_EQ(setup.txtSetup(4).Text(), kDataFolder);
    EXPECT_EQ(File(kLocalIni), "(none)");
    utility_->ExpectMessage(MessageAnswer::No);
    Enter(setup, 4, L"S:\\Db");
    EXPECT_EQ(setup.txtSetup(4).Text(), kDataFolder);
    EXPECT_EQ(File(kDataFolder + L"Postrove.mdb"), "rows");
    EXPECT_EQ(utility_->Messages().back(),
              (ShownMessage{L"Do you want to move the database from \"" + kDataFolder +
                                L"\" to \"S:\\Db\\\"?\r\n\r\nEverybody who uses it will find it "
                                L"there. Ask them to close Outlook first.",
                            L"Move the Database", MessageButtons::YesNo, MessageIcon::Question}));
    utility_->ExpectMessage(MessageAnswer::Yes);
    utility_->ExpectMessage();
    Enter(setup, 4, L"S:\\Db");
    EXPECT_EQ(setup.txtSetup(4).Text(), L"S:\\Db\\");
    EXPECT_EQ(utility_->Messages().back(),
              (ShownMessage{L"You have changed the database location to S:\\Db\\.\r\n",
                            L"Postrove Database Location Changed", MessageButtons::Ok,
                            MessageIcon::Information}));
    EXPECT_EQ(File(L"S:\\Db\\Postrove.mdb"), "rows");
    EXPECT_FALSE(utility_->File(kDataFolder + L"Postrove.mdb"));
    EXPECT_EQ(File(kDataFolder + L"Moved_By_Postrove20240512_2.mdb"), "rows");
    EXPECT_EQ(File(kLocalIni), "[Setup]\r\nPostroveDBPath=S:\\Db\\\r\n");

    utility_->ExpectMessage(MessageAnswer::No);
    Enter(setup, 5, L"S:\\Set");
    EXPECT_EQ(setup.txtSetup(5).Text(), kDataFolder);
    utility_->ExpectMessage(MessageAnswer::Yes);
    utility_->ExpectBrowse(L"S:\\Db");  // that file does not know where the database went
    utility_->AddFile(kDataFolder + L"Away.txt");
    Enter(setup, 5, L"S:\\Set");
    EXPECT_EQ(setup.txtSetup(5).Text(), L"S:\\Set\\");
    EXPECT_EQ(setup.txtSetup(0).Text(), L"P:\\Jobs\\");
    EXPECT_EQ(setup.cboWorkType.Text(), L"Job");
    EXPECT_EQ(setup.lblDelimLabel(1).Text(), L"<Job>");

    // Back again: as well a question, which tells whose letter it is.
    utility_->SetDriveType(L"C:\\", DriveKind::Network);
    utility_->ExpectMessage(MessageAnswer::No);
    Enter(setup, 5, kDataFolder);
    EXPECT_EQ(setup.txtSetup(5).Text(), L"S:\\Set\\");
    EXPECT_EQ(
        utility_->Messages().back(),
        (ShownMessage{L"Do you want to move the settings from \"S:\\Set\\\" to \"" + kDataFolder +
                          L"\"?\r\n\r\nThey are kept there from now on.\r\n\r\nC: is a network "
                          L"drive: everybody who uses that folder needs this letter for it.",
                      L"Move the Settings", MessageButtons::YesNo, MessageIcon::Question}));
  });
  EXPECT_NE(File(kLocalIni).find("PostroveSettingsPath=S:\\Set\\\r\n"), std::string::npos);
}

// The way back to settings that are gone is another folder, or the old one when it is there again.
TEST_F(SetupDialog, SettingsThatCannotBeReadAreNotStoredOver) {
  const std::wstring far = L"S:\\Set\\Postrove.ini";
  enum { Stays, Back, LocalAgain };
  for (const int what : {Stays, Back, LocalAgain}) {
    SCOPED_TRACE(what);
    Renew();
    utility_->AddFile(kLocalIni,
                      "[Setup]\r\nPostroveSettingsPath=S:\\Set\\\r\nRoot=P:\\Jobs\\\r\n");
    utility_->AddFolder(L"S:\\Set");
    utility_->ExpectMessage();
    Use([&](forms::frmSetup& setup) {
      EXPECT_EQ(setup.txtSetup(0).Text() + L"|" + setup.txtSetup(5).Text(), L"|S:\\Set\\");
      utility_->ExpectMessage();
      Enter(setup, 0, L"P:\\Jobs");
      EXPECT_EQ(setup.txtSetup(0).Text(), L"");
      EXPECT_FALSE(utility_->File(far));
      if (what == Back) {
        utility_->AddFile(far, "[Setup]\r\nRoot=P:\\\r\n");
        utility_->ExpectMessage();
        Enter(setup, 0, L"P:\\Jobs");
      } else if (what == LocalAgain) {
        utility_->ExpectMessage(MessageAnswer::Yes);  // whether to move
        Enter(setup, 5, kDataFolder);
      }
      const wchar_t* const shown[] = {L"", L"P:\\", L"P:\\Jobs\\"};
      EXPECT_EQ(setup.txtSetup(0).Text(), shown[what]);
    });
    EXPECT_EQ(File(far), what == Back ? "[Setup]\r\nRoot=P:\\\r\n" : "(none)");
  }
}

TEST_F(SetupDialog, OwnAndSharedDatabase) {
  const std::wstring shared = kQuillionFolder + L"\\Qulln.txt";
  utility_->AddFile(shared,
                    "[FilePathsPrj]\r\n1=S:\\Prj\r\n[Setup]\r\nSubjDelim=##\r\n"
                    "EmailFolder=Mail\\\r\n");
  utility_->AddFile(kDataFolder + L"Postrove.cnt",
                    "2\r\nh\r\n[Form]\r\no|own\r\ns|shared\r\n[Form]\r\n");
  const auto check = [](forms::frmSetup& setup, bool sibling) {
    SCOPED_TRACE(sibling);
    EXPECT_EQ(setup.rtfFieldHints.Text(), sibling ? L"Hint:\r\nshared" : L"Hint:\r\nown");
    EXPECT_EQ(setup.optDbType(forms::kSetupSiblingDb).Checked(), sibling);
    for (const int field : {0, 4}) {
      EXPECT_EQ(setup.txtSetup(field).Locked(), sibling);
      EXPECT_EQ(setup.txtSetup(field).BackColor(),
                sibling ? forms::kSystemButtonFace : forms::kSystemWindow);
    }
    EXPECT_EQ(setup.cmdBrowse(forms::kSetupBrowseServerFolder).Visible(), !sibling);
    EXPECT_EQ(setup.cmdBrowse(forms::kSetupBrowseDatabase).Visible(), !sibling);
    EXPECT_EQ(setup.txtSetup(5).Visible(), !sibling);
    EXPECT_EQ(setup.txtSetup(0).Text(), sibling ? L"S:\\Prj\\" : L"C:\\");
    EXPECT_EQ(setup.txtSetup(2).Text(), sibling ? L"##" : L"=>");
    EXPECT_EQ(setup.txtSetup(3).Text(), sibling ? L"Mail\\" : L"Corr_Out\\");
  };
  Use(
      [&](forms::frmSetup& setup) {
        check(setup, true);
        EXPECT_EQ(File(kLocalIni), "(none)") << "opening it stored something";
        setup.optDbType(forms::kSetupOwnDb).UserClicked();
        check(setup, false);
        EXPECT_EQ(File(kLocalIni), "[Setup]\r\nUseQuillion=0\r\n");
        setup.optDbType(forms::kSetupSiblingDb).UserClicked();
        check(setup, true);
        Enter(setup, 1, L"_");
        setup.txtSetup(0).UserEntered();
        utility_->SetReadOnly(kLocalIni);
        utility_->ExpectMessage();
        setup.optDbType(forms::kSetupOwnDb).UserClicked();
        check(setup, true);
        EXPECT_TRUE(Current().UseQuillion());
        utility_->AddFile(kLocalIni, File(kLocalIni));
        setup.optDbType(forms::kSetupOwnDb).UserClicked();
        check(setup, false);
      },
      [&](forms::frmPostrove& save) {
        EXPECT_TRUE(save.cmdPostrove(forms::kAddProjectButton).Visible());
        EXPECT_EQ(save.lblFormTitle.Place().left, save.lblProjectLabel.Place().left);
        EXPECT_EQ(save.txtSaveFolder.Text(), L"C:\\Corr_Out\\");
        EXPECT_EQ(save.cboPostrove.Text(), L"");  // that project was Quillion's
      },
      [](forms::frmPostrove& save) {
        EXPECT_FALSE(save.cmdPostrove(forms::kAddProjectButton).Visible());
        EXPECT_EQ(save.lblFormTitle.Place(), (forms::Box{1620, 195, 6870, 330}));
        EXPECT_EQ(save.lblWebSite.Place(), (forms::Box{1620, 4425, 3300, 240}));
        save.cboPostrove.UserPicked(0);
        EXPECT_EQ(save.txtSaveFolder.Text(), L"S:\\Prj\\2231\\Mail\\");
      });
  EXPECT_EQ(File(kLocalIni), "[Setup]\r\nUseQuillion=0\r\n");
  EXPECT_EQ(File(shared),
            "[FilePathsPrj]\r\n1=S:\\Prj\r\n[Setup]\r\nSubjDelim=##\r\nEmailFolder=Mail\\\r\n"
            "ProjDelim=_\r\n");
}

}  // namespace
}  // namespace postrove::testing
