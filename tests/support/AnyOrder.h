#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "shared/file_name.h"
#include "support/Desk.h"
#include "support/FakeProjects.h"

namespace postrove::testing {

// A day at the desk: the user at every dialog, other people's outages, the end of Outlook, in any
// order. After each step holds what must always hold: every visible button files the active
// window's message, once; what is shown is what is used; nothing is sent unfiled, lost or half
// written; nothing is held after the end.
class AnyOrder : private Desk {
 public:
  using Desk::Choose, Desk::Failure, Desk::Kind, Desk::kOffice, Desk::kFiles, Desk::kDatabase,
      Desk::kMemory;

  explicit AnyOrder(Choose choose, std::optional<Failure> only = {})
      : Desk(std::move(choose), only) {
    if (shared_) utility_.AddFolder(kQuillionFolder);
    utility_.AddFile(shared_ ? kQuillionFolder + L"\\Qulln.txt" : kLocalIni,
                     "; ours\r\n[Setup]\r\nRoot=P:\\Jobs\\\r\n[FilePathsPrj]\r\n1=P:\\Jobs\r\n");
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
    if (::testing::Test::HasFailure()) ADD_FAILURE() << text::ToUtf8(story_);
    return steps_;
  }

 private:
  static constexpr wchar_t kOther[] = L"D:\\Filed\\other.msg";

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

  // A filing.

  void ClickOne() {
    const Window window = AnyWindow();
    if (window && !window->buttons.empty()) ClickOne(window);
  }

  void ClickOne(const Window& window) {
    Activate(window);
    Tell(L"click " + Subject(window));
    clicked_ = window.get();
    saved_.clear();
    sent_ = dialogs_ = 0;
    mayReplace_ = false;
    const auto before = window->item->properties;
    const std::size_t told = utility_.Messages().size();
    const auto other = utility_.File(kOther);
    outlook_.Click(window);
    clicked_ = nullptr;
    NoFileFault();
    EXPECT_EQ(product_.forms->waiting, 0);
    // Without a dialog there is a message why.
    EXPECT_TRUE(dialogs_ == 1 || (dialogs_ == 0 && utility_.Messages().size() > told) || quit_);
    auto& item = window->item->properties;
    for (const wchar_t* text : {L"Body", L"HTMLBody", L"Subject"}) {
      EXPECT_TRUE(!saved_.empty() || item.empty() || item[text] == before.at(text));
    }
    EXPECT_LE(sent_, before.at(L"Sent") == office::Value(true) ? 0 : 1);
    EXPECT_TRUE(mayReplace_ || utility_.File(kOther) == other);
    CheckFiles();
  }

  office::Value SaveAs(const FakeOutlook::Inspector& window, const std::wstring& path) override {
    EXPECT_EQ(&window, clicked_) << "another window's message";
    EXPECT_EQ(sent_, 0);
    if (!utility_.HasFolderOf(path) || fault_ == 2) {
      if (One(2)) utility_.AddFile(path, "mess");
      throw Error(static_cast<long>(0x80030070), L"SaveAs", L"The disk is full.");
    }
    utility_.AddFile(path, "message");
    saved_ = path;
    Tell(L"saved");
    Work();
    const std::wstring folder = path.substr(0, path.rfind(L'\\') + 1);
    const std::wstring name = path.substr(folder.size(), path.size() - folder.size() - 4);
    const auto is = [&](const std::wstring& one) {
      return text::EqualsIgnoreCase(folder, CleanFolder(one));
    };
    const std::vector<std::wstring> own = Folders(shownProject_, false);
    EXPECT_TRUE(is(shownFolder_) || is(agreedFolder_) ||
                (moves_ && std::any_of(own.begin(), own.end(), is)))
        << text::ToUtf8(path + L" of " + shownProject_ + L" in " + shownFolder_);
    const auto named = [&](const std::wstring& one) {
      return name.starts_with(CleanFileName(WithoutMessageEnding(one)));
    };
    EXPECT_TRUE(named(shownName_) || named(agreedName_)) << text::ToUtf8(path);
    return {};
  }

  office::Value Send(const FakeOutlook::Inspector& window) override {
    EXPECT_EQ(&window, clicked_) << "another window's message";
    EXPECT_TRUE(!saved_.empty() || Recipients(window) == office::Value(0)) << "unfiled";
    if (fault_ == 3) throw Error(static_cast<long>(0x80004005), L"Send", L"There is no server.");
    ++sent_;
    Tell(L"sent");
    Work();
    const auto open = std::find_if(outlook_.open.begin(), outlook_.open.end(),
                                   [&](const Window& one) { return one.get() == &window; });
    if (open == outlook_.open.end()) return {};
    const Window sent = *open;
    outlook_.CloseMessage(sent);
    Close(sent);
    return {};
  }

