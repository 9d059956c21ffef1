#!/usr/bin/env python3
"""Prints an XLSX file as the export tests compare it: a first line with the number of worksheets
and where outline summaries stand, then per row its outline level and its cells, each as
type:json-value, with " bold" for a bold cell and " @format" for a number or date format that is
not General; "-" for an empty cell."""
import json
import sys

import openpyxl

book = openpyxl.load_workbook(sys.argv[1])
sheet = book.active
outline = sheet.sheet_properties.outlinePr
print("sheets", len(book.worksheets), "summaryBelow", None if outline is None else outline.summaryBelow)
for row in sheet.iter_rows():
    cells = []
    for cell in row:
        if cell.value is None:
            cells.append("-")
            continue
        value = cell.value.isoformat() if hasattr(cell.value, "isoformat") else cell.value
        text = cell.data_type + ":" + json.dumps(value)
        if cell.font.b:
            text += " bold"
        if cell.data_type in "nd" and cell.number_format != "General":
            text += " @" + cell.number_format
        cells.append(text)
    print(sheet.row_dimensions[row[0].row].outline_level, " | ".join(cells))
