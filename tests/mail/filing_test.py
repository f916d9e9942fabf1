#!/usr/bin/python3
"""filing_test.py SOURCE_TREE: files every sample message whole and reads the filed message back.

The way is the user's: eml2folder, deskhost, the registered add-in, a .msg file. The file is read with
olefile for every message and with msgconvert for those whose subject is ASCII (it encodes the bodies
of the others twice), and compared with what Python's own mail package reads in the .eml. Needs the
64-bit Wine session that scripts/test.sh starts. The last line is "N passed, N failed".
"""
import email
import html
import pathlib
import re
import shutil
import subprocess
import sys

import eml_reading
import msg_reading

PROJECT = "Harbour Bridge: 2231"
FOOTER = "Save important emails with "


class Fault(Exception):
    pass


def need(condition, what):
    if not condition:
        raise Fault(what)


def in_code_page(text):
    """A pattern of the text in code page 1252: what it lacks became some other character."""
    pattern = ""
    for c in text:
        try:
            c.encode("cp1252")
            pattern += re.escape(c)
        except UnicodeEncodeError:
            pattern += "." * (len(c.encode("utf-16-le")) // 2)
    return pattern


def need_text(got, want, what):
    need(re.fullmatch(in_code_page(want), got, re.S), f"{what}: {got!r}, not {want!r}")


def letters_of_html(text):
    """What a reader sees, without blanks and line breaks, for comparison with a plain rendering."""
    text = re.sub(r"(?is)<(head|style|script)\b.*?</\1>", "", text)
    return "".join(html.unescape(re.sub(r"<[^>]*>", "", text)).split())


def own_parts(part):
    """The parts of a message itself, those of embedded messages left out."""
    if part.get_content_maintype() == "multipart":
        for child in part.get_payload():
            yield from own_parts(child)
    else:
        yield part


class Filing:
    def __init__(self, root):
        self.root = root
        self.work = root / "build" / "filing"
        self.wine = root / "scripts" / "lib" / "wine-x64"
        self.drive = root / "build" / "wine" / "x64" / "drive_c"

    def windows(self, *arguments):
        return subprocess.run([self.wine, *map(str, arguments)], capture_output=True, timeout=120,
                              stdin=subprocess.DEVNULL, check=False)

    def prepare(self):
        for folder in (self.work, self.drive / "Projects"):
            shutil.rmtree(folder, ignore_errors=True)
            folder.mkdir(parents=True)
        settings = self.drive / "ProgramData" / "Postrove"  # with the sample database
        need((settings / "Postrove.mdb").exists(), f"{settings} has no Postrove.mdb")
        (settings / "Postrove.ini").write_bytes(b"[Setup]\r\nRoot=C:\\Projects\\\r\n")
        done = self.windows("regsvr32", "/s", self.root / "dist/x64/Postrove09.dll")
        need(done.returncode == 0, "the add-in could not be registered")

    def file(self, eml):
        """The filed message's path, as Windows has it and here."""
        folder = self.work / eml.stem
        done = subprocess.run([self.root / "build/native/standin/mail/eml2folder", eml, folder],
                              capture_output=True, text=True, check=False)
        need(done.returncode == 0, done.stderr.strip())
        arguments = ["--project", PROJECT]
        if not eml_reading.read_eml(eml)["subject"]:
            arguments += ["--name", eml.stem]
        if b"X-Unsent: 1" in eml.read_bytes():
            arguments += ["--new"]
        done = self.windows(self.root / "dist/x64/deskhost.exe", *arguments, folder)
        output = done.stdout.decode("utf-8")
        need(done.returncode == 0, f"deskhost ended with {done.returncode}: {output}"
             f"{done.stderr.decode('utf-8', 'replace')}")
        filed = re.findall(r"^Filed: (C:\\.*?)\r?$", output, re.M)
        need(len(filed) == 1, f"deskhost printed {output!r}")
        path = self.drive / filed[0][3:].replace("\\", "/")
        need(path.is_file(), f"{path} is missing")
        return filed[0], path

    def check(self, eml):
        place, path = self.file(eml)
        want, got = eml_reading.read_eml(eml), msg_reading.read_msg(path)
        name, _ = PROJECT.split(":")
        subject = want["subject"] or f"2231-{name}=>{eml.stem}"
        need_text(got["subject"], subject, "subject")
        need(path.name.endswith("(att).msg") == bool(want["attachments"]), f"file name {path.name}")
        flags = got["flags"] & (msg_reading.UNSENT | msg_reading.HAS_ATTACHMENTS)
        need(flags == (msg_reading.UNSENT if b"X-Unsent: 1" in eml.read_bytes() else 0)
             + (msg_reading.HAS_ATTACHMENTS if want["attachments"] else 0), f"flags {flags:#x}")
        for what, mine, theirs in zip(("sender's name", "sender's address"), got["sender"],
                                      want["sender"]):
            need_text(mine, theirs, what)
        need(len(got["recipients"]) == len(want["recipients"]), "number of recipients")
        for mine, theirs in zip(got["recipients"], want["recipients"]):
            need(mine[0] == theirs[0] and mine[2] == theirs[2], f"recipient {mine}, not {theirs}")
            need_text(mine[1], theirs[1], "recipient's name")
        self.check_bodies(got, want, place)
        self.check_attachments(got, want)
        if subject.isascii():
            self.check_msgconvert(path, want)

    def check_bodies(self, got, want, place):
        plain = got["plain"].replace("\r\n", "\n")
        need(plain.count(FOOTER) == 1, f"plain body {plain!r} has no footer or several")
        if want["html"] is None:
            before = plain[:plain.index(FOOTER)]
            need_text(before, f"{want['plain'] or ''}\n{place}\n", "plain body")
            return
        need(got["html"] is not None, "the HTML body is missing")
        added = re.search(r"(?is)<div><p>(.*?)</p></div>(?=</body>)", got["html"])
        need(added, f"HTML body {got['html']!r} has no footer")
        link = re.fullmatch(r"(?is)(.*?)<br\s*/?>\s*" + FOOTER + "<a href=[^>]*>.*</a>", added[1])
        need(link and html.unescape(link[1].strip()) == place, f"footer {added[1]!r}")
        rest = got["html"][:added.start()] + got["html"][added.end():]
        need(eml_reading.html_lines(rest).lower() == want["html"].lower(),
             f"HTML body {rest!r}, not {want['html']!r}")
        need_text("".join(plain.split()), letters_of_html(got["html"]), "plain body")

    def check_attachments(self, got, want):
        need(len(got["attachments"]) == len(want["attachments"]), "number of attachments")
        for mine, theirs in zip(got["attachments"], want["attachments"]):
            need_text(mine["name"], theirs["name"], "attachment's name")
            need(mine["type"] == theirs["type"], f"attachment's type {mine['type']}")
            need(mine["cid"] == theirs["cid"], f"attachment's content id {mine['cid']}")
            need(eml_reading.comparable(theirs["type"], mine["data"]) == theirs["data"],
                 f"bytes of {theirs['name']}")

    def check_msgconvert(self, path, want):
        copy = self.work / "read.msg"
        shutil.copy(path, copy)
        done = subprocess.run(["msgconvert", "--outfile", "-", copy], capture_output=True, check=False,
                              cwd=self.work)
        need(done.returncode == 0, f"msgconvert: {done.stderr.decode('utf-8', 'replace')}")
        message = email.message_from_bytes(done.stdout)
        if want["subject"]:
            need(eml_reading.subject_of(message) == want["subject"], "msgconvert: subject")
        need(want["sender"][1] in "".join(eml_reading.fields(message, "from")),
             "msgconvert: sender's address")
        parts = list(own_parts(message))
        kinds = [part.get_content_type() for part in parts]
        need(("text/html" in kinds) == (want["html"] is not None), f"msgconvert: parts {kinds}")
        texts = [part.get_payload(decode=True).decode("utf-8", "replace") for part in parts
                 if part.get_content_maintype() == "text" and not part.get_filename()]
        need(texts and all(FOOTER in text for text in texts), "msgconvert: a body without the footer")
        data = [eml_reading.comparable(part.get_content_type(), part.get_payload(decode=True))
                for part in parts if part.get_filename() and not part.is_multipart()]
        for attachment in want["attachments"]:
            if attachment["data"] and attachment["type"] != "message/rfc822":
                need(attachment["data"] in data, f"msgconvert: bytes of {attachment['name']}")


def main(source):
    root = pathlib.Path(source).resolve()
    filing = Filing(root)
    filing.prepare()
    passed = failed = 0
    samples = sorted((root / "tests/mail/samples").glob("*.eml"))
    for eml in samples + sorted((root / "resources/mail").glob("*.eml")):
        try:
            filing.check(eml)
            passed += 1
        except (Fault, subprocess.TimeoutExpired, KeyError, OSError) as fault:
            print(f"{eml.name}: {fault}")
            failed += 1
    print(f"{passed} passed, {failed} failed")
    return 0 if failed == 0 and passed > 15 else 1


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
