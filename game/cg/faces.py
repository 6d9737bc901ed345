"""Heads of the heroines: faces in their moods, eyes, mouths, and hair made of locks.

A head's origin lies between the brows; the chin is at 0, 57. A mood turns the face a little: the
features move aside, and the far eye narrows.
"""

import math

from svg import Drawing, ellipse, group, path

SKIN, SKIN_SHADE, SKIN_LINE = '#fde8dc', '#f3c6bb', '#a3605e'
MOUTH_LINE, MOUTH_RED, TONGUE = '#a4535a', '#b4525c', '#ee9a9a'
CELL = (32, 24)
MOUTH = (0, 41)

HAIR = {
    'belune': dict(light='#f4f8ff', main='#cddbf4', dark='#9db1dc', deep='#7489bd', line='#53669c', shine='#ffffff'),
    'lessa': dict(light='#c98a5c', main='#9c5c3c', dark='#74402c', deep='#532a22', line='#401f1b', shine='#e8b488'),
}
EYES = {
    'belune': dict(top='#25397c', main='#4478d2', low='#a4ecfa', lash='#28305a', glow='#dffbff'),
    'lessa': dict(top='#173f34', main='#2c8c64', low='#b8f2a0', lash='#3a1e1e', glow='#efffd8'),
}


# ---- Ribbons: shapes along a spine ----


def smooth(points):
    """Curves through the points, after the first one."""
    text = ''
    for i in range(len(points) - 1):
        p0, p1, p2, p3 = (points[max(0, min(len(points) - 1, i + k))] for k in (-1, 0, 1, 2))
        text += (f'C{p1[0] + (p2[0] - p0[0]) / 6:.1f} {p1[1] + (p2[1] - p0[1]) / 6:.1f} '
                 f'{p2[0] - (p3[0] - p1[0]) / 6:.1f} {p2[1] - (p3[1] - p1[1]) / 6:.1f} {p2[0]:.1f} {p2[1]:.1f}')
    return text


def edges(spine, widths):
    left, right = [], []
    for i, ((x, y), w) in enumerate(zip(spine, widths)):
        (x1, y1), (x2, y2) = spine[max(0, i - 1)], spine[min(len(spine) - 1, i + 1)]
        length = math.hypot(x2 - x1, y2 - y1) or 1
        nx, ny = (y2 - y1) / length * w / 2, -(x2 - x1) / length * w / 2
        left.append((x + nx, y + ny))
        right.append((x - nx, y - ny))
    return left, right


def ribbon(spine, widths):
    left, right = edges(spine, widths)
    back = right[::-1]
    return f'M{left[0][0]:.1f} {left[0][1]:.1f}{smooth(left)}L{back[0][0]:.1f} {back[0][1]:.1f}{smooth(back)}Z'


def strand(spine, widths, t):
    """A line inside a ribbon, at t from its left edge (0) to its right one (1)."""
    left, right = edges(spine, widths)
    points = [(a[0] + (b[0] - a[0]) * t, a[1] + (b[1] - a[1]) * t) for a, b in zip(left, right)]
    return f'M{points[0][0]:.1f} {points[0][1]:.1f}{smooth(points)}'


def lock(d, who, spine, widths, tone=('light', 'main', 'dark'), lines=(.35, .68), edge=1.4):
    """A lock of hair: lit at its left, with a few hairs drawn in it."""
    c = HAIR[who]
    xs = [x for x, _ in spine]
    middle, reach = sum(xs) / len(xs), max(widths) / 2 + 4
    fill = d.linear([(0, c[tone[0]]), (.5, c[tone[1]]), (1, c[tone[2]])], middle - reach, 0, middle + reach, 0, True)
    parts = [path(ribbon(spine, widths), fill, c['line'], edge)]
    for t in lines:
        parts.append(path(strand(spine[:-1], widths[:-1], t), 'none', c['deep'], .9, .55))
    return parts


# ---- Mouths ----


