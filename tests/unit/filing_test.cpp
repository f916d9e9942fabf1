#include "filing_fixture.h"
#include "gmock/gmock.h"

namespace postrove::testing {
namespace {

using office::Value;

TEST_F(Filing, ReceivedMessageIsFootedAndSaved) {
  Open(true);
  product_->outlook.AddAttachment(*mail_, L"a.txt");
  Click([this](forms::frmPostrove& dialog) {
    EXPECT_EQ(dialog.lblFormTitle.Text(), L"Postrove Project EMail and File Location");
    EXPECT_EQ(dialog.lblProjectLabel.Text(), L"Project: ");
    EXPECT_EQ(dialog.cmdPostrove(0).Text(), L"Save");
    EXPECT_EQ(dialog.txtSaveFolder.Text(), L"C:\\Corr_Out\\");
    EXPECT_EQ(dialog.txtSaveAsName.Text(), L"Minutes: 12 May");
    EXPECT_EQ(dialog.lblVersion.Text(), L"1.2.3");
    EXPECT_EQ(product_->forms->actions, std::vector<std::wstring>{L"topmost frmPostrove"});
    TypeProject(dialog);
  });
  EXPECT_EQ(saved_, std::vector<std::wstring>{L"C:\\Corr_Out\\Minutes- 12 May(att).msg"});
  EXPECT_EQ(savedType_, 3);
  EXPECT_EQ(sent_, 0);
  EXPECT_NE(office::ToText(mail_->item->properties[L"HTMLBody"]).find(L"Minutes- 12 May(att).msg"),
            std::wstring::npos);
  EXPECT_TRUE(product_->utility->Messages().empty());
}

TEST_F(Filing, NewTextMessageIsWrittenThenSent) {
  Open(false, 1);
  mail_->item->properties[L"Subject"] = L"";
  Click([](forms::frmPostrove& dialog) {
    EXPECT_NE(dialog.cmdPostrove(0).Text(), L"Save");
    const forms::Control& folder = dialog.lblAlert(forms::kFolderLabel);
    const forms::Control& name = dialog.lblAlert(forms::kNameLabel);
    EXPECT_FALSE(folder.Visible());
    EXPECT_TRUE(name.Visible());  // an empty subject proposes no name
    EXPECT_EQ(name.ForeColor(), forms::kRed);
    EXPECT_EQ(dialog.txtSaveAsName.BackColor(), forms::kYellow);
    TypeProject(dialog);
    dialog.txtSaveFolder.UserTyped(L"", 0, 0);
    dialog.txtSaveAsName.UserTyped(L"Fee letter", 10, 0);
    EXPECT_EQ(dialog.txtSaveAsName.BackColor(), forms::kSystemWindow);
    EXPECT_FALSE(name.Visible());
    EXPECT_TRUE(folder.Visible());
    dialog.txtSaveFolder.UserTyped(L"C:\\Corr_Out", 0, 0);
  });
  EXPECT_EQ(saved_, std::vector<std::wstring>{L"C:\\Corr_Out\\Fee letter.msg"});
  EXPECT_EQ(sent_, 1);
  EXPECT_EQ(mail_->item->properties[L"Subject"], Value(L"2231-Mill Street=>Fee letter"));
  EXPECT_NE(office::ToText(mail_->item->properties[L"Body"]).find(L"Fee letter.msg"),
            std::wstring::npos);
  EXPECT_EQ(mail_->item->properties[L"HTMLBody"], Value(L"<HTML><body>Hello</Body></HTML>"));
}

// From Outlook 2003 on, when the code page lacks a letter of the message or of the footer. Before,
// the user is told, once for a message.
TEST_F(Filing, LettersBeyondTheCodePageAreKept) {
  const struct {
    const wchar_t *version, *subject, *name;
    std::int32_t type;
    bool told;
  } cases[] = {{L"10.0", L"Sch\x00F6n", L"x", 3, false},
               {L"10.0.2627", L"\x03A3\x03C7", L"x", 3, true},
               {L"10.0.2627", L"a", L"\x03A3\x03C7", 3, false},
               {L"11.0.5510", L"a", L"x", 3, false},
               {L"11.0.5510", L"\x03A3\x03C7", L"x", 9, false},
               {L"16.0.0.1", L"a", L"\x03A3\x03C7", 9, false}};
  for (const auto& one : cases) {
    product_ = std::make_unique<Product>(one.version);
    Open(true);
    mail_->item->properties[L"Subject"] = one.subject;
    if (one.told) {
      product_->utility->ExpectMessage();
      product_->utility->AddFile(L"C:\\Corr_Out\\x.msg");
      AnswerFolderMessage(L"Existing File Name", L"", 1);
    }
    Click([&](forms::frmPostrove& dialog) {
      TypeProject(dialog);
      dialog.txtSaveAsName.UserTyped(one.name, 0, 0);
      if (!one.told) return;
      dialog.cmdPostrove(forms::kMainButton).UserClicked();  // cancelled, and tried again
      product_->utility->Remove(L"C:\\Corr_Out\\x.msg");
    });
    EXPECT_EQ(savedType_, one.type);
    ASSERT_EQ(product_->utility->Messages().size(), one.told ? 1u : 0u);
    if (one.told) {
      EXPECT_EQ(product_->utility->Messages()[0].title, L"Letters Cannot Be Kept");
    }
  }
}

// What the dialog shows at first: only where Quillion's data is shared the subject is taken apart.
TEST_F(Filing, WhatASubjectProposes) {
  const struct {
    bool shared;
    const wchar_t *subject, *shows;  // project, folder and name; null: an error and no dialog
    bool asks;
  } cases[] = {
      {false, L"2-3-Hall=>Plans", L"|C:\\Corr_Out\\|2-3-Hall=>Plans", false},
      {false, L"", L"|C:\\Corr_Out\\|", false},
      {true, L"", L"|C:\\Corr_Out\\|", false},
      {true, L"RE: Lunch", L"|C:\\Corr_Out\\|Lunch", false},
      {true, L"2-3-Hall=>Plans", L"Hall: 2-3|C:\\2-3\\Corr_Out\\|Plans", true},
      {true, L"..\\-x-Hall=>Plans", L"Hall: ..\\-x|C:\\--x\\Corr_Out\\|Plans", true},
      {true, L"7-8-Mill=>x", L"Mill Street: 7-8|P:\\Mill\\Corr_Out\\|x", false},
      // The name of a listed project, without a number: the one shown is the one meant.
      {true, L"12-Wing=>x", L"12-Wing: 5|P:\\Wing\\Corr_Out\\|12-Wing=>x", false},
      {true, L"a=>b-c-d", nullptr, true},
  };
  for (const auto& one : cases) {
    SCOPED_TRACE(text::ToUtf8(one.subject));
    product_ = std::make_unique<Product>();
    Open(true, 2, one.shared);
    product_->database->SetRows(sql::ListProjects(product_->database->DbType),
                                {{L"7-8", L"Mill Street", L"P:\\Mill", true, std::int64_t{7}},
                                 {L"5", L"12-Wing", L"P:\\Wing", true, std::int64_t{8}}});
    const auto click = [this](const std::wstring& subject, bool asks) {
      mail_->item->properties[L"Subject"] = subject;
      if (asks) product_->utility->ExpectMessage();
      product_->outlook.Click(mail_);
    };
    std::wstring shown = L"none";
    product_->forms->everyone = [&](forms::Form& form) {
      auto& dialog = dynamic_cast<forms::frmPostrove&>(form);
      shown = dialog.cboPostrove.Text() + L"|" + dialog.txtSaveFolder.Text() + L"|" +
              dialog.txtSaveAsName.Text();
      dialog.cboPostrove.UserTyped(L"of this message only", 0, 0);
      dialog.Unload();
    };
    click(L"", false);
    shown = L"none";
    click(one.subject, one.asks);
    EXPECT_EQ(shown, one.shows ? one.shows : L"none");
    click(L"", false);  // nothing is left of it
    EXPECT_EQ(shown, L"|C:\\Corr_Out\\|");
  }
}

TEST_F(Filing, RefusalsListEveryMissingEntry) {
  for (const bool sent : {true, false}) {
    Open(sent);
    product_->utility->ExpectMessage(MessageAnswer::Ok);
    Click(
        [](forms::frmPostrove& dialog) {
          dialog.cboPostrove.UserTyped(L" \x200B: \x2800", 0, 0);  // nothing that can be seen
          dialog.txtSaveFolder.UserTyped(L"", 0, 0);
          dialog.txtSaveAsName.UserTyped(L".msg", 0, 0);  // an ending without a name
        },
        false);
    ASSERT_EQ(product_->utility->Messages().size(), 1u);
    const auto& message = product_->utility->Messages()[0];
    EXPECT_EQ(message.title, sent ? L"Cannot Save" : L"Cannot Send");
    EXPECT_EQ(message.text,
              std::wstring(L"Postrove cannot ") + (sent ? L"save" : L"send") +
                  L" this E-mail... \r\n\r\nYou must select a Project.\r\nYou must select a Folder "
                  L"to save this E-mail in.\r\nYou must select a Filename for this E-mail.");
    EXPECT_EQ(message.icon, MessageIcon::Information);
    EXPECT_TRUE(saved_.empty());
    EXPECT_EQ(sent_, 0);
    product_ = std::make_unique<Product>();
  }
}

TEST_F(Filing, FoldersOnUnfitDrivesAreRefused) {
  const struct {
    DriveKind kind;
    const wchar_t* refusal;  // null for a drive that will do
  } cases[] = {
      {DriveKind::Unknown, L" doesn't exist or it's type cannot be determined."},
      {DriveKind::NoRoot, L" doesn't exist or it's type cannot be determined."},
      {DriveKind::CdRom, L" is a CD-ROM drive."},
      {DriveKind::RamDisk, L" is a RAM drive."},
      {DriveKind::Removable, L" is a removable drive."},
      {DriveKind::Network, nullptr},
      {DriveKind::Fixed, nullptr},
  };
  for (const auto& one : cases) {
    product_ = std::make_unique<Product>();
    saved_.clear();
    Open(true);
    product_->utility->SetDriveType(L"D:\\", one.kind);
    if (one.refusal) product_->utility->ExpectMessage();
    Click(
        [](forms::frmPostrove& dialog) {
          TypeProject(dialog);
          dialog.txtSaveFolder.UserTyped(L"D:\\Filed", 0, 0);
        },
        !one.refusal);
    EXPECT_EQ(saved_.size(), one.refusal ? 0u : 1u);
    if (!one.refusal) continue;
    EXPECT_EQ(product_->utility->Messages().back().text,
              std::wstring(L"Postrove cannot save this E-mail... \r\n\r\n-Drive D:") + one.refusal +
                  L"  (Select a different Folder.)");
  }
}

TEST_F(Filing, BrowsingNamesTheFolderThatQuillionHas) {
  for (const bool shared : {false, true}) {
    product_ = std::make_unique<Product>();
    Open(true, 2, shared);
    product_->utility->ExpectBrowse(L"");
    product_->utility->ExpectBrowse(L"D:\\Filed");
    product_->forms->Expect([](forms::Form& form) {
      auto& dialog = dynamic_cast<forms::frmPostrove&>(form);
      dialog.cboPostrove.UserPicked(0);
      dialog.cmdPostrove(forms::kBrowseFolderButton).UserClicked();
      EXPECT_EQ(dialog.txtSaveFolder.Text(), L"C:\\Corr_Out\\");  // cancelled
      dialog.cmdPostrove(forms::kBrowseFolderButton).UserClicked();
      EXPECT_EQ(dialog.txtSaveFolder.Text(), L"D:\\Filed\\");
      dialog.Unload();
    });
    product_->outlook.Click(mail_);
    EXPECT_EQ(product_->utility->BrowsePrompts().back(),
              std::wstring(shared ? L"The Quillion Project Folder is C:\\\r\n" : L"") +
                  L"Select a folder to save the Email in:");
  }
}

TEST_F(Filing, MissingFolderIsMadeOnlyWhenTheUserAgrees) {
  Open(true);
  AnswerFolderMessage(L"Folder Not Found", L"", 1);
  Click(
      [this](forms::frmPostrove& dialog) {
        TypeProject(dialog);
        dialog.txtSaveFolder.UserTyped(L"D:\\New", 0, 0);
        product_->forms->actions.clear();
      },
      false);
  EXPECT_FALSE(product_->utility->FolderExists(L"D:\\New"));
  EXPECT_TRUE(saved_.empty());
  EXPECT_EQ(product_->forms->actions,
            (std::vector<std::wstring>{L"lower frmPostrove", L"focus txtFolderMessage",
                                       L"topmost frmPostrove"}));
  AnswerFolderMessage(L"Folder Not Found", L"D:\\Other", 0);
  Click([](forms::frmPostrove& dialog) {
    TypeProject(dialog);
    dialog.txtSaveFolder.UserTyped(L"D:\\New", 0, 0);
  });
  EXPECT_TRUE(product_->utility->FolderExists(L"D:\\Other"));
  EXPECT_EQ(saved_, std::vector<std::wstring>{L"D:\\Other\\Minutes- 12 May.msg"});
}

TEST_F(Filing, AnExistingFileIsNeverReplacedUnasked) {
  Open(true);
  product_->utility->AddFile(L"C:\\Corr_Out\\Minutes- 12 May.msg", "first");
  product_->utility->AddFile(L"C:\\Corr_Out\\taken.msg", "second");
  AnswerFolderMessage(L"Existing File Name", L"", 1);  // cancelled
  Click(TypeProject, false);
  answers_.push_back([](forms::Form& form) {  // an emptied name is as good as
    form.Find(L"txtFolderMessage", 1).UserTyped(L"", 0, 0);
    form.Find(L"cmdFolderMessage", 0).UserClicked();
  });
  Click(TypeProject, false);
  answers_.push_back([](forms::Form& form) { form.Unload(); });  // without an answer
  Click(TypeProject, false);
  EXPECT_TRUE(saved_.empty());

  AnswerFolderMessage(L"Existing File Name", L"taken.MSG", 0);  // exists as well: asked again
  AnswerFolderMessage(L"Existing File Name", L"..\\free?", 0);
  Click(TypeProject);
  EXPECT_EQ(saved_, std::vector<std::wstring>{L"C:\\Corr_Out\\-free-.msg"});
  EXPECT_EQ(product_->utility->File(L"C:\\Corr_Out\\Minutes- 12 May.msg"), "first");
  EXPECT_EQ(product_->utility->File(L"C:\\Corr_Out\\taken.msg"), "second");

  saved_.clear();
  AnswerFolderMessage(L"Existing File Name", L"", 0);  // unchanged: overwrite
  Click(TypeProject);
  EXPECT_EQ(saved_, std::vector<std::wstring>{L"C:\\Corr_Out\\Minutes- 12 May.msg"});

  // Another file by the time of the answer: it is asked about in its turn.
  product_->utility->SetReadOnly(saved_[0]);
  answers_.push_back([this](forms::Form& form) {
    EXPECT_EQ(form.Find(L"txtFolderMessage", 0).Text(),
              L"The file \r\n\"C:\\Corr_Out\\Minutes- 12 May.msg\"\r\n already exists.\r\n It is "
              L"read-only.");
    product_->utility->Remove(saved_[0]);
    product_->utility->AddFile(saved_[0], "a colleague's");
    form.Find(L"cmdFolderMessage", 0).UserClicked();
  });
  AnswerFolderMessage(L"Existing File Name", L"", 1);
  Click(TypeProject, false);
  EXPECT_EQ(product_->utility->File(saved_[0]), "a colleague's");

  // What is no file cannot be written over.
  product_->utility->Remove(saved_[0]);
  product_->utility->AddFolder(saved_[0]);
  product_->utility->ExpectMessage();
  AnswerFolderMessage(L"Existing File Name", L"", 0);
  Click(TypeProject, false);
}

TEST_F(Filing, TheProjectBoxCompletesWhatIsTyped) {
  Open(true);
  Click([this](forms::frmPostrove& dialog) {
    forms::Control& box = dialog.cboPostrove;
    dialog.txtSaveAsName.UserTyped(L"Mine", 4, 0);
    dialog.txtSaveAsName.UserLeft();
    for (const wchar_t c : std::wstring(L"mi")) EXPECT_TRUE(box.UserPressed(c));
    EXPECT_EQ(box.Text(), L"Mill Street: 2231");
    EXPECT_EQ(box.SelectionStart(), 2);
    EXPECT_EQ(box.SelectionLength(), 15);
    EXPECT_EQ(dialog.txtSaveFolder.Text(), L"C:\\Corr_Out\\");
    EXPECT_EQ(dialog.txtSaveAsName.Text(), L"Mine");
    EXPECT_FALSE(box.UserPressed(L'x'));
    EXPECT_TRUE(box.UserPressed(13));
    EXPECT_EQ(product_->forms->actions.back(), L"tab frmPostrove");
    EXPECT_FALSE(dialog.IsUnloaded());
  });
  EXPECT_TRUE(product_->utility->Messages().empty()) << "it is not asked about";
}

// Nothing is asked about its file, and nothing of the message is changed.
TEST_F(Filing, WithoutRecipientsNothingIsFiled) {
  enum { kReceived, kRefused, kSent };
  for (const auto outcome : {kReceived, kRefused, kSent}) {
    product_ = std::make_unique<Product>();
    recipients_ = false;
    Open(outcome == kReceived);
    mail_->item->properties[L"Subject"] = L"";
    office::ToObject(mail_->item->properties[L"Recipients"])->Put(L"Count", 0);
    product_->utility->AddFile(L"C:\\Corr_Out\\x.msg", "first");
    if (outcome == kRefused) {
      mail_->item->functions[L"Send"] = [](const office::Arguments&) -> Value {
        throw Error(static_cast<long>(0x80004005), L"Send", L"There must be at least one name.");
      };
    }
    product_->utility->ExpectMessage();  // never silently unsaved
    Click(
        [this](forms::frmPostrove& dialog) {
          TypeProject(dialog);
          dialog.txtSaveAsName.UserTyped(L"x", 0, 0);
          product_->outlook.log.calls.clear();
        },
        outcome != kRefused);
    const wchar_t* const kSays[] = {L"This E-mail has no recipients. It was not saved.",
                                    L"There must be at least one name.",
                                    L"This E-mail was sent, but it was not saved, because it had "
                                    L"no recipients."};
    EXPECT_TRUE(product_->utility->Messages()[0].text.starts_with(kSays[outcome]));
    EXPECT_THAT(product_->outlook.log.calls,  // of the message nothing is changed
                ::testing::Not(::testing::Contains(
                    ::testing::AllOf(::testing::StartsWith(L"Item."), ::testing::EndsWith(L"=")))));
    EXPECT_TRUE(saved_.empty());
  }
}

TEST_F(Filing, UnusableWindowsAreReportedInWords) {
  Open(true);
  const auto click = [this] {
    product_->utility->ExpectMessage(MessageAnswer::Ok);
    product_->outlook.Click(mail_);
  };
  product_->outlook.Open(true, 26);  // an appointment is in front
  click();
  product_->outlook.active = nullptr;
  click();
  product_->outlook.active = mail_;
  mail_->item->properties.erase(L"Subject");
  click();
  EXPECT_EQ(product_->utility->Messages().size(), 3u);
  EXPECT_TRUE(product_->forms->shown.empty());
  mail_->item->properties[L"Subject"] = L"x";
  Click(TypeProject);
  EXPECT_EQ(saved_.size(), 1u);
}

// A refusal is a message in words, and every question about a folder is agreed to.
TEST_F(Filing, BadInputIsCleanedOrRefusedAndNothingGoesElsewhere) {
  const std::wstring deep = L"C:\\" + std::wstring(252, L'd'), file = L"D:\\Filed\\other.msg";
  const struct {
    std::wstring folder, name;
    std::wstring saved;        // empty: refused
    std::wstring edited = {};  // typed into the question
  } cases[] = {
      {L"C:\\Corr_Out", L"..\\..\\x", L"C:\\Corr_Out\\-..-x.msg"},
      {L"  C:/Corr_Out. ", L"Minutes.MSG", L"C:\\Corr_Out\\Minutes.msg"},
      {L"C:\\Corr_Out", std::wstring(10000, L'x'),
       L"C:\\Corr_Out\\" + std::wstring(200, L'x') + L".msg"},
      {L"C:\\" + std::wstring(250, L'd'), L"xy", L"C:\\" + std::wstring(250, L'd') + L"\\x.msg"},
      {file, L"x", L""},  // a folder that is a file
      {file + L"\\sub", L"x", L""},
      {deep, L"x", L""},  // no room for a name
      {deep + L"\\" + deep, L"x", L""},
      {L"Q:\\", L"x", L""},  // no such drive
      {L"C:foo", L"x", L""},
      {L"\\\\?\\C:\\x", L"x", L""},
      {L"C:\\x\\nul", L"x", L""},
      {L"D:\\New", L"x", L"", L"Bridge"},
      {L"D:\\New", L"x", L"", L"E:/x"},  // not one that could be written to, either
      {L"D:\\New", L"x", L"", L"D:\\aux"},
  };
  for (const auto& one : cases) {
    SCOPED_TRACE(text::ToUtf8(one.folder.substr(0, 40) + L" | " + one.name.substr(0, 40)));
    product_ = std::make_unique<Product>();
    saved_.clear();
    Open(true);
    product_->utility->AnswerTheRest();
    product_->utility->AddFile(file, "other");
    product_->utility->SetDriveType(L"E:\\", DriveKind::CdRom);
    product_->utility->AddFolder(L"E:\\");
    product_->forms->everyone = [&](forms::Form& form) {
      if (!one.edited.empty()) form.Find(L"txtFolderMessage", 1).UserTyped(one.edited, 0, 0);
      form.Find(L"cmdFolderMessage", 0).UserClicked();
    };
    const bool refused = one.saved.empty();
    Click(
        [&](forms::frmPostrove& dialog) {
          TypeProject(dialog);
          dialog.txtSaveFolder.UserTyped(one.folder, 0, 0);
          dialog.txtSaveAsName.UserTyped(one.name, 0, 0);
        },
        !refused);
    EXPECT_EQ(saved_, refused ? std::vector<std::wstring>() : std::vector{one.saved});
    ASSERT_EQ(product_->utility->Messages().size(), refused ? 1u : 0u);
    if (!refused) continue;
    EXPECT_TRUE(one.folder != L"C:foo" || product_->utility->Messages()[0].title == L"Cannot Save");
    const std::wstring& told = product_->utility->Messages()[0].text;
    EXPECT_EQ(told.find(L"shorter path.\n\nChange") != told.npos, one.folder.starts_with(deep));
  }
}

}  // namespace
}  // namespace postrove::testing
