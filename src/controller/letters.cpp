#include "controller/letters.h"

namespace postrove {

namespace {

// Looking at more of them would hold Outlook up, where each is fetched from a server.
constexpr std::int32_t kMostAttachments = 50;

}  // namespace

bool FitsCodePage(const office::MailItem& mail, const std::wstring& subject,
                  const office::Attachments& attachments, clsSharedUtil& utility, bool trusted) {
  const auto fits = [&](auto&& read) {
    try {
      return utility.InCodePage(read());
    } catch (const Error&) {
      return !trusted;
    }
  };
  const auto attachmentsFit = [&] {
    if (!attachments) return true;
    try {
      const std::int32_t count = attachments.Count();
      if (count > kMostAttachments) return !trusted;
      for (std::int32_t i = 1; i <= count; ++i) {
        const office::Attachment one = attachments.Item(i);
        if (!fits([&] { return one.FileName(); }) || !fits([&] { return one.DisplayName(); })) {
          return false;
        }
      }
      return true;
    } catch (const Error&) {
      return !trusted;
    }
  };
  if (!utility.InCodePage(subject) || !attachmentsFit() || !fits([&] { return mail.Body(); })) {
    return false;
  }
  return !trusted ||
         (fits([&] { return mail.SenderName(); }) &&
          fits([&] { return mail.SentOnBehalfOfName(); }) && fits([&] { return mail.To(); }) &&
          fits([&] { return mail.Cc(); }) && fits([&] { return mail.Bcc(); }));
}

}  // namespace postrove
