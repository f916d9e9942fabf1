#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "shared/file_name.h"
#include "support/FilingDesk.h"

namespace postrove::testing {

// A day at the desk: the user at every dialog, other people's outages, the end of Outlook, in any
// order. After each step holds what must always hold: every visible button files the active
// window's message, once; what is shown is what is used; nothing is sent unfiled, lost or half
// written; nothing is held after the end.
class AnyOrder : private FilingDesk {
 public:
  using Desk::Choose, Desk::Failure, Desk::Kind, Desk::kOffice, Desk::kFiles, Desk::kDatabase,
      Desk::kMemory;

  explicit AnyOrder(Choose choose, std::optional<Failure> only = {})
      : FilingDesk(std::move(choose), only) {
    if (shared_) utility_.AddFolder(kQuillionFolder);
    utility_.AddFile(
        shared_ ? kQuillionFolder + L"\\Qulln.txt" : kLocalIni,
        "; ours\r\n[Setup]\r\nRoot=P:\\Jobs\\\r\nPwd=s3cret\r\n[FilePathsPrj]\r\n1=P:\\Jobs\r\n");
    utility_.AddFile(kOther, "other");
    utility_.AddFile(kDataFolder + L"Postrove.mdb", "rows");
    for (const wchar_t* folder : {L"P:\\Jobs\\Corr_Out", L"D:\\Files\\Corr_Out", L"S:\\Set"}) {
      utility_.AddFolder(folder);
    }
    utility_.SetDriveType(L"E:\\", DriveKind::CdRom);
    product_.database->SetHandler([this](const RanStatement& ran) {
      return projects_.Answer(ran, product_.database->DbType);
    });
    product_.forms->everyone = [this](forms::Form& form) { Use(form); };
    utility_.AnswerTheRest();
    utility_.duringMessages = [this] {
      if (clicked_ && One(4)) Disturb();
    };
    if (only_) Arm();
    try {
      product_.Start();
    } catch (const Error&) {  // Connect reports it, and goes on
    }
  }

  // How many calls of a kind there were.
  int Count(Kind kind) const {
    return kind == kOffice   ? static_cast<int>(outlook_.log.calls.size())
           : kind == kFiles  ? utility_.FileOperations()
           : kind == kMemory ? memory::allocations
                             : static_cast<int>(product_.database->Statements().size());
  }

  // Answers the number of steps that were taken; ends at the first failure, and tells the story.
  int Run(int steps) {
    while (steps_ < steps && !quit_ && !::testing::Test::HasFailure()) {
      ++steps_;
      if (One(3)) {
        ClickOne();
      } else if (One(20)) {
        Outage();
      } else {
        ActOnWindow();
      }
      if (!quit_) CheckWindows();
    }
    if (only_ && !quit_) FileAtLast();
    End();
    for (const ShownMessage& one : utility_.Messages()) {
      EXPECT_EQ(one.text.find(L"s3cret"), std::wstring::npos) << "a password is shown";
    }
    if (::testing::Test::HasFailure()) ADD_FAILURE() << text::ToUtf8(story_);
    return steps_;
  }

 private:
  void Arm() {
    const int n = only_->number;
    memory::allocations = memory::failAt = 0;
    if (n == 0) return;
    if (only_->kind == kOffice) outlook_.log.failAt = n;
    if (only_->kind == kFiles) utility_.FailFileOperation(n);
    if (only_->kind == kDatabase) product_.database->FailOperation(n);
    if (only_->kind == kMemory) memory::failAt = n;
  }

  // Whatever has failed before: the next message is filed.
  void FileAtLast() {
    while (!outlook_.open.empty()) Close(Window(outlook_.open.back()));
    outlook_.log.failAt = memory::failAt = 0;
    utility_.FailFileOperation(0);
    const Window window = Open(true, 43);
    Recipients(*window) = 1;
    product_.forms->everyone = [this](forms::Form& form) {
      save_ = dynamic_cast<forms::frmPostrove*>(&form);
      if (!save_) return void(form.UserEscaped());
      ++dialogs_;
      save_->cboPostrove.UserTyped(L"Hall: 9", 7, 0);
      save_->txtSaveFolder.UserTyped(L"D:\\Files\\Corr_Out", 0, 0);
      save_->txtSaveAsName.UserTyped(L"The last", 0, 0);
      PressMain(*save_);
      save_ = nullptr;
      form.UserEscaped();
    };
    utility_.duringMessages = {};
    utility_.AnswerTheRest();
    Tell(L"the last");
    Activate(window);
    ClickOne(window);
    EXPECT_EQ(saved_, L"D:\\Files\\Corr_Out\\The last.msg");
  }

