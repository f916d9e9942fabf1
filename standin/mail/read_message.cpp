#include "mail/read_message.h"

#include <gmime/gmime.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>

#include "mail/charset.h"

namespace postrove::mail {
namespace {

struct Unref {
  void operator()(void* object) const { g_object_unref(object); }
};
template <class T>
using Ref = std::unique_ptr<T, Unref>;

struct FreeOptions {
  void operator()(GMimeParserOptions* options) const { g_mime_parser_options_free(options); }
};

std::string Text(const char* utf8) { return utf8 == nullptr ? std::string() : utf8; }

// Faulty mail is read as far as it goes; what the library thinks of it is nobody's business.
void SetUpGMime() {
  static const bool done = [] {
    g_mime_init();
    g_log_set_handler(
        "gmime", static_cast<GLogLevelFlags>(G_LOG_LEVEL_MASK),
        [](const gchar*, GLogLevelFlags, const gchar*, gpointer) {}, nullptr);
    return true;
  }();
  static_cast<void>(done);
}

std::unique_ptr<GMimeParserOptions, FreeOptions> ParserOptions() {
  std::unique_ptr<GMimeParserOptions, FreeOptions> options(g_mime_parser_options_new());
  const char* charsets[] = {"utf-8", "windows-1252", nullptr};
  g_mime_parser_options_set_fallback_charsets(options.get(), charsets);
  return options;
}

std::string StreamBytes(GMimeStream* stream) {
  const GByteArray* bytes = g_mime_stream_mem_get_byte_array(GMIME_STREAM_MEM(stream));
  return bytes->len == 0 ? std::string()
                         : std::string(reinterpret_cast<const char*>(bytes->data), bytes->len);
}

// The header lines, up to the empty line.
std::string_view HeaderBlock(std::string_view eml) {
  for (size_t end = eml.find('\n'); end != std::string_view::npos; end = eml.find('\n', end + 1)) {
    const std::string_view rest = eml.substr(end + 1);
    if (rest.starts_with('\n') || rest.starts_with("\r\n")) return eml.substr(0, end + 1);
  }
  return eml;
}

bool LooksLikeMessage(GMimeMessage* message) {
  constexpr std::array kFields = {"From",     "Sender",       "To",          "Cc",
                                  "Bcc",      "Subject",      "Date",        "Message-Id",
                                  "Received", "MIME-Version", "Content-Type"};
  for (const char* field : kFields) {
    if (g_mime_object_get_header(GMIME_OBJECT(message), field) != nullptr) return true;
  }
  return false;
}

// Groups are named lists of addresses: their members count.
void AppendMailboxes(InternetAddressList* list, const std::string& kind,
                     std::vector<Recipient>& result) {
  if (list == nullptr) return;
  for (int i = 0; i < internet_address_list_length(list); ++i) {
    InternetAddress* entry = internet_address_list_get_address(list, i);
    if (INTERNET_ADDRESS_IS_GROUP(entry)) {
      AppendMailboxes(internet_address_group_get_members(INTERNET_ADDRESS_GROUP(entry)), kind,
                      result);
      continue;
    }
    Recipient mailbox;
    mailbox.kind = kind;
    mailbox.address =
        OneLine(Text(internet_address_mailbox_get_addr(INTERNET_ADDRESS_MAILBOX(entry))));
    mailbox.name = OneLine(Text(internet_address_get_name(entry)));
    if (mailbox.name.empty()) mailbox.name = mailbox.address;
    result.push_back(std::move(mailbox));
  }
}

std::string UtcDate(GMimeMessage* message) {
  GDateTime* local = g_mime_message_get_date(message);
  if (local == nullptr) return {};
  GDateTime* utc = g_date_time_to_utc(local);
  if (utc == nullptr) return {};
  gchar* text = g_date_time_format(utc, "%Y-%m-%dT%H:%M:%SZ");
  std::string result = Text(text);
  g_free(text);
  g_date_time_unref(utc);
  return result;
}

// Sorts the parts of one message into bodies and attachments.
class PartReader {
 public:
  PartReader(Message& message, GMimeNewLineFormat lineEnds)
      : message_(message), lineEnds_(lineEnds) {}

