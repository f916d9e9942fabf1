#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "controller/shared_objects.h"
#include "data/label_file.h"
#include "data/lasting_trouble.h"
#include "forms/frmFolderMessage.h"
#include "forms/frmPostrove.h"
#include "forms/frmProjInfo.h"
#include "forms/frmSetup.h"
#include "forms/kit/form_host.h"
#include "outlook/clsRegistry.h"
#include "outlook/heard_button.h"
#include "shared/clsDatabase.h"
#include "shared/clsSharedUtil.h"

namespace postrove {

class FilePlace;

// Version of the add-in, as its version resource states it.
struct ProductVersion {
  int major = 0;
  int minor = 0;
  int revision = 0;
};

// One row of the project list.
struct Project {
  std::wstring number;
  std::wstring name;
  std::wstring filePath;  // may be empty
  bool active = false;
  std::int64_t id = 0;     // its key in the database; 0 when it has none that can be used
  bool temporary = false;  // in the list for one message only
};

// The controller, held in gController: owns the settings in memory, the project list, the current
// project, the inspector button's click and every open dialog.
//
// Thread: Outlook's user-interface thread only. Event handlers never throw; the other members throw
// Error where it is said. A handler keeps the controller alive while it runs, so gController can be
// released during a click.
class clsPostrove final : public forms::frmPostroveEvents,
                          public forms::frmFolderMessageEvents,
                          public forms::frmProjInfoEvents,
                          public forms::frmSetupEvents,
                          public std::enable_shared_from_this<clsPostrove> {
 public:
  // The start-up: finds the folders, decides whether Quillion's data is shared, locates and reads
  // the settings. A failure is reported to the user; the rest then keeps its defaults. Settings
  // that cannot be read now are for the first click to read, and to report. `shared` supplies
  // gOutlook at each click; database, utility and forms are held.
  static std::shared_ptr<clsPostrove> Create(SharedObjects& shared,
                                             std::shared_ptr<forms::FormHost> forms,
                                             std::unique_ptr<clsRegistry> registry,
                                             ProductVersion version);

  // Folder strings of the machine, without a trailing backslash; empty when the registry has none.
  const std::wstring& gCommonAppData() const { return gCommonAppData_; }
  const std::wstring& gProgramFiles() const { return gProgramFiles_; }
  bool QuillionInstalled() const { return quillionInstalled_; }
  bool UseQuillion() const { return useQuillion_; }

  // Takes a new inspector button: formats it by ItemIsSent and listens to it. Throws Error when
  // Office refuses; the button heard before then stays.
  void SetPostroveMenuButton(HeardButton button);

  // What holds until a settings file says otherwise.
  static constexpr wchar_t kStartEmailFolder[] = L"Corr_Out\\";
  static constexpr wchar_t kStartProjDelim[] = L"-";
  static constexpr wchar_t kStartSubjDelim[] = L"=>";
  static constexpr wchar_t kStartWorkUnit[] = L"Project";

  // Plain values.
  bool ItemIsSent = false;     // the inspector's item is already sent or received
  std::wstring ProjectNumber;  // the current project
  std::wstring ProjectName;
  std::wstring ProjFilePath;
  std::wstring SaveAsName;  // proposed file name without extension
  bool Active = false;
  std::int64_t ProjectID = 0;
  std::wstring EmailFolder = kStartEmailFolder;  // below a project folder, with its backslash
  std::wstring ProjDelim = kStartProjDelim;
  std::wstring SubjDelim = kStartSubjDelim;
  std::wstring Root;                       // root folder of the project folders
  std::wstring WorkUnit = kStartWorkUnit;  // the word for a project in labels and messages
  std::wstring FolderMessageReturn;        // answer of the folder message dialog; empty is Cancel
  std::wstring ProjInfoMode;               // "add", "addmanual" or "edit"

  std::vector<Project> ProjectList;

  // Chooses the current settings file and reloads everything from it: database settings, defaults,
  // labels, project list. Each file is read once. Throws Error when one cannot be read or is not
  // where the local file says: then nothing is in force, no folder is proposed, nothing is stored
  // into it, and each click reads again.
  void LocateSettingsFile();

  // Writes the one setting that belongs to a field of the setup dialog and reloads everything:
  // 0 root folder, 1 and 2 delimiters, 3 e-mail folder, 4 database folder, 5 settings folder,
  // 6 work unit, 7 whether Quillion's data is shared; any other index writes nothing. False after a
  // failure, which is reported; what was written before stays.
  bool PostroveDefaultsSave(int index, const forms::frmSetup& setup);

  // Move the database or the settings file to another folder. True when it was done; false after a
  // refusal, which leaves everything as it was, or a failure, which is reported as well.
  bool SetNewDbLocation(const std::wstring& folder);
  bool SetNewIniLocation(const std::wstring& folder);

  // Fills the database object from the settings. In own mode a missing database is searched for
  // with the user. Failures, a cancelled search among them, are reported.
  void GetDataBaseSettings();

  // Reads the project list; without a database, or after a failure, which is reported, it is empty.
  void GetProjectList();

  // The next free project number. Empty when there is none to propose; failures are reported.
  std::wstring GetNewProjectNumber();

  // True when the number exists and the user does not want it twice. Failures are reported and
  // answer false.
  bool IsExisitingProjectNumber(const std::wstring& number);

  // Writes the current project: over the row ProjectID when `edited`, else as a new row. False when
  // it failed or that row is gone, which is reported.
  bool ProjectInfoSave(bool edited);

  // Reads the label file; a missing one leaves the labels as they are. So does one that cannot be
  // read, is cut short or has a bad count, which the next click or change of a setting reports
  // once.
  void LoadLabels();

  // Adds the known work-unit types to a combo box.
  void FillWorkUnitTypes(forms::Control& combo);

  // Adds a work-unit type to the list's file. Throws Error 53 when the file is missing.
  void AddWorkUnitType(const std::wstring& name);

  // Takes a subject apart: reply and forward prefixes come off the text itself; ProjectNumber,
  // ProjectName and SaveAsName are set where found. True when all three are non-empty afterwards.
  // Throws Error 5 when the subject delimiter stands before the end of the project part.
  bool ParseSubject(std::wstring& subject);

  // The first row that matches, ignoring case: by number, or by name when the number is empty. -1
  // when there is none.
  int FindProject(const std::wstring& number, const std::wstring& name) const;

  // Makes the project of the subject current: the list's row, else, as the user decides, one added
  // to the database or a temporary row for this message. A project that the user typed and that the
  // list knows stays as it was typed, with the folder of the listed one.
  void ResolveSubjectProject();

  void SelectProject(int row);  // copies a list row into the current project
  void ClearProject();          // empties the current project
  void FillProjectCombo(forms::Control& combo);
  void FillSaveFields(forms::frmPostrove& form);

  // Writes the tracked message into the dialog's folder and sends it when it is new. True when the
  // message was handled and the dialog may close. A failure is reported and answers false: nothing
  // is sent that was not written.
  bool SaveAndSendMail();

  // Opens the project information dialog in the mode of ProjInfoMode above the save dialog, whether
  // that is shown yet or not; returns when it is closed. A saved project is the current one then;
  // otherwise the one before is current again.
  void OpenProjectInfo();

  // Opens the defaults setup dialog above the save dialog; returns when it is closed.
  void OpenSetup();

  // A click on the inspector button.
  void mcbPostroveMenuButton_Click();

  // The inspector button whose clicks arrive, and taking those of another one instead, which keeps
  // its looks, or none. Throws Error when Office refuses; the button heard before then stays.
  HeardButton& PostroveMenuButton() { return mcbPostroveMenuButton_; }
  void ListenTo(HeardButton button);

  // Lets go of every object of Outlook and closes the open dialogs, unanswered. Before the last
  // reference to the controller goes.
  void Terminate();

  // The save dialog.
  void frmPostroveEvent_ButtonClicked(int Index) override;
  void frmPostroveEvent_FormUnload(bool& Cancel) override;
  void frmPostroveEvent_FormActivate() override;
  void frmPostroveEvent_ProjectComboChange(const std::wstring& Text) override;
  void frmPostroveEvent_ProjectComboClick() override;
  void frmPostroveEvent_ProjectComboGotFocus() override;
  void frmPostroveEvent_ProjectComboKeyPress(int& KeyAscii) override;
  void frmPostroveEvent_ProjectComboLostFocus() override;
  void frmPostroveEvent_SaveAsNameChanged() override;
  void frmPostroveEvent_SaveAsNameGotFocus() override;
  void frmPostroveEvent_SaveAsNameLostFocus() override;
  void frmPostroveEvent_SaveFolderChanged() override;
  void frmPostroveEvent_SaveFolderGotFocus() override;
  void frmPostroveEvent_SaveFolderLostFocus() override;
  void frmPostroveEvent_WebLabelClick(const std::wstring& Caption) override;

  // The folder message dialog.
  void frmFolderMessageEvent_ButtonClicked(int Index) override;
  void frmFolderMessageEvent_ButtonMouseDown(int Index, int Button, int Shift, float X,
                                             float Y) override;
  void frmFolderMessageEvent_FolderMessageFieldChange(int Index) override;
  void frmFolderMessageEvent_FolderMessageFieldGotFocus(int Index) override;
  void frmFolderMessageEvent_FolderMessageFieldLostFocus(int Index) override;
  void frmFolderMessageEvent_FormActivate() override;
  void frmFolderMessageEvent_FormHelp() override;

  // The project information dialog.
  void frmProjInfoEvent_BrowseClicked(int Index) override;
  void frmProjInfoEvent_ButtonClicked(int Index) override;
  void frmProjInfoEvent_ButtonMouseDown(int Index, int Button, int Shift, float X,
                                        float Y) override;
  void frmProjInfoEvent_FormActivate() override;
  void frmProjInfoEvent_ProjActiveClicked() override;
  void frmProjInfoEvent_ProjInfoFieldChange(int Index) override;
  void frmProjInfoEvent_ProjInfoFieldGotFocus(int Index) override;
  void frmProjInfoEvent_ProjInfoFieldLostFocus(int Index) override;
  void frmProjInfoEvent_ProjInfoWebLabelClick(const std::wstring& Caption) override;

  // The defaults setup dialog.
  void frmSetupEvent_BrowseClicked(int Index) override;
  void frmSetupEvent_ButtonClicked(int Index) override;
  void frmSetupEvent_SetupDbTypeOptionClick() override;
  void frmSetupEvent_SetupFieldChange(int Index) override;
  void frmSetupEvent_SetupFieldGotFocus(int Index) override;
  void frmSetupEvent_SetupFieldLostFocus(int Index) override;
  void frmSetupEvent_SetupListChange(const std::wstring& Text) override;
  void frmSetupEvent_SetupListClick() override;
  void frmSetupEvent_SetupListKeyPress(int& KeyAscii, const std::wstring& Text) override;
  void frmSetupEvent_SetupWebLabelClick(const std::wstring& Caption) override;
  void frmSetupEvent_FormEscape() override;

 private:
  clsPostrove(SharedObjects& shared, std::shared_ptr<forms::FormHost> forms,
              ProductVersion version);

  void Class_Initialize(clsRegistry& registry);
  void ReadDefaults();
  bool ReadSharing();

  // What becomes of an own database that is not where the settings say: it is searched for with the
  // user, or left missing.
  enum class Search { Ask, IfThere };
  void ReadSettings(Search search);
  void TryToReadSettings(Search search);
  void ReadMissingSettings();
  void TellTroubles();
  void ChooseSettingsFile();
  void RequireSettings() const;

  // Where the local files lie. Throws Error when that is not known.
  std::wstring LocalFolder() const;
  std::wstring LocalIniFile() const { return LocalFolder() + L"Postrove.ini"; }
  void WriteSetup(const std::wstring& key, const std::wstring& value, const std::wstring& file);
  void WriteSetupToBoth(const std::wstring& key, const std::wstring& value,
                        const std::wstring& first, const std::wstring& second);
  bool IsKnownWorkUnit(const std::wstring& name);
  std::wstring WriteDefault(int index, const forms::frmSetup& setup);

  void ReadSharedDatabaseSettings();
  void ReadOwnDatabaseSettings();
  void SearchForDatabase();
  void CheckDatabase(const std::wstring& folder);
  std::wstring OwnDatabaseFolder();
  bool OwnDatabaseExists();
  void RequireDatabase() const;

  // What to do about a file that is to move: a folder that already holds one of its name is asked
  // about, and never is that one replaced.
  enum class Move { Copy, UseExisting, Refused };
  Move PlanMove(const std::wstring& file, const std::wstring& folder, const std::wstring& name);
  bool AskToMove(const std::wstring& name, const std::wstring& from, const std::wstring& to) const;

  // A label text, or `fallback` when the label file has none there.
  std::wstring Label(std::size_t block, std::size_t index, const std::wstring& fallback) const;
  std::wstring ReadSetup(const std::wstring& key, const std::wstring& defaultValue,
                         const std::wstring& file);

  // The click flow's steps.
  office::MailItem TakeActiveMessage();
  void PrepareFrom(std::wstring subject);
  void ArrangeForm(forms::frmPostrove& form) const;
  void ArrangeByMode(forms::frmPostrove& form) const;
  void FillSaveLabels(forms::frmPostrove& form) const;
  void ProposeFolder(forms::frmPostrove& form);
  void ShowProject(forms::frmPostrove& form);

  // The main button's steps.
  void SaveButtonClicked();
  std::wstring ValidateSave();
  void ResolveTypedProject();
  void TakeTypedProject();
  bool FolderIsProposed(const forms::frmPostrove& form) const;  // and not the user's own
  // Takes the place of a file, with the question about one that exists. False when the user
  // cancelled.
  bool ChooseFileName(FilePlace& place, const std::wstring& folder, std::wstring fileName);
  std::wstring FileNameFor(const std::wstring& name, const std::wstring& folder, bool attachments);
  bool KeepsLetters(const office::MailItem& mail, const std::wstring& subject,
                    const office::Attachments& attachments, bool unicodeFiles);
  void WriteAndSend(const office::MailItem& mail, FilePlace& place, std::int32_t saveType);
  void SendUnfiled(const office::MailItem& mail);

  // Shows the folder message dialog above the save dialog. The accepted name, empty on Cancel.
  std::wstring AskFolderMessage(const std::wstring& caption, const std::wstring& message,
                                const std::wstring& name, const std::wstring& instructions);

  // What the dialogs share.

  // Colours a box and its caption by whether a required value is there. False when it is missing.
  static bool CheckRequired(forms::Control& box, forms::Control& caption, forms::Control& marker);

  // The field that a browsed folder goes to.
  enum class BrowseTarget {
    SaveFolder = 0,
    ServerFolder = 1,
    EmailFolder = 2,
    Database = 3,
    ProjectFolder = 6,
    Settings = 8,
  };

  // Lets the user choose a folder for a field. False when the choice was cancelled; the field is
  // then left as it is.
  bool BrowseFor(BrowseTarget target);
  std::wstring BrowsePrompt(BrowseTarget target) const;
  forms::Control& BrowsedField(BrowseTarget target) const;

  // The line that refuses a folder for its drive, or nothing. Notes whether it is a network drive,
  // whose letter is not everybody's.
  std::wstring DriveProblem(const std::wstring& folder, const std::wstring& fieldName);

  // True when the folder exists, or the user had it made, perhaps under another name, which is then
  // in `folder`. False when he did not want it. Throws Error when it cannot be made.
  bool EnsureFolder(std::wstring& folder);

  // The project information dialog's steps.
  void FillProjectInfo(forms::frmProjInfo& form);
  void SaveProjectInfo(forms::frmProjInfo& form);
  std::wstring ValidateProjectInfo(forms::frmProjInfo& form);
  bool WriteProjectInfo(forms::frmProjInfo& form);
  void ShowSavedProject();
  static void MarkProjectInfoField(const forms::frmProjInfo& form, int index);
  void EditProjectClicked();

  Project CurrentProject() const;
  void TakeProject(const Project& project);

  std::wstring FolderOf(const Project& project) const;
  std::wstring FolderOfNumber(const std::wstring& number) const;
  bool AskToAddProject();
  void TellTemporaryProject();
  void AddTemporaryProject();
  void ChooseListedProject(int row);

  void ShowHint(std::size_t label, const wchar_t* fallback);

  // Runs a handler of the save dialog with that form; nothing when none is open.
  void WithForm(const wchar_t* procedure,
                const std::function<void(forms::frmPostrove& form)>& body);

  // The same for the project information dialog.
  void WithProjectInfo(const wchar_t* procedure,
                       const std::function<void(forms::frmProjInfo& form)>& body);

  // The steps of the defaults setup dialog. Each may show a question, during which Outlook can quit
  // and unload the form.
  void WithSetup(const wchar_t* procedure, const std::function<void(forms::frmSetup& form)>& body);
  std::wstring CurrentDefault(int field) const;
  void FillSetup(forms::frmSetup& form);
  void ShowSetupHint(const forms::frmSetup& form) const;
  static bool MarkSetupField(const forms::frmSetup& form, int index);
  void ChangeSharing(forms::frmSetup& form);
  void LeaveSetupField(forms::frmSetup& form, int index);
  void CheckSetupField(forms::frmSetup& form, int index);
  std::wstring SetupFolderProblem(forms::Control& field, const std::wstring& fieldName);
  void StoreSetupField(forms::frmSetup& form, int index);
  void ReloadDefaults();
  std::wstring ValidateDefaults(const forms::frmSetup& form) const;
  void ReturnClicked(forms::frmSetup& form);
  void ReturnToSaveDialog(forms::frmSetup& form);

  SharedObjects& shared_;
  const std::shared_ptr<clsDatabase> database_;
  const std::shared_ptr<clsSharedUtil> utility_;
  const std::shared_ptr<forms::FormHost> forms_;
  const ProductVersion version_;

  std::wstring gCommonAppData_;
  std::wstring gProgramFiles_;
  bool quillionInstalled_ = false;
  bool useQuillion_ = false;
  bool sharingKnown_ = false;  // useQuillion_ was read
  bool settingsRead_ = false;  // else nothing of them is in force
  LastingTrouble settingsTrouble_;
  LastingTrouble labelTrouble_;
  bool databaseFound_ = false;
  LabelTable labels_;

  HeardButton mcbPostroveMenuButton_;
  bool buttonIsNew_ = false;                   // not clicked yet
  std::optional<std::uint32_t> clickedInput_;  // the user's input with which the last click ended

  // The message that the open dialog files. Other windows can open meanwhile, so its state is not
  // that of the window opened last.
  office::Inspector clickedInspector_;
  bool clickedIsSent_ = false;
  std::shared_ptr<forms::frmPostrove> frmPostroveEvent_;
  std::shared_ptr<forms::frmFolderMessage> frmFolderMessageEvent_;
  std::shared_ptr<forms::frmProjInfo> frmProjInfoEvent_;
  Project projectBefore_;  // the current project when that dialog was opened
  std::shared_ptr<forms::frmSetup> frmSetupEvent_;
  int hintedField_ = 0;    // the setup field whose hint is shown
  int refusedField_ = -1;  // the setup field that was left with a folder which was refused
  std::wstring refusedFolder_;
  std::wstring proposedFolder_;         // what the save dialog proposed last
  bool folderMessageAnswered_ = false;  // by one of its two buttons
  bool ignoreFieldEvents_ = false;      // a press on Cancel, or a form is being filled
  bool workUnitTypeAhead_ = false;      // the work-unit box does
  bool networkDrive_ = false;           // the folder checked last has such a drive's letter
  bool filling_ = false;                // the controller fills the dialog itself
  bool clicked_ = false;                // a click is being handled
  bool toldOfLetters_ = false;          // the user knows which letters the file cannot hold
  bool writing_ = false;                // Outlook writes or sends the message
  bool typedProject_ = false;           // the user typed a project instead of choosing one
  int lowered_ = 0;                     // dialogs open above the save dialog
};

}  // namespace postrove