  // Outlook handles messages while it writes and sends: a second press and Esc reach the dialog.
  void Work() {
    if (quit_) return;
    save_->cmdPostrove(forms::kMainButton).UserClicked();
    save_->UserClosed();  // neither does anything
    EXPECT_FALSE(save_->IsUnloaded());
    EXPECT_FALSE(Topmost()) << "it hides what Outlook asks";
    if (One(6)) Disturb();
  }

  // The dialog that is open comes to the front, and no second one.
  void CheckSecondClick() override {
    EXPECT_TRUE(!save_ || quit_ || product_.forms->actions.back() == L"front frmPostrove");
  }

  // Every dialog goes, no button is heard, and but for the filing that is being done, nothing of a
  // window is held, which Outlook may wait for.
  void CheckQuit() override {
    EXPECT_TRUE(!save_ || save_->IsUnloaded());
    EXPECT_TRUE(!clicked_ || filing_ || clicked_->window.use_count() == 1);
    for (const Window& window : outlook_.open) {
      for (const FakePtr& button : window->buttons) EXPECT_EQ(button->SinkCount(), 0u);
    }
  }

  // Each message is whole, or is said to be not; each settings file has kept what stood first; the
  // database is somewhere.
  void CheckFiles() {
    bool rows = false;
    for (const std::wstring& path : utility_.Files()) {
      const std::string bytes = utility_.File(path).value_or("");
      rows = rows || bytes == "rows";
      if (path.ends_with(L".msg") && bytes != "message" && bytes != "other") {
        const auto& said = utility_.Messages();
        EXPECT_TRUE(std::any_of(
            said.begin(), said.end(),
            [&](const ShownMessage& one) { return one.text.find(path) != std::wstring::npos; }))
            << "half a message: " << text::ToUtf8(path);
      }
      const bool settings = path.ends_with(L".ini") || path.ends_with(L".txt");
      EXPECT_TRUE(!settings || bytes.starts_with("; ours\r\n[Setup]\r\n") ||
                  (bytes.starts_with("[Setup]\r\n") && bytes.ends_with("\r\n")))
          << bytes;
    }
    EXPECT_TRUE(rows);
  }

  // The folders that a text of the project box can stand for.
  std::vector<std::wstring> Folders(const std::wstring& shown, bool whole) {
    const Settings& settings = product_.Data().settings;
    if (!settings.AreRead()) return {L""};  // none is known
    return projects_.Folders(shown, whole, settings.Root, settings.EmailFolder);
  }

  // The dialogs.

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
    if (listed == 0 || dialog.IsUnloaded() || (only_ && only_->kind == kMemory)) return;
    EXPECT_EQ(dialog.cboPostrove.Items().size(), listed);
  }

  bool Topmost() const {
    const auto& actions = product_.forms->actions;
    const auto last = std::find_if(actions.rbegin(), actions.rend(), [](const auto& one) {
      return one.starts_with(L"topmost") || one.starts_with(L"lower");
    });
    return *last == L"topmost frmPostrove";
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
        if (only_ && only_->kind == kMemory) return;  // the picker need not come
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
    const bool typed = typed_ || (only_ && only_->kind == kMemory);
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
    if (only_ && only_->kind == kMemory) return;
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

  void NoFileFault() {
    if (!only_) utility_.FailFileOperation(0);
  }

  void Outage() {
    if (only_) return;
    Tell(L"outage");
    const std::wstring file = utility_.IniFile();
    if (One(2)) return void(projects_.away = !projects_.away);
    if (One(2) && utility_.File(file)) return utility_.SetHeld(file, held_ = !held_);
    utility_.FailFileOperation(static_cast<int>(1 + Pick(6)));
  }

  const bool shared_ = One(3);
  FakeSharedUtil& utility_ = *product_.utility;
  FakeProjects projects_;
  bool held_ = false;
  int steps_ = 0;

  // Of the filing.
  const FakeOutlook::Inspector* clicked_ = nullptr;
  forms::frmPostrove* save_ = nullptr;
  std::wstring saved_;
  int sent_ = 0, dialogs_ = 0;
  std::size_t fault_ = 0;
  bool typed_ = false;  // the box holds a text that was not yet looked up
  bool moves_ = false;  // the folder goes with the project that was typed
  bool mayReplace_ = false;
  bool filing_ = false;  // the main button is at work
  std::wstring proposed_, shownProject_, shownFolder_, shownName_, agreedFolder_, agreedName_;
};

}  // namespace postrove::testing
