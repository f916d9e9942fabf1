#pragma once

#include <windows.h>

#include <string>

namespace postrove {

inline constexpr wchar_t kWrittenSection[] = L"Written";
inline constexpr wchar_t kCounterKey[] = L"Counter";

// A second process of this test program that writes settings into a file.
class WriterProcess {
 public:
  // Stores `count` values, each in a key of its own: name0=0, name1=1 and so on.
  static WriterProcess Keys(const std::wstring& file, const std::wstring& name, int count);
  // Counts up in the one key kCounterKey until it is killed.
  static WriterProcess Counter(const std::wstring& file);

  WriterProcess(WriterProcess&& other) noexcept;
  WriterProcess& operator=(WriterProcess&&) = delete;
  ~WriterProcess();  // kills it

  bool Running() const;
  void Kill();
  // 0 when every write succeeded.
  DWORD ExitCode() const;

 private:
  explicit WriterProcess(const std::wstring& arguments);

  HANDLE process_ = nullptr;
};

// The second process itself, when the program was started as one; else -1.
int RunAsWriter();

}  // namespace postrove
