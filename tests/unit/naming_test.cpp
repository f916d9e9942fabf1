#include "controller/parse_subject.h"
#include "controller/project_box.h"
#include "controller/project_folder.h"
#include "forms/frmPostrove.h"
#include "gtest/gtest.h"
#include "memory/Product.h"

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
    try {
      const SubjectParts parts =
          ParseSubject(one.subject, {one.projDelim, one.subjDelim, L"Project"});
      EXPECT_EQ(parts.AreComplete(), one.outcome == kComplete);
      EXPECT_EQ(parts.subject, one.stripped.empty() ? one.subject : one.stripped);
      EXPECT_EQ(parts.projectNumber, one.number);
      EXPECT_EQ(parts.projectName, one.name);
      EXPECT_EQ(parts.saveAsName, one.saveAs);
    } catch (const Error& error) {
      EXPECT_EQ(error.Number(), 5);
      EXPECT_EQ(one.outcome, kRefused);
    }
  }
}

const std::vector<Project> kProjects = {{L"AB-1", L"Mill", L"P:\\Mill", true, 7},
                                        {L"", L"\x00DC\x0062\x0065rbau", L"", false, 8},
                                        {L"C", L"mill", L"", true, 9},
                                        {L"ab-1", L"Twin", L"P:\\Twin\\", true, 10},
                                        {L"", L"", L"P:\\Nameless", true, 11}};

TEST(Naming, FindsProjectsWithoutRegardToCase) {
  Product product;
  product.Start();
  Projects& projects = product.Data().projects;
  projects.ProjectList = kProjects;
  const struct {
    const wchar_t *number, *name;
    std::int64_t id;
  } cases[] = {
      {L"ab-1", L"anything", 7},
      {L"", L"MILL", 7},
      {L"", L"\x00FC\x0042\x0045rBAU", 8},
      {L"c", L"", 9},
      {L"Mill", L"Mill", 0},
      {L"", L"", 0},  // nor the row without a name
  };
  for (const auto& one : cases) {
    const Project* const found = projects.FindProject(one.number, one.name);
    EXPECT_EQ(found ? found->id : 0, one.id) << text::ToUtf8(one.number);
  }
}

// By one rule, and never anywhere but below the root.
TEST(Naming, ANumberNamesTheSameFolderListedOrNot) {
  Product product;
  product.utility->AddFile(kLocalIni, "[Setup]\r\nRoot=R:\\\r\n");
  product.Start();
  const Settings& settings = product.Data().settings;
  for (const auto& [number, folder] : {std::pair{L"..\\..\\Windows", L"R:\\-..-Windows\\"},
                                       {L"C:\\x", L"R:\\C--x\\"},
                                       {L"2024/07", L"R:\\2024-07\\"},
                                       {L"..", L"R:\\"},
                                       {L"aux", L"R:\\_aux\\"},
                                       {L"04-123", L"R:\\04-123\\"}}) {
    EXPECT_EQ(text::NormaliseFolder(FolderOf(settings, {number, L"", L""})), folder);
    EXPECT_EQ(MessageFolder(settings, {L"", L"", FolderOf(settings, {number, L"", L""})}),
              folder + std::wstring(L"Corr_Out\\"));
  }
  EXPECT_EQ(FolderOf(settings, kProjects[0]), L"P:\\Mill\\");
}

TEST(Naming, FillsTheProjectBox) {
  forms::frmPostrove form({});
  const struct {
    const wchar_t *number, *name;
    int selected;
    std::int64_t id = 0;
  } cases[] = {
      {L"ab-1", L"", 3},   // by exact letters only
      {L"AB-1", L"x", 0},  // whatever the name
      {L"aB-1", L"Mill", -1}, {L"", L"Mill", 0},    {L"", L"MILL", -1},
      {L"", L"", -1},         {L"", L"Mill", 1, 8},  // the very row
      {L"", L"Mill", -1, 99},  // one that left the list is not another one of its name
  };
  for (const auto& one : cases) {
    FillProjectCombo(form.cboPostrove, kProjects, {one.number, one.name, L"", true, one.id});
    EXPECT_EQ(form.cboPostrove.Items(),
              (std::vector<std::wstring>{L"Mill: AB-1", L"\x00DC\x0062\x0065rbau", L"mill: C",
                                         L"Twin: ab-1", L""}));
    EXPECT_EQ(form.cboPostrove.ListIndex(), one.selected) << text::ToUtf8(one.number);
  }
  std::vector<Project> twice = kProjects;
  twice.push_back({L"AB-1", L"Annex", L"", true, 12});
  FillProjectCombo(form.cboPostrove, twice, {L"AB-1", L"x", L""});
  EXPECT_EQ(form.cboPostrove.ListIndex(), 5);  // a later match replaces an earlier one
  FillProjectCombo(form.cboPostrove, twice, {L"AB-1", L"Mill", L""});
  EXPECT_EQ(form.cboPostrove.ListIndex(), 0);  // but not a better one
  FillProjectCombo(form.cboPostrove, {}, {L"9", L"Hall", L""});
  EXPECT_EQ(form.cboPostrove.Items(), std::vector<std::wstring>{L"Hall: 9"});
  AppendToProjectCombo(form.cboPostrove, {kProjects[0]});  // in the place of that item
  EXPECT_EQ(form.cboPostrove.Items(), std::vector<std::wstring>{L"Mill: AB-1"});
}

}  // namespace
}  // namespace postrove::testing
