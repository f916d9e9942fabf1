#include "fuzz_input.h"
#include "support/Product.h"

// Subjects taken apart with any delimiters, and what becomes of the parts on disk.
namespace postrove {
namespace {

// Prefixes, delimiters and other texts in any order.
std::wstring Subject(FuzzInput& input, const clsPostrove& controller) {
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
        subject += controller.ProjDelim;
        break;
      case 4:
        subject += controller.SubjDelim;
        break;
      default:
        subject += input.Text();
        break;
    }
  }
  return subject;
}

bool ChecksParse(clsPostrove& controller, std::wstring& subject) {
  const std::wstring before = subject;
  try {
    const bool complete = controller.ParseSubject(subject);
    const std::size_t taken = before.size() - subject.size();
    Require(before.ends_with(subject) && (taken == 0 || taken == 4 || taken == 8),
            "two prefixes come off at most");
    Require(subject.starts_with(controller.ProjectNumber), "the number begins the subject");
    Require(subject.ends_with(controller.SaveAsName), "the file name ends it");
    Require(!complete || subject == controller.ProjectNumber + controller.ProjDelim +
                                        controller.ProjectName + controller.SubjDelim +
                                        controller.SaveAsName,
            "the parts make up the subject");
    return true;
  } catch (const Error& error) {
    const std::size_t end = subject.find(controller.SubjDelim);
    const std::size_t project = subject.rfind(controller.ProjDelim);
    Require(error.Number() == kInvalidArgument, "delimiters in the wrong order, nothing else");
    Require(end < project + controller.ProjDelim.size(), "they are in the wrong order");
    return false;
  }
}

void FuzzOne(FuzzInput input) {
  testing::Product product;
  product.Start();
  product.utility->AnswerTheRest();
  clsPostrove& controller = product.Controller();
  const unsigned delimiters = input.Byte();
  controller.ProjDelim = delimiters % 4 == 0 ? input.Text() : L"-";
  controller.SubjDelim = delimiters % 8 == 0 ? input.Text() : L"=>";
  std::wstring subject = Subject(input, controller);
  if (!ChecksParse(controller, subject)) return;

  const std::size_t room = input.Byte() + 1;
  RequireFileName(product.utility->MakeFileName(controller.SaveAsName, room), room);
  controller.ResolveSubjectProject();  // unknown: a temporary project
  const std::wstring& folder = controller.ProjFilePath;
  Require(folder.starts_with(controller.Root) && folder.ends_with(L"\\"), "below the root");
  if (folder == controller.Root) return;
  const std::size_t root = controller.Root.size();
  RequireFileName(folder.substr(root, folder.size() - root - 1), kMaxNameUnits);
}

}  // namespace
}  // namespace postrove

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  postrove::FuzzOne(postrove::FuzzInput(data, size));
  return 0;
}
