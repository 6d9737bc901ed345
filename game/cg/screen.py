#!/usr/bin/env python3
"""Composes decoded pictures as the game would: keyed by their top left pixel, palettes merged.

    screen.py TARGET.png PICTURE.png X,Y [PICTURE.png X,Y]...

The pictures are what "qvtool mcg decode" writes. The first one gives the size. CELL of a strip:
PICTURE.png X,Y,COLUMN,WIDTH. "black" as X,Y darkens nothing; entries that clash are told.
"""

import struct
import sys
import zlib


def read(path):
    data = open(path, 'rb').read()
    at, packed, palette = 8, b'', b''
    while at < len(data):
        length, kind = struct.unpack('>I4s', data[at:at + 8])
        body = data[at + 8:at + 8 + length]
        at += length + 12
        if kind == b'IHDR':
            width, height, depth, colour = struct.unpack('>IIBB', body[:10])
            if (depth, colour) != (8, 3):
                sys.exit(f'{path} is no indexed picture of 8 bits.')
        elif kind == b'PLTE':
            palette = body
        elif kind == b'IDAT':
            packed += body
    raw, rows, above = zlib.decompress(packed), [], bytes(width)
    for y in range(height):
        method, row = raw[y * (width + 1)], bytearray(raw[y * (width + 1) + 1:(y + 1) * (width + 1)])
        for x in range(width):
            a, b, c = (row[x - 1], above[x], above[x - 1]) if x else (0, above[0], 0)
            if method == 4:
                p = a + b - c
                guess = min((abs(p - a), 0, a), (abs(p - b), 1, b), (abs(p - c), 2, c))[2]
            else:
                guess = (0, a, b, (a + b) // 2)[method]
            row[x] = (row[x] + guess) & 255
        rows.append(row)
        above = row
    return width, height, rows, palette


def main():
    target, rest = sys.argv[1], sys.argv[2:]
    screen, palette = None, bytearray(768)
    for path, place in zip(rest[::2], rest[1::2]):
        width, height, rows, colours = read(path)
        x0, y0, *cell = map(int, place.split(','))
        left = 0
        if cell:
            left, width = cell[0] * cell[1], cell[1]
        key = rows[0][0] if screen else -1
        used = set().union(*rows) - {key}
        for entry in used:
            palette[entry * 3:entry * 3 + 3] = colours[entry * 3:entry * 3 + 3]
        if screen is None:
            screen = rows
            continue
        for y, row in enumerate(rows):
            if 0 <= y + y0 < len(screen):
                for x in range(width):
                    if row[left + x] != key and 0 <= x + x0 < len(screen[0]):
                        screen[y + y0][x + x0] = row[left + x]

    def chunk(kind, body):
        return struct.pack('>I', len(body)) + kind + body + struct.pack('>I', zlib.crc32(kind + body))

    with open(target, 'wb') as out:
        out.write(b'\x89PNG\r\n\x1a\n')
        out.write(chunk(b'IHDR', struct.pack('>IIBBBBB', len(screen[0]), len(screen), 8, 3, 0, 0, 0)))
        out.write(chunk(b'PLTE', bytes(palette)))
        out.write(chunk(b'IDAT', zlib.compress(b''.join(b'\0' + bytes(r) for r in screen), 9)))
        out.write(chunk(b'IEND', b''))


if __name__ == '__main__':
    main()
