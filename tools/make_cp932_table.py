#!/usr/bin/env python3
"""Writes platform/text/cp932_table.inc: the double-byte characters of code page 932.

Usage: tools/make_cp932_table.py > platform/text/cp932_table.inc

The table is kept in the repository; run this only to check it or to change its form. Each lead
byte that has characters gets one line group: its 188 trail bytes in order (40..7E, 80..FC), a full
stop where there is no character. F040..F9FC (the external characters) are computed by the reader.
"""

LEADS = [lead for lead in range(0x81, 0xFD)
         if not 0xA0 <= lead <= 0xDF and not 0xF0 <= lead <= 0xF9]
TRAILS = [trail for trail in range(0x40, 0xFD) if trail != 0x7F]
PER_LINE = 47


def character(lead, trail):
    try:
        text = bytes([lead, trail]).decode("cp932")
    except UnicodeDecodeError:
        return "."
    assert len(text) == 1 and 0x80 <= ord(text) <= 0xFFFF
    return text


def literal(text):
    # The ideographic space cannot be told from a gap by eye.
    return 'u"' + text.replace("\u3000", "\\u3000") + '"'


def main():
    print("// Written by tools/make_cp932_table.py; do not edit.")
    print("// Lead byte, then its characters in the order of the trail bytes 40..7E, 80..FC;")
    print("// a full stop stands for a place without a character.")
    for lead in LEADS:
        row = "".join(character(lead, trail) for trail in TRAILS)
        if set(row) == {"."}:
            continue
        parts = [row[at:at + PER_LINE] for at in range(0, len(row), PER_LINE)]
        print(f"{{0x{lead:02X},")
        print("\n".join(f" {literal(part)}" for part in parts) + "},")


if __name__ == "__main__":
    main()
