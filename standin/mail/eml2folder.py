#!/usr/bin/python3
"""eml2folder.py FILE.eml FOLDER: unpacks a mail message into a message folder (FORMAT.md).

Mail as it comes is seldom right. What can be read is read, what cannot becomes U+FFFD, and every part
of the message is a body or an attachment, so that nothing is lost.
"""
import binascii
import datetime
import email.message
import email.parser
import email.utils
import os
import pathlib
import re
import shutil
import sys

MESSAGE_FIELDS = {"from", "sender", "to", "cc", "bcc", "subject", "date", "message-id", "received",
                  "mime-version", "content-type"}
# Latin-1 and ASCII are said where Windows-1252 is meant, and the older national sets for the newer.
# A set without a name is found out.
MEANT = {"iso-8859-1": "cp1252", "latin1": "cp1252", "us-ascii": "", "ascii": "", "gb2312": "gb18030",
         "gbk": "gb18030", "euc-kr": "cp949", "ks_c_5601-1987": "cp949", "windows-874": "cp874"}
EXTENSIONS = {"text/plain": ".txt", "text/html": ".htm", "text/calendar": ".ics", "image/png": ".png",
              "image/jpeg": ".jpg", "image/gif": ".gif", "application/pdf": ".pdf",
              "message/rfc822": ".eml"}
ENCODED_WORD = re.compile(r"=\?([^?\s]+)\?([bq])\?(.*?)\?=", re.I)
META_CHARSET = re.compile(r"<meta[^>]*?charset[\s=\"']+([^\s;\"'/>]+)[^>]*>", re.I)
HTML_HEAD = 4096  # where a page names its character set


class MailError(Exception):
    """In words for the person who runs the converter."""


class Part(email.message.Message):
    """A part with its fields as they stand. An embedded message is not taken apart, but remains the
    text that it is."""

    def get_content_type(self):
        """What the parser goes by."""
        kind = self.kind()
        return kind if kind.startswith("multipart/") else "text/plain"

    def kind(self):
        return super().get_content_type()

    def get(self, name, failobj=None):
        return next(self.values_of(name), failobj)

    def values_of(self, name):
        return (re.sub(r"[\r\n]", "", value).strip() for key, value in self.raw_items()
                if key.lower() == name.lower())

    def parameter(self, header, name):
        try:
            value = self.get_param(name, "", header)
        except (TypeError, ValueError):  # one parameter given in two ways
            return ""
        if isinstance(value, tuple):
            return one_line(to_text(value[2].encode("latin-1", "replace"), value[0] or ""))
        return decoded(value)

    def content(self):
        if self.get("content-transfer-encoding", "").lower() == "base64":
            return from_base64(self._payload.encode("utf-8", "surrogateescape"))
        return self.get_payload(decode=True)


def parse(data, fields_only=False):
    return email.parser.BytesParser(Part).parsebytes(data, fields_only)


def to_text(data, charset):
    charset = charset.lower()
    charset = MEANT.get(charset, charset)
    try:
        if charset:
            return data.decode(charset, "replace")
    except (LookupError, ValueError):  # unknown, or no character set at all
        pass
    try:
        return data.decode("utf-8")
    except UnicodeDecodeError:
        return data.decode("cp1252", "replace")


def from_base64(data):
    """All of it, also behind a padding and where the end is missing."""
    runs = re.findall(rb"[A-Za-z0-9+/]+", re.sub(rb"[^A-Za-z0-9+/=]", b"", data))
    return b"".join(binascii.a2b_base64(run[:len(run) - (len(run) % 4 == 1)] + b"==") for run in runs)


def decoded(raw):
    """The text of a header field: encoded words and raw 8-bit letters. A letter may be divided between
    two words."""
    text, pieces, at = to_text(raw.encode("utf-8", "surrogateescape"), ""), [], 0
    for word in ENCODED_WORD.finditer(text):
        between, at = text[at:word.start()], word.end()
        if between.strip() or not pieces:
            pieces.append((None, between))
        data = word[3].encode()
        data = from_base64(data) if word[2] in "bB" else binascii.a2b_qp(data, header=True)
        charset = word[1].partition("*")[0].lower()
        if pieces[-1][0] == charset:
            data = pieces.pop()[1] + data
        pieces.append((charset, data))
    pieces.append((None, text[at:]))
    return one_line("".join(piece if charset is None else to_text(piece, charset)
                            for charset, piece in pieces))


def one_line(text):
    return re.sub(r"\r\n|[\0-\x1f\x7f-\x9f]", " ", text)


def windows_lines(text):
    return re.sub(r"\r\n|\r|\n", "\r\n", text.replace("\0", " "))


def body_text(data, charset, html):
    if html and not charset:
        found = META_CHARSET.search(data[:HTML_HEAD].decode("latin-1"))
        charset = found[1] if found else ""
    text = to_text(data, charset).removeprefix("\ufeff")
    if not html:
        return windows_lines(text)
    found = META_CHARSET.search(text, 0, HTML_HEAD)
    return text[:found.start(1)] + "utf-8" + text[found.end(1):] if found else text


def people(part, field):
    """(name, address) of each mailbox, those of groups among them; the address stands for no name."""
    values = list(part.values_of(field))
    try:
        pairs = email.utils.getaddresses(values, strict=False)  # strict: one fault and all are lost
    except TypeError:
        pairs = email.utils.getaddresses(values)
    return [(decoded(name or address), decoded(address)) for name, address in pairs if address]


