"""What the player handles: buttons, selection plates, boxes, the pendant, and the maps of regions.

Strips hold their cells side by side. A button of the frame and of the plates: normal, pressed,
disabled, disabled and pressed. A button of a box: plain, under the pointer, pressed, off.
"""

from letters import drop, lettering
from svg import Drawing, ellipse, group, path, polygon, rect

INK, RIM, PALE = '#1c2a52', '#b4dcf2', '#f4fbff'

# ---- Buttons of the frame; the frame's art shows them too, in their normal state ----

LOOKS = {
    'normal': dict(top='#3f5f9c', low='#22345c', rim=RIM, label=PALE, shift=0),
    'pressed': dict(top='#9cd4f0', low='#d8f2fc', rim=PALE, label=INK, shift=1),
    'disabled': dict(top='#4c5670', low='#3c455c', rim='#7484a0', label='#7484a0', shift=0),
    'disabledPressed': dict(top='#3c455c', low='#3c455c', rim='#7484a0', label='#8f9cb4', shift=1),
}
STATES = ('normal', 'pressed', 'disabled', 'disabledPressed')


def pill(d, x, y, w, h, label, look, size=7.2, arrows=False):
    """A dark drop-ended plate with a rim of light."""
    down = look['shift']
    fill = d.linear([(0, look['top']), (1, look['low'])])
    parts = [rect(x + .8, y + .8, w - 1.6, h - 1.6, '#14203f', r=(h - 1.6) / 2),
             rect(x + 1.9, y + 1.9, w - 3.8, h - 3.8, fill, look['rim'], 1.1, r=(h - 3.8) / 2)]
    if not down:
        parts.append(path(f'M{x + h * .42:.1f} {y + 4.4:.1f}H{x + w - h * .42:.1f}', 'none', PALE, 1, .4))
    strokes, wide = lettering(label, 0, 0, size, 1.9, look['label'], 1.25)
    room = 12 if arrows else 0
    left = x + (w - wide - room) / 2 + down
    parts.append(group(strokes, f'translate({left:.1f} {y + h / 2 - size / 2 + down:.1f})'))
    if arrows:
        parts += [polygon([(px, py - 3.8), (px + 5, py), (px, py + 3.8)], look['label'])
                  for px, py in ((left + wide + dx, y + h / 2 + down) for dx in (3.5, 8.5))]
    return parts


FRAME_BUTTONS = {  # name: (x, y on the frame, cell width, cell height, the plate in the cell, label)
    'MButton1': (586, 12, 42, 26, (0, 1, 42, 24), 'SAVE'),
    'MButton2': (586, 43, 42, 26, (0, 1, 42, 24), 'LOAD'),
    'MButton3': (567, 62, 61, 46, (0, 14, 61, 29), 'SKIP'),
}


def frameButton(d, name, state, x, y):
    _, _, _, _, (px, py, pw, ph), label = FRAME_BUTTONS[name]
    skips = label == 'SKIP'
    return pill(d, x + px, y + py, pw, ph, label, LOOKS[state], 8.4 if skips else 7.4, skips)


def frameButtons(d):
    """All three as they stand on the frame."""
    return [part for name, (x, y, *_) in FRAME_BUTTONS.items() for part in frameButton(d, name, 'normal', x, y)]


def frameStrips():
    for name, (_, _, w, h, *_) in FRAME_BUTTONS.items():
        d = Drawing(w * 4, h)
        for cell, state in enumerate(STATES):
            d.add(*frameButton(d, name, state, cell * w, 0))
        d.save(name)
    # While lines are skipped, the frame's corner shows the quick buttons out of use.
    d = Drawing(104, 74)
    for name in ('MButton1', 'MButton2'):
        d.add(*frameButton(d, name, 'disabled', 0, FRAME_BUTTONS[name][1]))
    d.save('MDButton')


# ---- Maps: the colour of a pixel stands for the region, by its place in the palette ----

REGIONS = {4: '#000080', 6: '#008080', 7: '#c0c0c0', 10: '#f0e0d0'}


def crisp(d, parts):
    d.add('<g shape-rendering="crispEdges">', *parts, '</g>')


def maps():
    d = Drawing(640, 127)
    parts = [rect(0, 0, 640, 127, REGIONS[10])]
    for name, region in (('MButton1', 4), ('MButton2', 7), ('MButton3', 6)):
        x, y, _, _, (px, py, pw, ph), *_ = FRAME_BUTTONS[name]
        parts.append(rect(x + px, y + py, pw, ph, REGIONS[region]))
    crisp(d, parts)
    d.save('mcframe')
    d = Drawing(51, 122)
    crisp(d, [rect(0, y, *PLATE_BUTTON, REGIONS[region]) for y, region in ((12, 4), (43, 7))])
    d.save('mcsel')


