#pragma once

#include <iterator>

#include "data/settings.h"

// The settings that are kept in files, a line each. Reading, storing, comparing and moving them all
// go by this table.
namespace postrove {

struct SettingSection {
  const wchar_t* application;  // the product that owns it
  const wchar_t* name;
};
inline constexpr SettingSection kSetupSection{L"Postrove", L"Setup"};
inline constexpr SettingSection kDatabaseSection{L"Postrove", L"Database"};

// In which mode a value is read, from the current file. Local ones are read apart, from the local
// file.
enum class SettingMode { Own, Shared, Both, Local };

struct Setting {
  SettingSection section;
  const wchar_t* key;
  const wchar_t* fallback;  // null: the folder of the local files
  SettingMode mode;
  bool folder;         // kept with a backslash at its end
  bool moves;          // with the own file, when that moves back to the local folder
  SettingField field;  // of the setup dialog
  std::wstring Settings::*value;
};

// clang-format off
inline constexpr Setting kSettings[] = {
    // section, key, default, read in, folder, moves, field, value
    {kSetupSection, L"Root", L"C:\\", SettingMode::Own, true, true, kRootField, &Settings::Root},
    {{L"Quillion", L"FilePathsPrj"}, L"1", L"C:\\", SettingMode::Shared, true, false, kNoField, &Settings::Root},
    {kSetupSection, L"ProjDelim", L"-", SettingMode::Shared, false, true, kProjDelimField, &Settings::ProjDelim},
    {kSetupSection, L"SubjDelim", L"=>", SettingMode::Shared, false, true, kSubjDelimField, &Settings::SubjDelim},
    {kSetupSection, L"EmailFolder", L"Corr_Out\\", SettingMode::Shared, true, true, kEmailFolderField, &Settings::EmailFolder},
    {kSetupSection, L"WorkUnit", L"Project", SettingMode::Both, false, true, kWorkUnitField, &Settings::WorkUnit},
    {kSetupSection, L"PostroveDBPath", nullptr, SettingMode::Own, true, true, kDatabaseField, &Settings::DbPath},
    {kSetupSection, L"PostroveSettingsPath", nullptr, SettingMode::Local, true, false, kSettingsField, nullptr},
    {kSetupSection, L"UseQuillion", L"1", SettingMode::Local, false, false, kSharingField, nullptr},
    {kDatabaseSection, L"Provider2", L"Microsoft.Jet.OLEDB.4.0", SettingMode::Both, false, true, kNoField, &Settings::Provider},
    {kDatabaseSection, L"Type", L"Access", SettingMode::Shared, false, false, kNoField, &Settings::DbType},
    {kDatabaseSection, L"DBServer", L"", SettingMode::Shared, false, false, kNoField, &Settings::DbServer},
    {kDatabaseSection, L"DbName", L"Quillion", SettingMode::Shared, false, false, kNoField, &Settings::DbName},
    {kDatabaseSection, L"UID", L"QLN", SettingMode::Shared, false, false, kNoField, &Settings::Uid},
    {kDatabaseSection, L"Pwd", L"xbt", SettingMode::Shared, false, false, kNoField, &Settings::Pwd},
    {{L"Quillion", L"FilePathsMDB"}, L"1", L"Quillion.mdb", SettingMode::Shared, false, false, kNoField, &Settings::DbFile},
};
// clang-format on

constexpr const Setting& SettingOf(SettingField field) {
  const Setting* found = kSettings;
  while (found->field != field) ++found;
  return *found;
}

inline constexpr wchar_t kSettingsFileName[] = L"Postrove.ini";

}  // namespace postrove
