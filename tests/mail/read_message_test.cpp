#include "mail/read_message.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "mail/charset.h"

namespace postrove::mail {
namespace {

Message Parse(const std::string& eml) { return ParseMessage(eml).value(); }

std::string WithType(const std::string& type, const std::string& body) {
  return "From: a@b.example\nMIME-Version: 1.0\nContent-Type: " + type + "\n\n" + body;
}

// The parts of a multipart message, written as "type and further fields|content".
std::string Multipart(const std::string& subtype, const std::vector<std::string>& parts) {
  std::string body;
  for (const std::string& part : parts) {
    const size_t bar = part.find('|');
    body += "--x\nContent-Type: " + part.substr(0, bar) + "\n\n" + part.substr(bar + 1) + "\n";
  }
  return WithType("multipart/" + subtype + "; boundary=x", body + "--x--\n");
}

// Each with a semicolon behind it.
std::string Names(const Message& message) {
  std::string names;
  for (const Attachment& attachment : message.attachments) names += attachment.name + ";";
  return names;
}

// Which parts become the bodies and which attachments; "-" is a missing body.
TEST(ReadMessage, SortsPartsIntoBodiesAndAttachments) {
  const std::string nested =
      "multipart/related; boundary=y|--y\nContent-Type: text/html\n\n<p>h</p>\n"
      "--y\nContent-Type: image/png; name=a.png\n\npng\n--y--";
  const struct {
    const char* what;
    std::string eml;
    const char* plain;
    const char* html;
    const char* attachments;
  } kCases[] = {
      {"a second text", Multipart("mixed", {"text/plain|one", "text/plain|two"}), "one", "-",
       "ATT00001.txt;"},
      {"an HTML part that is no alternative", Multipart("mixed", {"text/plain|one", "text/html|h"}),
       "one", "-", "ATT00001.htm;"},
      {"alternatives in any order", Multipart("alternative", {"text/html|h", "text/plain|t"}), "t",
       "h", ""},
      {"a picture among alternatives", Multipart("alternative", {"text/plain|t", nested}), "t",
       "<p>h</p>", "a.png;"},
      {"an invitation", Multipart("alternative", {"text/plain|t", "text/calendar|BEGIN"}), "t", "-",
       "ATT00001.ics;"},
      {"a text with a name", Multipart("mixed", {"text/plain; name=notes.txt|n", "text/plain|t"}),
       "t", "-", "notes.txt;"},
      {"an attached HTML page first",
       Multipart("mixed", {"text/html\nContent-Disposition: attachment|h", "text/plain|t"}), "t",
       "-", "ATT00001.htm;"},
      {"a signature",
       Multipart("signed", {"text/plain|t", "application/pkcs7-signature; name=smime.p7s|s"}), "t",
       "-", "smime.p7s;"},
      {"an unknown multipart", Multipart("strange", {"text/plain|t", "image/gif|g"}), "t", "-",
       "ATT00001.gif;"},
      {"an empty multipart", WithType("multipart/mixed; boundary=x", "--x--\n"), "-", "-", ""},
      {"folders in a name",
       Multipart("mixed", {"image/png; name=\"..\\\\..\\\\a.png\"|p", "image/png; name=/b/c.png|p",
                           "image/png; name=..|p"}),
       "-", "-", "a.png;c.png;ATT00003.png;"},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.what);
    const Message message = Parse(c.eml);
    EXPECT_EQ(message.plainBody.value_or("-"), c.plain);
    EXPECT_EQ(message.htmlBody.value_or("-"), c.html);
    EXPECT_EQ(Names(message), c.attachments);
  }
}

TEST(ReadMessage, KeepsEmbeddedMessagesByteForByte) {
  for (const std::string end : {"\n", "\r\n"}) {
    std::string inner =
        "Received: from a\n\tby b\nFrom: a@b.example\nSubject: =?utf-8?q?P=C3=A4?= 1/2\n"
        "Content-Type: multipart/mixed; boundary=\"y\"\n\nfor old programs\n--y\n"
        "Content-Transfer-Encoding: base64\n\nQUJD\n--y--\nafter";
    std::string eml = Multipart("mixed", {"text/plain|t", "message/rfc822|" + inner});
    for (std::string* text : {&inner, &eml}) {
      for (size_t at = 0; (at = text->find('\n', at)) != std::string::npos; at += end.size()) {
        text->replace(at, 1, end);
      }
    }
    const Message message = Parse(eml);
    ASSERT_EQ(message.attachments.size(), 1u);
    EXPECT_EQ(message.attachments[0].bytes, inner);
    EXPECT_EQ(message.attachments[0].name, "P\u00E4 1_2.eml");
    EXPECT_EQ(message.attachments[0].mimeType, "message/rfc822");
  }
}

TEST(ReadMessage, ReadsHeaderFieldsThatAreOddOrMissing) {
  const struct {
    const char* what;
    const char* header;
    const char* subject;
    const char* sender;  // "name <address>"
    const char* date;
  } kCases[] = {
      {"control characters", "Subject: =?utf-8?q?a=0D=0Ab=09c=C2=85?=", "a b c ", " <>", ""},
      {"a sender without an author", "Sender: Desk <d@b.example>", "", "Desk <d@b.example>", ""},
      {"several authors", "From: A <a@b.example>, B <b@b.example>", "", "A <a@b.example>", ""},
      {"a comment for a name", "From: a@b.example (Site office)", "", "Site office <a@b.example>",
       ""},
      {"an unknown character set", "Subject: =?x-none?q?abc?=", "abc", " <>", ""},
      {"a word cut in a character", "Subject: =?utf-8?q?=C3?= =?utf-8?q?=A4?=", "\u00E4", " <>",
       ""},
      {"8-bit text of no given character set", "Subject: B\xFCro", "B\u00FCro", " <>", ""},
      {"a date without a zone name", "Date: Sun, 1 Mar 2026 00:30:00 -0230", "", " <>",
       "2026-03-01T03:00:00Z"},
      {"an old date", "Date: 1 Mar 99 10:00 GMT", "", " <>", "1999-03-01T10:00:00Z"},
      {"no date at all", "Date: soon", "", " <>", ""},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.what);
    const Message message = Parse(std::string(c.header) + "\nTo: x@y.example\n\ntext\n");
    EXPECT_EQ(message.subject, c.subject);
    EXPECT_EQ(message.senderName + " <" + message.senderAddress + ">", c.sender);
    EXPECT_EQ(message.date, c.date);
  }
}