  // A part of a unit is one of several that together are the body of the message.
  void Read(GMimeObject* part, bool unit) {
    if (GMIME_IS_MULTIPART(part)) {
      ReadMultipart(GMIME_MULTIPART(part), unit);
    } else if (GMIME_IS_MESSAGE_PART(part)) {
      AttachMessage(GMIME_MESSAGE_PART(part));
    } else if (GMIME_IS_PART(part)) {
      ReadLeaf(GMIME_PART(part), unit);
    }
  }

 private:
  void ReadMultipart(GMimeMultipart* parts, bool unit) {
    const std::string subtype = LowerAscii(Text(g_mime_content_type_get_media_subtype(
        g_mime_object_get_content_type(GMIME_OBJECT(parts)))));
    const bool together = subtype == "alternative" || subtype == "related";
    for (int i = 0; i < g_mime_multipart_get_count(parts); ++i) {
      Read(g_mime_multipart_get_part(parts, i), unit || together);
    }
    if (together && !unit) bodyEnded_ = bodyEnded_ || HasBody();
  }

  void ReadLeaf(GMimePart* part, bool unit) {
    const std::string type = MimeType(GMIME_OBJECT(part));
    const bool plain = type == "text/plain";
    std::optional<std::string>& body = plain ? message_.plainBody : message_.htmlBody;
    const bool isText = plain || type == "text/html";
    const bool named = g_mime_part_get_filename(part) != nullptr;
    if (!isText || bodyEnded_ || body || g_mime_part_is_attachment(part) || (named && !unit)) {
      Attach(GMIME_OBJECT(part), Bytes(part), Text(g_mime_part_get_filename(part)));
      return;
    }
    body = BodyText(part, plain);
    bodyEnded_ = !unit;
  }

  static std::string BodyText(GMimePart* part, bool plain) {
    const std::string bytes = Bytes(part);
    std::string charset =
        Text(g_mime_object_get_content_type_parameter(GMIME_OBJECT(part), "charset"));
    if (charset.empty() && !plain) charset = HtmlCharset(bytes);
    std::string text = ToUtf8(bytes, charset);
    if (text.starts_with("\xEF\xBB\xBF")) text.erase(0, 3);
    return plain ? CrLfLines(text) : NameUtf8(std::move(text));
  }

  static std::string Bytes(GMimePart* part) {
    GMimeDataWrapper* content = g_mime_part_get_content(part);
    if (content == nullptr) return {};
    const Ref<GMimeStream> stream(g_mime_stream_mem_new());
    g_mime_data_wrapper_write_to_stream(content, stream.get());
    return StreamBytes(stream.get());
  }

  void AttachMessage(GMimeMessagePart* part) {
    GMimeMessage* inner = g_mime_message_part_get_message(part);
    if (inner == nullptr) return;
    const Ref<GMimeStream> stream(g_mime_stream_mem_new());
    GMimeFormatOptions* format = g_mime_format_options_new();
    g_mime_format_options_set_newline_format(format, lineEnds_);
    g_mime_object_write_to_stream(GMIME_OBJECT(inner), format, stream.get());
    g_mime_format_options_free(format);

    GMimeObject* object = GMIME_OBJECT(part);
    std::string name = Text(g_mime_object_get_content_disposition_parameter(object, "filename"));
    if (name.empty()) name = Text(g_mime_object_get_content_type_parameter(object, "name"));
    if (name.empty()) {
      const std::string subject = Text(g_mime_message_get_subject(inner));
      if (!subject.empty()) name = AsFileName(subject) + ".eml";
    }
    Attach(object, StreamBytes(stream.get()), name);
  }

  void Attach(GMimeObject* part, std::string bytes, const std::string& givenName) {
    Attachment attachment;
    attachment.mimeType = MimeType(part);
    attachment.contentId = OneLine(Text(g_mime_object_get_content_id(part)));
    // A name may come with the folders of the sender's machine, or with ones meant to do harm.
    const size_t folder = givenName.find_last_of("/\\");
    attachment.name =
        OneLine(folder == std::string::npos ? givenName : givenName.substr(folder + 1));
    if (attachment.name.find_first_not_of(" .") == std::string::npos) {
      attachment.name = MadeUpName(attachment.mimeType);
    }
    attachment.bytes = std::move(bytes);
    message_.attachments.push_back(std::move(attachment));
  }

