#!/usr/bin/env python3
"""Composes decoded pictures as the game would: keyed by their top left pixel, palettes merged.

    screen.py TARGET.png PICTURE.png X,Y [PICTURE.png X,Y]...

The pictures are what "qvtool mcg decode" writes; the first one gives the size. X,Y,COLUMN,WIDTH
takes one cell of a strip. PICTURE.png X,Y,tint does not draw the picture: what it would cover turns
to the grey of the message frame's ground, in a colour table of its own, as the frame has it.
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


def tinted(colour, strength=100):
    light = 30 * colour[0] + 59 * colour[1] + 11 * colour[2]
    return ((light * (strength + 1) >> 8) // 100,) * 3


def main():
    target, rest = sys.argv[1], sys.argv[2:]
    screen, palette, ground = None, [(0, 0, 0)] * 256, set()
    frame = {}  # what stands over the tinted ground, where the ground's colour table is kept
    for path, place in zip(rest[::2], rest[1::2]):
        width, height, rows, colours = read(path)
        x0, y0, *cell = place.split(',')
        x0, y0, left = int(x0), int(y0), 0
        if len(cell) == 2:
            width = int(cell[1])
            left = int(cell[0]) * width
        key = rows[0][0] if screen else -1
        own = {i: tuple(colours[i * 3:i * 3 + 3]) for i in set().union(*rows) - {key}}
        if cell != ['tint']:
            for entry, colour in own.items():
                if palette[entry] not in ((0, 0, 0), colour) and 10 <= entry < 246:
                    print(f'{path}: entry {entry} was another colour before')
                palette[entry] = colour
        if screen is None:
            screen = rows
            continue
        for y in range(max(0, -y0), min(height, len(screen) - y0)):
            for x in range(max(0, -x0), min(width, len(screen[0]) - x0)):
                index, at = rows[y][left + x], (x + x0, y + y0)
                if index == key:
                    continue
                if cell == ['tint']:
                    ground.add(at)
                elif at in ground:
                    frame[at] = own[index]
                else:
                    screen[at[1]][at[0]] = index

    def pixel(x, y):
        colour = palette[screen[y][x]]
        free = 10 <= screen[y][x] <= 245  # static colours are never tinted
        return frame.get((x, y)) or (tinted(colour) if free and (x, y) in ground else colour)

    lines = (b'\0' + b''.join(bytes(pixel(x, y)) for x in range(len(screen[0])))
             for y in range(len(screen)))

    def chunk(kind, body):
        return struct.pack('>I', len(body)) + kind + body + struct.pack('>I', zlib.crc32(kind + body))

    with open(target, 'wb') as out:
        out.write(b'\x89PNG\r\n\x1a\n')
        out.write(chunk(b'IHDR', struct.pack('>IIBBBBB', len(screen[0]), len(screen), 8, 2, 0, 0, 0)))
        out.write(chunk(b'IDAT', zlib.compress(b''.join(lines), 9)))
        out.write(chunk(b'IEND', b''))


if __name__ == '__main__':
    main()