TEST(ReadMessage, KeepsTheHeaderLinesAsTheyStood) {
  const Message message = Parse("Received: from a\n\tby b\nSubject: B\xFCro\n\nSubject: body\n");
  EXPECT_EQ(message.headers, "Received: from a\r\n\tby b\r\nSubject: B\u00FCro\r\n");
}

TEST(ReadMessage, ConvertsTextFromItsCharacterSet) {
  const struct {
    const char* charset;
    std::string bytes;
    const char* text;
  } kCases[] = {
      {"utf-8", "\xC3\xA4", "\u00E4"},
      {"UTF-8", "a\xFFz", "a\uFFFDz"},
      {"", "\xC3\xA4", "\u00E4"},
      {"", "\xE4", "\u00E4"},
      {"us-ascii", "\xE4", "\u00E4"},
      {"iso-8859-1", "\x80", "\u20AC"},
      {"iso-8859-15", "\xA4", "\u20AC"},
      {"x-unknown", "\xE4", "\u00E4"},
      {"klingon", "\xC3\xA4", "\u00E4"},
      {"gb2312", "\xB1\xB1\x82\x35\x8F\x33", "\u5317\u9FA6"},
      {"iso-2022-jp", "\x1B$B6?\x1B(B.", "\u90F7."},
      {"utf-16le", std::string("a\0\xAC\x20", 4), "a\u20AC"},
      {"utf-16le", std::string("a\0\xAC", 3), "a\uFFFD"},
  };
  for (const auto& c : kCases) EXPECT_EQ(ToUtf8(c.bytes, c.charset), c.text) << c.charset;
}

TEST(ReadMessage, TakesTheCharacterSetOfAPageFromItsHead) {
  const struct {
    const char* type;
    const char* page;
    const char* html;
  } kCases[] = {
      {"text/html", "<META charset='windows-1251'>\xCC", "<META charset='utf-8'>\u041C"},
      {"text/html",
       "<meta name=x><meta http-equiv=\"Content-Type\" content=\"text/html; charset=koi8-r\">\xED",
       "<meta name=x><meta http-equiv=\"Content-Type\" content=\"text/html; "
       "charset=utf-8\">\u041C"},
      {"text/html; charset=utf-8", "<meta charset=koi8-r>\xC3\xA4", "<meta charset=utf-8>\u00E4"},
      {"text/html", "<meta charset", "<meta charset"},
      {"text/html", "<p>charset=koi8-r \xE4", "<p>charset=koi8-r \u00E4"},
  };
  for (const auto& c : kCases) {
    EXPECT_EQ(Parse(WithType(c.type, c.page)).htmlBody.value_or("-"), c.html) << c.page;
  }
}

TEST(ReadMessage, TakesNothingElseForAMessage) {
  for (const char* text :
       {"", "\n\n", "words\n", "words\nFrom: a@b.example\n\n", "a: b\n\ntext\n"}) {
    EXPECT_FALSE(ParseMessage(text)) << text;
  }
}

// Hostile nesting must end, not crash.
TEST(ReadMessage, SurvivesDeepNesting) {
  std::string multiparts = "From: a@b.example\n", messages = multiparts;
  for (int i = 0; i < 5000; ++i) {
    const std::string boundary = "b" + std::to_string(i);
    multiparts +=
        "Content-Type: multipart/mixed; boundary=" + boundary + "\n\n--" + boundary + "\n";
    messages += "Content-Type: message/rfc822\n\n";
  }
  EXPECT_TRUE(ParseMessage(multiparts));
  EXPECT_TRUE(ParseMessage(messages));
}

}  // namespace
}  // namespace postrove::mail
