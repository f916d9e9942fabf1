#include "gtest/gtest.h"
#include "support/Product.h"

namespace postrove::testing {
namespace {

enum Outcome { kPartly, kComplete, kRefused };

struct Subject {
  std::wstring projDelim, subjDelim, subject;
  std::wstring number, name, saveAs;
  Outcome outcome = kComplete;
  std::wstring stripped = {};  // without its prefixes; empty: it had none
};

const Subject kSubjects[] = {
    // Prefixes: exactly these two, once each, in this order.
    {L"-", L"=>", L"04-123-Harbour Bridge=>Minutes", L"04-123", L"Harbour Bridge", L"Minutes"},
    {L"-", L"=>", L"RE: FW: 12-7-North Wing=>Fee letter", L"12-7", L"North Wing", L"Fee letter",
     kComplete, L"12-7-North Wing=>Fee letter"},
    {L"-", L"=>", L"RE: RE: 1-2-n=>f", L"RE: 1-2", L"n", L"f", kComplete, L"RE: 1-2-n=>f"},
    {L"-", L"=>", L"FW: RE: x", L"", L"", L"", kPartly, L"RE: x"},
    {L"-", L"=>", L"FW: FW: x", L"", L"", L"", kPartly, L"FW: x"},
    {L"-", L"=>", L"Re: x", L"", L"", L"", kPartly},
    {L"-", L"=>", L"RE:x", L"", L"", L"", kPartly},
    {L"-", L"=>", L" RE: x", L"", L"", L"", kPartly},
    // The hyphen alone ends a number at its second occurrence.
    {L"-", L"=>", L"12-North Wing=>x", L"", L"12-North Wing", L"x", kPartly},
    {L"-", L"=>", L"a=>b-c", L"", L"a", L"b-c", kPartly},
    {L"-", L"=>", L"--n=>f", L"-", L"n", L"f"},
    {L"-", L"=>", L"1-2-n-m=>f", L"1-2", L"n-m", L"f"},
    {L"-", L"=>", L"1-2-n", L"1-2", L"", L"", kPartly},
    {L"--", L"=>", L"1-2--n=>f", L"1-2", L"n", L"f"},
    // Other delimiters end it at the first; searches are for exact letters.
    {L"_", L"=>", L"A12_Hall_B=>Plans", L"A12", L"Hall_B", L"Plans"},
    {L"::", L"##", L"A12::Hall##Plans##B", L"A12", L"Hall", L"Plans##B"},
    {L"x", L"Y", L"1X2xNyMYf", L"1X2", L"NyM", L"f"},
    {L"=", L"=>", L"1=n=>f", L"1", L"n", L"f"},
    {L"_", L"_", L"a_f", L"a", L"", L"f", kRefused},
    // Parts that are missing or empty.
    {L"-", L"=>", L"only=>name", L"", L"", L"name", kPartly},
    {L"_", L"=>", L"_Hall=>Plans", L"", L"Hall", L"Plans", kPartly},
    {L"_", L"=>", L"A12_=>Plans", L"A12", L"", L"Plans", kPartly},
    {L"_", L"=>", L"A12_Hall=>", L"A12", L"Hall", L"", kPartly},
    // An empty delimiter separates nothing.
    {L"", L"=>", L"12-7-n=>f", L"", L"", L"f", kPartly},
    {L"-", L"", L"12-7-n=>f", L"12-7", L"", L"", kPartly},
    // Delimiters in the wrong order.
    {L"_", L"=>", L"x=>12_Hall", L"", L"", L"", kRefused},
    {L"_", L"=>", L"=>long number_", L"", L"", L"", kRefused},
    {L"-", L"=>", L"a=>b-c-d", L"", L"", L"", kRefused},
    // What a header can smuggle in is kept in the parts: cleaning the file name is another matter.
    {L"-", L"=>", std::wstring(L"1-2-a\0b=>c\r\nBcc: d", 18), L"1-2", std::wstring(L"a\0b", 3),
     L"c\r\nBcc: d"},
};

TEST(Naming, SubjectsAreTakenApart) {
  for (const Subject& one : kSubjects) {
    SCOPED_TRACE(text::ToUtf8(one.projDelim + L" | " + one.subjDelim + L" | " + one.subject));
    Product product;
    product.Start();
    clsPostrove& controller = product.Controller();
    controller.ProjDelim = one.projDelim;
    controller.SubjDelim = one.subjDelim;
    std::wstring subject = one.subject;
    if (one.outcome == kRefused) {
      try {
        controller.ParseSubject(subject);
        ADD_FAILURE() << "no error";
      } catch (const Error& error) {
        EXPECT_EQ(error.Number(), 5);
      }
      continue;
    }
    EXPECT_EQ(controller.ParseSubject(subject), one.outcome == kComplete);
    EXPECT_EQ(subject, one.stripped.empty() ? one.subject : one.stripped);
    EXPECT_EQ(controller.ProjectNumber, one.number);
    EXPECT_EQ(controller.ProjectName, one.name);
    EXPECT_EQ(controller.SaveAsName, one.saveAs);
  }
}

TEST(Naming, WhatASubjectLacksStaysAsItWas) {
  Product product;
  product.Start();
  clsPostrove& controller = product.Controller();
  controller.ProjectNumber = L"7";
  controller.ProjectName = L"Mill";
  std::wstring subject = L"only=>name";
  EXPECT_TRUE(controller.ParseSubject(subject));
  EXPECT_EQ(controller.ProjectNumber + controller.ProjectName + controller.SaveAsName,
            L"7Millname");
}

TEST(Naming, FoldersEndInOneBackslash) {
  for (const auto& [path, normalised] :
       {std::pair{L"", L""}, {L"C:\\", L"C:\\"}, {L"P:\\a b", L"P:\\a b\\"}}) {
    EXPECT_EQ(text::NormaliseFolder(path), normalised);
  }
}

// A product whose controller shares Quillion's data or not, with the sample rows.
std::unique_ptr<Product> MakeProduct(bool shared) {
  auto product = std::make_unique<Product>();
  if (shared) product->utility->AddFolder(std::wstring(kPrograms) + L"\\Quillion");
  product->Start();
  clsPostrove& controller = product->Controller();
  EXPECT_EQ(controller.UseQuillion(), shared);
  controller.Root = L"R:\\";
  controller.WorkUnit = L"Job";
  controller.ProjectList = {{L"AB-1", L"Mill", L"P:\\Mill", true, 7},
                            {L"", L"\x00DC\x0062\x0065rbau", L"", false, 8},
                            {L"C", L"mill", L"", true, 9},
                            {L"ab-1", L"Twin", L"P:\\Twin\\", true, 10},
                            {L"", L"", L"P:\\Nameless", true, 11}};
  return product;
}

TEST(Naming, FindsRowsWithoutRegardToCaseAndSelectsThem) {
  const auto product = MakeProduct(false);
  clsPostrove& controller = product->Controller();
  const struct {
    const wchar_t *number, *name;
    int row;
    const wchar_t* folder;
  } cases[] = {
      {L"ab-1", L"anything", 0, L"P:\\Mill\\"},
      {L"", L"MILL", 0, L"P:\\Mill\\"},
      {L"", L"\x00FC\x0042\x0045rBAU", 1, L"R:\\"},
      {L"c", L"", 2, L"R:\\C"},  // no backslash: the save fields add it
      {L"Mill", L"Mill", -1, L""},
      {L"", L"", -1, L""},  // nor the row without a name
  };
  for (const auto& one : cases) {
    SCOPED_TRACE(::testing::Message() << text::ToUtf8(one.number) << one.row);
    ASSERT_EQ(controller.FindProject(one.number, one.name), one.row);
    if (one.row < 0) continue;
    controller.SelectProject(one.row);
    const Project& project = controller.ProjectList[static_cast<std::size_t>(one.row)];
    EXPECT_EQ(controller.ProjectNumber, project.number);
    EXPECT_EQ(controller.ProjectName, project.name);
    EXPECT_EQ(controller.ProjFilePath, one.folder);
    EXPECT_EQ(controller.Active, project.active);
    EXPECT_EQ(controller.ProjectID, project.id);
  }
  controller.ClearProject();
  EXPECT_EQ(controller.ProjectNumber + controller.ProjectName + controller.ProjFilePath, L"");
  EXPECT_FALSE(controller.Active);
  EXPECT_EQ(controller.ProjectID, 0);
  controller.ProjectList.clear();
  EXPECT_EQ(controller.FindProject(L"C", L"mill"), -1);
}

TEST(Naming, AnUnknownProjectIsAskedAboutAndBecomesATemporaryRow) {
  const ShownMessage question{
      L"Job name \"Hall\" was not found in the Database . \r\n\r\nYou may:\r\n"
      L"   -Click 'Yes' to add it to the Postrove database or\r\n"
      L"   -Click 'No' to use it as a temporary Job for this Email.\r\n\r\n"
      L"Do you want to add \"Hall\" to the database?",
      L"Job Not Found", MessageButtons::YesNo, MessageIcon::Question};
  const ShownMessage note{
      L"\"12_Hall\" is not an existing project. \r\n\r\nIt will be added to the Job List as a "
      L"temporary Job for this Email. \r\nTo make it a permanent Job, Add the Job in Quillion.",
      L"Job Not Found", MessageButtons::Ok, MessageIcon::Information};
  for (const bool shared : {false, true}) {
    for (const bool emptyList : {false, true}) {
      SCOPED_TRACE(::testing::Message() << "shared " << shared << ", empty list " << emptyList);
      const auto product = MakeProduct(shared);
      clsPostrove& controller = product->Controller();
      if (emptyList) controller.ProjectList.clear();
      const std::vector<Project> before = controller.ProjectList;
      controller.ProjDelim = L"_";
      controller.ProjectNumber = L"12";
      controller.ProjectName = L"Hall";
      controller.ProjFilePath = L"X:\\of the project before";
      product->utility->ExpectMessage(shared ? MessageAnswer::Ok : MessageAnswer::No);
      controller.ResolveSubjectProject();
      EXPECT_EQ(product->utility->Messages(), std::vector<ShownMessage>{shared ? note : question});
      EXPECT_EQ(controller.ProjFilePath, L"R:\\12\\");
      ASSERT_EQ(controller.ProjectList.size(), before.size() + 1);
      const Project& added = controller.ProjectList.back();
      EXPECT_EQ(added.number + L"|" + added.name + L"|" + added.filePath, L"12|Hall|R:\\12\\");
      EXPECT_FALSE(added.active);
      EXPECT_EQ(added.id, 0);
      controller.ResolveSubjectProject();  // known by now: nobody is asked twice
      EXPECT_EQ(controller.ProjectList.size(), before.size() + 1);
      for (const RanStatement& ran : product->database->Statements()) EXPECT_TRUE(ran.query);
    }
  }
}

// The number decides, or the name alone where there is none.
TEST(Naming, TheListsRowReplacesWhatTheSubjectSaid) {
  for (const bool shared : {false, true}) {
    for (const auto& [number, name, found] :
         {std::tuple{L"c", L"Written otherwise", L"C|mill|R:\\C"},
          {L"", L"MILL", L"AB-1|Mill|P:\\Mill\\"}}) {
      const auto product = MakeProduct(shared);
      clsPostrove& controller = product->Controller();
      controller.ProjectNumber = number;
      controller.ProjectName = name;
      controller.ResolveSubjectProject();
      EXPECT_EQ(
          controller.ProjectNumber + L"|" + controller.ProjectName + L"|" + controller.ProjFilePath,
          found);
    }
  }
}

// By one rule, and never anywhere but below the root.
TEST(Naming, ANumberNamesTheSameFolderListedOrNot) {
  for (const auto& [number, folder] : {std::pair{L"..\\..\\Windows", L"R:\\-..-Windows\\"},
                                       {L"C:\\x", L"R:\\C--x\\"},
                                       {L"2024/07", L"R:\\2024-07\\"},
                                       {L"..", L"R:\\"},
                                       {L"aux", L"R:\\_aux\\"},
                                       {L"04-123", L"R:\\04-123\\"}}) {
    const auto product = MakeProduct(true);
    clsPostrove& controller = product->Controller();
    controller.ProjectNumber = number;
    product->utility->ExpectMessage();
    controller.ResolveSubjectProject();
    EXPECT_EQ(controller.ProjFilePath, folder);
    EXPECT_EQ(controller.ProjectList.back().number, number);
    controller.ProjectList = {{number, L"Listed", L"", true, 1}};
    controller.SelectProject(0);
    EXPECT_EQ(text::NormaliseFolder(controller.ProjFilePath), folder);
  }
}

TEST(Naming, FillsTheDialog) {
  const auto product = MakeProduct(false);
  clsPostrove& controller = product->Controller();
  forms::frmPostrove form({});
  const struct {
    const wchar_t *number, *name;
    int selected;
  } cases[] = {
      {L"ab-1", L"", 3},   // by exact letters only, unlike FindProject
      {L"AB-1", L"x", 0},  // whatever the name
      {L"aB-1", L"Mill", -1}, {L"", L"Mill", 0}, {L"", L"MILL", -1}, {L"", L"", -1},
  };
  for (const auto& one : cases) {
    controller.ProjectNumber = one.number;
    controller.ProjectName = one.name;
    controller.FillProjectCombo(form.cboPostrove);
    EXPECT_EQ(form.cboPostrove.Items(),
              (std::vector<std::wstring>{L"Mill: AB-1", L"\x00DC\x0062\x0065rbau", L"mill: C",
                                         L"Twin: ab-1", L""}));
    EXPECT_EQ(form.cboPostrove.ListIndex(), one.selected) << text::ToUtf8(one.number);
  }
  controller.ProjectList.push_back(controller.ProjectList[0]);
  controller.ProjectNumber = L"AB-1";
  controller.ProjectName = L"Mill";
  controller.ProjFilePath = L"P:\\2231";
  controller.SaveAsName = L"Minutes";
  controller.FillProjectCombo(form.cboPostrove);
  EXPECT_EQ(form.cboPostrove.ListIndex(), 5);  // a later match replaces an earlier one
  controller.FillSaveFields(form);
  EXPECT_EQ(form.cboPostrove.Text(), L"Mill: AB-1");
  EXPECT_EQ(form.txtSaveFolder.Text(), L"P:\\2231\\Corr_Out\\");
  EXPECT_EQ(form.txtSaveAsName.Text(), L"Minutes");

  controller.ClearProject();
  controller.ProjectList.clear();
  controller.FillProjectCombo(form.cboPostrove);
  EXPECT_EQ(form.cboPostrove.Items(), std::vector<std::wstring>{L""});
  controller.FillSaveFields(form);
  EXPECT_EQ(form.txtSaveFolder.Text(), L"R:\\Corr_Out\\");
}

}  // namespace
}  // namespace postrove::testing
