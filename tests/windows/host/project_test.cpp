// Stories of the project information dialog in the stand-in Outlook: a user works on its real
// windows, and the database file is read past the add-in.

#include <algorithm>
#include <filesystem>
#include <optional>

#include "oledb/odbc.h"
#include "product_run.h"

namespace {

using namespace standin;
using run::WaitFor;
using run::Window;
using Texts = std::vector<std::wstring>;

// Every row as "number|name|folder|active".
Texts Table() {
  Statement rows(std::make_shared<Connection>(run::kDatabase),
                 L"SELECT [Project Number] || '|' || [Project Name] || '|' || ProjFilePath || '|' "
                 L"|| Active FROM Project ORDER BY ProjectID");
  Texts table;
  for (auto row = rows.Next(); !row.empty(); row = rows.Next()) {
    table.push_back(std::get<std::wstring>(row.at(0)));
  }
  return table;
}

class ProjectStories : public ::testing::Test {
 protected:
  void SetUp() override {
    before_ = Table();
    ASSERT_GT(before_.size(), 30u);
    postrove::MakeFile(run::kIni,
                       "[Setup]\r\nRoot=" + postrove::text::ToUtf8(root_.Path()) + "\r\n");
    host_.emplace();
    host_->LoadAddIns();
  }

  void TearDown() override {
    host_->Quit();
    EXPECT_EQ(run::Held(*host_), "");
  }

  // Clicks the button of a new message; what the user does may send it.
  void Compose(const std::wstring& subject, const std::function<void(const Window&)>& steps) {
    run::Click(*host_, host_->Open(run::Mail(subject), false), steps);
  }

  // Sends a message of a project that is not in the list, which the user wants to add.
  static void SendUnknown(const Window& save, const std::wstring& project) {
    save.Enter(L"Project", project);
    save.Press(L"Send and Save");
    Window(L"Project Not Found").Press(L"Yes");
  }
  static void MakeFolder() { Window(L"Folder Not Found").Press(L"OK"); }

  static Texts Fields(const Window& dialog) {
    return {dialog.Value(L"Project Number"), dialog.Value(L"Project Name"),
            dialog.Value(L"Project Folder")};
  }
  static void WaitForSaveFields(const Window& save, const std::wstring& project,
                                const std::wstring& folder) {
    WaitFor(postrove::text::ToUtf8(project + L" in " + folder), [&] {
      return save.Value(L"Project") == project && save.Value(L"Save Folder") == folder;
    });
  }

  // What lies below the root, less the root.
  Texts Filed() const {
    Texts files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(root_.Path())) {
      if (!entry.is_directory()) {
        files.push_back(entry.path().wstring().substr(root_.Path().size()));
      }
    }
    std::sort(files.begin(), files.end());
    return files;
  }
  // The rows that are new; all when one of those before is not as it was.
  Texts Added() const {
    const Texts table = Table();
    const auto [old, row] =
        std::mismatch(before_.begin(), before_.end(), table.begin(), table.end());
    return {old == before_.end() ? row : table.begin(), table.end()};
  }

  const run::Registered registered_;
  const run::Folder root_;
  const run::FreshData data_;
  std::optional<Host> host_;
  Texts before_;
};

TEST_F(ProjectStories, ATypedProjectIsAddedAndLaterMoved) {
  const std::wstring quay = root_ / L"Quay", annex = root_ / L"Annex";
  Compose(L"Minutes", [&](const Window& save) {
    SendUnknown(save, L"Quay Wall: 9001");
    const Window add(L"Add a Project");
    add.WaitForFocus(L"Project Name");
    EXPECT_EQ(Fields(add), (Texts{L"9001", L"Quay Wall", root_ / L"9001\\"}));
    add.Enter(L"Project Folder", quay);
    add.Press(L"Save");
    MakeFolder();
  });
  EXPECT_EQ(host_->SentMessages().size(), 1u);
  EXPECT_EQ(Filed(), Texts{L"Quay\\Corr_Out\\Minutes.msg"});
  EXPECT_EQ(Added(), Texts{L"9001|Quay Wall|" + quay + L"|1"});

  Compose(L"Drawings", [&](const Window& save) {
    save.Enter(L"Project", L"quay wall: 9001");
    WaitForSaveFields(save, L"Quay Wall: 9001", quay + L"\\Corr_Out\\");
    save.Press(L"Edit Project...");
    const Window edit(L"Edit a Project");
    EXPECT_EQ(Fields(edit), (Texts{L"9001", L"Quay Wall", quay + L"\\"}));
    EXPECT_TRUE(edit.HasButton(L"Active:  "));
    edit.Enter(L"Project Folder", annex);
    edit.Press(L"Save");
    const Window again(L"Postrove");
    WaitForSaveFields(again, L"Quay Wall: 9001", annex + L"\\Corr_Out\\");
    again.Press(L"Send and Save");
    MakeFolder();
  });
  EXPECT_EQ(host_->SentMessages().size(), 2u);
  EXPECT_EQ(Filed(), (Texts{L"Annex\\Corr_Out\\Drawings.msg", L"Quay\\Corr_Out\\Minutes.msg"}));
  EXPECT_EQ(Added(), Texts{L"9001|Quay Wall|" + annex + L"|1"});
}

}  // namespace
