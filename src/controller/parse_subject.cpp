#include "controller/parse_subject.h"

#include <string_view>

#include "shared/error.h"
#include "shared/text.h"

namespace postrove {

namespace {

// Takes a prefix of exactly these letters off a text.
void StripPrefix(std::wstring& subject, std::wstring_view prefix) {
  if (subject.starts_with(prefix)) subject.erase(0, prefix.size());
}

}  // namespace

SubjectParts ParseSubject(const std::wstring& text, const SubjectForm& form) {
  constexpr auto npos = std::wstring::npos;
  SubjectParts parts{text, {}, {}, {}};
  std::wstring& subject = parts.subject;
  StripPrefix(subject, L"RE: ");
  StripPrefix(subject, L"FW: ");

  // An empty delimiter separates nothing.
  const auto& [projDelim, subjDelim, workUnit] = form;
  const std::size_t projectAt = projDelim.empty() ? npos : subject.find(projDelim);
  const std::size_t subjectAt = subjDelim.empty() ? npos : subject.find(subjDelim);

  // With the hyphen a project number may itself hold one, so it ends at the second. -1: no number.
  long long numberLength = -1;
  if (projectAt != npos) {
    const std::size_t end = projDelim == L"-" ? subject.find(L'-', projectAt + 1) : projectAt;
    if (end != npos) numberLength = static_cast<long long>(end);
    if (numberLength > 0) parts.projectNumber = subject.substr(0, end);
  }
  if (subjectAt == npos) return parts;
  parts.saveAsName = subject.substr(subjectAt + subjDelim.size());
  if (projectAt == npos) return parts;
  const long long nameAt = static_cast<long long>(projDelim.size()) + numberLength;
  const long long nameLength = static_cast<long long>(subjectAt) - nameAt;
  if (nameLength < 0) {
    throw Error(kInvalidArgument, L"clsPostrove.ParseSubject()",
                L"The subject " + text::Quoted(subject) + L" has " + text::Quoted(subjDelim) +
                    L" before the end of the " + workUnit + L". Take " + text::Quoted(subjDelim) +
                    L" out of the subject, in the message's own window, and click again.");
  }
  parts.projectName =
      subject.substr(static_cast<std::size_t>(nameAt), static_cast<std::size_t>(nameLength));
  return parts;
}

}  // namespace postrove
