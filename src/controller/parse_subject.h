#pragma once

#include <string>

namespace postrove {

// How a subject is taken apart: NUMBER delimiter NAME delimiter FILE NAME.
struct SubjectForm {
  std::wstring projDelim;
  std::wstring subjDelim;
  std::wstring workUnit;  // the word for a project, for messages
};

// A subject and what stands in it; a part that it lacks is empty.
struct SubjectParts {
  std::wstring subject;  // without its reply and forward prefixes
  std::wstring projectNumber;
  std::wstring projectName;
  std::wstring saveAsName;

  bool AreComplete() const {
    return !projectNumber.empty() && !projectName.empty() && !saveAsName.empty();
  }
};

// Takes a subject apart. Throws Error 5 when the subject delimiter stands before the end of the
// project part.
SubjectParts ParseSubject(const std::wstring& subject, const SubjectForm& form);

}  // namespace postrove
