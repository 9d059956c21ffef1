#!/usr/bin/env python3
"""Writes seed inputs for fuzz_export_exchange into fuzz/corpus/export_exchange/: a byte choosing the
target (bit 7: read category columns), the companion's length in two bytes, the companion, then
the export exchange file."""
import os
import struct


def s(text):
    b = text.encode("cp1252")
    return struct.pack("<I", len(b)) + b


def exchange(columns, rows):
    out = struct.pack("<ih", len(rows), len(columns))
    for name, display, sql_type, width in columns:
        out += s(name) + s(display) + struct.pack("<hi", sql_type, width)
    for row in rows:
        out += b"".join(s(text) for text in row)
    return out


def paths(rows):
    return b"".join(struct.pack("<h", len(names)) + b"".join(s(n) for n in names) for names in rows)


def seed(choice, companion, body):
    return bytes([choice]) + struct.pack("<H", len(companion)) + companion + body


fields = [("name", "Name", 12, 20), ("price", "Price", 8, 8), ("day", "Day", 9, 10), ("ok", "OK", -7, 1),
          ("at", "At", 11, 19), ("qty", "Qty", 4, 6)]
rows = [["Anna; \"A\"", "Anna; \"A\"", "1.50", "1,50", "29.2.2024.0.0.0.0", "29.02.2024", "1", "Ja",
         "1.3.2024.8.9.10.250", "01.03.2024 08:09:10", "3", "3"],
        [" Bert\r\nZeile ", " Bert\r\nZeile ", "", "", "", "", "0", "Nein", "", "", "-12", "-12"]]
cats = [("CAT1", "Region", 12, 10), ("CAT2", "City", 12, 10)]
here = os.path.join(os.path.dirname(os.path.abspath(__file__)), "corpus", "export_exchange")
os.makedirs(here, exist_ok=True)
seeds = {
    "csv_plain": seed(0, b"", exchange(fields, rows)),
    "csv_internal_cp1252": seed(1, b"", exchange(fields, [["\u20ac\xe4", "x", "1", "1", "", "", "1", "", "", "", "", ""]])),
    "csv_categories": seed(0x80, paths([["Nord", "Kiel", "Anna"], ["S\xfcd", "Bert"]]), exchange(cats + fields, rows)),
    "tsv_no_delimiter": seed(3, b"", exchange(fields, rows)),
    "html": seed(4, b"", exchange(fields, rows)),
    "xlsx_categories": seed(0x85, paths([["Nord", "Anna"], ["Bert"]]), exchange(cats + fields, rows)),
}
for name, data in seeds.items():
    with open(os.path.join(here, name), "wb") as f:
        f.write(data)
