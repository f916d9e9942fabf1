#pragma once

#include <map>
#include <memory>
#include <string>
#include <utility>

#include "controller/clsPostrove.h"
#include "forms/frmFolderMessage.h"
#include "forms/frmPostrove.h"
#include "forms/frmProjInfo.h"
#include "forms/frmSetup.h"
#include "memory/FakeDatabase.h"
#include "memory/FakeOffice.h"
#include "memory/FakeSharedUtil.h"
#include "memory/ScriptedFormHost.h"
#include "outlook/clsPROutlook.h"

namespace postrove::testing {

// The machine-wide registry as a map from "key|name" to text.
class FakeRegistry : public clsRegistry {
 public:
  explicit FakeRegistry(std::map<std::wstring, std::wstring> values) : values_(std::move(values)) {}
  std::wstring GetDefaultMailClient() override { return {}; }
  std::wstring GetRegistryValue(const std::wstring& key, const std::wstring& name) override {
    const auto found = values_.find(key + L"|" + name);
    return found == values_.end() ? std::wstring() : found->second;
  }

 private:
  const std::map<std::wstring, std::wstring> values_;
};

inline constexpr wchar_t kAppData[] = L"C:\\ProgramData";
inline constexpr wchar_t kPrograms[] = L"C:\\Program Files";
inline const std::wstring kDataFolder = std::wstring(kAppData) + L"\\Postrove\\";
inline const std::wstring kLocalIni = kDataFolder + L"Postrove.ini";
inline const std::wstring kQuillionFolder = std::wstring(kPrograms) + L"\\Quillion";

// The product's objects as Main makes them, on a fake machine with a fake Outlook.
class Product {
 public:
  explicit Product(std::wstring outlookVersion = L"9.0.0.2711")
      : outlook(std::move(outlookVersion)),
        database(std::make_shared<FakeDatabase>()),
        utility(std::make_shared<FakeSharedUtil>()),
        forms(std::make_shared<ScriptedFormHost>()) {
    forms->inputTime = [this] { return outlook.clicks; };
    shared.gDatabase = database;
    shared.gUtility = utility;
    utility->AddFolder(kAppData);
    utility->AddFolder(kPrograms);
    utility->AddFile(kDataFolder + L"Postrove.mdb");
  }

  // Creates controller and tracker and connects them, with the machine's state as it is now.
  void Start() {
    Create();
    shared.gOutlook->SetApp(office::Application(outlook.app));
  }

  void Create() {
    const auto controller =
        clsPostrove::Create(shared, host, std::make_unique<FakeRegistry>(registry), {1, 2, 3});
    controller_ = controller;
    shared.gController = controller;
    shared.gOutlook = clsPROutlook::Create(shared);
  }

  // A click on the button of a received message's new window.
  void Click() {
    const auto mail = outlook.Open(true);
    outlook.RaiseNew(mail);
    outlook.Click(mail);
  }

  clsPostrove& Controller() { return *controller_.lock(); }
  OfficeData& Data() { return Controller().Data(); }

  std::map<std::wstring, std::wstring> registry{
      {L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders|Common AppData",
       kAppData},
      {L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion|ProgramFilesDir", kPrograms}};
  FakeOutlook outlook;
  std::shared_ptr<FakeDatabase> database;
  std::shared_ptr<FakeSharedUtil> utility;
  std::shared_ptr<ScriptedFormHost> forms;
  std::shared_ptr<postrove::forms::FormHost> host = forms;  // another one for real windows
  SharedObjects shared;

 private:
  std::weak_ptr<clsPostrove> controller_;
};

// A field of the setup dialog by its number, and a user who types into it and leaves it.
inline forms::Control& Field(forms::frmSetup& setup, int index) {
  return index == forms::kSetupWorkType ? setup.cboWorkType : setup.txtSetup(index);
}

inline void Enter(forms::frmSetup& setup, int index, const std::wstring& text) {
  forms::Control& field = Field(setup, index);
  field.UserEntered();
  field.UserTyped(text, static_cast<int>(text.size()), 0);
  field.UserLeft();
}

}  // namespace postrove::testing
