#!/usr/bin/python3
"""help_pages_test.py SOURCE_TREE: the pages that the product opens are there, whole and reachable."""
import html.parser
import pathlib
import re
import sys

VOID = {"meta", "link", "img", "br"}


class Page(html.parser.HTMLParser):
    def __init__(self, path):
        super().__init__()
        self.path, self.open, self.ids, self.links, self.faults = path, [], set(), [], []
        text = path.read_text(encoding="utf-8")
        if not text.startswith("<!DOCTYPE html>"):
            self.faults.append("no document type")
        self.feed(text)
        self.faults += [f"<{tag}> is not closed" for tag in self.open]

    def handle_starttag(self, tag, attrs):
        attrs = dict(attrs)
        if tag not in VOID:
            self.open.append(tag)
        if "id" in attrs:
            if attrs["id"] in self.ids:
                self.faults.append(f"two elements are named {attrs['id']}")
            self.ids.add(attrs["id"])
        if tag == "script":
            self.faults.append("needs script")
        if tag == "img" and not attrs.get("alt"):
            self.faults.append(f"{attrs.get('src')} has no text in its place")
        self.links += [attrs[name] for name in ("href", "src") if name in attrs]

    def handle_endtag(self, tag):
        if not self.open or self.open.pop() != tag:
            self.faults.append(f"</{tag}> closes another element, line {self.getpos()[0]}")


def main(root):
    site = root / "docs" / "help"
    pages = {path.resolve(): Page(path) for path in sorted(site.rglob("*.htm"))}
    faults = [f"{page.path.relative_to(site)}: {fault}"
              for page in pages.values() for fault in page.faults]
    linked = set()
    for path, page in pages.items():
        for link in page.links:
            target, _, anchor = link.partition("#")
            file = (path.parent / target).resolve() if target else path
            linked.add(file)
            inside = ":" not in target and site.resolve() in file.parents
            if not (inside and file.is_file() and (not anchor or anchor in pages[file].ids)):
                faults.append(f"{path.name}: {link} leads nowhere")
    faults += [f"no page uses {file.relative_to(site)}" for file in site.rglob("*")
               if file.is_file() and file.resolve() not in linked]

    opened = set()
    for source in (root / "src").rglob("*.cpp"):
        opened.update(re.findall(r'L"/(\w[\w/]*\.htm)"', source.read_text(encoding="utf-8")))
    if not opened:
        faults.append("the product opens no page")
    faults += [f"the product opens {page}" for page in sorted(opened)
               if (site / page).resolve() not in pages]
    print("\n".join(faults) or f"{len(pages)} pages are in order")
    return bool(faults)


sys.exit(main(pathlib.Path(sys.argv[1])))
