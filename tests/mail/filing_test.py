#!/usr/bin/python3
"""filing_test.py SOURCE_TREE: files every sample message whole and reads the filed message back.

The way is the user's: eml2folder.py, deskhost, the registered add-in, a .msg file. The file is read with
olefile for every message and with msgconvert for those whose subject is ASCII (it encodes the bodies
of the others twice), and compared with what the converter reads in the .eml, which convert_test.py
holds. Needs the 64-bit Wine session that scripts/test.sh starts. The last line is "N passed, N failed".
"""
import html
import pathlib
import re
import shutil
import subprocess
import sys

import msg_reading

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "standin" / "mail"))
import eml2folder  # noqa: E402

PROJECT = "Harbour Bridge: 2231"
FOOTER = "Save important emails with "


class Fault(Exception):
    pass


def need(condition, what):
    if not condition:
        raise Fault(what)


def letters_of_html(text):
    """What a reader sees, without blanks and line breaks, for comparison with a plain rendering."""
    text = re.sub(r"(?is)<(head|style|script)\b.*?</\1>", "", text)
    return "".join(html.unescape(re.sub(r"<[^>]*>", "", text)).split())


class Filing:
    def __init__(self, root):
        self.root = root
        self.work = root / "build" / "filing"
        self.wine = root / "scripts" / "lib" / "wine-x64"
        self.drive = root / "build" / "wine" / "x64" / "drive_c"
        self.kinds = set()  # whether the files written were Unicode ones

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

    def file(self, eml, message, unsent):
        """The filed message's path, as Windows has it and here."""
        folder = self.work / eml.stem
        message.write(folder)
        arguments = ["--project", PROJECT]
        if not message.subject:
            arguments += ["--name", eml.stem]
        if unsent:
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
        data = eml.read_bytes()
        want, unsent = eml2folder.Message(data), b"X-Unsent: 1" in data
        place, path = self.file(eml, want, unsent)
        got = msg_reading.read_msg(path)
        name, _ = PROJECT.split(":")
        subject = want.subject or f"2231-{name}=>{eml.stem}"
        need(got["subject"] == subject, f"subject {got['subject']!r}")
        self.kinds.add(got["unicode"])
        need(path.name.endswith("(att).msg") == bool(want.attachments), f"file name {path.name}")
        flags = got["flags"] & (msg_reading.UNSENT | msg_reading.HAS_ATTACHMENTS)
        need(flags == (msg_reading.UNSENT if unsent else 0)
             + (msg_reading.HAS_ATTACHMENTS if want.attachments else 0), f"flags {flags:#x}")
        need(got["sender"] == tuple(want.sender), f"sender {got['sender']}")
        need(len(got["recipients"]) == len(want.recipients), "number of recipients")
        for mine, theirs in zip(got["recipients"], want.recipients):
            need(mine == tuple(theirs), f"recipient {mine}, not {theirs}")
        self.check_bodies(got, want, place)
        self.check_attachments(got, want)
        if subject.isascii():
            self.check_msgconvert(path, want)

    def check_bodies(self, got, want, place):
        plain, page = got["plain"], want.bodies.get("text/html")
        need(plain.count(FOOTER) == 1, f"plain body {plain!r} has no footer or several")
        if page is None:
            before = plain[:plain.index(FOOTER)]
            need(before == f"{want.bodies.get('text/plain', '')}\r\n{place}\r\n", f"plain body {before!r}")
            return
        need(got["html"] is not None, "the HTML body is missing")
        added = re.search(r"(?is)<div><p>(.*?)</p></div>(?=</body>)", got["html"])
        need(added, f"HTML body {got['html']!r} has no footer")
        link = re.fullmatch(r"(?is)(.*?)<br\s*/?>\s*" + FOOTER + "<a href=[^>]*>.*</a>", added[1])
        need(link and html.unescape(link[1].strip()) == place, f"footer {added[1]!r}")
        rest = got["html"][:added.start()] + got["html"][added.end():]
        need(rest.lower() == page.lower(), f"HTML body {rest!r}, not {page!r}")
        need("".join(plain.split()) == letters_of_html(got["html"]), f"plain body {plain!r}")

    def check_attachments(self, got, want):
        need(len(got["attachments"]) == len(want.attachments), "number of attachments")
        for mine, (name, *theirs) in zip(got["attachments"], want.attachments):
            need(mine["name"] == name, f"attachment's name {mine['name']!r}")
            need([mine["type"], mine["cid"], mine["data"]] == theirs, f"{name}: {mine}, not {theirs}")

    def check_msgconvert(self, path, want):
        copy = self.work / "read.msg"
        shutil.copy(path, copy)
        done = subprocess.run(["msgconvert", "--outfile", "-", copy], capture_output=True, check=False,
                              cwd=self.work)
        need(done.returncode == 0, f"msgconvert: {done.stderr.decode('utf-8', 'replace')}")
        read = eml2folder.Message(done.stdout)
        if want.subject:
            need(read.subject == want.subject, "msgconvert: subject")
        need(read.sender[1] == want.sender[1], f"msgconvert: sender's address {read.sender}")
        need(("text/html" in read.bodies) == ("text/html" in want.bodies), f"msgconvert: {read.bodies}")
        need(read.bodies and all(FOOTER in text for text in read.bodies.values()),
             "msgconvert: a body without the footer")
        for name, kind, _, data in want.attachments:
            if data and not kind.startswith(("text/", "message/")):  # of which it changes line ends
                need(data in [theirs[3] for theirs in read.attachments], f"msgconvert: bytes of {name}")


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
    if filing.kinds != {True, False}:
        print("Unicode files are for messages that need them only")
        failed += 1
    print(f"{passed} passed, {failed} failed")
    return 0 if failed == 0 and passed > 15 else 1


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
