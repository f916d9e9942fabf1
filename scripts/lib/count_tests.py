#!/usr/bin/python3
"""Counts tests: count_tests.py CTEST_JUNIT GTEST_XML_FOLDER

Prints "PASSED FAILED SKIPPED"; the tests that were skipped are listed on standard error with the
reason. A GoogleTest program counts by its cases, any other test as one. A program that failed
without a failed case (it crashed, or a sanitizer stopped it) is one failure more.
"""
import pathlib
import sys
import xml.etree.ElementTree as ElementTree


def cases(report):
    passed = failed = 0
    skipped = []
    for case in ElementTree.parse(report).getroot().iter("testcase"):
        if case.get("status") == "notrun":
            continue
        name = f"{case.get('classname')}.{case.get('name')}"
        if case.find("failure") is not None:
            failed += 1
        elif case.find("skipped") is not None:
            # The first line is the place in the source.
            message = (case.find("skipped").get("message") or "").strip().split("\n")
            skipped.append((name, " ".join(message[1:] or message)))
        else:
            passed += 1
    return passed, failed, skipped


def main(junit, reports):
    passed = failed = 0
    skipped = []
    for test in ElementTree.parse(junit).getroot().iter("testcase"):
        name, status = test.get("name"), test.get("status")
        report = pathlib.Path(reports, name + ".xml")
        more = (0, 0, [])
        if report.exists():
            try:
                more = cases(report)
            except ElementTree.ParseError:
                pass
        if status == "run" and more == (0, 0, []):
            more = (1, 0, [])
        elif status == "fail" and more[1] == 0:
            more = (more[0], 1, more[2])
        elif status in ("notrun", "disabled"):
            reason = test.find("skipped")
            message = "switched off" if reason is None else reason.get("message")
            # A test says itself that it skips; any other that did not run could not be run.
            told = status == "disabled" or message.startswith("SKIP_")
            more = (0, 0, [(name, message)]) if told else (0, 1, [])
        passed += more[0]
        failed += more[1]
        skipped += more[2]
    for name, reason in skipped:
        print(f"skipped: {name}: {reason}", file=sys.stderr)
    print(passed, failed, len(skipped))


if __name__ == "__main__":
    main(*sys.argv[1:])
