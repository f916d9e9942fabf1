#include "mail/write_folder.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>

namespace postrove::mail {
namespace {

namespace fs = std::filesystem;

void WriteBytes(const fs::path& path, const std::string& bytes) {
  std::FILE* file = std::fopen(path.c_str(), "wb");
  if (file == nullptr) throw MailError(path.string() + ": " + std::strerror(errno));
  const bool written = std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
  if (std::fclose(file) != 0 || !written) {
    throw MailError(path.string() + ": " + std::strerror(errno));
  }
}

std::string AttachmentFile(size_t index) {
  char name[40];
  std::snprintf(name, sizeof name, "attachments/%04zu", index);
  return name;
}

// message.ini, section by section.
class IniWriter {
 public:
  void Section(const std::string& name) { text_ += "[" + name + "]\r\n"; }

  void Value(const std::string& key, const std::string& value) {
    const auto needsQuotes = [](char c) { return c == ' ' || c == '"'; };
    const bool quoted = !value.empty() && (needsQuotes(value.front()) || needsQuotes(value.back()));
    text_ += key + "=" + (quoted ? "\"" + value + "\"" : value) + "\r\n";
  }

  void ValueIfAny(const std::string& key, const std::string& value) {
    if (!value.empty()) Value(key, value);
  }

  std::string Text() const { return "\xEF\xBB\xBF" + text_; }

 private:
  std::string text_;
};

std::string Ini(const Message& message) {
  IniWriter ini;
  ini.Section("Message");
  ini.Value("Subject", message.subject);
  ini.Value("MessageClass", "IPM.Note");
  ini.Value("SenderName", message.senderName);
  ini.Value("SenderAddress", message.senderAddress);
  ini.ValueIfAny("Date", message.date);
  ini.Value("Recipients", std::to_string(message.recipients.size()));
  ini.Value("Attachments", std::to_string(message.attachments.size()));
  for (size_t i = 0; i < message.recipients.size(); ++i) {
    const Recipient& recipient = message.recipients[i];
    ini.Section("Recipient " + std::to_string(i));
    ini.Value("Kind", recipient.kind);
    ini.Value("Name", recipient.name);
    ini.Value("Address", recipient.address);
  }
  for (size_t i = 0; i < message.attachments.size(); ++i) {
    const Attachment& attachment = message.attachments[i];
    ini.Section("Attachment " + std::to_string(i));
    ini.Value("File", AttachmentFile(i));
    ini.Value("Name", attachment.name);
    ini.Value("MimeType", attachment.mimeType);
    ini.ValueIfAny("ContentId", attachment.contentId);
  }
  return ini.Text();
}

void WriteFiles(const Message& message, const fs::path& folder) {
  fs::create_directory(folder);
  WriteBytes(folder / "headers.txt", message.headers);
  if (message.plainBody) WriteBytes(folder / "body.txt", *message.plainBody);
  if (message.htmlBody) WriteBytes(folder / "body.html", *message.htmlBody);
  fs::create_directory(folder / "attachments");
  for (size_t i = 0; i < message.attachments.size(); ++i) {
    WriteBytes(folder / AttachmentFile(i), message.attachments[i].bytes);
  }
  WriteBytes(folder / "message.ini", Ini(message));
}

// Moves the complete folder to its place; an earlier one is put aside for the moment.
void Install(const fs::path& complete, const fs::path& folder, const fs::path& aside) {
  const bool replaces = fs::exists(fs::symlink_status(folder));
  if (replaces) fs::rename(folder, aside);
  try {
    fs::rename(complete, folder);
  } catch (...) {
    if (replaces) fs::rename(aside, folder);
    throw;
  }
  fs::remove_all(aside);
}

}  // namespace

void WriteFolder(const Message& message, const fs::path& folder) {
  // A path that ends in a slash has no name of its own to build the other two from.
  const fs::path target = folder.has_filename() ? folder : folder.parent_path();
  if (fs::exists(fs::symlink_status(target)) && !fs::is_regular_file(target / "message.ini")) {
    throw MailError(target.string() + ": exists and is not a message folder");
  }
  const std::string unique = "." + std::to_string(getpid());
  const fs::path fresh = target.string() + unique + ".new";
  try {
    WriteFiles(message, fresh);
    Install(fresh, target, target.string() + unique + ".old");
  } catch (const std::exception& error) {
    std::error_code ignored;
    fs::remove_all(fresh, ignored);
    if (const auto* system = dynamic_cast<const fs::filesystem_error*>(&error)) {
      throw MailError(target.string() + ": cannot be written: " + system->code().message());
    }
    throw;
  }
}

}  // namespace postrove::mail
