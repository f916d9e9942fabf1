#!/usr/bin/python3
"""The message converter: the hard cases of mail, and what it refuses."""
import pathlib
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "standin" / "mail"))
import eml2folder  # noqa: E402

NESTED = ("multipart/related; boundary=y|--y\nContent-Type: text/html\n\n<p>h</p>\n"
          "--y\nContent-Type: image/png; name=a.png\nContent-Id: <a@b>\n\npng\n--y--")


def message(head, body="text\n"):
    """Latin-1 letters stand for bytes."""
    return eml2folder.Message(f"{head}\n\n{body}".encode("latin-1"))


def with_type(kind, body):
    return message("From: a@b.example\nContent-Type: " + kind, body)


def multipart(subtype, *parts, end="--x--\n"):
    """The parts written as "type and further fields|content"."""
    return with_type(f"multipart/{subtype}; boundary=x", "".join(
        "--x\nContent-Type: {}\n\n{}\n".format(*part.split("|", 1)) for part in parts) + end)


class Conversion(unittest.TestCase):
    def test_fields(self):
        long = "Tragwerk " * 300
        for head, subject, sender, date in [
            ("Subject: =?utf-8?B?w5xiZXJnYWJlIA==?= =?utf-8?B?UGzDpG5l?=", "Übergabe Pläne", "", ""),
            ("Subject: =?utf-8?B?w5w=?=\n =?utf-8?B?YmVy?=\n\t=?iso-8859-1*de?q?_g=E4be?= x", "Über gäbe x", "", ""),
            ("Subject: =?utf-8?q?=C3?= =?utf-8?q?=A4?= =?iso-8859-1?Q?=80?=", "ä€", "", ""),
            ("Subject: a =?utf-8?B?w6Q?= b =?utf-8?B?w6QKC?= =?x-none?q?abc?= =?*de?q?d?= =?q?b",
             "a ä b ä abcd =?q?b", "", ""),
            ("Subject: =?utf-8?Q?Was_nun??= =?utf-8?q?a=0D=0Ab=09c=C2=85d?=", "Was nun?a b c d", "", ""),
            ("Subject: " + long.replace("k ", "k\n ").strip(), long.strip(), "", ""),
            ("Subject: =?utf-8?q?" + long.replace(" ", "_") + "?=", long, "", ""),
            ("Subject: B\xfcro =?utf-8?q?=C3=A4?=\nSubject: second", "Büro ä", "", ""),
            ("\xef\xbb\xbfSubject: B\xc3\xbcro ", "Büro", "", ""),
            ("Sender: Desk <d@b.example>", "", "Desk <d@b.example>", ""),
            ("From: A <a@b.example>, B <b@b.example>", "", "A <a@b.example>", ""),
            ("From: a@b.example (Site office)", "", "Site office <a@b.example>", ""),
            ('From: "=?utf-8?q?M=C3=BCller=2C?= A, B" <a@b.example>', "", "Müller, A, B <a@b.example>", ""),
            ("From: undisclosed:;, <b@b.example>", "", "b@b.example <b@b.example>", ""),
            ("Date: Sun, 1 Mar 2026 00:30:00 -0230", "", "", "2026-03-01T03:00:00Z"),
            ("Date: 1 Mar 99 10:00 GMT", "", "", "1999-03-01T10:00:00Z"),
            ("Date: soon", "", "", ""),
        ]:
            with self.subTest(head=head):
                got = message(head + "\nTo: x@y.example")
                self.assertEqual(got.subject, subject)
                self.assertEqual("{} <{}>".format(*got.sender) if any(got.sender) else "", sender)
                self.assertEqual(got.date, date)
        got = message("To: Team: A <a@b>, c@d;, , e@f\nTo: g@h; k@l\nCc: broken <\nBcc: i@j")
        self.assertEqual(got.recipients, [("to", "A", "a@b"), ("to", "c@d", "c@d"), ("to", "e@f", "e@f"),
                                          ("to", "g@h", "g@h"), ("to", "k@l", "k@l"),
                                          ("bcc", "i@j", "i@j")])
        self.assertEqual(message("Received: from a\n\tby b\nSubject: B\xfcro", "Subject: body\n").headers,
                         "Received: from a\r\n\tby b\r\nSubject: Büro\r\n")

    def test_samples(self):
        for name, subject in {
            "subject-utf8-folded": "Übergabe der Pläne für das nördliche Widerlager – Teil 2 žluťoučký and ASCII",
            "subject-greek": "Σχέδια γέφυρας", "subject-japanese": "橋梁の図面",
            "subject-cyrillic-koi8": "Чертежи моста", "headers-8bit": "Übergabe der Pläne",
        }.items():
            with self.subTest(name=name):
                eml = (ROOT / "tests/mail/samples" / f"{name}.eml").read_bytes()
                self.assertEqual(eml2folder.Message(eml).subject, subject)

    def test_parts(self):
        folders = [r'"..\\..\\a.png"', "/b/c.png", "..", '"d:e?.png. "']
        cases = [  # plain and HTML body, "-" for none, and the names of the attachments
            (multipart("mixed", "text/plain|one", "text/plain|two"), "one", "-", "ATT00001.txt"),
            (multipart("mixed", "text/plain|one", "text/html|h"), "one", "-", "ATT00001.htm"),
            (multipart("alternative", "text/html|h", "text/plain|t"), "t", "h", ""),
            (multipart("alternative", "text/plain|t", NESTED), "t", "<p>h</p>", "a.png"),
            (multipart("related", "text/html; name=h.htm|h", "image/gif|g"), "-", "h", "ATT00001.gif"),
            (multipart("mixed", "multipart/alternative; boundary=y|--y\n\nt\n--y--", "text/html|h"), "t", "-",
             "ATT00001.htm"),
            (multipart("mixed", "message/rfc822|From: a@b\n", "message/rfc822; name=n.eml|Subject: s"), "-", "-",
             "ATT00001.eml n.eml"),
            (multipart("alternative", "text/plain|t", "text/calendar|BEGIN"), "t", "-", "ATT00001.ics"),
            (multipart("mixed", "text/plain; name=notes.txt|n", "text/plain|t"), "t", "-", "notes.txt"),
            (multipart("mixed", "text/html\nContent-Disposition: attachment|h", "text/plain|t"), "t", "-",
             "ATT00001.htm"),
            (multipart("signed", "text/plain|t", "application/pkcs7-signature; name=smime.p7s|s"), "t", "-",
             "smime.p7s"),
            (multipart("strange", "text/plain|t", "image/gif|g"), "t", "-", "ATT00001.gif"),
            (multipart("mixed", "text/plain|t", "image/gif|g", end=""), "t", "-", "ATT00001.gif"),
            (multipart("mixed", "text/plain|t", "message/delivery-status|a: b\n\nc: d"), "t", "-",
             "ATT00001.dat"),
            (multipart("mixed", *(f"image/png; name={name}|p" for name in folders)), "-", "-",
             "a.png c.png ATT00003.png d_e_.png"),
            (multipart("mixed",
                       "a/b\nContent-Disposition: attachment; filename*0*=gb2312'zh'%B1; filename*1*=%B1.pdf|b",
                       "a/b\nContent-Disposition: attachment; filename=B\xfcro.pdf|b",
                       "a/b\nContent-Disposition: attachment; filename*=x; filename*0=y|b",
                       "a/b; name*=utf-8''%C3%A4|b", "a/b; name=\"=?utf-8?B?w6Q=?=\"|b"), "-", "-",
             "北.pdf Büro.pdf ATT00003.dat ä ä"),
            (with_type("multipart/mixed; boundary=x", "--x--\n"), "-", "-", ""),
            (with_type("multipart/mixed; boundary=x", "no part\n"), "no part\r\n", "-", ""),
            (with_type("multipart/mixed", "a\nb\rc\r\n"), "a\r\nb\r\nc\r\n", "-", ""),
            (with_type("nothing", "a\0b"), "a b", "-", ""),
            (with_type("application/pdf; name=a.pdf\nContent-Transfer-Encoding: BASE64 ", "QQ==\nQ*\xffUI=Q"), "-",
             "-", "a.pdf"),
        ]
        for got, plain, html, names in cases:
            with self.subTest(plain=plain, html=html, names=names):
                self.assertEqual(got.bodies.get("text/plain", "-"), plain)
                self.assertEqual(got.bodies.get("text/html", "-"), html)
                self.assertEqual(" ".join(name for name, *_ in got.attachments), names)
        self.assertEqual(cases[-1][0].attachments, [("a.pdf", "application/pdf", "", b"AAB")])
        self.assertEqual(cases[3][0].attachments, [("a.png", "image/png", "a@b", b"png")])

    def test_embedded_messages_stay_as_they_are(self):
        for inner in ("Received: from a\n\tby b\nSubject: =?utf-8?q?P=C3=A4?= 1/2\n"
                      'Content-Type: multipart/mixed; boundary="y"\n\nfor old programs\n--y\n'
                      "Content-Transfer-Encoding: base64\n\nQUJD\n--y--\nafter",
                      'Subject: P\xe4 1/2\nContent-Type: multipart/mixed; boundary="y"\n\n--y\n\ncut',
                      "Subject: P\xe4 1/2"):
            for end in ("\n", "\r\n"):
                with self.subTest(inner=inner, end=end):
                    outer = ("From: a@b\nContent-Type: multipart/mixed; boundary=x\n\n--x\n"
                             f"Content-Type: message/rfc822\n\n{inner}\n--x--\n")
                    got = eml2folder.Message(outer.replace("\n", end).encode("latin-1"))
                    self.assertEqual(got.attachments, [(
                        "Pä 1_2.eml", "message/rfc822", "", inner.replace("\n", end).encode("latin-1"))])

    def test_character_sets(self):
        for charset, data, text in [
            ("utf-8", b"\xc3\xa4", "ä"), ("UTF-8", b"a\xffz", "a\ufffdz"), ("", b"\xc3\xa4", "ä"),
            ("", b"\xe4\x81", "ä\ufffd"), ("us-ascii", b"\xe4", "ä"), ("ISO-8859-1", b"\x80", "€"),
            ("iso-8859-15", b"\xa4", "€"), ("klingon", b"\xc3\xa4", "ä"), ("rot13", b"a", "a"),
            ("idna", b"a..b", "a..b"), ("a\0b", b"a", "a"), ("gb2312", b"\xb1\xb1\x82\x35\x8f\x33", "北\u9fa6"),
            ("iso-2022-jp", b"\x1b$B6?\x1b(B.", "郷."), ("utf-16le", b"a\0\xac\x20", "a€"),
            ("utf-16le", b"a\0\xac", "a\ufffd"),
        ]:
            with self.subTest(charset=charset):
                self.assertEqual(eml2folder.to_text(data, charset), text)
        content_type = '<meta name=x><meta http-equiv="Content-Type" content="text/html; charset={}">{}'
        for kind, page, html in [
            ("text/html", "<META charset='windows-1251'>\xcc", "<META charset='utf-8'>М"),
            ("text/html", content_type.format("koi8-r", "\xed"), content_type.format("utf-8", "М")),
            ("text/html; charset=utf-8", "<meta charset=koi8-r>\xc3\xa4", "<meta charset=utf-8>ä"),
            ("text/html", "<meta charset", "<meta charset"),
            ("text/html", "<p>charset=koi8-r \xe4", "<p>charset=koi8-r ä"),
            ("text/html; charset=utf-8", "\xef\xbb\xbf<p>\xe4", "<p>\ufffd"),
        ]:
            with self.subTest(page=page):
                self.assertEqual(with_type(kind, page).bodies["text/html"], html)

    def test_size(self):
        """Ends only in time where the time grows with the size."""
        line = "QUJD" * 19 + "\n"
        got = multipart("mixed", "a/b\nContent-Transfer-Encoding: base64|" + line * 130000,
                        "a/b\nContent-Transfer-Encoding: base64|" + "QUJD" * 2500000,
                        "a/b\nContent-Transfer-Encoding: base64|" + "QQ==" * 200000)
        self.assertEqual([len(data) for *_, data in got.attachments], [7410000, 7500000, 200000])
        self.assertEqual(len(message("Subject: " + "=?utf-8?B?w6Q=?= " * 5000).subject), 5000)