  std::string MadeUpName(const std::string& mimeType) const {
    struct Extension {
      std::string_view mimeType, extension;
    };
    constexpr Extension kExtensions[] = {{"text/plain", ".txt"},    {"text/html", ".htm"},
                                         {"text/calendar", ".ics"}, {"message/rfc822", ".eml"},
                                         {"image/png", ".png"},     {"image/jpeg", ".jpg"},
                                         {"image/gif", ".gif"},     {"application/pdf", ".pdf"}};
    std::string_view extension = ".dat";
    for (const Extension& known : kExtensions) {
      if (known.mimeType == mimeType) extension = known.extension;
    }
    char name[32];
    std::snprintf(name, sizeof name, "ATT%05zu", message_.attachments.size() + 1);
    return std::string(name).append(extension);
  }

  static std::string AsFileName(std::string text) {
    for (char& c : text) {
      if (std::strchr("\\/:*?\"<>|", c) != nullptr) c = '_';
    }
    return text;
  }

  static std::string MimeType(GMimeObject* part) {
    gchar* type = g_mime_content_type_get_mime_type(g_mime_object_get_content_type(part));
    std::string result = LowerAscii(OneLine(Text(type)));
    g_free(type);
    return result;
  }

  bool HasBody() const { return message_.plainBody || message_.htmlBody; }

  Message& message_;
  GMimeNewLineFormat lineEnds_;
  bool bodyEnded_ = false;
};

// The bytes of the file.
std::string ReadFile(const std::string& path) {
  if (std::error_code error; std::filesystem::is_directory(path, error)) {
    throw MailError(path + ": is a folder");
  }
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb"),
                                                             &std::fclose);
  if (file == nullptr) throw MailError(path + ": " + std::strerror(errno));
  std::string bytes;
  std::array<char, 65536> buffer;
  size_t count = 0;
  while ((count = std::fread(buffer.data(), 1, buffer.size(), file.get())) > 0) {
    bytes.append(buffer.data(), count);
  }
  if (std::ferror(file.get()) != 0) throw MailError(path + ": " + std::strerror(errno));
  return bytes;
}

}  // namespace

Message ReadMessage(const std::string& path) {
  std::optional<Message> message = ParseMessage(ReadFile(path));
  if (!message) throw MailError(path + ": is not a mail message");
  return *std::move(message);
}

std::optional<Message> ParseMessage(std::string_view eml) {
  SetUpGMime();
  if (eml.starts_with("\xEF\xBB\xBF")) eml.remove_prefix(3);
  const Ref<GMimeStream> stream(g_mime_stream_mem_new_with_buffer(eml.data(), eml.size()));
  const Ref<GMimeParser> parser(g_mime_parser_new_with_stream(stream.get()));
  const auto options = ParserOptions();
  const Ref<GMimeMessage> parsed(g_mime_parser_construct_message(parser.get(), options.get()));
  if (parsed == nullptr || !LooksLikeMessage(parsed.get())) return std::nullopt;

  Message message;
  message.subject = OneLine(Text(g_mime_message_get_subject(parsed.get())));
  message.date = UtcDate(parsed.get());
  message.headers = CrLfLines(ToUtf8(HeaderBlock(eml), ""));

  std::vector<Recipient> senders;
  AppendMailboxes(g_mime_message_get_from(parsed.get()), "from", senders);
  AppendMailboxes(g_mime_message_get_sender(parsed.get()), "from", senders);
  if (!senders.empty()) {
    message.senderName = senders.front().name;
    message.senderAddress = senders.front().address;
  }
  AppendMailboxes(g_mime_message_get_to(parsed.get()), "to", message.recipients);
  AppendMailboxes(g_mime_message_get_cc(parsed.get()), "cc", message.recipients);
  AppendMailboxes(g_mime_message_get_bcc(parsed.get()), "bcc", message.recipients);

  const bool crLf = HeaderBlock(eml).ends_with("\r\n");
  if (GMimeObject* root = g_mime_message_get_mime_part(parsed.get())) {
    PartReader(message, crLf ? GMIME_NEWLINE_FORMAT_DOS : GMIME_NEWLINE_FORMAT_UNIX)
        .Read(root, false);
  }
  return message;
}

}  // namespace postrove::mail
