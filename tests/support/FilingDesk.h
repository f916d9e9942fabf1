#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "shared/file_name.h"
#include "support/Desk.h"
#include "support/FakeProjects.h"

namespace postrove::testing {

// A desk whose messages are filed: what Outlook does meanwhile, and what holds of every filing,
// whatever its user did in the dialogs.
class FilingDesk : protected Desk {
 protected:
  using Desk::Desk;

  static constexpr wchar_t kOther[] = L"D:\\Filed\\other.msg";

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

  bool Topmost() const {
    const auto& actions = product_.forms->actions;
    const auto last = std::find_if(actions.rbegin(), actions.rend(), [](const auto& one) {
      return one.starts_with(L"topmost") || one.starts_with(L"lower");
    });
    return *last == L"topmost frmPostrove";
  }

  void NoFileFault() {
    if (!only_) utility_.FailFileOperation(0);
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