  void Use(forms::Form& form) {
    utility_.AnswerTheRest(One(2) ? MessageAnswer::Yes : MessageAnswer::No);
    if (auto* save = dynamic_cast<forms::frmPostrove*>(&form)) {
      UseSave(*save);
    } else if (auto* question = dynamic_cast<forms::frmFolderMessage*>(&form)) {
      UseQuestion(*question);
    } else if (auto* project = dynamic_cast<forms::frmProjInfo*>(&form)) {
      UseProject(*project);
    } else {
      UseSetup(dynamic_cast<forms::frmSetup&>(form));
    }
    EXPECT_TRUE(form.IsUnloaded() || !quit_);
    if (&form == save_) save_ = nullptr;
    if (!form.IsUnloaded()) form.UserEscaped();
  }

  void UseSave(forms::frmPostrove& dialog) {
    ++dialogs_;
    save_ = &dialog;
    auto& item = clicked_->item->properties;
    EXPECT_TRUE(shared_ || item.empty() ||
                office::Value(dialog.txtSaveAsName.Text()) == item[L"Subject"])
        << text::ToUtf8(dialog.txtSaveAsName.Text());
    typed_ = false;
    proposed_ = dialog.txtSaveFolder.Text();
    projects_.written.clear();
    agreedFolder_ = agreedName_ = L"";
    for (std::size_t n = Pick(12); n > 0 && !dialog.IsUnloaded(); --n) {
      ++steps_;
      utility_.AnswerTheRest(One(2) ? MessageAnswer::Yes : MessageAnswer::No);
      ActInSave(dialog);
      EXPECT_EQ(dialogs_, 1);
      EXPECT_TRUE(dialog.IsUnloaded() || Topmost());
      CheckList(dialog);
    }
  }

  // The box lists every project, the one of this message only among them.
  void CheckList(const forms::frmPostrove& dialog) {
    const std::size_t listed = product_.Data().projects.ProjectList.size();
    if (listed == 0 || dialog.IsUnloaded() || LacksMemory()) return;
    EXPECT_EQ(dialog.cboPostrove.Items().size(), listed);
  }