# ---- Selection plates. All but the static colours take the plate's tint, so the art has no others ----

PLATE_BUTTON, PLATE_BUTTON_X = (44, 26), 514
WHITE, CREAM, SKY, SILVER, GREY, DIM, BLACK, NAVY = (
    '#ffffff', '#fffbf0', '#a6caf0', '#c0c0c0', '#a0a0a4', '#808080', '#000000', '#000080')
PLATE_W, PLATE_H, FIRST_H = 565, 111, 122
BODY = (3, 4, 559, 100)  # of a plate of 111 lines


def plateShape(top, grow=0.0):
    """The body with round ends; a first plate has a head over its two buttons."""
    x, y, w, h = BODY
    x, y, w, h, r = x - grow, y + top - grow, w + 2 * grow, h + 2 * grow, 22 + grow
    right, low = x + w, y + h
    edge = f'H{right - r}Q{right} {y} {right} {y + r}'
    if top:
        head, rise = PLATE_BUTTON_X - 14 - grow, y - 10
        edge = f'H{head}C{head + 8} {y} {head + 6} {rise} {head + 18} {rise}H{right - r}Q{right} {rise} {right} {rise + r}'
    return (f'M{x + r} {y}{edge}V{low - r}Q{right} {low} {right - r} {low}'
            f'H{x + r}Q{x} {low} {x} {low - r}V{y + r}Q{x} {y} {x + r} {y}Z')


def plate(name, top, number):
    height = FIRST_H if top else PLATE_H
    d = Drawing(PLATE_W, height)
    x, y, w, h = BODY
    y += top
    marks = []
    # A pale ring of water at the left, the plate's number in drops, a thread of rain under the words.
    for k, (r, colour) in enumerate(((3.2, WHITE), (2.4, SKY), (1.8, SILVER))):
        for side in (-1, 1):
            marks.append(ellipse(x + w / 2 + side * (10 + k * 10), y + h - 10, r * .8, r * .8, colour))
    marks += [drop(x + w / 2, y + h - 10, 5, WHITE), path(f'M{x + 60} {y + h - 10}H{x + w / 2 - 40}M{x + w / 2 + 40} {y + h - 10}H{x + w - 60}', 'none', SKY, 1)]
    for side in (-1, 1):
        for up in (-1, 1):
            cx, cy = (x + 22 if side < 0 else x + w - 22), (y + 20 if up < 0 else y + h - 20)
            marks.append(path(f'M{cx + side * 13} {cy}Q{cx + side * 13} {cy + up * 11} {cx} {cy + up * 11}', 'none', SKY, 1))
    d.add('<g shape-rendering="crispEdges">',
          path(plateShape(top, 1), 'none', BLACK, 1), path(plateShape(top), 'none', WHITE, 1),
          path(plateShape(top, -1), 'none', WHITE, 1), path(plateShape(top, -2), 'none', SKY, 1),
          path(plateShape(top, -3), 'none', DIM, 1), '</g>', *marks)
    d.save(name)
    d = Drawing(PLATE_W, height)
    crisp(d, [path(plateShape(top, 1), '#ffffff', '#ffffff', 1)])
    d.save(f'select{number}R')


def plateButton(name, label):
    looks = {
        'normal': (NAVY, WHITE, SKY), 'pressed': (SKY, BLACK, WHITE),
        'disabled': (DIM, SILVER, GREY), 'disabledPressed': (GREY, DIM, SILVER),
    }
    w, h = PLATE_BUTTON
    d = Drawing(w * 4, h)
    for cell, state in enumerate(STATES):
        fill, ink, rim = looks[state]
        x, shift = cell * w, 1 if 'ressed' in state else 0
        strokes, wide = lettering(label, 0, 0, 7, 2, ink, 1.4)
        d.add('<g shape-rendering="crispEdges">', rect(x + 1, 1, w - 2, h - 2, BLACK, r=12),
              rect(x + 2, 2, w - 4, h - 4, rim, r=11), rect(x + 3, 3, w - 6, h - 6, fill, r=10), '</g>',
              group(strokes, f'translate({x + (w - wide) / 2 + shift:.1f} {h / 2 - 3.5 + shift})'))
    d.save(name)


# ---- Boxes ----


