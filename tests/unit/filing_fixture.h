#pragma once

#include <memory>
#include <string>
#include <vector>

#include "data/project_sql.h"
#include "gtest/gtest.h"
#include "memory/Product.h"

namespace postrove::testing {

// One mail window with the button, whose dialog a scripted user answers.
class Filing : public ::testing::Test {
 protected:
  void Open(bool sent, std::int32_t editor = 2, bool shared = false) {
    if (shared) product_->utility->AddFolder(kQuillionFolder);
    product_->Start();
    product_->database->SetRows(sql::ListProjects(product_->database->DbType),
                                {{L"2231", L"Mill Street", L"C:\\", true, std::int64_t{7}}});
    product_->utility->AddFolder(L"C:\\Corr_Out");
    product_->utility->AddFolder(L"D:\\Filed");
    mail_ = product_->outlook.Open(sent);
    mail_->window->properties[L"EditorType"] = editor;
    mail_->item->properties[L"Subject"] = L"Minutes: 12 May";
    mail_->item->properties[L"Body"] = L"Hello";
    mail_->item->properties[L"HTMLBody"] = L"<HTML><body>Hello</Body></HTML>";
    mail_->item->functions[L"SaveAs"] = [this](const office::Arguments& arguments) {
      const std::wstring path = office::ToText(arguments.at(0));
      saved_.push_back(path);
      savedType_ = office::ToLong(arguments.at(1));
      if (!product_->utility->HasFolderOf(path)) {
        throw Error(static_cast<long>(0x80030003), L"SaveAs", L"The folder is missing.");
      }
      product_->utility->AddFile(path, "message");
      return office::Value();
    };
    mail_->item->functions[L"Send"] = [this](const office::Arguments&) {
      EXPECT_EQ(saved_.size(), recipients_ ? 1u : 0u) << "sent before it was written";
      ++sent_;
      // Outlook closes the window while it sends.
      product_->outlook.CloseMessage(mail_);
      return office::Value();
    };
    product_->outlook.RaiseNew(mail_);
    ASSERT_EQ(mail_->buttons.size(), 1u);
  }

  // What the user does in the save dialog before pressing its main button.
  using Edit = std::function<void(forms::frmPostrove&)>;

  void Click(const Edit& edit, bool closes = true) {
    product_->forms->Expect([edit, closes](forms::Form& form) {
      auto& dialog = dynamic_cast<forms::frmPostrove&>(form);
      edit(dialog);
      dialog.cmdPostrove(forms::kMainButton).UserClicked();
      EXPECT_EQ(dialog.IsUnloaded(), closes);
      dialog.Unload();
    });
    for (const ScriptedFormHost::User& answer : answers_) product_->forms->Expect(answer);
    answers_.clear();
    product_->outlook.Click(mail_);
    EXPECT_TRUE(product_->forms->Finished());
    EXPECT_EQ(product_->forms->waiting, 0);
  }

  static void TypeProject(forms::frmPostrove& dialog) {
    dialog.cboPostrove.UserTyped(L"Mill Street: 2231", 17, 0);
  }

  // The answer to a question that the next click's main button will ask.
  void AnswerFolderMessage(const std::wstring& caption, const std::wstring& name, int button) {
    answers_.push_back([=, this](forms::Form& form) {
      EXPECT_EQ(form.Caption(), caption);
      auto& dialog = dynamic_cast<forms::frmFolderMessage&>(form);
      EXPECT_EQ(dialog.lblWarning.Text(),
                caption == L"Folder Not Found"
                    ? L"You may:\r\n-Click 'OK' to create it. You may edit the folder name "
                      L"first.\r\n-Click 'Cancel' to return to the Postrove form to pick a "
                      L"different location without creating the new folder."
                    : L"You may:\r\n-Edit the name and click 'OK' to save the file.\r\n-Just "
                      L"click 'OK' to overwrite the existing file.\r\n-Click 'Cancel' to return "
                      L"to the Postrove form and modify the file name.");
      forms::Control& box = dialog.txtFolderMessage(1);
      EXPECT_EQ(box.SelectionLength() + (box.Text().ends_with(L".msg") ? 4 : 0),
                static_cast<int>(box.Text().size()));
      dialog.UserAskedForHelp();
      EXPECT_EQ(product_->utility->OpenedDocuments().back(),
                L"https://www.postrove.example/PostroveHelp_files/messages.htm");
      if (!name.empty()) box.UserTyped(name, 0, 0);
      dialog.cmdFolderMessage(button).UserClicked();
    });
  }

  std::unique_ptr<Product> product_ = std::make_unique<Product>();
  std::shared_ptr<FakeOutlook::Inspector> mail_;
  std::vector<ScriptedFormHost::User> answers_;
  std::vector<std::wstring> saved_;
  std::int32_t savedType_ = 0;
  int sent_ = 0;
  bool recipients_ = true;
};

}  // namespace postrove::testing