def mouthShapes(cell):
    """Around 0, 0. A is closed, B half open, C open."""
    if cell == 'A':
        return [path('M-6 -.8Q-3 2 0 1.6Q3 2 6 -.8', 'none', MOUTH_LINE, 1.7),
                path('M-2 5.2Q0 5.8 2 5.2', 'none', SKIN_SHADE, 1.1)]
    if cell == 'B':
        return [path('M-5.2 -2Q0 -3 5.2 -2Q4.4 3.8 0 4Q-4.4 3.8 -5.2 -2Z', MOUTH_RED, MOUTH_LINE, 1.4),
                ellipse(0, 2.6, 2.5, 1.1, TONGUE)]
    return [path('M-6.8 -3.6Q0 -5 6.8 -3.6Q6.2 6.2 0 6.8Q-6.2 6.2 -6.8 -3.6Z', MOUTH_RED, MOUTH_LINE, 1.4),
            path('M-5.4 -3.2Q0 -4.4 5.4 -3.2L4.8 -1.4H-4.8Z', '#ffffff'),
            ellipse(0, 4.2, 3.7, 2.1, TONGUE)]


def mouthStrip(name):
    """Each cell brings the skin around the lips, so that it covers every other cell."""
    d = Drawing(CELL[0] * 3, CELL[1])
    for index, cell in enumerate('ABC'):
        d.add(group([ellipse(0, 0, 10.5, 9, SKIN)] + mouthShapes(cell), f'translate({index * CELL[0] + 16} 12)'))
    d.save(name)


# ---- Eyes and brows ----


def openEye(d, x, y, side, c, look=(0, 0), wide=0.0, scale=1.0):
    """side: -1 for the one at our left. The light comes from the left into both."""
    h = 12.5 + wide
    white = f'M-12 .5C-10 {-h + 1.5} 0 {-h - .5} 5 {-h + .3}C11 {-h + 2.5} 13 -3 12.5 3C12 {h - 3.5} 8 {h} 1 {h}C-6 {h} -11.5 7 -12 .5Z'
    clip = d.clip(path(white))
    iris = d.linear([(0, c['top']), (.42, c['main']), (.8, c['low']), (1, c['glow'])])
    ix, iy = look[0] * side, look[1]
    turned = [
        path(white, '#fffcfb'),
        group([
            ellipse(ix + .6, iy + .8, 9.3, h + .2, iris, c['top'], 1.5),
            ellipse(ix + .6, iy - .2, 4, 6.4, c['lash'], opacity=.92),
            path(f'M{ix - 7.5} {iy + 4}Q{ix + .6} {iy + 15.5} {ix + 8.7} {iy + 4}Q{ix + .6} {iy + 9.5} {ix - 7.5} {iy + 4}Z', c['glow'], opacity=.6),
            path(f'M-14 2C-11 {-h} 6 {-h - 3} 14 -4L14 1C7 {-h + 5.5} -9 {-h + 5.5} -14 5Z', c['lash'], opacity=.34),
        ], clip=clip),
        path(f'M-13.2 1.8C-11 {-h - .5} -2 {-h - 4} 5.5 {-h - 2.6}C10.5 {-h - 1} 13 -8 14 -4.5L18 -6.5C17.2 -3.5 16 -1.5 14.2 .5'
             f'C12.8 -4.5 9.5 {-h + 3} 4.5 {-h + 1.4}C-2.5 {-h + .6} -8.5 -7 -13.2 1.8Z', c['lash'], c['lash'], .7),
        path(f'M13.3 3C12.8 7.5 10.8 10.3 8 11.7M-5 {h + .3}Q1 {h + 1.6} 6 {h - .4}', 'none', c['lash'], 1.1, .85),
        path(f'M-8.5 {-h - 3.5}C-2 {-h - 7} 7 {-h - 6.5} 12.5 {-h - .5}', 'none', SKIN_LINE, .9, .8),
    ]
    return [
        group(turned, f'translate({x} {y}) scale({side * scale:.3f} 1)'),
        ellipse(x + look[0] - 3.2, y + look[1] - 5.2, 3.3, 4.2, '#ffffff'),
        ellipse(x + look[0] + 4, y + look[1] + 5.4, 1.7, 2, '#ffffff'),
        ellipse(x + look[0] - 4.6, y + look[1] + 3.4, .9, 1.1, '#ffffff', opacity=.8),
    ]


