#!/usr/bin/python3
"""Reads the properties of a .msg file straight from its compound file.

msg_reading.py FILE.msg prints them as JSON.
"""
import json
import struct
import sys

import olefile

SUBJECT, SENDER_NAME, SENDER_ADDRESS = 0x0037, 0x0C1A, 0x0C1F
BODY, HTML, HEADERS, MESSAGE_CLASS = 0x1000, 0x1013, 0x007D, 0x001A
DISPLAY_NAME, ADDRESS, RECIPIENT_TYPE = 0x3001, 0x3003, 0x0C15
FLAGS, UNSENT, HAS_ATTACHMENTS = 0x0E07, 0x08, 0x10
ATTACH_DATA, ATTACH_LONG_NAME, ATTACH_NAME, ATTACH_MIME, ATTACH_CID = (
    0x3701, 0x3707, 0x3704, 0x370E, 0x3712)
STRING8, UNICODE, BINARY, LONG = 0x001E, 0x001F, 0x0102, 0x0003
KINDS = {1: "to", 2: "cc", 3: "bcc"}


class Storage:
    """One storage of properties: the message, a recipient or an attachment."""

    def __init__(self, ole, path, header):
        self.ole, self.path, self.header = ole, path, header

    def stream(self, tag, kind):
        name = self.path + [f"__substg1.0_{tag:04X}{kind:04X}"]
        return self.ole.openstream(name).read() if self.ole.exists(name) else None

    def text(self, tag):
        data = self.stream(tag, UNICODE)
        if data is not None:
            return data.decode("utf-16-le")
        data = self.stream(tag, STRING8)
        return None if data is None else data.decode("cp1252")

    def number(self, tag):
        data = self.ole.openstream(self.path + ["__properties_version1.0"]).read()
        for at in range(self.header, len(data) - 15, 16):
            kind, name, _, value = struct.unpack_from("<HHIi", data, at)
            if (name, kind) == (tag, LONG):
                return value
        return None


def children(ole, prefix):
    names = {entry[0] for entry in ole.listdir(streams=False, storages=True)
             if entry[0].startswith(prefix)}
    return [Storage(ole, [name], 8) for name in sorted(names)]


def read_msg(path):
    with olefile.OleFileIO(path) as ole:
        top = Storage(ole, [], 32)
        html = top.stream(HTML, BINARY)
        return {
            "unicode": top.stream(SUBJECT, UNICODE) is not None,
            "flags": top.number(FLAGS),
            "class": top.text(MESSAGE_CLASS),
            "subject": top.text(SUBJECT) or "",
            "sender": (top.text(SENDER_NAME) or "", top.text(SENDER_ADDRESS) or ""),
            "recipients": [(KINDS.get(r.number(RECIPIENT_TYPE)), r.text(DISPLAY_NAME),
                            r.text(ADDRESS)) for r in children(ole, "__recip_version1.0_")],
            "plain": top.text(BODY) or "",
            "html": None if html is None else html.decode("utf-8").rstrip("\0"),
            "attachments": [{
                "name": a.text(ATTACH_LONG_NAME) or a.text(ATTACH_NAME),
                "type": a.text(ATTACH_MIME), "cid": a.text(ATTACH_CID) or "",
                "data": a.stream(ATTACH_DATA, BINARY) or b"",
            } for a in children(ole, "__attach_version1.0_")],
        }


if __name__ == "__main__":
    print(json.dumps(read_msg(sys.argv[1]), indent=1, ensure_ascii=False,
                     default=lambda data: f"{len(data)} bytes"))
