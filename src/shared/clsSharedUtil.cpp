#include "shared/clsSharedUtil.h"

#include "shared/ini_text.h"
#include "shared/text.h"
#include "shared/text_encoding.h"

namespace postrove {
namespace {

// A run-time error number as it stands, an HRESULT in the form in which it can be looked up.
std::wstring NumberText(long number) {
  if (number >= 0) return text::FromNumber(number);
  std::wstring digits = L"0x";
  for (int shift = 28; shift >= 0; shift -= 4) {
    digits.push_back(L"0123456789ABCDEF"[(static_cast<unsigned long>(number) >> shift) & 0xF]);
  }
  return digits;
}

std::wstring Advice(long number) {
  if (number == kFileNotFound || number == kPathFileAccess) {
    return L"Check that the file and its folder exist, that the drive or network is connected and "
           L"that you are allowed to write there. Then try again.";
  }
  if (number == kInvalidArgument) return L"Change what is named here, then try again.";
  if (number == kOutOfMemory) return L"Close other programs, then try again.";
  return L"Try again. If the message comes back, restart Outlook; if that does not help, pass this "
         L"text on to whoever looks after Postrove for you.";
}

std::wstring ReportText(const Error& error, const std::wstring& module,
                        const std::wstring& procedure, const std::wstring& detail) {
  std::wstring report = error.Description().empty() ? L"An error without a description occurred."
                                                    : error.Description();
  if (!detail.empty()) report += L"\n\n" + detail;
  report += L"\n\n" + Advice(error.Number());
  report += L"\n\nProcedure: " + module + L"." + procedure;
  report += L"\nError number: " + NumberText(error.Number());
  if (!error.Source().empty()) report += L"\nSource: " + error.Source();
  return report;
}

}  // namespace

std::wstring clsSharedUtil::ReadSetting(const std::wstring& /*application*/,
                                        const std::wstring& section, const std::wstring& key,
                                        const std::wstring& defaultValue,
                                        const std::wstring& file) {
  const std::optional<std::string> bytes = SettingsBytes(file);
  if (!bytes) return defaultValue;
  return ini::Read(*bytes, section, key, SystemCodePage()).value_or(defaultValue);
}

bool clsSharedUtil::HasSettings(const std::wstring& file) {
  return SettingsBytes(file).has_value();
}

std::optional<std::string> clsSharedUtil::SettingsBytes(const std::wstring& file) {
  Found* const known = KnownFile(file);
  const Found found = known ? *known : LookAt(file);
  if (!known && readers_ > 0) found_.push_back(found);
  if (found.error) throw *found.error;
  return found.bytes;
}

clsSharedUtil::Found clsSharedUtil::LookAt(const std::wstring& file) {
  Found found{file, std::nullopt, std::nullopt};
  try {
    std::string bytes;
    if (LoadFile(file, &bytes)) found.bytes = std::move(bytes);
  } catch (const Error& error) {
    found.error = error;
  }
  return found;
}

clsSharedUtil::Found* clsSharedUtil::KnownFile(const std::wstring& file) {
  for (Found& found : found_) {
    if (text::EqualsIgnoreCase(found.path, file)) return &found;
  }
  return nullptr;
}

void clsSharedUtil::WriteSetting(const std::wstring& /*application*/, const std::wstring& section,
                                 const std::wstring& key, const std::wstring& value,
                                 const std::wstring& file, ini::Recoding recoding) {
  std::string after;
  UpdateFile(file, [&](const std::string& bytes) {
    return after = ini::Write(bytes, section, key, value, SystemCodePage(), recoding);
  });
  if (Found* const known = KnownFile(file)) *known = {file, std::move(after), std::nullopt};
}

std::optional<TextStream> clsSharedUtil::OpenTextFile(const std::wstring& path) {
  std::string bytes;
  if (!LoadFile(path, &bytes)) return std::nullopt;
  return TextStream(DecodeFile(bytes, SystemCodePage()));
}

void clsSharedUtil::AppendLine(const std::wstring& path, const std::wstring& line) {
  if (FileSize(path) < 0) {
    throw Error(kFileNotFound, L"clsSharedUtil", L"File not found: \"" + path + L"\".");
  }
  UpdateFile(path, [&](const std::string& bytes) {
    const CodePage codePage = SystemCodePage();
    const std::wstring text = DecodeFile(bytes, codePage);
    const bool lineOpen = !text.empty() && text.back() != L'\n' && text.back() != L'\r';
    const std::wstring added = (lineOpen ? L"\r\n" : L"") + line + L"\r\n";
    const std::string longer = bytes + EncodeText(added, DetectEncoding(bytes).encoding, codePage);
    // The code page may lack a character of the line, the file may end within a character, or an
    // empty one get a line that begins like a byte-order mark.
    if (DecodeFile(longer, codePage) == text + added) return longer;
    return std::string(kUtf8Mark) + text::ToUtf8(text + added);
  });
}

std::wstring clsSharedUtil::MakeFileName(const std::wstring& text, std::size_t maxUnits) {
  return CleanFileName(text, maxUnits);
}

void clsSharedUtil::ReportError(const Error& error, const std::wstring& module,
                                const std::wstring& procedure,
                                const std::wstring& detail) noexcept {
  try {
    ShowMessage(ReportText(error, module, procedure, detail), L"Postrove", MessageButtons::Ok,
                MessageIcon::Error);
  } catch (...) {
    // Nothing is left to report with.
  }
}

CodePage clsSharedUtil::SystemCodePage() {
  return {[this](const std::string& bytes) { return FromCodePage(bytes); },
          [this](const std::wstring& text) { return ToCodePage(text); }};
}

bool Reporting(clsSharedUtil& utility, const wchar_t* module, const wchar_t* procedure,
               const std::function<void()>& body) noexcept {
  try {
    try {
      body();
      return true;
    } catch (...) {
      utility.ReportError(CurrentError(), module, procedure);
    }
  } catch (...) {
    // There was no memory to describe the error with.
  }
  return false;
}

}  // namespace postrove
