#pragma once

#include <functional>
#include <memory>
#include <string>

#include "data/project_sql.h"
#include "gtest/gtest.h"
#include "memory/Product.h"

namespace postrove::testing {

inline const std::wstring kCorrect = L"Please correct the following errors... \r\n";
inline constexpr wchar_t kTypes[] = L"WorkUnitType.cnt";

class SetupDialog : public ::testing::Test {
 protected:
  void SetUp() override { Renew(); }

  void Renew() {
    product_ = std::make_unique<Product>();
    utility_ = product_->utility.get();
    utility_->AddFolder(L"P:\\Jobs");
    utility_->AddFile(kDataFolder + L"Postrove.mdb", "rows");
    utility_->AddFile(kDataFolder + kTypes, "Project\r\nJob\r\nJoint venture\r\n");
    product_->database->SetRows(sql::ListProjects(L"Access"),
                                {{L"2231", L"Mill Street", L"", true, std::int64_t{7}}});
  }

  // Clicks the button and opens the setup dialog from the save dialog. Ends both.
  using Setup = std::function<void(forms::frmSetup&)>;
  using Save = std::function<void(forms::frmPostrove&)>;
  void Use(const Setup& steps, const Save& after = {}, const Save& before = {}) {
    if (!product_->shared.gController) product_->Start();
    product_->forms->Expect([&](forms::Form& form) {
      auto& save = dynamic_cast<forms::frmPostrove&>(form);
      if (before) before(save);
      save.cmdPostrove(forms::kDefaultsButton).UserClicked();
      if (after) after(save);
      save.Unload();
    });
    product_->forms->Expect([&](forms::Form& form) {
      EXPECT_EQ(form.Caption(), L"Postrove Defaults Setup");
      auto& setup = dynamic_cast<forms::frmSetup&>(form);
      steps(setup);
      setup.cmdSetup(forms::kSetupReturn).UserClicked();
      EXPECT_TRUE(setup.IsUnloaded()) << "it does not let its user go";
      setup.Unload();
    });
    product_->Click();
    EXPECT_TRUE(product_->forms->Finished());
  }

  void ExpectFolderQuestion(const std::wstring& name, int button) {
    product_->forms->Expect([=](forms::Form& form) {
      EXPECT_EQ(form.Caption(), L"Folder Not Found");
      auto& dialog = dynamic_cast<forms::frmFolderMessage&>(form);
      if (!name.empty()) dialog.txtFolderMessage(1).UserTyped(name, 0, 0);
      dialog.cmdFolderMessage(button).UserClicked();
    });
  }

  const Settings& Current() { return product_->Data().settings; }
  std::string File(const std::wstring& path) { return utility_->File(path).value_or("(none)"); }

  std::unique_ptr<Product> product_;
  FakeSharedUtil* utility_ = nullptr;
};

}  // namespace postrove::testing
