#pragma once

#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

// A message, unpacked. Every text is UTF-8; the texts that become values of message.ini hold no
// control characters.
namespace postrove::mail {

struct Recipient {
  std::string kind;  // "to", "cc" or "bcc"
  std::string name;  // the address when no name was given
  std::string address;
};

struct Attachment {
  std::string name;       // a file name without folders, never empty
  std::string mimeType;   // lower case
  std::string contentId;  // without angle brackets; empty when there is none
  std::string bytes;
};

struct Message {
  std::string subject;
  std::string senderName;  // the address when no name was given
  std::string senderAddress;
  std::string date;     // YYYY-MM-DDTHH:MM:SSZ; empty when the message has none
  std::string headers;  // the header lines as they stood, line ends CR LF
  std::vector<Recipient> recipients;
  std::optional<std::string> plainBody;  // line ends CR LF
  std::optional<std::string> htmlBody;   // says utf-8 where it names its character set
  std::vector<Attachment> attachments;
};

// What went wrong, in one line for the person who ran the converter.
class MailError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace postrove::mail