class Program(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.work = pathlib.Path(folder.name)

    def run_with(self, *arguments):
        return subprocess.run([ROOT / "standin/mail/eml2folder.py", *arguments], capture_output=True,
                              text=True, check=False)

    def test_bad_input(self):
        """One line on standard error, status 1, and nothing new."""
        good, out, inputs = ROOT / "resources/mail/received.eml", self.work / "out", self.work / "inputs"
        inputs.mkdir()
        nested = "".join(f"Content-Type: multipart/mixed; boundary=b{i}\n\n--b{i}\n" for i in range(5000))
        for name, text in {"empty": "", "lines": "\n\n", "words": "words\nFrom: a@b.example\n\n",
                           "fields": "a: b\n\ntext\n", "program": "\x7fELF\x02\0" + "\xff\0" * 99,
                           "nested": nested}.items():
            (inputs / name).write_text(text, "latin-1")
        before = sorted(self.work.rglob("*"))
        refusals = [("is not a mail message", inputs / name, out)
                    for name in ("empty", "lines", "words", "fields", "program")]
        for says, *arguments in refusals + [
            ("nested too deeply", inputs / "nested", out), ("No such file", inputs / "missing", out),
            ("Is a directory", inputs, out), ("usage:",), ("usage:", good), ("usage:", good, ""),
            ("usage:", good, out, out), ("No such file", good, out / "below"),
            ("is not a message folder", good, inputs), ("is not a message folder", good, inputs / "words"),
        ]:
            with self.subTest(says=says, arguments=arguments):
                done = self.run_with(*arguments)
                self.assertEqual((done.returncode, done.stdout, done.stderr.count("\n")), (1, "", 1))
                self.assertIn(says, done.stderr)
                self.assertEqual(sorted(self.work.rglob("*")), before)

    def test_folder(self):
        """As FORMAT.md has it; a later message replaces an earlier one whole."""
        eml, folder = self.work / "a.eml", self.work / "folder"
        eml.write_bytes(b"Subject: =?utf-8?q?_=C3=A4?= =?utf-7?q?+2AA-?=\nFrom: =?us-ascii?q?D=22?= <d@e>\nTo: x@y\n"
                        b"Content-Type: multipart/related; boundary=x\n\n--x\nContent-Type: text/html\n\n<p>h\n"
                        b"--x\n\nt\n--x\nContent-Type: image/gif\nContent-Id: <a@b>\n\ng\n--x--\n")
        for source in (ROOT / "tests/mail/samples/nested-inline.eml", eml):
            done = self.run_with(source, f"{folder}/")
            self.assertEqual((done.returncode, done.stdout + done.stderr), (0, ""))
        self.assertEqual(sorted(path.name for path in self.work.rglob("*")),
                         ["0000", "a.eml", "attachments", "body.html", "body.txt", "folder", "headers.txt",
                          "message.ini"])
        self.assertEqual([(folder / name).read_bytes() for name in ("body.html", "body.txt", "attachments/0000")],
                         [b"<p>h", b"t", b"g"])
        self.assertEqual((folder / "message.ini").read_bytes().decode("utf-8-sig").split("\r\n"), [
            "[Message]", 'Subject=" ä?"', "MessageClass=IPM.Note", 'SenderName="D""', "SenderAddress=d@e",
            "Recipients=1", "Attachments=1", "[Recipient 0]", "Kind=to", "Name=x@y", "Address=x@y",
            "[Attachment 0]", "File=attachments/0000", "Name=ATT00001.gif", "MimeType=image/gif",
            "ContentId=a@b", ""])


if __name__ == "__main__":
    unittest.main()