def box():
    w, h = 306, 98
    d = Drawing(w, h)
    d.add(rect(0, 0, w, h, '#22345c'), rect(1.5, 1.5, w - 3, h - 3, '#b4dcf2'),
          rect(3.5, 3.5, w - 7, h - 7, d.linear([(0, '#fdfeff'), (.55, '#eef6fc'), (1, '#cfe4f4')])))
    # Rings on water behind the words.
    clip = d.clip(rect(4, 4, w - 8, h - 8, '#000'))
    rings = [ellipse(x, y, r, r * .34, 'none', '#a8d0ea', 1.2, o)
             for x, y, radii in ((250, 84, (12, 26, 44)), (40, 78, (10, 22)), (150, 92, (18, 38, 60)))
             for r, o in zip(radii, (.8, .55, .35))]
    d.add(group(rings, clip=clip), rect(7.5, 7.5, w - 15, h - 15, 'none', '#8fbfe0', 1, r=4))
    for x, y, turn in ((8, 8, 0), (w - 8, 8, 90), (w - 8, h - 8, 180), (8, h - 8, 270)):
        d.add(group([path('M-4 14Q-3 -3 14 -4L14 -1Q1 0 -1 14Z', '#3f6fb0', '#22345c', .8),
                     ellipse(2.6, 2.6, 2.6, 2.6, '#8ed2f0', '#22345c', .8)], f'translate({x} {y}) rotate({turn})'))
    d.add(path('M40 61H136M170 61H266', 'none', '#8fbfe0', 1), drop(153, 61, 4, '#5fa8d8', '#22345c', .8))
    d.save('YesNo')
    looks = {
        'plain': ('#7fb4dc', '#3f6fb0', '#ffffff', 0), 'focused': ('#e4f8ff', '#7fd0f4', INK, 0),
        'pressed': ('#22345c', '#3f5f9c', '#ffffff', 1), 'off': ('#c4ccd8', '#a8b2c2', '#eef2f6', 0),
    }
    width, height = 63, 23
    for name in ('yes', 'no', 'ok'):
        d = Drawing(width * 4, height)
        for cell, (top, low, ink, shift) in enumerate(looks.values()):
            x = cell * width
            d.add(rect(x + .8, .8, width - 1.6, height - 1.6, '#22345c', r=10.5),
                  rect(x + 2, 2, width - 4, height - 4, d.linear([(0, top), (1, low)]), '#f4fbff', 1, r=9.5))
            if not shift:
                d.add(path(f'M{x + 10} 4.400H{x + width - 10}', 'none', '#ffffff', 1, .6))
            strokes, wide = lettering(name.upper(), 0, 0, 9, 3, ink, 1.7)
            d.add(group(strokes, f'translate({x + (width - wide) / 2 + shift:.1f} {7 + shift})'))
        d.save(name)


# ---- The pendant: an umbrella of silver with a drop of stone in it ----

GEM = dict(x=31.5, y=22.5, size=10.6)  # in a box of 19 by 26 from 22, 9
CELL = 32
CELL_AT = (16, 8)
NEUTRAL_AT, NEUTRAL_BOX = 190, (22, 9, 19, 26)
# From the second heroine's strongest colour over the neutral one to the first one's.
SECOND_STONE, NO_STONE, FIRST_STONE = ('#ffb04a', '#b8402c'), ('#e4ecf8', '#8fa4c4'), ('#8fe4ff', '#2a5cc8')


def mixed(a, b, t):
    from svg import mix
    return tuple(mix(x, y, t) for x, y in zip(a, b))


def stoneColours(cell):
    middle = 10
    if cell == middle:
        return NO_STONE
    strength = .25 + .75 * abs(cell - middle) / middle
    return mixed(NO_STONE, SECOND_STONE if cell < middle else FIRST_STONE, strength)


def gem(d, colours, lit, dx=0.0, dy=0.0):
    light, dark = colours
    x, y, s = GEM['x'] + dx, GEM['y'] + dy, GEM['size']
    fill = d.linear([(0, light), (1, dark)], .2, 0, .8, 1)
    clip = d.clip(drop(x, y, s, '#000', wide=.95))
    parts = [drop(x, y, s, fill, '#14203f', 1.3, .95),
             group([polygon([(x, y - 14), (x - 9, y + 3), (x, y + 11), (x + 1, y - 2)], '#ffffff', opacity=.28),
                    polygon([(x, y + 11), (x + 9, y + 2), (x + 2, y - 1)], dark, opacity=.7),
                    ellipse(x, y + 8, 6, 3, light, opacity=.75)], clip=clip),
             ellipse(x - 3.1, y + .4, 1.7, 2.9, '#ffffff', opacity=.95)]
    if lit:
        parts += [path(f'M{x} {y - 11}l1.3 5 5 1.300l-5 1.300l-1.3 5l-1.3 -5l-5 -1.300l5 -1.300Z', '#ffffff')]
    return parts