  void ActInSave(forms::frmPostrove& dialog) {
    forms::Control& box = dialog.cboPostrove;
    const auto press = [&](int button) { Press(dialog.cmdPostrove(button)); };
    switch (Pick(12)) {
      case 0:
        if (box.Items().empty()) return;
        box.UserPicked(static_cast<int>(Pick(box.Items().size())));
        Tell(L"pick " + box.Text());
        typed_ = false;
        return CheckFolder(dialog);
      case 1: {
        const std::wstring text = AnyOf({L"Harbour: 7", L"harbour: 7", L"Quay Wall: 17", L"Hall",
                                         L"A new name: 7", L": 9", L"", L"Hall: 9: b", L"library"});
        if (text == box.Text()) return;
        Tell(L"type " + text);
        box.UserTyped(text, static_cast<int>(text.size()), 0);
        typed_ = !text.empty();
        return;
      }
      case 2:
        return TypeKeys(dialog, AnyOf({L"ha", L"mi", L"2x", L"\b", L"a\bl", L"h\r"}));
      case 3: {
        box.UserLeft();
        Tell(L"leave");
        const auto& items = box.Items();
        const bool listed = std::any_of(items.begin(), items.end(), [&](const auto& one) {
          return text::EqualsIgnoreCase(one, box.Text());
        });
        if (!typed_ || !listed) return;
        typed_ = false;
        return CheckFolder(dialog);
      }
      case 4: {
        const std::wstring folder = AnyOf({L"D:\\Filed", L"D:\\New", L"E:\\CD", L"C:foo", L"",
                                           L"d:/files/corr_out", L"P:\\Jobs\\Corr_Out\\"});
        Tell(L"folder " + folder);
        dialog.txtSaveFolder.UserTyped(folder, 0, 0);
        dialog.txtSaveFolder.UserLeft();
        return;
      }
      case 5:
        dialog.txtSaveAsName.UserTyped(
            AnyOf({L"other", L"Fee letter", L"..\\x", L"", L"taken.msg", L"a:b"}), 0, 0);
        if (One(2)) dialog.txtSaveAsName.UserLeft();
        Tell(L"name " + dialog.txtSaveAsName.Text());
        return;
      case 6:
      case 7:
        return PressMain(dialog);
      case 8: {
        if (LacksMemory()) return;  // the picker need not come
        const std::wstring folder = AnyOf({L"", L"D:\\Filed", L"E:\\CD"});
        Tell(L"browse " + folder);
        utility_.ExpectBrowse(folder);
        return press(forms::kBrowseFolderButton);
      }
      case 9: {
        Tell(L"add or edit");
        const bool edits = One(2);
        const Row written = projects_.written;
        press(edits ? forms::kEditProjectButton : forms::kAddProjectButton);
        if (projects_.written == written) return;
        typed_ = false;
        proposed_ = dialog.txtSaveFolder.Text();
        return;
      }
      case 10: {
        Tell(L"setup");
        const std::wstring before = dialog.txtSaveFolder.Text();
        press(forms::kDefaultsButton);
        if (dialog.txtSaveFolder.Text() != before) proposed_ = dialog.txtSaveFolder.Text();
        return;
      }
      default:
        return One(2) ? Outage() : Disturb();
    }
  }

  // The box as Windows edits it, where the dialog leaves a key to it.
  void TypeKeys(forms::frmPostrove& dialog, const std::wstring& keys) {
    forms::Control& box = dialog.cboPostrove;
    Tell(L"keys " + keys);
    for (const wchar_t key : keys) {
      if (box.UserPressed(key)) {
        if (key == L'\r') continue;
        typed_ = false;
        CheckFolder(dialog);
        continue;
      }
      std::wstring text = box.Text();
      const auto start = static_cast<std::size_t>(box.SelectionStart());
      text.replace(start, static_cast<std::size_t>(box.SelectionLength()),
                   key == L'\b' ? std::wstring() : std::wstring(1, key));
      const std::size_t caret = key == L'\b' ? start : start + 1;
      if (text == box.Text()) continue;
      box.UserTyped(text, static_cast<int>(caret), 0);
      typed_ = !text.empty();
    }
  }

  // What the handlers of a button throw ends at the procedure of its window.
  static void Press(forms::Control& button) {
    try {
      const memory::Scope product(true);
      button.UserClicked();
    } catch (const std::bad_alloc&) {
    }
  }

  void PressMain(forms::frmPostrove& dialog) {
    shownProject_ = dialog.cboPostrove.Text();
    shownFolder_ = dialog.txtSaveFolder.Text();
    shownName_ = dialog.txtSaveAsName.Text();
    FakeLog& log = outlook_.log;
    // Without memory the text may not have been looked up when it should.
    const bool typed = typed_ || LacksMemory();
    moves_ = typed && text::EqualsIgnoreCase(CleanFolder(shownFolder_), CleanFolder(proposed_));
    fault_ = only_ ? 5 : Pick(6);  // one of a call, a file operation, SaveAs, Send; or none
    Tell(L"main with fault " + std::to_wstring(fault_));
    if (fault_ == 0) log.failAt = static_cast<int>(log.calls.size() + 1 + Pick(40));
    if (!only_) utility_.FailFileOperation(fault_ == 1 ? static_cast<int>(1 + Pick(12)) : 0);
    filing_ = true;
    Press(dialog.cmdPostrove(forms::kMainButton));
    filing_ = false;
    typed_ = false;  // it was looked up
    const std::vector<std::wstring> own = Folders(shownProject_, false);
    const std::wstring shown = dialog.txtSaveFolder.Text();
    if (moves_ && std::find(own.begin(), own.end(), shown) != own.end()) proposed_ = shown;
    NoFault();
    NoFileFault();
  }

