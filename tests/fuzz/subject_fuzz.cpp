#include "controller/parse_subject.h"
#include "controller/project_folder.h"
#include "fuzz_input.h"
#include "memory/Product.h"
#include "shared/error.h"
#include "shared/file_name.h"

// Subjects taken apart with any delimiters, and what becomes of the parts on disk.
namespace postrove {
namespace {

// Prefixes, delimiters and other texts in any order.
std::wstring Subject(FuzzInput& input, const SubjectForm& form) {
  std::wstring subject;
  for (unsigned kind = input.Byte(); kind != 0 && subject.size() < 500; kind = input.Byte()) {
    switch (kind % 8) {
      case 0:
        subject += L"RE: ";
        break;
      case 1:
        subject += L"FW: ";
        break;
      case 2:
      case 3:
        subject += form.projDelim;
        break;
      case 4:
        subject += form.subjDelim;
        break;
      default:
        subject += input.Text();
        break;
    }
  }
  return subject;
}

void CheckParts(const std::wstring& before, const SubjectForm& form, const SubjectParts& parts) {
  const std::wstring& subject = parts.subject;
  const std::size_t taken = before.size() - subject.size();
  Require(before.ends_with(subject) && (taken == 0 || taken == 4 || taken == 8),
          "two prefixes come off at most");
  Require(subject.starts_with(parts.projectNumber), "the number begins the subject");
  Require(subject.ends_with(parts.saveAsName), "the file name ends it");
  Require(!parts.AreComplete() || subject == parts.projectNumber + form.projDelim +
                                                 parts.projectName + form.subjDelim +
                                                 parts.saveAsName,
          "the parts make up the subject");
}

void CheckFolder(const Settings& settings, const std::wstring& number) {
  const std::wstring folder = text::NormaliseFolder(FolderOfNumber(settings, number));
  Require(folder.starts_with(settings.Root) && folder.ends_with(L"\\"), "below the root");
  if (folder == settings.Root) return;
  const std::size_t root = settings.Root.size();
  RequireFileName(folder.substr(root, folder.size() - root - 1), kMaxNameUnits);
}

void FuzzOne(FuzzInput input) {
  testing::Product product;
  product.Start();
  const unsigned delimiters = input.Byte();
  const SubjectForm form{delimiters % 4 == 0 ? input.Text() : L"-",
                         delimiters % 8 == 0 ? input.Text() : L"=>", L"Project"};
  const std::wstring subject = Subject(input, form);
  try {
    const SubjectParts parts = ParseSubject(subject, form);
    CheckParts(subject, form, parts);
    const std::size_t room = input.Byte() + 1;
    RequireFileName(CleanFileName(parts.saveAsName, room), room);
    CheckFolder(product.Data().settings, parts.projectNumber);
  } catch (const Error& error) {
    Require(error.Number() == kInvalidArgument, "delimiters in the wrong order, nothing else");
    Require(subject.find(form.subjDelim) < subject.rfind(form.projDelim) + form.projDelim.size(),
            "they are in the wrong order");
  }
}

}  // namespace
}  // namespace postrove

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  postrove::FuzzOne(postrove::FuzzInput(data, size));
  return 0;
}
