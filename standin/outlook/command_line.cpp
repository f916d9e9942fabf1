#include "outlook/command_line.h"

#include <algorithm>
#include <array>
#include <cwchar>

#include "shared/text.h"

namespace standin {
namespace {

HostError Wrong(const std::wstring& text) { return {E_INVALIDARG, text}; }

int ParseVersion(const std::wstring& text) {
  static constexpr std::array kVersions = {9, 10, 11, 12, 14, 15, 16};
  const int version = static_cast<int>(wcstol(text.c_str(), nullptr, 10));
  if (std::find(kVersions.begin(), kVersions.end(), version) == kVersions.end()) {
    throw Wrong(L"--outlook is 9, 10, 11, 12, 14, 15 or 16, not " + text);
  }
  return version;
}

Editor ParseEditor(const std::wstring& text) {
  if (text == L"text") return Editor::kText;
  if (text == L"html") return Editor::kHtml;
  if (text == L"rtf") return Editor::kRichText;
  if (text == L"word") return Editor::kWord;
  throw Wrong(L"--editor is text, html, rtf or word, not " + text);
}

std::pair<std::wstring, std::wstring> ParseAnswer(const std::wstring& text) {
  const std::size_t equals = text.find(L'=');
  if (equals == std::wstring::npos || equals == 0 || equals + 1 == text.size()) {
    throw Wrong(L"--answer is TITLE=BUTTON or TITLE=BUTTON:NAME, not " + text);
  }
  std::wstring title = postrove::text::Trim(text.substr(0, equals));
  for (wchar_t& c : title) c = postrove::text::Fold(c);
  return {title, text.substr(equals + 1)};
}

}  // namespace

CommandLine ParseCommandLine(const std::vector<std::wstring>& arguments) {
  CommandLine result;
  wchar_t temporary[MAX_PATH + 1] = {};
  GetTempPathW(MAX_PATH + 1, temporary);
  result.host.version = 11;  // the first that writes Unicode files
  result.host.sentFolder = std::wstring(temporary) + L"Sent Items";

  for (auto at = arguments.begin(); at != arguments.end(); ++at) {
    const std::wstring& option = *at;
    const auto value = [&]() -> const std::wstring& {
      if (at + 1 == arguments.end()) throw Wrong(option + L" needs a value");
      return *++at;
    };
    if (option == L"--outlook") {
      result.host.version = ParseVersion(value());
    } else if (option == L"--editor") {
      result.editor = ParseEditor(value());
    } else if (option == L"--new") {
      result.composing = true;
    } else if (option == L"--project") {
      result.user.project = value();
    } else if (option == L"--folder") {
      result.user.folder = value();
    } else if (option == L"--name") {
      result.user.name = value();
    } else if (option == L"--answer") {
      result.user.answers.insert(ParseAnswer(value()));
    } else if (option == L"--screenshots") {
      result.user.screenshots = value();
    } else if (option == L"--interactive") {
      result.interactive = true;
    } else if (option == L"--sent-folder") {
      result.host.sentFolder = value();
    } else if (option == L"--fail-call") {
      result.failingCall = wcstoul(value().c_str(), nullptr, 10);
    } else if (option == L"--calls") {
      result.callsFile = value();
    } else if (option.starts_with(L"--")) {
      throw Wrong(L"unknown option " + option);
    } else if (result.messageFolder.empty()) {
      result.messageFolder = option;
    } else {
      throw Wrong(L"one message at a time: " + option);
    }
  }
  if (result.messageFolder.empty()) throw Wrong(L"which message folder?");
  return result;
}

}  // namespace standin
