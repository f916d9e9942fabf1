#pragma once

#include <string>

#include "outlook/office/outlook.h"

// What a filing changes about its message, each as a scope: unless Keep is called the message is as
// it was before, so that another try starts from there. Making one throws Error when Outlook
// refuses; a message that is gone by the end is left alone.
namespace postrove {

// A subject where there was none.
class FilledSubject {
 public:
  FilledSubject(const office::MailItem& mail, const std::wstring& subject);
  FilledSubject(const FilledSubject&) = delete;
  FilledSubject& operator=(const FilledSubject&) = delete;
  ~FilledSubject();

  void Keep() { kept_ = true; }

 private:
  const office::MailItem mail_;
  bool kept_ = false;
};

// The body with a footer that names the file. `html` says which body the window's editor edits; a
// message whose HTML body is empty gets a footer in its plain text, which it lives by.
class FootedBody {
 public:
  FootedBody(const office::MailItem& mail, bool html, const std::wstring& path);
  FootedBody(const FootedBody&) = delete;
  FootedBody& operator=(const FootedBody&) = delete;
  ~FootedBody();

  void Keep() { kept_ = true; }

 private:
  void Put(const std::wstring& body) const;

  const office::MailItem mail_;
  bool html_;
  std::wstring before_;
  bool kept_ = false;
};

}  // namespace postrove
