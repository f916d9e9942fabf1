#include "data/settings.h"

#include "data/settings_table.h"
#include "shared/text.h"

namespace postrove {

namespace {

constexpr wchar_t kShellFolders[] =
    L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders";
constexpr wchar_t kCurrentVersion[] = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion";

}  // namespace

Settings::Settings(clsSharedUtil& utility) : utility_(utility) {
  for (const Setting& one : kSettings) {
    if (one.value && one.fallback) this->*one.value = one.fallback;
  }
  Root.clear();  // it is read, or none is proposed
}

void Settings::FindFolders(clsRegistry& registry) {
  gCommonAppData_ = registry.GetRegistryValue(kShellFolders, L"Common AppData");
  gProgramFiles_ = registry.GetRegistryValue(kCurrentVersion, L"ProgramFilesDir");
  quillionInstalled_ =
      !gProgramFiles_.empty() && utility_.FolderExists(gProgramFiles_ + L"\\Quillion");
}

std::wstring Settings::LocalFolder() const {
  if (gCommonAppData_.empty()) {
    // Joined to nothing, the rest would lie in the root of whatever drive is current.
    throw Error(kPathFileAccess, L"clsPostrove.LocalFolder()",
                L"The registry does not tell the folder for the data of all users (\"Common "
                L"AppData\").");
  }
  return gCommonAppData_ + L"\\Postrove\\";
}

std::wstring Settings::LocalFile() const { return LocalFolder() + kSettingsFileName; }

std::wstring Settings::CurrentFolder() const {
  return utility_.IniFile().substr(0, utility_.IniFile().rfind(L'\\') + 1);
}

void Settings::Read() {
  const clsSharedUtil::ReadingOnce once(utility_);
  read_ = false;
  Root.clear();
  try {
    if (!sharingKnown_) useQuillion_ = ReadSharing();
    sharingKnown_ = true;
    ChooseFile();
  } catch (const Error& error) {
    trouble_.Met(error);
    throw;
  }
  read_ = true;
  trouble_.Over();
  ReadValues();
}

// "1" and "0" as Visual Basic reads a Boolean. What it could not read counts as the default: an
// installed Quillion is shared.
bool Settings::ReadSharing() {
  return quillionInstalled_ &&
         text::ToBoolean(ReadIn(LocalFile(), kSharingField, L"1")).value_or(true);
}

// Throws Error when the current file cannot be read. A file that the local one names is there, or
// somewhere else than where it was; only the local file and Quillion's can be missing.
void Settings::ChooseFile() {
  if (useQuillion_) {
    const bool common = utility_.FolderExists(gCommonAppData_ + L"\\Quillion");
    utility_.SetIniFile(common ? gCommonAppData_ + L"\\Quillion\\Qulln.ini"
                               : gProgramFiles_ + L"\\Quillion\\Qulln.txt");
    utility_.HasSettings(utility_.IniFile());
    return;
  }
  const std::wstring local = LocalFile();
  utility_.SetIniFile(local);
  const std::wstring file = ReadIn(local, kSettingsField, LocalFolder()) + kSettingsFileName;
  utility_.SetIniFile(file);
  const bool found = text::IsRootedPath(file) && utility_.HasSettings(file);
  if (!found && !text::EqualsIgnoreCase(file, local)) {
    throw Error(
        kFileNotFound, L"clsPostrove.LocateSettingsFile()",
        L"The settings file \"" + file + L"\", which \"" + local + L"\" names, was not found.");
  }
}

void Settings::ReadValues() {
  for (const Setting& one : kSettings) {
    const SettingMode other = useQuillion_ ? SettingMode::Own : SettingMode::Shared;
    if (!one.value || one.mode == other) continue;
    const std::wstring value =
        utility_.ReadSetting(one.section.application, one.section.name, one.key,
                             one.fallback ? one.fallback : LocalFolder(), utility_.IniFile());
    this->*one.value = one.folder ? text::NormaliseFolder(value) : value;
  }
}

void Settings::SetUseQuillion(bool shared) {
  useQuillion_ = shared;
  if (shared) return;
  // What own mode does not read has its default there.
  for (const Setting& one : kSettings) {
    if (one.mode == SettingMode::Shared && one.field != kNoField) this->*one.value = one.fallback;
  }
}

void Settings::RequireRead() const {
  if (read_) return;
  throw Error(
      kPathFileAccess, L"clsPostrove",
      L"The settings file \"" + utility_.IniFile() + L"\" could not be read. Nothing was stored.");
}

std::wstring Settings::Value(SettingField field) const {
  const Setting& setting = SettingOf(field);
  return setting.value ? this->*setting.value : std::wstring();
}

void Settings::Write(SettingField field, const std::wstring& value) {
  const Setting& setting = SettingOf(field);
  WriteIn(setting.mode == SettingMode::Local ? LocalFile() : utility_.IniFile(), field,
          setting.folder ? text::NormaliseFolder(value) : value);
}

std::wstring Settings::ReadIn(const std::wstring& file, SettingField field,
                              const std::wstring& fallback) {
  const Setting& setting = SettingOf(field);
  return utility_.ReadSetting(setting.section.application, setting.section.name, setting.key,
                              fallback, file);
}

void Settings::WriteIn(const std::wstring& file, SettingField field, const std::wstring& value) {
  const Setting& setting = SettingOf(field);
  const bool theirs = useQuillion_ && text::EqualsIgnoreCase(file, utility_.IniFile());
  utility_.WriteSetting(setting.section.application, setting.section.name, setting.key, value, file,
                        theirs ? ini::Recoding::Refused : ini::Recoding::Allowed);
}

}  // namespace postrove