def closedEye(x, y, side, c, happy=True, scale=1.0):
    if happy:
        shapes = [path('M-12 5C-8 -5.5 6 -7 12.5 3', 'none', c['lash'], 2.8),
                  path('M10.5 -.5L15.5 .5M8.5 -3.3L13 -4.8', 'none', c['lash'], 1.4)]
    else:  # lowered, lashes down
        shapes = [path('M-12 1C-7 7.5 6 8 13 1', 'none', c['lash'], 2.6),
                  path('M12 2.5L16.5 4M9.5 5L13.5 8M5 6.5L7.5 10', 'none', c['lash'], 1.3),
                  path('M-8 -5C-2 -8.5 7 -8 12 -4', 'none', SKIN_LINE, .9, .7)]
    return [group(shapes, f'translate({x} {y}) scale({side * scale:.3f} 1)')]


def brow(x, y, side, slope, scale, colour):
    return group([path('M-10 1.4C-4 -3.6 6 -4 14 .8C6 -2 -4 -1.6 -10 1.4Z', colour, colour, .7)],
                 f'translate({x} {y}) scale({side * scale:.3f} 1) rotate({slope * 5})')


def face(d, who, mood):
    """mood: eyes (open, closed, lowered, aside, wide), brows (rise, slope), blush, turn, mouth."""
    hair, c = HAIR[who], EYES[who]
    outline = ('M-45 -12C-46 8 -43 26 -32 38C-24 47 -12 54 -3 57Q0 58 3 57C12 54 24 47 32 38'
               'C43 26 46 8 45 -12C44 -48 22 -62 0 -62C-22 -62 -44 -48 -45 -12Z')
    clip = d.clip(path(outline))
    turn = mood['turn']
    parts = [path(outline, SKIN, SKIN_LINE, 1.4)]
    # The fringe's shadow, and the cheek that is turned from the light.
    parts.append(group([
        path('M-50 -40H50V6C47 -2 45 -6 43 -12C42 -2 40 8 37 14C36 4 35 -4 32 -13C29 -7 26 -3 21 1C22 -6 22 -12 20 -18'
             'C17 -6 12 3 4 11C6 2 6 -8 4 -18C0 -8 -6 -1 -16 3C-12 -4 -11 -10 -12 -17C-18 -8 -24 -2 -32 2C-30 -4 -30 -8 -31 -13'
             'C-36 -4 -40 6 -42 16C-46 8 -48 0 -50 -6Z', SKIN_SHADE, opacity=.9),
        path('M46 -14C47 14 42 32 30 43C20 52 10 56 2 58C20 60 50 46 52 10Z', SKIN_SHADE, opacity=.85),
    ], clip=clip))
    blush = d.radial([(0, '#f58a8a', mood['blush']), (1, '#f58a8a', 0)])
    near, far = (1, .92) if turn >= 0 else (.92, 1)
    for x in (-27, 27):
        parts.append(ellipse(x + turn, 30, 11.5, 6, blush))
        if mood['blush'] > .65:
            parts += [path(f'M{x + turn - 5.5 + i * 4} 31.5l1.8 -3.4', 'none', '#e27878', 1) for i in range(3)]
    for x, side, scale in ((-22, -1, near), (22, 1, far)):
        x += turn
        if mood['eyes'] in ('closed', 'lowered'):
            parts += closedEye(x, 14, side, c, mood['eyes'] == 'closed', scale)
        else:
            look = {'aside': (3.6, .6), 'wide': (0, 0)}.get(mood['eyes'], (turn * .25, .3))
            parts += openEye(d, x, 13, side, c, look, 1.2 if mood['eyes'] == 'wide' else 0, scale)
        rise, slope = mood['brows']
        parts.append(brow(x, -9 - rise, side, slope, scale, hair['line']))
    parts.append(path(f'M{turn * 1.4 - .8} 27.5Q{turn * 1.4 + 1.6} 28.8 {turn * 1.4 + 1.4} 26.6', 'none', SKIN_LINE, 1.1))
    parts.append(group(mouthShapes('A'), f'translate({MOUTH[0] + turn} {MOUTH[1]})'))
    return parts


