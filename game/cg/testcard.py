"""The test card: its pattern, the page that its parts are written on, buttons, cursors."""

import characters as people
from backgrounds import FLOWERS, hydrangeaBush, rain, ripples
from interface import LETTERS, drop
from svg import Drawing, ellipse, group, line, mix, path, polygon, rect

W, H = 640, 480
NAVY, PALE, WHITE = '#22345c', '#f2f8fc', '#ffffff'
CELL = 32  # of the grid
CIRCLE = (320, 240, 208)

# Three quarters of full colour, as cards of television have them, but in the story's tones.
BARS = ('#f4f4ee', '#e8d268', '#7cd0e4', '#84c46c', '#d088d0', '#d85c6c', '#4c66c0')
# Strokes that the other names have no need of.
MORE = {
    'T': (.72, 'M0 0H.72M.36 0V1'), 'C': (.78, 'M.78 .16C.6 -.06 0 -.1 0 .5C0 1.1 .6 1.06 .78 .84'),
    'S': (.64, 'M.6 .14C.44 -.06 .02 -.04 .04 .26C.06 .54 .62 .42 .62 .74C.62 1.06 .14 1.06 0 .84'),
    'D': (.76, 'M0 0V1H.3C.92 1 .92 0 .3 0Z'), ' ': (.3, ''),
}


def words(text, x, y, size, gap, colour, width, middle=False):
    letters = LETTERS | MORE
    wide = sum(letters[c][0] * size + gap for c in text) - gap
    left, parts = x - wide / 2 if middle else x, []
    for c in text:
        advance, d = letters[c]
        if d:
            parts.append(f'<path d="{d}" transform="translate({left:.1f} {y}) scale({size})" fill="none" '
                         f'stroke="{colour}" stroke-width="{width / size:.3f}" stroke-linecap="round" '
                         f'stroke-linejoin="round"/>')
        left += advance * size + gap
    return group(parts)


