// Filings that something goes wrong in: each call and operation in turn, the host that takes its
// objects away, input that would lead elsewhere.

#include "filing_fixture.h"

namespace postrove::testing {
namespace {

using office::Value;

enum Kind {
  kPlain,
  kOverwrite,
  kOverwriteCancelled,
  kFolderMade,
  kTemporaryProject,
  kAddedProject,
  kBareText
};
enum Part { kOffice, kFiles, kDatabase, kDisk };

struct Story {
  Kind kind;
  bool sent;
  bool shared;
};

constexpr wchar_t kPath[] = L"D:\\Filed\\Minutes- 12 May.msg";
constexpr wchar_t kBarePath[] = L"D:\\Filed\\Bare(att).msg";
constexpr wchar_t kMadePath[] = L"D:\\New\\Minutes- 12 May.msg";
constexpr wchar_t kOther[] = L"D:\\Filed\\other.msg";

class Failures : public Filing {
 protected:
  // One filing whose n-th call or operation of a kind fails; 0 for none. Answers how many of that
  // kind there were.
  int Play(const Story& story, Part part, int n) {
    product_ = std::make_unique<Product>();
    saved_.clear();
    sent_ = 0;
    Open(story.sent, story.kind == kBareText ? 1 : 2, story.shared);
    if (story.kind == kBareText) {  // no subject, plain text, one attachment
      mail_->item->properties[L"Subject"] = L"";
      office::ToObject(mail_->item->properties[L"Attachments"])->Put(L"Count", 1);
    }
    product_->utility->AnswerTheRest(story.kind == kAddedProject ? MessageAnswer::Yes
                                                                 : MessageAnswer::No);
    product_->utility->AddFile(kOther, "other");
    if (story.kind == kOverwrite || story.kind == kOverwriteCancelled) {
      product_->utility->AddFile(kPath, "old");
    }
    if (part == kDisk && n != 0) FailDisk(n);
    product_->forms->everyone = [this, story](forms::Form& form) { Act(form, story); };
    FakeLog& log = product_->outlook.log;
    log.calls.clear();
    const int files = product_->utility->FileOperations();
    const auto statements = product_->database->Statements().size();
    if (part == kOffice) log.failAt = n;
    if (part == kFiles && n != 0) product_->utility->FailFileOperation(n);
    if (part == kDatabase && n != 0) product_->database->FailOperation(n);
    Press(mail_);
    if (part == kOffice) return static_cast<int>(log.calls.size());
    if (part == kFiles) return product_->utility->FileOperations() - files;
    if (part == kDisk) return 2;
    return static_cast<int>(product_->database->Statements().size() - statements);
  }

  void Press(const FakeOutlook::InspectorPtr& mail) {
    shown_ = closed_ = false;
    product_->outlook.Click(mail);
    product_->outlook.log.failAt = 0;
    EXPECT_EQ(product_->forms->waiting, 0);
  }

  // A full disk: half a file and an error, or an empty file and none.
  void FailDisk(int n) {
    const auto whole = mail_->item->functions[L"SaveAs"];
    mail_->item->functions[L"SaveAs"] = [=, this](const office::Arguments& arguments) {
      mail_->item->functions[L"SaveAs"] = whole;
      product_->utility->AddFile(office::ToText(arguments.at(0)), n == 1 ? "mess" : "");
      if (n == 1) throw Error(static_cast<long>(0x80030070), L"SaveAs", L"The disk is full.");
      return Value();
    };
  }

  // The user wants it filed and agrees to every question, or cancels that about the existing file.
  void Act(forms::Form& form, const Story& story) {
    if (auto* question = dynamic_cast<forms::frmFolderMessage*>(&form)) {
      const bool cancels =
          story.kind == kOverwriteCancelled && form.Caption() == L"Existing File Name";
      return question->cmdFolderMessage(cancels ? 1 : 0).UserClicked();
    }
    if (form.Name() == L"frmProjInfo") {
      EXPECT_EQ(form.Find(L"txtProjInfo", 2).Text(), L"C:\\9\\");  // not of the project before
      form.Find(L"cmdProjInfo", forms::kProjInfoSave).UserClicked();
      if (!form.IsUnloaded()) form.Find(L"cmdProjInfo", forms::kProjInfoCancel).UserClicked();
      return;
    }
    auto& dialog = dynamic_cast<forms::frmPostrove&>(form);
    shown_ = true;
    const std::wstring project = story.kind == kTemporaryProject || story.kind == kAddedProject
                                     ? L"Hall: 9"
                                     : L"Mill Street: 2231";
    dialog.cboPostrove.UserPicked(0);
    dialog.cboPostrove.UserTyped(project, static_cast<int>(project.size()), 0);
    dialog.txtSaveFolder.UserTyped(story.kind == kFolderMade ? L"D:\\New" : L"D:\\Filed", 0, 0);
    if (story.kind == kBareText) dialog.txtSaveAsName.UserTyped(L"Bare", 0, 0);
    dialog.cmdPostrove(forms::kMainButton).UserClicked();
    closed_ = dialog.IsUnloaded();
    dialog.UserClosed();
  }

