#include <algorithm>
#include <vector>

#include "fuzz_input.h"
#include "memory/FakeSharedUtil.h"
#include "memory/Latin1.h"
#include "shared/error.h"
#include "shared/text_encoding.h"
#include "shared/text_stream.h"

namespace postrove {
namespace {

using testing::kLatin1;

constexpr wchar_t kPath[] = L"C:\\WorkUnitType.cnt";

bool IsBreak(wchar_t c) { return c == L'\r' || c == L'\n'; }

std::wstring WithoutBreaks(std::wstring text) {
  std::erase_if(text, IsBreak);
  return text;
}

std::vector<std::wstring> Lines(TextStream stream) {
  std::vector<std::wstring> lines;
  while (!stream.AtEndOfStream()) lines.push_back(stream.ReadLine());
  try {
    stream.ReadLine();
    Require(false, "nothing is read behind the end");
  } catch (const Error& error) {
    Require(error.Number() == kInputPastEnd, "Error 62 behind the end");
  }
  return lines;
}

std::wstring CheckDecoding(const std::string& file) {
  const DetectedEncoding detected = DetectEncoding(file);
  const std::string bytes = file.substr(detected.markSize);
  const std::wstring text = DecodeText(bytes, detected.encoding, kLatin1);
  const std::string spelled = EncodeText(text, detected.encoding, kLatin1);
  Require(DecodeText(spelled, detected.encoding, kLatin1) == text, "text stays as it was decoded");
  // Only malformed UTF-8 is replaced.
  const std::size_t half = bytes.size() % UnitSize(detected.encoding);
  Require(
      detected.encoding == Encoding::Utf8 || spelled + bytes.substr(bytes.size() - half) == bytes,
      "the bytes come back");
  return text;
}

void CheckLines(const std::wstring& text, const std::vector<std::wstring>& lines) {
  std::wstring joined;
  for (const std::wstring& line : lines) joined += line;
  Require(joined == WithoutBreaks(text), "the lines hold the text without its line breaks");
  Require(std::none_of(joined.begin(), joined.end(), IsBreak), "no line holds a break");

  const std::wstring breaks = text::Replace(text, L"\r\n", L"\n");
  const auto ended = std::count_if(breaks.begin(), breaks.end(), IsBreak);
  const bool open = !text.empty() && !IsBreak(text.back());
  Require(lines.size() == static_cast<std::size_t>(ended) + (open ? 1 : 0),
          "every break ends one line");
}

void FuzzOne(FuzzInput input) {
  const std::wstring line = WithoutBreaks(input.Text());
  const std::string before = input.Rest();
  testing::FakeSharedUtil files;
  files.AddFile(kPath, before);
  std::vector<std::wstring> lines = Lines(files.OpenTextFile(kPath).value());
  CheckLines(CheckDecoding(before), lines);

  files.AppendLine(kPath, line);
  const std::string after = files.File(kPath).value();
  const std::vector<std::wstring> linesAfter = Lines(files.OpenTextFile(kPath).value());
  const bool isUtf8 = DetectEncoding(after).encoding == Encoding::Utf8;
  Require(after.starts_with(before) || isUtf8, "what was there stays or becomes UTF-8");
  lines.push_back(line);
  if (isUtf8) {
    // Which has no place for half a surrogate pair.
    for (std::wstring& each : lines) each = text::FromUtf8(text::ToUtf8(each));
  }
  Require(linesAfter == lines, "one line is appended, the others stay");
}

}  // namespace
}  // namespace postrove

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  postrove::FuzzOne(postrove::FuzzInput(data, size));
  return 0;
}
