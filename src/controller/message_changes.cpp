#include "controller/message_changes.h"

#include "forms/web_site.h"
#include "shared/text.h"

namespace postrove {

namespace {

constexpr wchar_t kBreak[] = L"\r\n";
constexpr wchar_t kFooter[] = L"Save important emails with ";

std::wstring WithHtmlFooter(const std::wstring& html, const std::wstring& path) {
  const std::wstring site = text::EscapeHtml(forms::kWebSite);
  const std::wstring footer = L"<DIV><P>" + text::EscapeHtml(path) + L"<BR>" + kFooter +
                              L"<A HREF=\"" + site + L"\">" + site + L"</A></P></DIV>";
  const std::wstring end = L"</BODY>";
  // A body without an end tag still gets its footer.
  if (text::FindIgnoreCase(html, end) == std::wstring::npos) return html + footer;
  return text::ReplaceIgnoreCase(html, end, footer + end);
}

}  // namespace

FilledSubject::FilledSubject(const office::MailItem& mail, const std::wstring& subject)
    : mail_(mail) {
  mail_.SetSubject(subject);
}

FilledSubject::~FilledSubject() {
  if (kept_) return;
  try {
    mail_.SetSubject({});
  } catch (...) {
    // The message may be gone.
  }
}

FootedBody::FootedBody(const office::MailItem& mail, bool html, const std::wstring& path)
    : mail_(mail), html_(html), before_(html ? mail.HtmlBody() : mail.Body()) {
  if (html_ && text::IsBlank(before_)) {
    html_ = false;
    before_ = mail.Body();
  }
  Put(html_ ? WithHtmlFooter(before_, path)
            : before_ + kBreak + path + kBreak + kFooter + forms::kWebSite + kBreak);
}

FootedBody::~FootedBody() {
  if (kept_) return;
  try {
    Put(before_);
  } catch (...) {
    // The message may be gone; there is nothing left to put back.
  }
}

void FootedBody::Put(const std::wstring& body) const {
  if (html_) {
    mail_.SetHtmlBody(body);
  } else {
    mail_.SetBody(body);
  }
}

}  // namespace postrove
