#pragma once

#include <string>

#include "data/lasting_trouble.h"
#include "shared/clsRegistry.h"
#include "shared/clsSharedUtil.h"

namespace postrove {

// The settings that the setup dialog can change, by the numbers of its fields.
enum SettingField {
  kNoField = -1,
  kRootField = 0,
  kProjDelimField = 1,
  kSubjDelimField = 2,
  kEmailFolderField = 3,
  kDatabaseField = 4,
  kSettingsField = 5,
  kWorkUnitField = 6,
  kSharingField = 7,
};

// The settings: which file is current, the values that are in force, storing one, moving the file.
//
// Own mode has a file Postrove.ini: the local one, in the folder for the data of all users, or one
// elsewhere that the local one names. Shared mode uses Quillion's file, which keeps its encoding.
// Missing, unreadable and read are three things: a file that cannot be read puts nothing in force.
class Settings {
 public:
  explicit Settings(clsSharedUtil& utility);

  // Finds the folders of the machine and whether Quillion is installed.
  void FindFolders(clsRegistry& registry);

  // Folders without a trailing backslash; empty when the registry has none.
  const std::wstring& gCommonAppData() const { return gCommonAppData_; }
  const std::wstring& gProgramFiles() const { return gProgramFiles_; }
  bool QuillionInstalled() const { return quillionInstalled_; }

  // True in shared mode. It is read once; changed by the user it counts at once.
  bool UseQuillion() const { return useQuillion_; }
  void SetUseQuillion(bool shared);
  // The next reading asks the local file again.
  void ForgetSharing() { sharingKnown_ = false; }

  // Values in force. What is not read in the current mode has its default.
  std::wstring Root;         // root folder of the project folders
  std::wstring ProjDelim;    // behind a project's number in a subject
  std::wstring SubjDelim;    // behind its name
  std::wstring EmailFolder;  // below a project folder, with its backslash
  std::wstring WorkUnit;     // the word for a project in labels and messages
  std::wstring DbPath;       // folder of the own database
  std::wstring DbType;       // of Quillion's database, with what follows
  std::wstring Provider;     // of either database
  std::wstring DbServer;
  std::wstring DbName;
  std::wstring Uid;
  std::wstring Pwd;
  std::wstring DbFile;

  // Chooses the current file and reads the values; each file is opened once at most. Throws Error
  // when a file cannot be read or is not where the local file says: then nothing is in force, the
  // root folder is empty, and nothing is stored.
  void Read();

  // True when what Read took is in force.
  bool AreRead() const { return read_; }
  // Throws Error unless they are: what the user chose is not stored over settings that nobody could
  // look at.
  void RequireRead() const;

  // What could not be read, told once until it is over.
  LastingTrouble& Trouble() { return trouble_; }

  // Where the local files lie, with a backslash. Throws Error when that is not known.
  std::wstring LocalFolder() const;
  std::wstring LocalFile() const;

  // The folder of the current file.
  std::wstring CurrentFolder() const;

  // The value in force for a field; empty for those that have none (data/settings_table.h).
  std::wstring Value(SettingField field) const;

  // Stores the setting of a field in its file, the local one or the current one; folders are given
  // their backslash. Throws Error.
  void Write(SettingField field, const std::wstring& value);

  // The same setting in a file that the caller names, as it stands there.
  std::wstring ReadIn(const std::wstring& file, SettingField field, const std::wstring& fallback);
  void WriteIn(const std::wstring& file, SettingField field, const std::wstring& value);

  // Moves the own settings file to another folder, after the user agreed. True when it was done;
  // false after a refusal, which leaves everything as it was, or a failure, which is reported.
  bool SetNewIniLocation(const std::wstring& folder);

 private:
  bool ReadSharing();
  void ChooseFile();
  void ReadValues();
  bool MoveFileTo(const std::wstring& folder);
  void CopyValuesTo(const std::wstring& target);

  clsSharedUtil& utility_;
  std::wstring gCommonAppData_;
  std::wstring gProgramFiles_;
  bool quillionInstalled_ = false;
  bool useQuillion_ = false;
  bool sharingKnown_ = false;
  bool read_ = false;
  LastingTrouble trouble_;
};

}  // namespace postrove
