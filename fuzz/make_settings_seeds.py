#!/usr/bin/env python3
"""Writes the seeds of fuzz_settings_file: for each collection a settings file and the bare stream
form of a body section, each behind the byte that picks the collection. Built from the format
tables, not by the engine's own writers, so the seeds do not inherit a writer's mistake."""
import os
import struct

COLLECTION, ENTRY, FILE = 0x0427EEF3, 0x41524D59, 0x040B664B


def i32(v):
    return struct.pack("<i", v)


def u32(v):
    return struct.pack("<I", v)


def s(text):
    return i32(len(text)) + text.encode("cp1252")


def names(*items):
    return i32(len(items)) + b"".join(s(n) for n in items)


def record(version, owner, name, comment, part):
    return u32(ENTRY) + i32(version) + i32(1) + i32(owner) + s(name) + s(comment) + part


def container(default, *records):
    return u32(COLLECTION) + i32(1) + s(default) + i32(len(records)) + b"".join(records)


def item(field, heading, width):
    return (u32(ENTRY) + i32(2) + i32(0) + bytes([0xFF, 1, 0, 0]) + i32(width) + s(field) + s(heading)
            + i32(0))


def definition(version, kind, name, *items):
    d = u32(ENTRY) + i32(version) + i32(0) + bytes([kind]) + i32(-2) + bytes([0, 1])
    if version > 1:
        d += bytes([0])
    d += s(name)
    if version > 2:
        d += s("Kommentar")
    if version > 3:
        d += bytes([1])
    return d + i32(len(items)) + b"".join(items) + i32(0)


SEEDS = {
    "clip": (0, container("Kopie", record(2, -1, "Kopie", "", bytes([0, 1]) + names("Name", "Ort")))),
    "view": (1, container("", record(2, 7, "Ansicht", "mit Kommentar", names("Name")),
                          record(2, -1, "Alle", "", names()))),
    "export": (2, container("Export", record(1, -1, "Export", "", i32(5) + b"CSV;1"))),
    "email": (3, container("Post", record(2, -1, "Post", "", names("Mail") + s("Betreff") + s("Text")
                                          + s("/tmp/a.txt") + i32(6)),
                           record(1, 3, "Alt", "", s("") + s("") + s("") + i32(0)))),
    "replace": (4, container("", record(1, -1, "Leeren", "", names("Ort") + s("-") + i32(0)))),
    "lists": (5, u32(COLLECTION) + i32(1) + s("Liste") + i32(2)
              + definition(4, 0, "Liste", item("Name", "", 120), item("Ort", "Wohnort", 80))
              + definition(1, 1, "Sortierung", item("Name", "", 100))),
    "lists_old": (5, u32(ENTRY) + i32(1) + definition(3, 0, "Alt", item("Name", "", 50))),
}

if __name__ == "__main__":
    folder = os.path.join(os.path.dirname(os.path.abspath(__file__)), "corpus", "settings_file")
    os.makedirs(folder, exist_ok=True)
    for name, (choice, stream) in SEEDS.items():
        for suffix, body in (("file", u32(FILE) + stream), ("body", stream)):
            with open(os.path.join(folder, f"{name}_{suffix}"), "wb") as out:
                out.write(bytes([choice]) + body)
