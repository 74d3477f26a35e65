#!/usr/bin/env python3
"""Parses the HTML table writer's fragment with a real HTML parser: every cell's text must come
back exactly, and no element but the table's own may appear."""

import json
import subprocess
import sys
from html.parser import HTMLParser

ALLOWED = {"table", "col", "thead", "tr", "td", "br"}


class Cells(HTMLParser):
    def __init__(self):
        super().__init__(convert_charrefs=True)
        self.tags = []
        self.rows = []
        self.cell = None
        self.after_break = False
        self.comments = []

    def handle_starttag(self, tag, attrs):
        self.tags.append(tag)
        if tag == "tr":
            self.rows.append([])
        elif tag == "td":
            self.cell = ""
        elif tag == "br":
            self.cell += "\n"
            self.after_break = True

    def handle_startendtag(self, tag, attrs):
        self.handle_starttag(tag, attrs)

    def handle_endtag(self, tag):
        if tag == "td":
            self.rows[-1].append(self.cell)
            self.cell = None

    def handle_data(self, data):
        if self.cell is None:
            return
        # The writer puts CR LF after each <br> for the source's sake only.
        if self.after_break and data.startswith("\r\n"):
            data = data[2:]
        self.after_break = False
        self.cell += data.replace("\xa0", " ")

    def handle_comment(self, data):
        self.comments.append(data)

    def unknown_decl(self, data):
        self.comments.append(data)


def main():
    sample = json.loads(subprocess.run([sys.argv[1]], check=True, capture_output=True,
                                       text=True).stdout)
    html = sample["html"]
    problems = []
    if any(ord(ch) > 127 for ch in html):
        problems.append("the fragment is not 7-bit ASCII")
    parser = Cells()
    parser.feed(html)
    parser.close()
    stray = sorted(set(parser.tags) - ALLOWED)
    if stray:
        problems.append("elements other than the table's: %s" % stray)
    if parser.comments:
        problems.append("comments or declarations: %s" % parser.comments)
    columns = len(sample["names"])
    counts = {tag: parser.tags.count(tag) for tag in ("table", "col", "thead")}
    if counts != {"table": 1, "col": columns, "thead": 1}:
        problems.append("unexpected table structure: %s" % counts)
    expected = [sample["names"]] + [
        [cell.replace("\r\n", "\n").replace("\r", "\n") for cell in row] for row in sample["rows"]]
    if parser.rows != expected:
        problems.append("cells differ:\n  got      %r\n  expected %r" % (parser.rows, expected))
    for problem in problems:
        print(problem)
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
