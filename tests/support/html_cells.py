#!/usr/bin/env python3
"""Parses an HTML file as the export tests compare it: prints its doctype, character set and title,
how many tables, heads and bodies it has, then each row as "th" or "td" and its cells' texts as
JSON (a <br> read as a line feed)."""
import json
import sys
from html.parser import HTMLParser


class Cells(HTMLParser):
    def __init__(self):
        super().__init__(convert_charrefs=True)
        self.facts = {"doctype": None, "charset": None, "title": "", "table": 0, "thead": 0, "tbody": 0}
        self.rows, self.cell, self.kind, self.in_title = [], None, None, False

    def handle_decl(self, decl):
        self.facts["doctype"] = decl

    def handle_starttag(self, tag, attrs):
        if tag == "meta":
            self.facts["charset"] = dict(attrs).get("charset")
        elif tag in ("table", "thead", "tbody"):
            self.facts[tag] += 1
        elif tag == "title":
            self.in_title = True
        elif tag == "tr":
            self.rows.append([])
        elif tag in ("th", "td"):
            self.cell, self.kind = "", tag
        elif tag == "br" and self.cell is not None:
            self.cell += "\n"

    def handle_endtag(self, tag):
        if tag == "title":
            self.in_title = False
        elif tag in ("th", "td"):
            self.rows[-1].append((self.kind, self.cell))
            self.cell = None

    def handle_data(self, data):
        if self.in_title:
            self.facts["title"] += data
        elif self.cell is not None:
            self.cell += data


with open(sys.argv[1], encoding="utf-8") as f:
    parser = Cells()
    parser.feed(f.read())
print(" ".join(f"{k}={json.dumps(v)}" for k, v in parser.facts.items()))
for row in parser.rows:
    print(row[0][0] if row else "-", " | ".join(json.dumps(text) for _, text in row))
