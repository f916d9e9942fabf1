#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "mail/message.h"

// Reading of Internet messages (RFC 5322 and MIME).
namespace postrove::mail {

// The message in the file. Throws MailError when the file cannot be read or holds no message.
Message ReadMessage(const std::string& path);

// The message in the text of an .eml file, line ends LF or CR LF; nothing when the text is not a
// message, that is, has none of the header fields of which every message has some.
//
// The first text and HTML parts that are not attachments are the bodies; alternatives and the root
// of related parts belong together. Every other part becomes an attachment, so that nothing of the
// message is lost: embedded messages as .eml files, further texts under made-up names.
std::optional<Message> ParseMessage(std::string_view eml);

}  // namespace postrove::mail
