"""Reads an .eml file with Python's own mail package: a second opinion on what a message says."""
import datetime
import email
import email.header
import email.utils
import re


def fields(message, name):
    """The field's values as they stand, 8-bit text taken as UTF-8, unfolded."""
    values = [str(value).encode("utf-8", "surrogateescape").decode("utf-8")
              for key, value in message.raw_items() if key.lower() == name]
    return [re.sub(r"\r?\n(?=[ \t])", "", value) for value in values]


def decoded(text):
    return str(email.header.make_header(email.header.decode_header(text)))


def subject_of(message):
    return decoded("".join(fields(message, "subject")[:1]))


def addresses(message, field):
    """(name, address) of each mailbox of a field, groups resolved; the address stands for no name."""
    return [(decoded(name) or address, address)
            for name, address in email.utils.getaddresses(fields(message, field)) if address]


def text_of(part):
    data = part.get_payload(decode=True)
    charset = part.get_content_charset() or "utf-8"
    if charset == "iso-8859-1":
        charset = "cp1252"
    try:
        return data.decode(charset)
    except UnicodeDecodeError:
        return data.decode("cp1252")


def lines(text):
    return text.replace("\r\n", "\n")


def html_lines(text):
    """HTML apart from its line ends and the character set it names, which a conversion may change."""
    return re.sub(r"charset=[\"']?[\w-]+", "charset=", lines(text))


def comparable(kind, data):
    """Attached text and messages apart from their line ends, which Python's decoding changes."""
    return data.replace(b"\r\n", b"\n") if kind.startswith(("text/", "message/")) else data


def file_name(part):
    name = part.get_filename()
    return None if name is None else decoded(name)


def read_eml(path):
    with open(path, "rb") as file:
        message = email.message_from_binary_file(file)
    senders = addresses(message, "from")
    result = {
        "subject": subject_of(message),
        "sender": senders[0] if senders else ("", ""),
        "date": "",
        "recipients": [(kind,) + person for kind in ("to", "cc", "bcc")
                       for person in addresses(message, kind)],
        "plain": None,
        "html": None,
        "attachments": [],
    }
    if message["date"]:
        utc = email.utils.parsedate_to_datetime(message["date"]).astimezone(
            datetime.timezone.utc)
        result["date"] = utc.strftime("%Y-%m-%dT%H:%M:%SZ")
    collect(message, result)
    return result


def collect(part, result):
    kind = part.get_content_type()
    if kind == "message/rfc822":
        inner = part.get_payload(0)
        result["attachments"].append({
            "name": subject_of(inner) + ".eml", "type": kind, "cid": "",
            "data": comparable(kind, inner.as_bytes())})
    elif part.is_multipart():
        for child in part.get_payload():
            collect(child, result)
    elif kind == "text/plain" and result["plain"] is None and file_name(part) is None:
        result["plain"] = lines(text_of(part))
    elif kind == "text/html" and result["html"] is None and file_name(part) is None:
        result["html"] = html_lines(text_of(part))
    else:
        result["attachments"].append({
            "name": file_name(part), "type": kind,
            "cid": (part["content-id"] or "").strip("<>"),
            "data": comparable(kind, part.get_payload(decode=True))})
