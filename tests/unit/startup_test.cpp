#include "gtest/gtest.h"
#include "support/Product.h"

namespace postrove::testing {
namespace {

std::wstring LocalIni() { return std::wstring(kAppData) + L"\\Postrove\\Postrove.ini"; }
std::wstring Join(const std::wstring& a, const wchar_t* b) { return a + b; }

TEST(Startup, DefaultsWithoutAnySettings) {
  Product product;
  product.Start();
  const clsPostrove& controller = product.Controller();
  EXPECT_FALSE(controller.QuillionInstalled());
  EXPECT_FALSE(controller.UseQuillion());
  EXPECT_EQ(product.utility->IniFile(), LocalIni());
  EXPECT_EQ(controller.Root, L"C:\\");
  EXPECT_EQ(controller.WorkUnit, L"Project");
  EXPECT_EQ(controller.EmailFolder, L"Corr_Out\\");
  EXPECT_EQ(controller.ProjDelim, L"-");
  EXPECT_EQ(controller.SubjDelim, L"=>");
  EXPECT_EQ(controller.gCommonAppData(), kAppData);
  EXPECT_EQ(controller.gProgramFiles(), kPrograms);
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
  const clsPostrove& controller = product.Controller();
  EXPECT_FALSE(controller.UseQuillion());  // not installed, whatever the file says
  EXPECT_EQ(product.utility->IniFile(), L"S:\\Set\\Postrove.ini");
  EXPECT_EQ(controller.Root, L"P:\\Jobs\\");
  EXPECT_EQ(controller.WorkUnit, L"Job");
  EXPECT_EQ(controller.ProjDelim + controller.SubjDelim + controller.EmailFolder, L"-=>Corr_Out\\");
}

TEST(Startup, AnEmptyRootStaysEmpty) {
  Product product;
  product.utility->AddFile(LocalIni(), "[Setup]\r\nRoot=\r\n");
  product.Start();
  EXPECT_EQ(product.Controller().Root, L"");
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
    EXPECT_TRUE(product.Controller().QuillionInstalled());
    EXPECT_EQ(product.Controller().UseQuillion(), one.shared);
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
    const clsPostrove& controller = product.Controller();
    EXPECT_EQ(product.utility->IniFile(), file);
    EXPECT_EQ(controller.Root, L"Q:\\Projects\\");
    EXPECT_EQ(controller.ProjDelim, L" - ");
    EXPECT_EQ(controller.SubjDelim, L"#");
    EXPECT_EQ(controller.EmailFolder, L"Mail\\");
    EXPECT_EQ(controller.WorkUnit, L"Project");
  }
}

TEST(Startup, MissingRegistryValuesMeanNoSharing) {
  Product product;
  // Without the folder of the application data there is no database either.
  product.utility->ExpectBrowse(L"");
  product.utility->ExpectMessage();
  product.shared.gController = clsPostrove::Create(
      product.shared, product.forms,
      std::make_unique<FakeRegistry>(std::map<std::wstring, std::wstring>{}), {});
  EXPECT_FALSE(product.Controller().QuillionInstalled());
  EXPECT_EQ(product.Controller().Root, L"C:\\");
}

}  // namespace
}  // namespace postrove::testing