# ---- Hair over the forehead ----

FRINGES = {  # tips and valleys from right to left, between the temples
    'belune': [(47, -16), (44, -4), (38, 10), (37, -6), (33, -21), (29, -12), (22, -4), (23, -14), (21, -25),
               (17, -12), (5, 6), (7, -8), (5, -25), (0, -13), (-15, -2), (-12, -12), (-12, -24), (-19, -13),
               (-31, -3), (-29, -12), (-30, -21), (-36, -8), (-41, 11), (-45, -4), (-48, -16)],
    'lessa': [(47, -16), (45, -4), (40, 9), (40, -6), (37, -20), (34, -12), (27, -5), (29, -14), (29, -24),
              (24, -12), (8, -1), (14, -12), (16, -27), (6, -14), (-16, 0), (-8, -12), (-7, -24), (-17, -11),
              (-34, 2), (-30, -10), (-30, -20), (-37, -8), (-43, 12), (-46, -4), (-48, -16)],
}


def fringe(d, who):
    """Points go tip, valley, tip: every fourth from the third is a tip, every fourth from the first a valley."""
    c = HAIR[who]
    points = FRINGES[who]
    fill = d.linear([(0, c['light']), (.5, c['main']), (1, c['dark'])], -44, -62, 52, 14, True)
    inner = ''
    for i in range(0, len(points) - 1, 2):
        (x1, y1), (x2, y2) = points[i + 1], points[i + 2]
        inner += f'Q{x1} {y1} {x2} {y2}'
    outer = (f'M-52 8C-57 -40 -36 -69 0 -69C36 -69 57 -40 52 8C49 0 48 -8 {points[0][0]} {points[0][1]}{inner}'
             f'C-48 -8 -49 0 -52 8Z')
    clip = d.clip(path(outer))
    shade = []
    for x, y in points[0::4]:  # the valleys throw a shade up into the hair
        shade.append(path(f'M{x - 3} {y + 2}C{x * .86 - 3:.1f} {y - 10} {x * .6 - 3:.1f} {y - 22} {x * .36:.1f} {y - 31}'
                          f'C{x * .66 + 3:.1f} {y - 20} {x * .92 + 3:.1f} {y - 10} {x + 4} {y + 3}Z', c['dark'], opacity=.85))
    shade.append(path('M56 12C62 -40 38 -72 4 -72C34 -60 46 -34 44 4Z', c['dark'], opacity=.6))
    for x, y in points[2::4]:  # and each tip is a little darker
        shade.append(path(f'M{x - 9} {y - 15}Q{x - 2} {y - 6} {x} {y + 2}Q{x + 4} {y - 8} {x + 8} {y - 15}Q{x} {y - 9} {x - 9} {y - 15}Z',
                          c['dark'], opacity=.4))
    return [path(outer, fill, c['line'], 1.6), group(shade + ring(c), clip=clip),
            path(f'M0 -68C-2 -60 -2 -52 0 -44M-14 -66C-22 -58 -26 -48 -28 -38M14 -66C22 -58 27 -46 30 -36', 'none', c['deep'], 1, .5),
            path(outer, 'none', c['line'], 1.6)]


def ring(c):
    """The ring of light around the crown, broken by the strands."""
    top, low = [], []
    steps = 22
    for i in range(steps + 1):
        x = -41 + 82 * i / steps
        bow = 15 * math.sqrt(max(0, 1 - (x / 50) ** 2))
        top.append((x, -26 - bow))
        low.append((x + 1, -26 - bow + (4 if i % 2 else 10) * (1 - abs(x) / 58)))
    text = 'M' + 'L'.join(f'{x:.1f} {y:.1f}' for x, y in top + low[::-1]) + 'Z'
    return [path(text, c['shine'], opacity=.85)]


def calm(**changes):
    return dict(dict(eyes='open', brows=(0, 0), blush=.4, turn=0), **changes)