def utc_date(text):
    try:
        date = email.utils.parsedate_to_datetime(text)
        if date.tzinfo:
            date = date.astimezone(datetime.timezone.utc)
        return date.isoformat()[:19] + "Z"
    except (TypeError, ValueError, IndexError, OverflowError):
        return ""


def file_name(name):
    """Without the folders of the sender's machine, or others, and what Windows has in no name."""
    return re.sub(r'[:*?"<>|]', "_", re.split(r"[/\\]", name)[-1]).rstrip(" .")


class Message:
    """The bodies are the first plain and the first HTML text that are no attachments: alternatives, or
    a text and what is related to it, belong together."""

    def __init__(self, data):
        data = data.removeprefix(b"\xef\xbb\xbf")
        head = re.search(rb"\n(?=\r?\n)", data)
        part = parse(data)
        if not MESSAGE_FIELDS & {key.lower() for key in part.keys()}:
            raise MailError("is not a mail message")
        self.headers = windows_lines(to_text(data[:head.end()] if head else data, ""))
        self.subject = decoded(part.get("subject", ""))
        self.date = utc_date(part.get("date"))
        self.sender = (people(part, "from") + people(part, "sender") + [("", "")])[0]
        self.recipients = [(kind, *person) for kind in ("to", "cc", "bcc") for person in people(part, kind)]
        self.bodies, self.attachments = {}, []  # type: text; (name, type, content id, bytes)
        self._complete = False  # further texts are attachments
        self._read(part, False)

    def _read(self, part, together):
        if not part.is_multipart():
            self._read_leaf(part, together)
            return
        unit = part.kind() in ("multipart/alternative", "multipart/related")
        for child in part.get_payload():
            self._read(child, together or unit)
        if unit and not together:
            self._complete = self._complete or bool(self.bodies)

    def _read_leaf(self, part, together):
        kind, data = one_line(decoded(part.kind())), part.content()
        if kind.startswith("multipart/"):  # without parts
            if not data:
                return
            kind = "text/plain"
        name = part.parameter("content-disposition", "filename") or part.parameter("content-type", "name")
        if (kind not in ("text/plain", "text/html") or kind in self.bodies or self._complete
                or part.get_content_disposition() == "attachment" or name and not together):
            self._attach(part, kind, data, name)
            return
        self.bodies[kind] = body_text(data, part.parameter("content-type", "charset"), kind == "text/html")
        self._complete = not together

    def _attach(self, part, kind, data, name):
        if kind == "message/rfc822" and not name:
            subject = decoded(parse(data, True).get("subject", ""))
            name = subject and re.sub(r"[/\\]", "_", subject) + ".eml"
        name = file_name(name) or f"ATT{len(self.attachments) + 1:05}{EXTENSIONS.get(kind, '.dat')}"
        self.attachments.append((name, kind, decoded(part.get("content-id", "")).strip(" <>"), data))

    def ini(self):
        sections = {"Message": {
            "Subject": self.subject, "MessageClass": "IPM.Note", "SenderName": self.sender[0],
            "SenderAddress": self.sender[1], "Date": self.date or None,
            "Recipients": str(len(self.recipients)), "Attachments": str(len(self.attachments))}}
        for i, (kind, name, address) in enumerate(self.recipients):
            sections[f"Recipient {i}"] = {"Kind": kind, "Name": name, "Address": address}
        for i, (name, kind, content_id, _) in enumerate(self.attachments):
            sections[f"Attachment {i}"] = {"File": f"attachments/{i:04}", "Name": name, "MimeType": kind,
                                           "ContentId": content_id or None}
        text = "\ufeff"
        for section, values in sections.items():
            text += f"[{section}]\r\n"
            for key, value in values.items():
                if value is not None:
                    quote = '"' if value[:1] in (" ", '"') or value[-1:] in (" ", '"') else ""
                    text += f"{key}={quote}{value}{quote}\r\n"
        return text

    def write(self, folder):
        """Whole or not at all."""
        if os.path.lexists(folder) and not (folder / "message.ini").is_file():
            raise MailError("exists and is not a message folder")
        fresh = folder.with_name(f"{folder.name}.{os.getpid()}.new")
        texts = {"headers.txt": self.headers, "body.txt": self.bodies.get("text/plain"),
                 "body.html": self.bodies.get("text/html"), "message.ini": self.ini()}
        try:
            fresh.mkdir()
            (fresh / "attachments").mkdir()
            for i, attachment in enumerate(self.attachments):
                (fresh / "attachments" / f"{i:04}").write_bytes(attachment[3])
            for name, text in texts.items():
                if text is not None:
                    (fresh / name).write_bytes(text.encode("utf-8", "replace"))
            if folder.exists():
                shutil.rmtree(folder)
            fresh.rename(folder)
        finally:
            shutil.rmtree(fresh, ignore_errors=True)


def main(arguments):
    if len(arguments) != 2 or "" in arguments:
        sys.exit("usage: eml2folder.py FILE.eml FOLDER")
    file = pathlib.Path(arguments[0])
    try:
        message = Message(file.read_bytes())
        file = pathlib.Path(os.path.abspath(arguments[1]))
        message.write(file)
    except RecursionError:
        sys.exit(f"eml2folder: {file}: is nested too deeply")
    except MailError as error:
        sys.exit(f"eml2folder: {file}: {error}")
    except OSError as error:
        sys.exit(f"eml2folder: {file}: {error.strerror or error}")


if __name__ == "__main__":
    main(sys.argv[1:])