  // The folder is that of the listed project which the box shows.
  void CheckFolder(const forms::frmPostrove& dialog) {
    const std::wstring project = dialog.cboPostrove.Text();
    const std::wstring shown = proposed_ = dialog.txtSaveFolder.Text();
    // Without a list the one item is the current project, with the folder that it had.
    if (product_.Data().projects.ProjectList.empty()) return;
    // Nor can it be asked of a change that ran out of memory half way, and said so.
    if (LacksMemory()) return;
    const std::vector<std::wstring> all = Folders(project, true);
    EXPECT_NE(std::find(all.begin(), all.end(), shown), all.end())
        << text::ToUtf8(project + L" in " + shown);
  }

  void UseQuestion(forms::frmFolderMessage& question) {
    const bool aboutFolder = question.Caption() == L"Folder Not Found";
    forms::Control& box = question.txtFolderMessage(1);
    if (One(3)) box.UserTyped(aboutFolder ? L"D:\\Else" : L"free", 0, 0);
    if (One(8)) return Quit();
    if (One(3)) return question.cmdFolderMessage(1).UserClicked();
    Tell(L"agree to " + box.Text());
    (aboutFolder ? agreedFolder_ : agreedName_) = box.Text();
    mayReplace_ = mayReplace_ || !aboutFolder;
    question.cmdFolderMessage(0).UserClicked();
  }

  void UseProject(forms::frmProjInfo& dialog) {
    for (std::size_t n = Pick(4); n > 0 && !dialog.IsUnloaded(); --n) {
      ++steps_;
      const Texts kTexts[] = {{L"2231", L"18", L""},
                              {L"Bridge", L"O'Hara", L""},
                              {L"D:\\Files", L"P:\\Made", L"E:\\x", L""}};
      for (const int field : {0, 1, 2}) {
        if (One(2)) dialog.txtProjInfo(field).UserTyped(AnyOf(kTexts[field]), 0, 0);
      }
      if (One(3)) dialog.chkProjActive.UserClicked();
      if (One(8)) return Quit();
      if (One(4)) Outage();
      Tell(L"save project " + dialog.txtProjInfo(0).Text());
      Press(dialog.cmdProjInfo(forms::kProjInfoSave));
    }
  }

  void UseSetup(forms::frmSetup& setup) {
    for (std::size_t n = Pick(5); n > 0 && !setup.IsUnloaded(); --n) {
      ++steps_;
      const Texts kTexts[] = {{L"P:\\Jobs", L"P:\\None", L"Q:\\", L""},
                              {L"_", L" - ", L""},
                              {L"=>", L"::", L""},
                              {L"Mail", L"Corr_Out", L""},
                              {L"S:\\Db", L"C:\\ProgramData\\Postrove", L"E:\\x"},
                              {L"S:\\Set", L"C:\\ProgramData\\Postrove", L"S:\\None"},
                              {L"Job", L"Project", L"Matter", L""}};
      const std::size_t field = Pick(9);
      if (One(12)) return Quit();
      if (One(6)) Outage();
      if (field > 6) {
        setup.optDbType(field == 7 ? forms::kSetupOwnDb : forms::kSetupSiblingDb).UserClicked();
        Tell(L"option");
        if (setup.IsUnloaded()) return;  // Outlook quit
        EXPECT_EQ(setup.optDbType(forms::kSetupSiblingDb).Checked(),
                  product_.Data().settings.UseQuillion());
        continue;
      }
      const std::wstring text = AnyOf(kTexts[field]);
      Tell(L"default " + text);
      Enter(setup, static_cast<int>(field), text);
    }
    if (!setup.IsUnloaded() && One(2)) Press(setup.cmdSetup(forms::kSetupReturn));
  }

  void Outage() {
    if (only_) return;
    Tell(L"outage");
    const std::wstring file = utility_.IniFile();
    if (One(2)) return void(projects_.away = !projects_.away);
    if (One(2) && utility_.File(file)) return utility_.SetHeld(file, held_ = !held_);
    utility_.FailFileOperation(static_cast<int>(1 + Pick(6)));
  }
};

}  // namespace postrove::testing