  std::string At(const std::wstring& path) { return product_->utility->File(path).value_or(""); }

  void CheckNothingIsLost(const Story& story, bool failed) {
    const std::wstring path = story.kind == kFolderMade ? kMadePath
                              : story.kind == kBareText ? kBarePath
                                                        : kPath;
    const bool filed = At(path) == "message";
    EXPECT_EQ(At(kOther), "other");
    EXPECT_TRUE(story.kind != kOverwrite || filed || At(path) == "old") << At(path);
    EXPECT_TRUE(story.kind != kOverwriteCancelled || At(path) == "old") << At(path);
    for (const std::wstring& file : product_->utility->Files()) {
      if (!file.ends_with(L".msg")) continue;
      EXPECT_TRUE(At(file) != "" && At(file) != "mess") << "half a message";
    }
    EXPECT_LE(sent_, story.sent ? 0 : 1);
    EXPECT_TRUE(sent_ == 0 || filed) << "sent unfiled";
    EXPECT_EQ(closed_, filed && (story.sent || sent_ != 0));
    if (!closed_ && story.kind != kOverwriteCancelled) {
      EXPECT_TRUE(failed);
      EXPECT_FALSE(product_->utility->Messages().empty()) << "failed without a word";
    }
    if (!closed_) {
      EXPECT_EQ(mail_->item->properties[L"HTMLBody"], Value(L"<HTML><body>Hello</Body></HTML>"));
      EXPECT_EQ(mail_->item->properties[L"Body"], Value(L"Hello"));
      EXPECT_EQ(mail_->item->properties[L"Subject"],
                Value(story.kind == kBareText ? L"" : L"Minutes: 12 May"));
    }
  }

  // The same message again when it was not handled, else another one.
  void CheckTheNextFilingWorks(const Story& story) {
    if (closed_) {
      const auto before = mail_;
      mail_ = product_->outlook.Open(true);
      mail_->item->properties[L"Subject"] = L"Next";
      mail_->item->functions[L"SaveAs"] = before->item->functions[L"SaveAs"];
      product_->outlook.RaiseNew(mail_);
      ASSERT_EQ(mail_->buttons.size(), 1u);
    }
    saved_.clear();
    sent_ = 0;
    const bool another = closed_;
    Story next = story;
    if (next.kind == kOverwriteCancelled) next.kind = kOverwrite;
    product_->forms->everyone = [this, next](forms::Form& form) { Act(form, next); };
    Press(mail_);
    EXPECT_TRUE(closed_);
    ASSERT_EQ(saved_.size(), 1u);
    EXPECT_EQ(At(saved_[0]), "message");
    EXPECT_EQ(sent_, another || story.sent ? 0 : 1);
  }

  bool shown_ = false;
  bool closed_ = false;
};

TEST_F(Failures, AnySingleOneLosesNothing) {
  int runs = 0;
  for (const Kind kind : {kPlain, kOverwrite, kOverwriteCancelled, kFolderMade, kTemporaryProject,
                          kAddedProject, kBareText}) {
    for (const bool sent : {true, false}) {
      for (const bool shared : {false, true}) {
        for (const Part part : {kOffice, kFiles, kDatabase, kDisk}) {
          if (kind == kOverwriteCancelled && part == kDisk) continue;  // nothing is written
          int count = 0;
          for (int n = 0; n <= count; ++n) {
            const Story story{kind, sent, shared};
            SCOPED_TRACE(::testing::Message() << "kind " << kind << ", sent " << sent << ", shared "
                                              << shared << ", part " << part << ", number " << n);
            const int made = Play(story, part, n);
            if (n == 0) count = made;
            CheckNothingIsLost(story, n != 0);
            CheckTheNextFilingWorks(story);
            ++runs;
            if (HasFailure()) return;
          }
          EXPECT_GE(count, part == kDatabase ? 1 : 2);
        }
      }
    }
  }
  RecordProperty("runs", runs);
  EXPECT_GT(runs, 500);
}

}  // namespace
}  // namespace postrove::testing
