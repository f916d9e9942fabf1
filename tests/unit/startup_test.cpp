#include <algorithm>

#include "gtest/gtest.h"
#include "support/Product.h"

namespace postrove::testing {
namespace {

std::wstring LocalIni() { return std::wstring(kAppData) + L"\\Postrove\\Postrove.ini"; }
std::wstring Join(const std::wstring& a, const wchar_t* b) { return a + b; }

TEST(Startup, DefaultsWithoutAnySettings) {
  Product product;
  product.Start();
  const Settings& settings = product.Data().settings;
  EXPECT_FALSE(settings.QuillionInstalled());
  EXPECT_FALSE(settings.UseQuillion());
  EXPECT_EQ(product.utility->IniFile(), LocalIni());
  EXPECT_EQ(settings.Root, L"C:\\");
  EXPECT_EQ(settings.WorkUnit, L"Project");
  EXPECT_EQ(settings.EmailFolder, L"Corr_Out\\");
  EXPECT_EQ(settings.ProjDelim, L"-");
  EXPECT_EQ(settings.SubjDelim, L"=>");
  EXPECT_EQ(settings.gCommonAppData(), kAppData);
  EXPECT_EQ(settings.gProgramFiles(), kPrograms);
  EXPECT_TRUE(product.utility->Messages().empty());
}

TEST(Startup, OwnModeFollowsTheSettingsFolderAndKeepsDelimiters) {
  Product product;
  product.utility->AddFile(LocalIni(),
                           "[Setup]\r\nPostroveSettingsPath=S:\\Set\\\r\nRoot=X:\\wrong\r\n"
                           "UseQuillion=1\r\n");
  product.utility->AddFile(L"S:\\Set\\Postrove.ini",
                           "[setup]\r\nroot=P:\\Jobs\r\nWORKUNIT=Job\r\nProjDelim=_\r\n"
                           "SubjDelim=::\r\nEmailFolder=Mail\r\n");
  product.Start();
  const Settings& settings = product.Data().settings;
  EXPECT_FALSE(settings.UseQuillion());  // not installed, whatever the file says
  EXPECT_EQ(product.utility->IniFile(), L"S:\\Set\\Postrove.ini");
  EXPECT_EQ(settings.Root, L"P:\\Jobs\\");
  EXPECT_EQ(settings.WorkUnit, L"Job");
  EXPECT_EQ(settings.ProjDelim + settings.SubjDelim + settings.EmailFolder, L"-=>Corr_Out\\");
}

TEST(Startup, AnEmptyRootStaysEmpty) {
  Product product;
  product.utility->AddFile(LocalIni(), "[Setup]\r\nRoot=\r\n");
  product.Start();
  EXPECT_EQ(product.Data().settings.Root, L"");
}

TEST(Startup, SharingIsDecidedByTheLocalFile) {
  const struct {
    const char* local;
    bool shared;
  } cases[] = {{nullptr, true},
               {"[Setup]\r\nUseQuillion=1\r\n", true},
               {"[Setup]\r\nUseQuillion=0\r\n", false},
               {"[Setup]\r\nUseQuillion=False\r\n", false},
               {"[Setup]\r\nUseQuillion=what?\r\n", true},
               {"no ini file at all \x01\x02\xff", true}};
  for (const auto& one : cases) {
    SCOPED_TRACE(one.local ? one.local : "no file");
    Product product;
    product.utility->AddFolder(Join(kPrograms, L"\\Quillion"));
    if (one.local) product.utility->AddFile(LocalIni(), one.local);
    product.Start();
    EXPECT_TRUE(product.Data().settings.QuillionInstalled());
    EXPECT_EQ(product.Data().settings.UseQuillion(), one.shared);
    EXPECT_TRUE(product.utility->Messages().empty());
  }
}

TEST(Startup, SharedModeReadsQuillionsFile) {
  for (const bool inAppData : {true, false}) {
    Product product;
    const std::wstring folder =
        inAppData ? Join(kAppData, L"\\Quillion") : Join(kPrograms, L"\\Quillion");
    product.utility->AddFolder(Join(kPrograms, L"\\Quillion"));
    if (inAppData) product.utility->AddFolder(folder);
    const std::wstring file = folder + (inAppData ? L"\\Qulln.ini" : L"\\Qulln.txt");
    product.utility->AddFile(file,
                             "[FilePathsPrj]\r\n1=Q:\\Projects\r\n[Setup]\r\nRoot=X:\\no\r\n"
                             "ProjDelim=\" - \"\r\nSubjDelim=#\r\nEmailFolder=Mail\r\n");
    product.Start();
    const Settings& settings = product.Data().settings;
    EXPECT_EQ(product.utility->IniFile(), file);
    EXPECT_EQ(settings.Root, L"Q:\\Projects\\");
    EXPECT_EQ(settings.ProjDelim, L" - ");
    EXPECT_EQ(settings.SubjDelim, L"#");
    EXPECT_EQ(settings.EmailFolder, L"Mail\\");
    EXPECT_EQ(settings.WorkUnit, L"Project");
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
  const std::wstring quillions = Join(kPrograms, L"\\Quillion\\Qulln.txt");
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
      {"local file", settings, LocalIni(), Held, false},
      {"local file, which may say not to share", settings, LocalIni(), Held, true},
      {"Quillion's file", "[Setup]\r\nUseQuillion=1\r\n", quillions, Held, true},
      {"held", "[Setup]\r\nPostroveSettingsPath=S:\\Set\\\r\n", far, Held, false},
      {"deleted", "[Setup]\r\nPostroveSettingsPath=S:\\Set\\\r\n", far, Missing, false},
      {"drive away", "[Setup]\r\nPostroveSettingsPath=S:\\Set\\\r\n", far, Away, false},
      {"in any current folder", "[Setup]\r\nPostroveSettingsPath=Set\\\r\n", LocalIni(), Missing,
       false, L"\"Set\\Postrove.ini\""},
  };
  for (const auto& one : cases) {
    SCOPED_TRACE(one.what);
    Product product;
    FakeSharedUtil& utility = *product.utility;
    if (one.quillion) utility.AddFolder(Join(kPrograms, L"\\Quillion"));
    utility.AddFile(L"Set\\Postrove.ini", settings);
    utility.AddFile(LocalIni(), one.local);
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
