#!/usr/bin/python3
"""convert_test.py EML2FOLDER SOURCE_TREE: the message folders of all samples, and bad input."""
import pathlib
import subprocess
import sys
import tempfile

import eml_reading


def read_ini(path):
    data = path.read_bytes()
    assert data.startswith(b"\xef\xbb\xbf"), "message.ini lacks its byte-order mark"
    sections, current = {}, None
    for line in data[3:].decode("utf-8").split("\r\n"):
        if line.startswith("["):
            current = sections.setdefault(line[1:-1], {})
        elif line:
            key, value = line.split("=", 1)
            if len(value) > 1 and value[0] == value[-1] == '"':
                value = value[1:-1]
            current[key] = value
    return sections


def read_folder(folder):
    ini = read_ini(folder / "message.ini")
    message = ini["Message"]

    def body(name):
        return (folder / name).read_bytes().decode("utf-8") if (folder / name).exists() else None

    plain, html = body("body.txt"), body("body.html")
    attachments = []
    for i in range(int(message["Attachments"])):
        section = ini[f"Attachment {i}"]
        data = eml_reading.comparable(section["MimeType"], (folder / section["File"]).read_bytes())
        attachments.append({"name": section["Name"], "type": section["MimeType"],
                            "cid": section.get("ContentId", ""), "data": data})
    assert plain is None or plain.count("\n") == plain.count("\r\n"), "body.txt: line ends"
    return {
        "subject": message["Subject"],
        "sender": (message["SenderName"], message["SenderAddress"]),
        "date": message.get("Date", ""),
        "recipients": [(ini[f"Recipient {i}"]["Kind"], ini[f"Recipient {i}"]["Name"],
                        ini[f"Recipient {i}"]["Address"])
                       for i in range(int(message["Recipients"]))],
        "plain": None if plain is None else eml_reading.lines(plain),
        "html": None if html is None else eml_reading.html_lines(html),
        "attachments": attachments,
    }


class Converter:
    def __init__(self, program, work):
        self.program, self.work, self.failures = program, work, []

    def run(self, *arguments):
        return subprocess.run([self.program, *map(str, arguments)], capture_output=True, text=True,
                              check=False)

    def check(self, what, condition, detail=""):
        if not condition:
            self.failures.append(f"{what}: {detail}")

    def sample(self, eml):
        folder = self.work / eml.stem
        done = self.run(eml, folder)
        self.check(eml.name, done.returncode == 0 and not done.stderr, done.stderr)
        if done.returncode == 0:
            want, got = eml_reading.read_eml(eml), read_folder(folder)
            for key, value in want.items():
                self.check(f"{eml.name}: {key}", got[key] == value, f"{got[key]!r}, not {value!r}")

    def refused(self, what, message, *arguments):
        """One line on standard error, status 1, and nothing new in the working folder."""
        before = sorted(self.work.rglob("*"))
        done = self.run(*arguments)
        self.check(what, done.returncode == 1, f"status {done.returncode}")
        self.check(what, done.stderr.count("\n") == 1 and message in done.stderr, done.stderr)
        self.check(what, sorted(self.work.rglob("*")) == before, "left files behind")

    def bad_input(self, good):
        work = self.work
        inputs = work / "inputs"
        inputs.mkdir()
        texts = {
            "empty": b"",
            "words": b"This is not a message.\nIt has no header.\n",
            "words, then a field": b"minutes of the meeting\nFrom: a@b.example\n\ntext\n",
            "program": b"\x7fELF\x02\x01\x01" + bytes(range(256)) * 8,
            "drawing": b"%PDF-1.4\n1 0 obj\n<< /Type /Catalog >>\nendobj\n",
        }
        for name, data in texts.items():
            (inputs / name).write_bytes(data)
            self.refused(name, "is not a mail message", inputs / name, work / "out")
        self.refused("missing file", "No such file", inputs / "missing.eml", work / "out")
        self.refused("folder for a file", "is a folder", inputs, work / "out")
        self.refused("no arguments", "usage:")
        self.refused("one argument", "usage:", good)
        self.refused("three arguments", "usage:", good, work / "out", work / "more")
        self.refused("missing parent", "No such file", good, work / "missing" / "out")
        self.refused("other folder in the place", "is not a message folder", good, inputs)
        self.refused("file in the place", "is not a message folder", good, inputs / "words")

    def replacing(self, first, second):
        """A later message replaces an earlier one whole, attachments included; a slash is no harm."""
        folder = self.work / "replaced"
        self.run(first, folder)
        self.check("replacing", self.run(second, f"{folder}/").returncode == 0)
        names = sorted(path.name for path in folder.rglob("*"))
        self.check("replacing", names == ["attachments", "body.txt", "headers.txt", "message.ini"],
                   names)
        left = [path.name for path in self.work.iterdir() if path.name.startswith("replaced.")]
        self.check("replacing", not left, left)


def main(program, source):
    samples = sorted(pathlib.Path(source, "tests/mail/samples").glob("*.eml"))
    samples += sorted(pathlib.Path(source, "resources/mail").glob("*.eml"))
    assert len(samples) > 15, "the samples are missing"
    with tempfile.TemporaryDirectory() as work:
        converter = Converter(program, pathlib.Path(work))
        for eml in samples:
            converter.sample(eml)
        by_name = {eml.stem: eml for eml in samples}
        converter.bad_input(by_name["received"])
        converter.replacing(by_name["nested-inline"], by_name["plain-lf"])
        for failure in converter.failures:
            print(failure)
        return 1 if converter.failures else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
