#include <algorithm>

#include "gtest/gtest.h"
#include "memory/Product.h"

namespace postrove::testing {
namespace {

std::wstring Join(const std::wstring& a, const wchar_t* b) { return a + b; }

TEST(Startup, ReadsTheFileThatIsInForce) {
  const std::wstring programs = kQuillionFolder, data = Join(kAppData, L"\\Quillion");
  const char quillions[] =
      "[FilePathsPrj]\r\n1=Q:\\Projects\r\n[Setup]\r\nRoot=X:\\no\r\nProjDelim=\" - \"\r\n"
      "SubjDelim=#\r\nEmailFolder=Mail\r\n";
  const wchar_t kDefaults[] = L"C:\\|Project|Corr_Out\\|-|=>";
  const wchar_t kShared[] = L"Q:\\Projects\\|Project|Mail\\| - |#";
  const std::wstring shared = programs + L"\\Qulln.txt";
  const struct {
    const char* local;    // the local file; null: none
    bool installed;       // Quillion
    std::wstring file;    // the one in force
    const char* content;  // of that; null: as it is
    const wchar_t* read;
  } cases[] = {
      {nullptr, false, kLocalIni, nullptr, kDefaults},
      {"[Setup]\r\nRoot=\r\n", false, kLocalIni, nullptr, L"|Project|Corr_Out\\|-|=>"},
      {"[Setup]\r\nPostroveSettingsPath=S:\\Set\\\r\nRoot=X:\\no\r\nUseQuillion=1\r\n", false,
       L"S:\\Set\\Postrove.ini",
       "[setup]\r\nroot=P:\\Jobs\r\nWORKUNIT=Job\r\nProjDelim=_\r\nSubjDelim=::\r\n"
       "EmailFolder=Mail\r\n",
       L"P:\\Jobs\\|Job|Corr_Out\\|-|=>"},
      {nullptr, true, shared, quillions, kShared},
      {nullptr, true, data + L"\\Qulln.ini", quillions, kShared},
      {"[Setup]\r\nUseQuillion=1\r\n", true, shared, quillions, kShared},
      {"[Setup]\r\nUseQuillion=what?\r\n", true, shared, quillions, kShared},
      {"no ini file at all \x01\x02\xff", true, shared, quillions, kShared},
      {"[Setup]\r\nUseQuillion=0\r\n", true, kLocalIni, nullptr, kDefaults},
      {"[Setup]\r\nUseQuillion=False\r\n", true, kLocalIni, nullptr, kDefaults},
  };
  for (const auto& one : cases) {
    SCOPED_TRACE(&one - cases);
    Product product;
    if (one.installed) product.utility->AddFolder(programs);
    if (one.local) product.utility->AddFile(kLocalIni, one.local);
    if (one.content) product.utility->AddFile(one.file, one.content);
    product.Start();
    const Settings& settings = product.Data().settings;
    EXPECT_EQ(settings.QuillionInstalled(), one.installed);
    EXPECT_EQ(settings.UseQuillion(), one.read == kShared);
    EXPECT_EQ(product.utility->IniFile(), one.file);
    EXPECT_EQ(settings.Root + L"|" + settings.WorkUnit + L"|" + settings.EmailFolder + L"|" +
                  settings.ProjDelim + L"|" + settings.SubjDelim,
              one.read);
    EXPECT_TRUE(product.utility->Messages().empty());
  }
}

// A click and what its dialog proposes: the folder, marked when it is required, and the folder of a
// new project.
std::wstring Proposed(Product& product) {
  std::wstring proposed;
  product.forms->Expect([&](forms::Form& form) {
    auto& save = dynamic_cast<forms::frmPostrove&>(form);
    const bool required = save.lblFolderLabel.ForeColor() == forms::kRed;
    proposed = (required ? L"!" : L"") + save.txtSaveFolder.Text();
    const forms::Control& add = save.cmdPostrove(forms::kAddProjectButton);
    if (add.Visible()) {
      product.forms->Expect([&](forms::Form& added) {
        proposed += L"|" + dynamic_cast<forms::frmProjInfo&>(added).txtProjInfo(2).Text();
        added.Unload();
      });
      save.cmdPostrove(forms::kAddProjectButton).UserClicked();
    }
    save.Unload();
  });
  product.Click();
  return proposed;
}

// What nobody can look at is not what is not there.
TEST(Startup, SettingsThatCannotBeReadAreReadAtTheNextClick) {
  const std::wstring far = L"S:\\Set\\Postrove.ini";
  const std::wstring quillions = kQuillionFolder + L"\\Qulln.txt";
  const std::string settings =
      "[Setup]\r\nUseQuillion=0\r\nRoot=P:\\\r\n[FilePathsPrj]\r\n1=P:\\\r\n";
  enum Trouble { Held, Missing, Away };
  const struct {
    const char* what;
    std::string local;
    std::wstring file;  // the one in trouble
    Trouble trouble;
    bool quillion;
    const wchar_t* named = nullptr;  // else the message names the file
  } cases[] = {
      {"local file", settings, kLocalIni, Held, false},
      {"local file, which may say not to share", settings, kLocalIni, Held, true},
      {"Quillion's file", "[Setup]\r\nUseQuillion=1\r\n", quillions, Held, true},
      {"held", "[Setup]\r\nPostroveSettingsPath=S:\\Set\\\r\n", far, Held, false},
      {"deleted", "[Setup]\r\nPostroveSettingsPath=S:\\Set\\\r\n", far, Missing, false},
      {"drive away", "[Setup]\r\nPostroveSettingsPath=S:\\Set\\\r\n", far, Away, false},
      {"in any current folder", "[Setup]\r\nPostroveSettingsPath=Set\\\r\n", kLocalIni, Missing,
       false, L"\"Set\\Postrove.ini\""},
  };
  for (const auto& one : cases) {
    SCOPED_TRACE(one.what);
    Product product;
    FakeSharedUtil& utility = *product.utility;
    if (one.quillion) utility.AddFolder(kQuillionFolder);
    utility.AddFile(L"Set\\Postrove.ini", settings);
    utility.AddFile(kLocalIni, one.local);
    if (one.trouble == Missing) utility.AddFolder(L"S:\\");
    if (one.trouble == Held) {
      utility.AddFile(one.file, settings);
      utility.SetHeld(one.file);
    }
    const auto files = utility.Files();
    product.Start();
    EXPECT_TRUE(utility.Messages().empty()) << "Outlook's start is held up";
    const auto& loaded = utility.Loaded();
    for (const std::wstring& file : loaded) {
      EXPECT_EQ(std::count(loaded.begin(), loaded.end(), file), 1) << text::ToUtf8(file);
    }
    const bool shared = one.file == quillions;
    const wchar_t* const nothing = shared ? L"!" : L"!|";
    utility.ExpectMessage();
    if (!shared) utility.ExpectMessage();  // no number for a new project without the database
    EXPECT_EQ(Proposed(product), nothing);
    EXPECT_NE(utility.Messages().at(0).text.find(one.named ? one.named : one.file),
              std::wstring::npos);
    if (!shared) utility.ExpectMessage();
    EXPECT_EQ(Proposed(product), nothing) << "told twice";
    EXPECT_EQ(utility.Files(), files);
    EXPECT_TRUE(product.database->Statements().empty());

    utility.AddFile(one.file, settings);
    EXPECT_EQ(Proposed(product), shared ? L"P:\\Corr_Out\\" : L"P:\\Corr_Out\\|P:\\");
    EXPECT_EQ(product.Data().settings.UseQuillion(), shared);
  }
}

// The folder of all users' data, joined to nothing, would be one below the root of any drive.
TEST(Startup, WithoutTheRegistrysFoldersNothingIsReadOrWritten) {
  Product product;
  product.registry.clear();
  product.utility->AddFile(L"\\Postrove\\Postrove.ini", "[Setup]\r\nRoot=P:\\\r\n");
  const auto files = product.utility->Files();
  product.Start();
  product.utility->ExpectMessage();
  product.utility->ExpectMessage();
  EXPECT_EQ(Proposed(product), L"!|");
  EXPECT_NE(product.utility->Messages()[0].text.find(L"\"Common AppData\""), std::wstring::npos);
  EXPECT_TRUE(product.utility->Loaded().empty());
  EXPECT_EQ(product.utility->Files(), files);
}

}  // namespace
}  // namespace postrove::testing
