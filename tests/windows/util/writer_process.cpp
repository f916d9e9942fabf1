#include "writer_process.h"

#include <gtest/gtest.h>
#include <shellapi.h>

#include <memory>
#include <utility>
#include <vector>

#include "shared/text.h"
#include "shared/win32/WinSharedUtil.h"

namespace postrove {
namespace {

constexpr wchar_t kWriterSwitch[] = L"--writer";

std::vector<std::wstring> Arguments() {
  int count = 0;
  wchar_t** list = CommandLineToArgvW(GetCommandLineW(), &count);
  std::vector<std::wstring> arguments(list, list + count);
  LocalFree(list);
  return arguments;
}

}  // namespace

WriterProcess::WriterProcess(const std::wstring& arguments) {
  wchar_t program[MAX_PATH];
  GetModuleFileNameW(nullptr, program, MAX_PATH);
  std::wstring command = L"\"" + std::wstring(program) + L"\" " + kWriterSwitch + L" " + arguments;
  STARTUPINFOW startup{};
  startup.cb = sizeof(startup);
  PROCESS_INFORMATION information{};
  if (!CreateProcessW(program, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                      &startup, &information)) {
    ADD_FAILURE() << "CreateProcess failed: " << GetLastError();
    return;
  }
  CloseHandle(information.hThread);
  process_ = information.hProcess;
}

WriterProcess WriterProcess::Keys(const std::wstring& file, const std::wstring& name, int count) {
  return WriterProcess(L"\"" + file + L"\" " + name + L" " + text::FromNumber(count));
}

WriterProcess WriterProcess::Counter(const std::wstring& file) {
  return WriterProcess(L"\"" + file + L"\"");
}

WriterProcess::WriterProcess(WriterProcess&& other) noexcept
    : process_(std::exchange(other.process_, nullptr)) {}

WriterProcess::~WriterProcess() {
  if (!process_) return;
  Kill();
  CloseHandle(process_);
}

bool WriterProcess::Running() const { return WaitForSingleObject(process_, 0) == WAIT_TIMEOUT; }

void WriterProcess::Kill() {
  TerminateProcess(process_, 99);
  WaitForSingleObject(process_, INFINITE);
}

DWORD WriterProcess::ExitCode() const {
  DWORD code = 0;
  GetExitCodeProcess(process_, &code);
  return code;
}

int RunAsWriter() {
  const std::vector<std::wstring> arguments = Arguments();
  if (arguments.size() < 3 || arguments[1] != kWriterSwitch) return -1;
  const std::wstring& file = arguments[2];
  const bool counts = arguments.size() == 3;
  const std::wstring key = counts ? kCounterKey : arguments[3];
  const int end = counts ? INT_MAX : static_cast<int>(text::LeadingNumber(arguments[4]));
  const std::shared_ptr<clsSharedUtil> utility = CreateWinSharedUtil();
  try {
    for (int i = 0; i < end; ++i) {
      const std::wstring number = text::FromNumber(i);
      utility->WriteSetting(L"Postrove", kWrittenSection, counts ? key : key + number, number,
                            file);
    }
  } catch (const Error& error) {
    std::fprintf(stderr, "writer: %s\n", text::ToUtf8(error.Description()).c_str());
    return 1;
  }
  return 0;
}

}  // namespace postrove
