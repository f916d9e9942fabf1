// Filings beside what else Outlook does: other windows, sending, quitting.

#include "filing_fixture.h"
#include "gmock/gmock.h"

namespace postrove::testing {
namespace {

using office::Value;

// Outlook handles messages while it writes and sends: a second press, Esc and the title bar reach
// the dialog then.
TEST_F(Filing, TheDialogRestsWhileOutlookWorks) {
  for (const wchar_t* member : {L"SaveAs", L"Send"}) {
    product_ = std::make_unique<Product>();
    saved_.clear();
    sent_ = 0;
    Open(false);
    forms::frmPostrove* form = nullptr;
    const auto works = mail_->item->functions[member];
    mail_->item->functions[member] = [&, works](const office::Arguments& arguments) {
      form->cmdPostrove(forms::kMainButton).UserClicked();
      form->UserClosed();
      EXPECT_FALSE(form->IsUnloaded());
      EXPECT_EQ(product_->forms->actions.back(), L"lower frmPostrove");  // behind what Outlook asks
      return works(arguments);
    };
    Click([&](forms::frmPostrove& dialog) {
      form = &dialog;
      TypeProject(dialog);
    });
    EXPECT_EQ(saved_.size(), 1u);
    EXPECT_EQ(sent_, 1);
  }
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

TEST_F(Filing, TheCloseButtonClosesWithoutSaving) {
  Open(false);
  product_->forms->Expect([](forms::Form& form) {
    form.Find(L"cmdPostrove", forms::kCloseButton).UserClicked();
    EXPECT_TRUE(form.IsUnloaded());
  });
  product_->outlook.Click(mail_);
  EXPECT_TRUE(saved_.empty());
  EXPECT_EQ(sent_, 0);
}

TEST_F(Filing, TheActiveWindowsMessageIsFiledWithItsOwnState) {
  Open(true);
  const auto draft = product_->outlook.Open(false);
  product_->outlook.RaiseNew(draft);
  product_->outlook.active = mail_;  // the received message is back in front
  product_->forms->Expect([](forms::Form& form) {
    EXPECT_EQ(form.Find(L"cmdPostrove", forms::kMainButton).Text(), L"Save");
    form.UserClosed();
  });
  product_->outlook.Click(draft);
}

TEST_F(Filing, AWindowThatOpensDuringTheDialogChangesNothing) {
  for (const bool sent : {false, true}) {
    product_ = std::make_unique<Product>();
    saved_.clear();
    sent_ = 0;
    Open(sent);
    Click([&](forms::frmPostrove& dialog) {
      TypeProject(dialog);
      product_->outlook.RaiseNew(product_->outlook.Open(!sent));
    });
    EXPECT_EQ(saved_.size(), 1u);
    EXPECT_EQ(sent_, sent ? 0 : 1);
  }
}

// The program is ended while the dialog's own question is open.
TEST_F(Filing, ADialogThatGoesUnderItsQuestionFilesNothing) {
  Open(false);
  forms::Form* dialog = nullptr;
  answers_.push_back([&](forms::Form& question) {
    dialog->UserClosed();
    question.Find(L"cmdFolderMessage", 0).UserClicked();
  });
  Click([&](forms::frmPostrove& form) {
    dialog = &form;
    TypeProject(form);
    form.txtSaveFolder.UserTyped(L"D:\\New", 0, 0);
  });
  EXPECT_TRUE(saved_.empty());
  EXPECT_EQ(sent_, 0);
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

}  // namespace
}  // namespace postrove::testing
