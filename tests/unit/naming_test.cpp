#include "gtest/gtest.h"
#include "support/Product.h"

namespace postrove::testing {
namespace {

TEST(Naming, ParsesSubjects) {
  const struct {
    const wchar_t* projDelim;
    const wchar_t* subject;
    const wchar_t* stripped;
    const wchar_t* number;
    const wchar_t* name;
    const wchar_t* saveAs;
    bool complete;
  } cases[] = {
      {L"-", L"RE: 2231-4-Mill Street=>Steel shop drawings",
       L"2231-4-Mill Street=>Steel shop drawings", L"2231-4", L"Mill Street",
       L"Steel shop drawings", true},
      {L"-", L"04-123-Harbour Bridge=>Minutes", L"04-123-Harbour Bridge=>Minutes", L"04-123",
       L"Harbour Bridge", L"Minutes", true},
      {L"-", L"RE: FW: 12-7-North Wing=>Fee letter", L"12-7-North Wing=>Fee letter", L"12-7",
       L"North Wing", L"Fee letter", true},
      {L"-", L"FW: RE: x", L"RE: x", L"", L"", L"", false},
      {L"-", L"Re: x", L"Re: x", L"", L"", L"", false},
      {L"-", L"12-North Wing=>x", L"12-North Wing=>x", L"", L"12-North Wing", L"x", false},
      {L"_", L"A12_Hall=>Plans", L"A12_Hall=>Plans", L"A12", L"Hall", L"Plans", true},
      {L"::", L"A12::Hall=>Plans=>B", L"A12::Hall=>Plans=>B", L"A12", L"Hall", L"Plans=>B", true},
      {L"_", L"_Hall=>Plans", L"_Hall=>Plans", L"", L"Hall", L"Plans", false},
      {L"_", L"A12_=>Plans", L"A12_=>Plans", L"A12", L"", L"Plans", false},
      {L"-", L"no delimiter at all", L"no delimiter at all", L"", L"", L"", false},
      {L"-", L"only=>name", L"only=>name", L"", L"", L"name", false},
      {L"-", L"1-2-\x0411\x0440\x0438\x0434\x0436=>\x03A3\x03C7\x03AD\x03B4\x03B9\x03BF",
       L"1-2-\x0411\x0440\x0438\x0434\x0436=>\x03A3\x03C7\x03AD\x03B4\x03B9\x03BF", L"1-2",
       L"\x0411\x0440\x0438\x0434\x0436", L"\x03A3\x03C7\x03AD\x03B4\x03B9\x03BF", true},
  };
  for (const auto& one : cases) {
    SCOPED_TRACE(::testing::Message() << "subject " << text::ToUtf8(one.subject));
    Product product;
    product.Start();
    clsPostrove& controller = product.Controller();
    controller.ProjDelim = one.projDelim;
    std::wstring subject = one.subject;
    EXPECT_EQ(controller.ParseSubject(subject), one.complete);
    EXPECT_EQ(subject, one.stripped);
    EXPECT_EQ(controller.ProjectNumber, one.number);
    EXPECT_EQ(controller.ProjectName, one.name);
    EXPECT_EQ(controller.SaveAsName, one.saveAs);
  }
}

TEST(Naming, DelimitersInTheWrongOrderAreAnInvalidArgument) {
  Product product;
  product.Start();
  product.Controller().ProjDelim = L"_";
  for (std::wstring subject : {L"x=>12_Hall", L"=>long number_", L"ab=>c_d=>e"}) {
    try {
      product.Controller().ParseSubject(subject);
      ADD_FAILURE() << "no error";
    } catch (const Error& error) {
      EXPECT_EQ(error.Number(), kInvalidArgument);
    }
  }
}

TEST(Naming, FindsAndSelectsRows) {
  Product product;
  product.Start();
  clsPostrove& controller = product.Controller();
  EXPECT_EQ(controller.FindProject(L"1", L""), -1);
  controller.Root = L"R:\\";
  controller.ProjectList = {{L"AB-1", L"Mill", L"P:\\Mill", true, 7},
                            {L"",
                             L"\x00DC"
                             L"berbau",
                             L"", false, 8},
                            {L"C", L"mill", L"", true, 9}};
  EXPECT_EQ(controller.FindProject(L"ab-1", L"anything"), 0);
  EXPECT_EQ(controller.FindProject(L"", L"MILL"), 0);
  EXPECT_EQ(controller.FindProject(L"",
                                   L"\x00FC"
                                   L"BERBAU"),
            1);
  EXPECT_EQ(controller.FindProject(L"Mill", L"Mill"), -1);

  controller.SelectProject(0);
  EXPECT_EQ(controller.ProjFilePath, L"P:\\Mill\\");
  EXPECT_TRUE(controller.Active);
  EXPECT_EQ(controller.ProjectID, 7);
  controller.SelectProject(2);
  EXPECT_EQ(controller.ProjFilePath, L"R:\\C");  // no backslash: the save fields add it
  controller.ClearProject();
  EXPECT_EQ(controller.ProjectNumber + controller.ProjectName + controller.ProjFilePath, L"");
  EXPECT_FALSE(controller.Active);
  EXPECT_EQ(controller.ProjectID, 0);
}

TEST(Naming, FillsTheDialog) {
  Product product;
  product.Start();
  clsPostrove& controller = product.Controller();
  forms::frmPostrove form({});
  controller.Root = L"R:\\";
  controller.ProjectList = {{L"AB-1", L"Mill", L"", true, 7},
                            {L"", L"Alone", L"", true, 8},
                            {L"AB-1", L"Twin", L"", true, 9}};

  controller.ProjectNumber = L"AB-1";
  controller.ProjectName = L"Mill";
  controller.ProjFilePath = L"P:\\2231";
  controller.SaveAsName = L"Minutes";
  controller.FillProjectCombo(form.cboPostrove);
  EXPECT_EQ(form.cboPostrove.Items(),
            (std::vector<std::wstring>{L"Mill: AB-1", L"Alone", L"Twin: AB-1"}));
  EXPECT_EQ(form.cboPostrove.ListIndex(), 2);  // a later match replaces an earlier one
  controller.FillSaveFields(form);
  EXPECT_EQ(form.cboPostrove.Text(), L"Mill: AB-1");
  EXPECT_EQ(form.txtSaveFolder.Text(), L"P:\\2231\\Corr_Out\\");
  EXPECT_EQ(form.txtSaveAsName.Text(), L"Minutes");

  controller.ProjectNumber = L"ab-1";  // the list is found by exact letters only
  controller.FillProjectCombo(form.cboPostrove);
  EXPECT_EQ(form.cboPostrove.ListIndex(), -1);

  controller.ClearProject();
  controller.ProjectList.clear();
  controller.FillProjectCombo(form.cboPostrove);
  EXPECT_EQ(form.cboPostrove.Items().size(), 1u);
  controller.FillSaveFields(form);
  EXPECT_EQ(form.txtSaveFolder.Text(), L"R:\\Corr_Out\\");
}

}  // namespace
}  // namespace postrove::testing