def ground(d):
    """Grid and edge: whoever sees all blocks of the edge sees the whole screen."""
    d.add(rect(0, 0, W, H, d.linear([(0, '#5f7cb4'), (.6, '#7f9ccc'), (1, '#93b2d6')])))
    for x in range(CELL // 2, W, CELL):
        d.add(line(x, 0, x, H, '#dcebf6', 1.2, .55))
    for y in range(CELL // 2, H, CELL):
        d.add(line(0, y, W, y, '#dcebf6', 1.2, .55))
    d.add('<g shape-rendering="crispEdges">')
    for at in range(0, W, 16):
        tone = (WHITE, NAVY)[at // 16 % 2]
        d.add(rect(at, 0, 16, 8, tone), rect(at, H - 8, 16, 8, (NAVY, WHITE)[at // 16 % 2]))
    for at in range(0, H, 16):
        d.add(rect(0, at, 8, 16, (WHITE, NAVY)[at // 16 % 2]), rect(W - 8, at, 8, 16, (NAVY, WHITE)[at // 16 % 2]))
    d.add('</g>')


def corner(d, x, y, turn):
    """A small circle with rays: fine lines that a blurred screen runs together."""
    parts = [ellipse(0, 0, 38, 38, PALE, NAVY, 1.6)]
    for i in range(36):
        parts.append(polygon([(0, 0), (36, -1.1 - i % 2), (36, 1.1 + i % 2)], NAVY).replace(
            '<polygon', f'<polygon transform="rotate({i * 10 + turn})"'))
    parts += [ellipse(0, 0, 13, 13, PALE, NAVY, 1.4), drop(0, 1.5, 7, '#8ed2f0', NAVY, 1.2)]
    d.add(group(parts, f'translate({x} {y})'))


def pattern():
    d = Drawing(W, H)
    ground(d)
    for x, y, turn in ((62, 62, 0), (578, 62, 5), (62, 418, 5), (578, 418, 0)):
        corner(d, x, y, turn)
    # Beside the circle: steps of light at the left, stripes ever finer at the right.
    d.add('<g shape-rendering="crispEdges">')
    for i in range(8):
        d.add(rect(36, 128 + i * 28, 36, 28, mix('#10182c', '#ffffff', i / 7)))
    for i, gap in enumerate((8, 6, 4, 3, 2, 1)):
        d.add(rect(568, 128 + i * 37, 36, 37, WHITE))
        for x in range(0, 36, gap * 2):
            d.add(rect(568 + x, 128 + i * 37, min(gap, 36 - x), 37, NAVY))
    d.add('</g>', rect(36, 128, 36, 224, 'none', NAVY, 1.6), rect(568, 128, 36, 222, 'none', NAVY, 1.6))
    x, y, r = CIRCLE
    clip = d.clip(ellipse(x, y, r, r, '#000'))
    parts = Drawing(W, H)
    parts.count = 500
    parts.add(rect(100, 20, 440, 140, parts.linear([(0, '#4a68ac'), (1, '#b4cfe8')])))
    rain(parts, 77, 60, '#ffffff', .6, bottom=150)
    parts.add('<g shape-rendering="crispEdges">')
    for i, tone in enumerate(BARS):
        parts.add(rect(112 + i * 60, 146, 60, 42, tone))
    parts.add('</g>', rect(100, 188, 440, 270, parts.linear([(0, '#f6fbfe'), (1, '#dcebf4')])))
    ripples(parts, ((320, 430, 26), (232, 408, 14), (408, 408, 14)), '#8cb4d4', .8)
    parts.add(line(100, 188, 540, 188, NAVY, 2), line(100, 146, 540, 146, NAVY, 2))
    for text in parts.definitions:
        d.define(text)
    d.add(group(parts.parts, clip=clip), ellipse(x, y, r, r, 'none', NAVY, 5), ellipse(x, y, r, r, 'none', WHITE, 2.2))
    d.add(people.umbrellaOpen(d, 320, 104, 0, .56), path('M320 104V120', 'none', '#dcebf6', 2.5),
          words('TEST CARD', 320, 112, 22, 7, '#24397c', 8, True), words('TEST CARD', 320, 112, 22, 7, WHITE, 3.4, True))
    hydrangeaBush(d, 70, 470, 150, 15, ('#35627c', '#447a88', '#5a9494'), FLOWERS, 17)
    hydrangeaBush(d, 572, 470, 150, 19, ('#35627c', '#447a88', '#5a9494'), FLOWERS[::-1], 17)
    d.save('KTC001')


def page():
    """A ribbon for the name, a sheet for what is tried, a line for what the player may do."""
    d = Drawing(W, H)
    ground(d)
    d.add(path('M20 24H620L608 43L620 62H20L32 43Z', d.linear([(0, '#35508c'), (1, '#22345c')]), WHITE, 2))
    d.add(drop(56, 44, 12, '#8ed2f0', '#f4fbff', 1.6), ellipse(52, 47, 2.2, 3.4, WHITE))
    d.add('<g shape-rendering="crispEdges">')
    for i, tone in enumerate(BARS):
        d.add(rect(486 + i * 14, 34, 14, 18, tone))
    d.add('</g>', rect(486, 34, 98, 18, 'none', WHITE, 1.2))
    d.add(rect(24, 74, 592, 362, '#22345c', opacity=.35, r=14), rect(20, 70, 592, 362, PALE, NAVY, 2.4, r=14),
          rect(26, 76, 580, 350, 'none', '#a9c4de', 1.2, r=10))
    for x, y, sx, sy in ((34, 84, 1, 1), (598, 84, -1, 1), (34, 418, 1, -1), (598, 418, -1, -1)):
        d.add(group([path('M-2 16C2 8 8 2 16 -2', 'none', '#7fa8cc', 1.6), ellipse(2, 2, 3.2, 3.2, '#8ed2f0', NAVY, 1)],
                    f'translate({x} {y}) scale({sx} {sy})'))
    d.add(rect(20, 442, 600, 26, '#22345c', WHITE, 1.6, r=13))
    d.save('KTC002')


def button():
    """Four cells of 152 by 38: as it lies, lit, pressed, out of use."""
    wide, high = 152, 38
    d = Drawing(wide * 4, high)
    looks = ((('#fdfeff', '#c4dcf0'), NAVY, '#ffffff'), (('#fffbe6', '#f2cf6c'), '#7a4a1c', '#ffffff'),
             (('#7fa4d0', '#b4d2ea'), NAVY, '#5f84b4'), (('#dfe6ee', '#c8d2de'), '#8c9ab0', '#eef2f6'))
    for cell, (tones, edge, shine) in enumerate(looks):
        x, sink = cell * wide, 2 if cell == 2 else 0
        fill = d.linear([(0, tones[0]), (1, tones[1])])
        if not sink:
            d.add(rect(x + 3, 5, wide - 6, high - 6, edge, opacity=1, r=16))
        d.add(rect(x + 3, 2 + sink, wide - 6, high - 7, fill, edge, 1.8, r=15),
              path(f'M{x + 18} {6 + sink}H{x + wide - 18}', 'none', shine, 2),
              drop(x + 17, 19 + sink - 1, 6, '#8ed2f0' if cell < 3 else '#c8d2de', edge, 1.2))
    d.save('KTCbutton')


def home():
    """Four frames of 88 by 30: a closed door of the card, up, pressed, out of use, both."""
    wide, high = 88, 30
    d = Drawing(wide * 4, high)
    looks = (('#35508c', '#8ed2f0', 0), ('#f2cf6c', '#fdfeff', 1), ('#c8d2de', '#dfe6ee', 0), ('#c8d2de', '#dfe6ee', 1))
    for cell, (fill, sign, sink) in enumerate(looks):
        x = cell * wide
        d.add(rect(x + 1.5, 1.5 + sink, wide - 3, high - 4, fill, WHITE if cell < 2 else '#8c9ab0', 2, r=13),
              rect(x + .6, .8 + sink, wide - 1.2, high - 2.4, 'none', NAVY, 1, r=14),
              path(f'M{x + 26} {9 + sink}L{x + 17} {15 + sink}L{x + 26} {21 + sink}M{x + 18} {15 + sink}H{x + 34}',
                   'none', NAVY if cell == 1 else sign, 2.6))
    d.save('KTChome')


def cursors():
    """Cursors of 32 by 32: a furled umbrella that points, an open drop over what can be pressed."""
    d = Drawing(32, 32)
    d.add(path('M1.500 1.500L17 8Q20 14 25 19L19 25Q14 20 8 17Z', '#8ed2f0', NAVY, 1.8),
          path('M2 2L22 22', 'none', '#f4fbff', 1.4), path('M5 8Q12 12 16 18', 'none', '#4a86c4', 1.6),
          path('M22 22L27 27Q30 30 28 31Q26 32 25 29', 'none', NAVY, 2.4))
    d.save('KTCpoint')
    d = Drawing(32, 32)
    d.add(path('M1.500 1.500L17 8Q20 14 25 19L19 25Q14 20 8 17Z', '#f2cf6c', '#7a4a1c', 1.8),
          path('M2 2L22 22', 'none', WHITE, 1.4), path('M22 22L27 27Q30 30 28 31Q26 32 25 29', 'none', '#7a4a1c', 2.4),
          *[path(f'M{x} {y}L{x + dx} {y + dy}', 'none', '#c8506c', 2.2)
            for x, y, dx, dy in ((21, 3, 5, -1), (19, 7, 5, 3), (4, 20, 0, 5), (8, 19, 3, 5))])
    d.save('KTCpress')


def main():
    pattern()
    page()
    button()
    home()
    cursors()


if __name__ == '__main__':
    main()
