#!/usr/bin/env python3
"""Writes seed exchange files for fuzz_import_exchange into fuzz/corpus/import_exchange/."""
import os
import struct

def s(text):
    b = text.encode("cp1252")
    return struct.pack("<I", len(b)) + b

def exchange(mode, columns, path_columns, rows, identity="", connection=0, free=""):
    out = struct.pack("<iih", len(rows), connection, 0) + s("") + s("") + s(identity)
    out += struct.pack("<hh", len(columns), path_columns) + s(free) + struct.pack("<h", mode)
    for name, sql_type, decimals in columns:
        out += s(name) + struct.pack("<hh", sql_type, decimals)
    for cells, key in rows:
        out += b"".join(s(c) for c in cells)
        if mode == 3:
            out += s(str(key))
    return out

here = os.path.join(os.path.dirname(os.path.abspath(__file__)), "corpus", "import_exchange")
os.makedirs(here, exist_ok=True)
seeds = {
    "paths_mode0": exchange(0, [("Region", 12, -1), ("City", 12, -1), ("Name", 12, -1), ("Price", 3, 2)], 2,
                            [(["Nord", "Kiel", "Anna", "1,50"], -1), (["nord", "Kiel", "Bert", "2"], -1),
                             (["Süd", "", "Cora", "3"], -1), (["", "Ulm", "Dora", "4"], -1)]),
    "update_mode1": exchange(1, [("ZEPNODEID", 12, -1), ("Name", 12, -1), ("Date", 9, -1)], 0,
                             [(["0", "Anna", "2024-01-02"], -1), (["", "Neu", "3.4.2020"], -1)]),
    "linked_mode3": exchange(3, [("id", 4, 0), ("Name", 12, -1), ("Flag", -7, -1)], 0,
                             [(["7", "Anna", "1"], 7), (["9", "Bert", "0"], 9)], identity="id", connection=1),
    "add_mode2": exchange(2, [("Region", 12, -1), ("Name", 12, -1)], 1,
                          [(["Nord", "Eva"], -1), (["NORD", "Finn"], -1)]),
}
for name, data in seeds.items():
    with open(os.path.join(here, name), "wb") as f:
        f.write(data)
