// A stand-in Outlook for one message: loads the registered add-ins, opens the message, presses the
// add-in's button, lets the user act and ends.
//
//   deskhost [--outlook 9..16] [--editor text|html|rtf|word] [--new] [--project TEXT]
//            [--folder PATH] [--name TEXT] [--answer TITLE=BUTTON[:NAME]]...
//            [--screenshots DIR] [--interactive] [--sent-folder DIR] [--fail-call N]
//            [--calls FILE] MESSAGEFOLDER
//
// Prints "Message: TITLE | TEXT" for each message box, "Filed: PATH" for each file written and
// "Sent: PATH" for a sent message, in UTF-8. Ends with 0 when the message was filed (and sent, when
// new), 2 when the user or a refusal stopped it, 1 on any fault.

#include <windows.h>

#include <fcntl.h>
#include <io.h>

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <iterator>
#include <mutex>
#include <vector>

#include "outlook/command_line.h"
#include "outlook/host.h"
#include "outlook/scripted_user.h"
#include "shared/text.h"
#include "threads.h"

namespace {

using namespace standin;

enum ExitCode { kFiled = 0, kFault = 1, kStopped = 2 };

void PrintLine(std::FILE* stream, const std::wstring& line) {
  static Mutex mutex;
  const std::lock_guard lock(mutex);
  std::fputs((postrove::text::ToUtf8(line) + '\n').c_str(), stream);
  std::fflush(stream);
}

std::wstring Hex(unsigned long code) {
  wchar_t text[16];
  swprintf(text, 16, L"0x%08lX", code);
  return text;
}

LONG WINAPI OnCrash(EXCEPTION_POINTERS* crash) {
  PrintLine(stderr,
            L"Fault: the process crashed, exception " + Hex(crash->ExceptionRecord->ExceptionCode));
  TerminateProcess(GetCurrentProcess(), kFault);
  return EXCEPTION_EXECUTE_HANDLER;
}

[[noreturn]] void OnTerminate() {
  PrintLine(stderr, L"Fault: an exception left the add-in");
  TerminateProcess(GetCurrentProcess(), kFault);
  std::abort();
}

bool LoadAll(Host& host) {
  const std::vector<LoadResult> loaded = host.LoadAddIns();
  bool good = !loaded.empty();
  if (!good) PrintLine(stderr, L"Fault: no add-in is registered");
  for (const LoadResult& one : loaded) {
    if (SUCCEEDED(one.result)) continue;
    good = false;
    PrintLine(stderr, L"Fault: " + one.progId + L" was not loaded, " +
                          Hex(static_cast<unsigned long>(one.result)));
  }
  return good;
}

// The user works until the inspector is closed.
void WaitForUser(const Inspector& inspector) {
  MSG message;
  while (inspector.IsOpen() && GetMessageW(&message, nullptr, 0, 0) > 0) {
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
}

// False when there is no button to press, or what the user was to do cannot be done.
bool Work(Host& host, const CommandLine& given) {
  Inspector& inspector = host.OpenFolder(given.messageFolder, !given.composing, given.editor);
  if (given.interactive) {
    WaitForUser(inspector);
    return true;
  }
  UserScript script = given.user;
  script.report = [](const std::wstring& line) { PrintLine(stdout, line); };
  const ScriptedUser user(std::move(script));
  if (host.Click(inspector)) return !user.Faulty();
  PrintLine(stderr, L"Fault: the inspector has no button of the add-in");
  return false;
}

bool WriteCalls(const Host& host, const std::wstring& path) {
  std::FILE* file = _wfopen(path.c_str(), L"wb");
  if (!file) {
    PrintLine(stderr, L"Fault: cannot write " + path);
    return false;
  }
  for (const std::wstring& call : host.Calls()) {
    std::fputs((postrove::text::ToUtf8(call) + '\n').c_str(), file);
  }
  return std::fclose(file) == 0;
}

ExitCode Run(const CommandLine& given) {
  Host host(given.host);
  host.FailCall(given.failingCall, E_FAIL);
  bool good = LoadAll(host);
  good = good && Work(host, given);
  for (const std::wstring& path : host.SavedFiles()) PrintLine(stdout, L"Filed: " + path);
  for (const std::wstring& path : host.SentFiles()) PrintLine(stdout, L"Sent: " + path);
  host.Quit();
  for (const Leak& leak : host.Leaks()) {
    good = false;
    PrintLine(stderr, L"Leak: " + leak.name + L" x" + std::to_wstring(leak.references));
  }
  if (!given.callsFile.empty()) good = WriteCalls(host, given.callsFile) && good;
  if (!good) return kFault;
  const bool done = !host.SavedFiles().empty() && (!given.composing || !host.SentFiles().empty());
  return done ? kFiled : kStopped;
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
  _setmode(_fileno(stdout), _O_BINARY);
  _setmode(_fileno(stderr), _O_BINARY);
  SetUnhandledExceptionFilter(OnCrash);
  std::set_terminate(OnTerminate);
  try {
    return Run(ParseCommandLine({arguments + 1, arguments + count}));
  } catch (const HostError& error) {
    PrintLine(stderr,
              L"Fault: " + error.text + L" (" + Hex(static_cast<unsigned long>(error.code)) + L")");
  } catch (const std::exception& error) {
    PrintLine(stderr, L"Fault: " + postrove::text::FromUtf8(error.what()));
  }
  return kFault;
}