def pendant(d, lit):
    silver = d.linear([(0, '#ffffff'), (.45, '#c4d4ec'), (1, '#6f88b8')] if not lit else
                      [(0, '#ffffff'), (.45, '#eaf6ff'), (1, '#9cc4ec')], 0, 0, .6, 1)
    inner = '#2f4a86' if not lit else '#4f86c8'
    dark = '#22345c'
    parts = [  # cord and ring
        path('M27 0L30 5M36 0L33 5', 'none', dark, 3.4), path('M27 0L30 5M36 0L33 5', 'none', '#8fa4c8', 1.4),
        # canopy
        path('M31.5 4C14 6 3 20 2.5 40Q8 34 13 39.500Q18 34 23 39.500Q27 35 31.5 39.500Q36 35 40 39.500Q45 34 50 39.500Q55 34 60.5 40'
             'C60 20 49 6 31.5 4Z', silver, dark, 1.8),
        path('M31.5 5C22 12 16 24 13 39M31.5 5C41 12 47 24 50 39', 'none', '#7f98c4', 1.1),
        path('M6 34C8 22 15 12 25 8', 'none', '#ffffff', 2, .9),
        # the setting of the stone
        drop(31.5, 22.5, 12.8, inner, dark, 1.2, 1.0),
        # shaft and crook
        path('M31.5 41V88Q31.5 101 21 100Q13.5 98 14.5 90', 'none', dark, 6.4),
        path('M31.5 41V88Q31.5 101 21 100Q13.5 98 14.5 90', 'none', silver if lit else '#b4c8e4', 3.6),
        path('M30.6 44V86', 'none', '#ffffff', 1.1, .9),
        # ribbon and beads
        path('M31.5 56C22 48 14 52 15 58C16 64 25 63 31.5 57.500C38 63 47 64 48 58C49 52 41 48 31.5 56Z',
             '#8ed2f0' if not lit else '#c4f0ff', '#3f7fb4', 1.4),
        path('M29.5 58L23 74L28 72L31 62M33.5 58L40 78L42.5 73L47.5 74.500L37 59', '#5fadd6' if not lit else '#9cdcf8', '#3f7fb4', 1.2),
        ellipse(31.5, 57, 3.4, 3.6, '#dcf5fb', '#3f7fb4', 1.2),
    ]
    for x, y, s, tone in ((46, 92, 4.4, '#8ed2f0'), (44, 108, 5.4, '#5fa8e0'), (25, 113, 4.2, '#a8dcf4')):
        parts.append(drop(x, y, s, tone if not lit else '#dcf5ff', dark, 1.2))
        parts.append(ellipse(x - 1.2, y + .6, .9, 1.3, '#ffffff'))
    parts += [path('M45 76L46 86M44.5 97L44 101', 'none', dark, 1.4), path('M24 101L25 107', 'none', dark, 1.4)]
    return parts


def pendantPictures():
    for name, stones, lit in (('SysCut', 'stone1', False), ('SysCut2', 'stone2', True)):
        d = Drawing(62, 122)
        d.add(*pendant(d, lit), *gem(d, NO_STONE, lit))
        d.save(name)
        d = Drawing(CELL * 21, CELL)
        for cell in range(21):
            clip = d.clip(rect(cell * CELL, 0, CELL, CELL, '#000'))
            inside = group(pendant(d, lit) + gem(d, stoneColours(cell), lit),
                           f'translate({cell * CELL - CELL_AT[0]} {-CELL_AT[1]})')
            d.add(group([inside], clip=clip))
        # Where nobody leads, the game takes a stone alone, from between two cells.
        bx, by, bw, bh = NEUTRAL_BOX
        clip = d.clip(rect(NEUTRAL_AT, 0, bw, bh, '#000'))
        inside = group(pendant(d, lit) + gem(d, NO_STONE, lit), f'translate({NEUTRAL_AT - bx} {-by})')
        d.add(group([inside], clip=clip))
        d.save(stones)


# ---- The system's colours, by entry ----

SYSTEM_COLOURS = {
    10: '#000000', 11: '#800000', 12: '#008000', 13: '#808000', 14: '#ff0000', 15: '#800080', 16: '#008080',
    17: '#c0c0c0', 18: '#00ff00', 19: '#ffff00', 20: '#808080', 21: '#00ffff', 22: '#0000ff', 23: '#ffffff',
}


def systemPalette():
    """A swatch of each; the entries stand in pictures.txt."""
    d = Drawing(len(SYSTEM_COLOURS) * 8, 8)
    crisp(d, [rect(i * 8, 0, 8, 8, colour) for i, colour in enumerate(SYSTEM_COLOURS.values())])
    d.save('L0pal')


def main():
    frameStrips()
    maps()
    for name, top, number in (('select01', 11, 1), ('select02', 0, 2), ('select03', 0, 3)):
        plate(name, top, number)
    plateButton('SButton1', 'SAVE')
    plateButton('SButton2', 'LOAD')
    box()
    pendantPictures()
    systemPalette()


if __name__ == '__main__':
    main()
