#!/usr/bin/python3
"""Cuts the glyphs that a table of symbols names out of an icon font.

usage: embed_symbols.py TABLE FONT SUBSET HEADER

SUBSET becomes a font with these glyphs alone, HEADER their code points as the rows of a C++ array. A glyph that the font
does not have ends the build.
"""
import logging
import sys

from fontTools import subset, ttLib


def read_table(path):
    with open(path, encoding="utf-8") as file:
        return sorted(line.split() for line in file if line.strip() and not line.startswith("#"))


def centre(font, name):
    """Moves an outline to the middle of its square."""
    glyph = font["glyf"][name]
    advance, _ = font["hmtx"][name]
    by = (advance - glyph.xMin - glyph.xMax) // 2
    glyph.coordinates.translate((by, 0))
    glyph.recalcBounds(font["glyf"])
    font["hmtx"][name] = (advance, glyph.xMin)


def main():
    table_path, font_path, subset_path, header_path = sys.argv[1:]
    logging.disable(logging.WARNING)  # on the font's own small faults
    font = ttLib.TTFont(font_path)
    code_points = {glyph: code for code, glyph in sorted(font.getBestCmap().items(), reverse=True)}
    table = read_table(table_path)
    missing = [glyph for _, glyph in table if glyph not in code_points]
    if missing:
        sys.exit(f"{font_path} has no glyph named {', '.join(missing)}")
    subsetter = subset.Subsetter()
    subsetter.populate(unicodes=[code_points[glyph] for _, glyph in table])
    subsetter.subset(font)
    for glyph in font.getBestCmap().values():
        centre(font, glyph)
    for record in font["name"].names:
        if record.nameID in (1, 4, 16):
            record.string = "Veranox Symbols"
    font.save(subset_path)
    with open(header_path, "w", encoding="utf-8") as header:
        for name, glyph in table:
            header.write(f'{{"{name}"_L1, char32_t(0x{code_points[glyph]:x})}},\n')


main()
