"""Places outdoors: the gate on the slope, the roof, the street at night; and what places are made of."""

import math
import random

from svg import Drawing, ellipse, group, line, mix, path, polygon, rect

W, H = 640, 480


class Camera:
    """Looks along z from 0, 0, 0; x to the right, y up, in metres. `at` gives screen points."""

    def __init__(self, x, y, focus):
        self.x, self.y, self.focus = x, y, focus

    def at(self, x, y, z):
        z = max(z, .3)
        return self.x + self.focus * x / z, self.y - self.focus * y / z

    def quad(self, points, fill, outline=None, width=1.0, opacity=1):
        return polygon([self.at(*p) for p in points], fill, outline, width, opacity)

    def floor(self, x1, x2, z1, z2, y, *paint, **more):
        return self.quad([(x1, y, z1), (x2, y, z1), (x2, y, z2), (x1, y, z2)], *paint, **more)

    def side(self, x, y1, y2, z1, z2, *paint, **more):
        return self.quad([(x, y1, z1), (x, y2, z1), (x, y2, z2), (x, y1, z2)], *paint, **more)

    def front(self, x1, x2, y1, y2, z, *paint, **more):
        return self.quad([(x1, y1, z), (x2, y1, z), (x2, y2, z), (x1, y2, z)], *paint, **more)

    def box(self, x1, x2, y1, y2, z1, z2, front, top, side, outline=None):
        parts = []
        if x1 > 0:
            parts.append(self.side(x1, y1, y2, z1, z2, side, outline))
        if x2 < 0:
            parts.append(self.side(x2, y1, y2, z1, z2, side, outline))
        if y2 < 0:
            parts.append(self.floor(x1, x2, z1, z2, y2, top, outline))
        parts.append(self.front(x1, x2, y1, y2, z1, front, outline))
        return parts


def sky(d, stops, height=H):
    d.add(rect(0, 0, W, height, d.linear(stops)))


def hills(d, y, height, colour, seed, low=None, rough=1.0):
    r = random.Random(seed)
    a, b = r.random() * 9, r.random() * 9
    points = []
    for x in range(0, W + 9, 8):
        rise = (math.sin(x / 97 + a) * .5 + math.sin(x / 41 + b) * .22 + .6 +
                math.sin(x / 13 + a) * .05 * rough)
        points.append(f'{x} {y - height * rise:.1f}')
    fill = d.linear([(0, colour), (1, low or colour)])
    d.add(path(f'M0 {H}L' + 'L'.join(points) + f'L{W} {H}Z', fill))


def cloud(d, x, y, size, top, low, opacity=1, seed=1):
    r = random.Random(seed)
    fill = d.linear([(0, top), (1, low)], 0, y - size * .5, 0, y + size * .16, True)
    blobs = []
    for i in range(7):
        t = (i - 3) / 3
        radius = size * (.34 - abs(t) * .17) * r.uniform(.85, 1.15)
        blobs.append(ellipse(x + t * size * .95, y - radius * .35, radius * 1.25, radius, fill))
    blobs.append(ellipse(x, y + size * .03, size * 1.15, size * .11, fill))
    d.add(group(blobs, opacity=opacity))


def crown(x, y, size, tones, seed, squash=.82):
    """A tree's crown: three layers of clumps, the lightest towards the light at the left."""
    r = random.Random(seed)
    parts = []
    for layer, tone in enumerate(tones):
        shift = layer * .13 * size
        for _ in range(13 - layer * 3):
            angle, far = r.uniform(0, 6.28), r.uniform(0, .72 - layer * .13) * size
            radius = size * r.uniform(.2, .34) * (1 - layer * .17)
            parts.append(ellipse(x + math.cos(angle) * far - shift,
                                 y + math.sin(angle) * far * squash - shift, radius, radius * .86,
                                 tone))
    return parts


def hydrangea(x, y, size, tones, seed):
    r = random.Random(seed)
    parts = [ellipse(x, y, size, size * .86, tones[0])]
    for layer, tone in enumerate(tones[1:]):
        for _ in range(15):
            angle, far = r.uniform(0, 6.28), math.sqrt(r.random()) * size * (.86 - layer * .2)
            px = x + math.cos(angle) * far - layer * size * .14
            py = y + math.sin(angle) * far * .86 - layer * size * .16
            s = size * .13
            parts += [ellipse(px - s, py, s, s * .8, tone), ellipse(px + s, py, s, s * .8, tone),
                      ellipse(px, py - s, s * .8, s, tone), ellipse(px, py + s, s * .8, s, tone)]
    return parts


def leaf(x, y, length, turn, fill, vein):
    n = length
    return group([path(f'M0 0C{n * .2:.1f} {-n * .4:.1f} {n * .7:.1f} {-n * .4:.1f} {n} 0'
                       f'C{n * .7:.1f} {n * .34:.1f} {n * .2:.1f} {n * .34:.1f} 0 0Z', fill),
                  line(n * .08, 0, n * .88, 0, vein, 1, .7)],
                 f'translate({x:.0f} {y:.0f}) rotate({turn:.0f})')


def hydrangeaBush(d, x, y, width, seed, leaves, tonesList, size=24):
    r = random.Random(seed)
    for _ in range(int(width / 5)):
        d.add(leaf(x + r.uniform(-.55, .5) * width, y + r.uniform(-12, 44), r.uniform(26, 44),
                   r.uniform(-170, 10), r.choice(leaves), mix(leaves[0], '#ffffff', .35)))
    count = max(3, int(width / 38))
    for i in range(count):
        d.add(*hydrangea(x + (i / (count - 1) - .5) * width * .86 + r.uniform(-6, 6),
                         y + r.uniform(-16, 22), size * r.uniform(.8, 1.15),
                         tonesList[i % len(tonesList)], seed + i))


def rain(d, seed, count, colour, opacity, slant=-.16, top=0, bottom=H, length=(14, 46)):
    """Three depths: far rain is short and faint."""
    r = random.Random(seed)
    for depth, (share, width, strength) in enumerate(((.5, .7, .5), (.33, 1, .75), (.17, 1.5, 1))):
        text = ''
        for _ in range(int(count * share)):
            x, y = r.uniform(-20, W + 40), r.uniform(top - 30, bottom)
            n = r.uniform(*length) * (.55 + depth * .32)
            text += f'M{x:.0f} {y:.0f}l{slant * n:.1f} {n:.1f}'
        d.add(path(text, 'none', colour, width, opacity * strength))


def ripples(d, places, colour, opacity=.7):
    for x, y, s in places:
        d.add(ellipse(x, y, s, s * .26, 'none', colour, 1.1, opacity),
              ellipse(x, y, s * .5, s * .13, 'none', colour, .9, opacity * .8),
              path(f'M{x} {y - 1}V{y - s * .5:.1f}', 'none', colour, .9, opacity * .7))


# ---- The school, as it stands at the top of its slope ----

def school(d, x, y, s, c):
    """The long house with its clock tower; x, y: the middle of its foot; s: a storey's height."""
    wall = d.linear([(0, c['wall']), (1, c['wallLow'])])
    dark = c['wallShade']

    def wing(left, width, floors, fill):
        top = y - floors * s
        parts = [rect(left, top, width, floors * s, fill),
                 rect(left - 3, top - 5, width + 6, 6, c['trim'])]
        bays = max(2, round(width / (s * .72)))
        for floor in range(floors):
            for bay in range(bays):
                wx = left + (bay + .18) * width / bays
                wy = top + (floor + .24) * s
                lit = (bay * 7 + floor * 5 + int(left)) % 11 in c['lit']
                glass = c['glassLit'] if lit else c['glass']
                parts.append(rect(wx, wy, width / bays * .66, s * .5, glass))
                parts.append(line(wx + width / bays * .33, wy, wx + width / bays * .33, wy + s * .5,
                                  c['trim'], .9))
                parts.append(rect(wx, wy, width / bays * .66, s * .09, c['glassTop'], opacity=.7))
            parts.append(rect(left, top + (floor + 1) * s - 3, width, 2, dark, opacity=.55))
        return parts

    d.add(*wing(x - s * 6.2, s * 5.2, 3, wall), *wing(x + s * 1.0, s * 5.4, 3, d.linear(
        [(0, mix(c['wall'], dark, .35)), (1, mix(c['wallLow'], dark, .4))])))
    d.add(*wing(x - s * 1.15, s * 2.3, 3, wall),
          rect(x - s * 1.15, y - 4 * s, s * 2.3, s, c['wall']),
          rect(x - s * 1.25, y - 3 * s - 3, s * 2.5, 4, c['trim']))
    top = y - 4 * s
    d.add(polygon([(x - s * 1.4, top - 4), (x, top - s * 1.5), (x + s * 1.4, top - 4)], c['roof']),
          polygon([(x, top - s * 1.5), (x + s * 1.4, top - 4), (x + s * .25, top - 4)], c['roofShade']),
          line(x, top - s * 1.5, x, top - s * 2.0, c['trim'], 1.8),
          ellipse(x, top + s * .5, s * .44, s * .44, c['clock'], c['trim'], 2),
          path(f'M{x} {top + s * .5:.1f}V{top + s * .2:.1f}M{x} {top + s * .5:.1f}l{s * .2:.1f} {s * .1:.1f}',
               'none', c['roofShade'], 1.7),
          rect(x + s * .62, top, s * .53, 4 * s, dark, opacity=.4),
          rect(x - s * .42, y - s * .9, s * .84, s * .9, c['roofShade']),
          rect(x - s * .34, y - s * .8, s * .68, s * .8, c['glassLit'] if c['lit'] else c['glass']))


GATE = {
    'rain': dict(
        sky=[(0, '#8fa3b8'), (.35, '#b9c8d4'), (.62, '#dfe8e8')], cloud=('#dbe5ec', '#9fb2c4'),
        hills=(('#a9bfca', '#c6d6da'), ('#86a3ac', '#abc2c2'), ('#68899a', '#8fada8')),
        wall='#e6e6e0', wallLow='#c5ced2', wallShade='#8796a8', trim='#f2f1ea', glass='#7f9ab0',
        glassTop='#566f8a', glassLit='#ffe2a0', lit=(0, 4), roof='#6d86a0', roofShade='#4f6680',
        clock='#fbf6e4',
        trees=(('#3f6a64', '#55837a', '#7ba596'), ('#2f5556', '#44716c', '#669388')),
        road=[(0, '#c3ced2'), (.4, '#95a5b0'), (1, '#6a7c8e')], shine='#eef6f8', wallSide='#a79f96',
        wallTop='#c9c3b8', wallDark='#6e6f76', pillar='#b58b78', pillarDark='#7c5d58', cap='#d9d4c8',
        leaves=('#2f6156', '#3f7766', '#58937a'), veil='#dfe9ee', light='#ffffff'),
    'clear': dict(
        sky=[(0, '#4c9be0'), (.4, '#8ecaf2'), (.66, '#e2f5f8')], cloud=('#ffffff', '#c2dcf0'),
        hills=(('#9cc6d8', '#c2e0e0'), ('#6fb0a8', '#a5d4b8'), ('#4c9880', '#86c494')),
        wall='#fffaf0', wallLow='#e9e6e0', wallShade='#9eabc6', trim='#ffffff', glass='#84bce4',
        glassTop='#4f86bc', glassLit='#dff4ff', lit=(1, 6), roof='#5c8cc0', roofShade='#3d669c',
        clock='#fffbea',
        trees=(('#2f7a54', '#4ea05c', '#9cd06c'), ('#236650', '#3d8c56', '#82bf62')),
        road=[(0, '#efe9da'), (.4, '#d4ccc0'), (1, '#a8a4ac')], shine='#9fd2f2', wallSide='#cfc0a8',
        wallTop='#f0e6d2', wallDark='#8d8290', pillar='#d29a7c', pillarDark='#96666a', cap='#f6eeda',
        leaves=('#2c7a58', '#43965f', '#6fb86c'), veil='#ffffff', light='#fff6d4'),
}
FLOWERS = [('#4f67b4', '#7489d0', '#9fb2ea', '#d3dcfa'), ('#6d58ac', '#8f78c8', '#b9a4e4', '#e4d8f8'),
           ('#4a86b8', '#6ca8d4', '#9ccdea', '#d8f0f8')]


def gatePillar(d, c, x, y, w, h, plate):
    body = d.linear([(0, mix(c['pillar'], '#ffffff', .22)), (.5, c['pillar']), (1, c['pillarDark'])], 0,
                    0, 1, 0)
    d.add(rect(x, y - h, w, h, body))
    rows = int(h / 11)
    text = ''
    for i in range(1, rows):
        text += f'M{x} {y - h + i * 11}h{w}'
        for k in range(3):
            text += f'M{x + (k + .5 * (i % 2) + .2) * w / 2.6:.0f} {y - h + i * 11}v-11'
    clip = d.clip(rect(x, y - h, w, h, '#000'))
    d.add(group([path(text, 'none', c['pillarDark'], .8, .45)], clip=clip))
    d.add(rect(x - 5, y - h - 12, w + 10, 13, c['cap']), rect(x - 5, y - h - 2, w + 10, 4, c['wallDark'],
                                                          opacity=.45),
          rect(x + w * .8, y - h - 12, w * .2 + 5, 13, c['wallDark'], opacity=.35))
    if plate:
        px, py = x + w * .26, y - h * .78
        d.add(rect(px, py, w * .46, h * .46, '#3f5266', '#2c3a4c', 1.4))
        for i in range(4):
            cy = py + h * (.06 + i * .1)
            d.add(path(f'M{px + w * .12} {cy}h{w * .22}M{px + w * .23:.1f} {cy - 3}v9'
                       f'M{px + w * .12} {cy + 6}h{w * .22}', 'none', '#e9dfc0', 1.5))


def gate(name, weather):
    c, wet = GATE[weather], weather == 'rain'
    d = Drawing(W, H)
    sky(d, c['sky'])
    if wet:
        for i, (x, y, s) in enumerate(((90, 60, 190), (330, 38, 220), (560, 76, 180), (210, 128, 150),
                                       (470, 140, 140))):
            cloud(d, x, y, s, *c['cloud'], .55, i + 3)
    else:
        d.add(d.glow(40, 10, 330, 260, '#fff8d8', .85))
        for i, (x, y, s) in enumerate(((500, 118, 120), (160, 84, 74), (596, 60, 70), (330, 150, 60))):
            cloud(d, x, y, s, *c['cloud'], .95, i + 3)
    for i, (y, h) in enumerate(((236, 60), (254, 46), (276, 40))):
        hills(d, y, h, c['hills'][i][0], 4 + i, c['hills'][i][1], 1 + i)
        d.add(rect(0, y - 30, W, 60, d.linear([(0, c['veil'], 0), (1, c['veil'], .35)])))
    school(d, 352, 268, 27, c)
    back, near = c['trees']
    for i, (x, y, s) in enumerate(((168, 246, 34), (214, 256, 26), (500, 250, 34), (548, 240, 42),
                                   (132, 236, 42))):
        d.add(*crown(x, y, s, back, 20 + i))
    # Ground before the house, the slope and its shine.
    d.add(path('M0 300C160 262 480 262 640 300V480H0Z', d.linear([(0, c['hills'][2][1]), (1, near[1])])))
    road = 'M286 268C280 300 214 360 60 480H640C520 380 432 300 418 268Z'
    clip = d.clip(path(road))
    d.add(path(road, d.linear(c['road'])))
    if wet:
        shine = [path(f'M{x} 270l{(x - 352) * .8 + k:.0f} 210h{w}l{-(x - 352) * .8 - k - w * .5:.0f} -210Z',
                      d.linear([(0, c['shine'], o * 1.4), (.4, c['shine'], o * .8), (1, c['shine'], 0)]))
                 for x, k, w, o in
                 ((310, -60, 34, .28), (346, -20, 56, .34), (384, 30, 26, .22), (330, -140, 22, .2),
                  (404, 110, 30, .22))]
        shine += [ellipse(x, y, rx, ry, d.linear([(0, '#dfeaf0', .95), (1, '#8fa6bc', .8)])) for x, y, rx, ry
                  in ((250, 420, 92, 13), (452, 446, 98, 14), (366, 356, 46, 6), (300, 318, 24, 3.4))]
        # The tower stands in the puddles upside down.
        shine += [path('M238 410h20l-2 20h-16z', '#7c90a6', opacity=.45),
                  path('M440 436h24l-3 20h-18z', '#7c90a6', opacity=.4)]
        d.add(group(shine, clip=clip))
    else:
        shade = [path('M640 330C540 350 470 372 380 400C480 404 560 430 640 420Z', '#6f7696', opacity=.42),
                 path('M640 440C560 446 480 452 430 480H640Z', '#6f7696', opacity=.42),
                 path('M420 270C380 282 350 290 330 298C372 300 410 306 452 300Z', '#6f7696', opacity=.35)]
        shade += [ellipse(x, y, rx, ry, c['shine'], opacity=.75) for x, y, rx, ry in
                  ((236, 424, 62, 8), (330, 352, 30, 4))]
        shade += [path('M206 421q30 -5 52 0', 'none', '#ffffff', 1.6, .9)]
        d.add(group(shade, clip=clip))
    d.add(path('M286 268C280 300 214 360 60 480', 'none', c['cap'], 4, .8),
          path('M418 268C432 300 520 380 640 480', 'none', c['cap'], 4, .6))
    # The walls beside the gate, and the gate.
    for side in (-1, 1):
        x0, x1 = (204, 0) if side < 0 else (500, 640)
        lo = 330
        d.add(polygon([(x0, lo - 52), (x1, lo - 66), (x1, lo + 44), (x0, lo)],
                      c['wallSide'] if side < 0 else mix(c['wallSide'], c['wallDark'], .4)),
              polygon([(x0, lo - 58), (x1, lo - 76), (x1, lo - 66), (x0, lo - 52)], c['wallTop']))
        for k in (.34, .68):
            d.add(line(x0, lo - 52 + 52 * k, x1, lo - 66 + 110 * k, c['wallDark'], 1, .4))
    for i, (x, y, s, t) in enumerate(((60, 214, 74, near), (10, 180, 92, near), (590, 196, 84, near),
                                      (640, 160, 90, near), (120, 240, 48, near))):
        d.add(path(f'M{x - 5} 285L{x - 2} {y}h6L{x + 8} 285Z', '#4c4a50'))
        d.add(*crown(x, y, s, t, 40 + i))
    gatePillar(d, c, 186, 350, 46, 128, True)
    gatePillar(d, c, 474, 350, 46, 128, False)
    rail = c['wallDark']
    d.add(*[line(520 - 0 + i * 9, 344 + i * 3, 520 + i * 9, 276 + i * 2, rail, 2.2, .9) for i in range(8)],
          line(520, 284, 588, 300, rail, 2.6), line(520, 336, 588, 358, rail, 2.6))
    hydrangeaBush(d, 74, 412, 190, 5, c['leaves'], FLOWERS, 27)
    hydrangeaBush(d, 600, 420, 130, 9, c['leaves'], FLOWERS[::-1], 25)
    if wet:
        ripples(d, ((262, 418, 20), (216, 424, 13), (440, 444, 22), (498, 448, 14), (372, 356, 10),
                    (300, 464, 18)), '#ffffff')
        d.add(rect(0, 0, W, H, d.linear([(0, c['veil'], .1), (.55, c['veil'], .24), (1, c['veil'], 0)])))
        rain(d, 7, 210, '#f4fafc', .62)
    else:
        for x, w in ((-60, 90), (70, 60), (170, 26)):
            d.add(polygon([(x, -20), (x + w, -20), (x + w * 2.4 + 150, 400), (x + 90, 400)],
                          d.linear([(0, '#fffbe0', .2), (1, '#fffbe0', 0)])))
    d.save(name)


ROOF = {
    'dusk': dict(sky=[(0, '#3c4a94'), (.22, '#7a6fb8'), (.42, '#e08fa4'), (.56, '#ffc48c'), (.64, '#ffeab8')],
                 hills=(('#a8789c', '#d898a0'), ('#7c5c8c', '#a87494')), sea='#fff4d0', town=('#5f4a7c', '#7c5a84'), lights='#ffe09c',
                 floor=('#a8889c', '#7c6a90', '#544c78'), seam='#4c446c', ledge=('#6f5c84', '#e8b4a8'), rail=('#4f4674', '#f4bca4', '#ffd8ac'),
                 tank=('#e8b0a0', '#b48ca4', '#544a7c'), lid=('#c49cac', '#e4b4b0', '#9c80a4'), iron='#3f3868', band='#463e70', gleam='#ffe0c0'),
    'noon': dict(sky=[(0, '#2f7fd8'), (.3, '#5fabe8'), (.55, '#a8dcf6'), (.68, '#e4f6fa')],
                 hills=(('#8fc4d8', '#b8dfe4'), ('#5fa08c', '#8fc4a0')), sea='#ffffff', town=('#b8c8d8', '#e4ecf0'), lights='#7fa8cc',
                 floor=('#dfe4e4', '#c4ccd2', '#a4b0bc'), seam='#8494a4', ledge=('#b4c0cc', '#f6fafc'), rail=('#7f94a8', '#e8f4fa', '#ffffff'),
                 tank=('#ffffff', '#dbe6ee', '#94a8bc'), lid=('#c4d4de', '#f0f6fa', '#a4b8c8'), iron='#64788c', band='#8ca0b4', gleam='#ffffff'),
}


def duskSky(d):
    d.add(d.glow(150, 286, 330, 210, '#fff0b4', .9))
    for i, (x, y, s, t, l, o) in enumerate(((470, 120, 190, '#a88cc4', '#f4a49c', .9), (140, 80, 150, '#8478bc', '#d894b0', .85),
                                            (330, 196, 130, '#f8b8a4', '#ffe0b0', .9), (590, 216, 120, '#e49cac', '#ffd0a4', .85),
                                            (60, 190, 100, '#f4a8a0', '#ffe4b4', .8))):
        cloud(d, x, y, s, t, l, o, 30 + i)
    d.add(*[polygon([(150, 288), (x, -20), (x + w, -20)], d.linear([(0, '#fff0c0', 0), (1, '#fff0c0', .34)]))
            for x, w in ((20, 50), (150, 70), (300, 60), (460, 80))])
    d.add(ellipse(150, 288, 22, 22, '#fffbe4'))


def noonSky(d):
    """A thunderhead that only means summer."""
    d.add(d.glow(96, 30, 220, 170, '#ffffff', .75))
    for i, (x, y, s, l) in enumerate(((300, 300, 190, '#b4d4ec'), (250, 262, 150, '#c0dcf0'), (356, 250, 150, '#bcd8ee'), (296, 206, 140, '#c8e2f4'),
                                      (238, 200, 90, '#d4e8f6'), (340, 168, 100, '#d4e8f6'), (296, 140, 84, '#dceef8'))):
        cloud(d, x, y, s, '#ffffff', l, .96, 50 + i)
    for i, (x, y, s) in enumerate(((560, 92, 90), (440, 44, 60), (60, 148, 70))):
        cloud(d, x, y, s, '#ffffff', '#d4e8f6', .85, 90 + i)


def puddles(d):
    puddle = d.linear([(0, '#ffe0b0'), (.6, '#f0a4a4'), (1, '#9c84bc')])
    for x, y, rx, ry in ((150, 372, 130, 9), (250, 430, 150, 17), (520, 398, 96, 10), (70, 462, 90, 12), (560, 462, 110, 14)):
        d.add(ellipse(x, y, rx, ry, puddle, opacity=.92))
    for i in range(7):
        d.add(ellipse(150, 366 + i * 2.4, 20 - i * 1.5, .9, '#fffbe4', opacity=.9),
              ellipse(156 + i % 2 * 6, 417 + i * 3.8, 24 - i * 2.4, 1.3, '#fffbe4', opacity=.85))
    ripples(d, ((300, 428, 20), (520, 398, 14), (84, 462, 15)), '#fff4dc', .8)


def roof(name, mood):
    """At dusk after rain; at noon in summer, dry, with a shadow that is half a shadow."""
    c, wet = ROOF[mood], mood == 'dusk'
    d = Drawing(W, H)
    sky(d, c['sky'])
    cam = Camera(330, 300, 420)
    (duskSky if wet else noonSky)(d)
    hills(d, 316, 40, c['hills'][0][0], 12, c['hills'][0][1], 1)
    d.add(rect(0, 314, W, 5, c['sea'], opacity=.9))  # the sea, a white line behind the town
    hills(d, 336, 24, c['hills'][1][0], 15, c['hills'][1][1], 2)
    # The town far below.
    r = random.Random(5)
    x = 0
    while x < W:
        w, h = r.uniform(12, 34), r.uniform(6, 24)
        d.add(rect(x, 336 - h, w, 40, mix(*c['town'], r.random())))
        if r.random() < .7:
            d.add(rect(x + w * .3, 336 - h + 4, 2.4, 2.4, c['lights']))
        x += w
    d.add(rect(0, 340, W, 140, d.linear([(0, c['floor'][0]), (.5, c['floor'][1]), (1, c['floor'][2])])))
    for x in range(-12, 14):
        d.add(line(*cam.at(x * .9, -1.2, 12), *cam.at(x * .9, -1.2, 1.6), c['seam'], 1, .5))
    for z in (1.9, 2.5, 3.3, 4.6, 7):
        y = cam.at(0, -1.2, z)[1]
        d.add(line(0, y, W, y, c['seam'], 1, .5))
    if wet:
        puddles(d)
    else:
        d.add(polygon([(470, 378), (616, 388), (660, 480), (420, 480), (430, 400)], '#5c7088', opacity=.42),
              d.glow(180, 420, 260, 70, '#ffffff', .5))
    # The railing; after rain every drop on it has the sun inside.
    d.add(rect(0, 334, W, 12, c['ledge'][0]), rect(0, 334, W, 3, c['ledge'][1]))
    for x in range(8, W, 26):
        d.add(line(x, 236, x, 336, c['rail'][0], 2.6), line(x - 1, 236, x - 1, 336, c['rail'][1], .9))
    for y in (236, 262):
        d.add(line(0, y, W, y, c['rail'][0], 5), line(0, y - 1.6, W, y - 1.6, c['rail'][2], 1.5))
    for x in range(12, W, 13) if wet else ():
        if r.random() < .75:
            y = r.choice((240, 240, 266))
            x += r.uniform(-4, 4)
            d.add(ellipse(x, y + 2, 2.1, 2.9, '#fff6d8'), d.glow(x, y + 2, 8, 8, '#fff6d8', .75))
    # The water tank on its frame; in the rain an umbrella's end behind it.
    tank = d.linear([(0, c['tank'][0]), (.25, c['tank'][1]), (1, c['tank'][2])], 0, 0, 1, 0)
    if wet:
        d.add(path('M456 372L440 340', 'none', '#3f7fb4', 9), path('M456 372L440 340', 'none', '#9fdcf0', 6),
              path('M440 340L434 329', 'none', '#566a98', 3))
    d.add(path('M478 374L492 250M604 384L590 250M540 390V250M486 320L598 336M598 316L486 336', 'none', c['iron'], 6),
          rect(474, 138, 132, 116, tank, r=8), ellipse(540, 140, 66, 17, c['lid'][0]), ellipse(540, 138, 66, 15, c['lid'][1]),
          ellipse(540, 132, 18, 5, c['lid'][2]),
          *[path(f'M474 {y}Q540 {y + 20} 606 {y}', 'none', c['band'], 1.8, .6) for y in (166, 196, 226)],
          path('M484 152V244', 'none', c['gleam'], 3, .8),
          path('M616 130V384M634 130V384', 'none', c['iron'], 3.4),
          *[line(616, y, 634, y, c['iron'], 2.4) for y in range(140, 384, 17)])
    d.save(name)


def street(name):
    d = Drawing(W, H)
    sky(d, [(0, '#0f1638'), (.4, '#20306a'), (.6, '#405292'), (.7, '#7c78a8')])
    for i, (x, y, s) in enumerate(((130, 70, 190), (430, 50, 220), (590, 120, 150), (290, 140, 130))):
        cloud(d, x, y, s, '#2c3a74', '#1c2858', .55, i + 60)
    d.add(d.glow(470, 84, 130, 120, '#dfe8ff', .6), ellipse(470, 84, 25, 25, '#f4f4e4'),
          ellipse(478, 78, 6, 5, '#dcdfdc'), ellipse(462, 92, 4, 3.4, '#dcdfdc'),
          path('M400 92q50 -14 140 2v9q-70 -10 -140 0Z', '#31407a', opacity=.85))
    hills(d, 262, 42, '#26345f', 2, '#3c4c80', 1)
    hills(d, 280, 28, '#1c2850', 6, '#2c3a68', 2)
    # The school on the hill, one window lit.
    dark = dict(wall='#3c4a78', wallLow='#2c3a66', wallShade='#1a2348', trim='#46558a', glass='#24305c',
                glassTop='#1c264c', glassLit='#ffd884', lit=(3, ), roof='#26325e', roofShade='#182044', clock='#ffe9ac')
    school(d, 330, 262, 13, dark)
    d.add(d.glow(330, 217, 30, 30, '#ffe9ac', .8))
    r = random.Random(4)
    for _ in range(60):
        x, y = r.uniform(0, W), r.uniform(262, 284)
        d.add(rect(x, y, 2, 2, r.choice(('#ffd884', '#ffb868', '#cfe0ff')), opacity=r.uniform(.4, 1)))
    d.add(path('M0 282H640V480H0Z', d.linear([(0, '#26325c'), (1, '#141c3c')])))
    d.add(path('M306 280C290 330 190 400 40 480H600C470 400 372 330 352 280Z', d.linear([(0, '#4c5a8c'), (1, '#1c264e')])))
    cam = Camera(330, 278, 420)
    # Houses on both sides, the far ones first.
    for z, w, h, tone in ((9, 2.6, 2.6, '#222e5a'), (6.2, 2.4, 2.2, '#1c2750'), (4.2, 2.2, 2.5, '#172046'), (2.7, 2.2, 2.0, '#121a3c')):
        for side in (-1, 1):
            x1, x2 = 1.9 * side, (1.9 + w) * side
            wall = mix(tone, '#6f5a7c', .16 if side < 0 else .05)
            d.add(cam.side(x1, -1.2, h - 1.2, z, z + 1.6, wall), cam.front(x1, x2, -1.2, h - 1.2, z, tone),
                  cam.quad([(x1 - .25 * side, h - 1.2, z - .1), (x2, h - 1.2, z - .1), (x2, h - .5, z + .7), (x1 + .3 * side, h - .5, z + .7)], mix(tone, '#0c1230', .4)),
                  cam.quad([(x1 - .25 * side, h - 1.2, z - .1), (x1 - .25 * side, h - 1.2, z + 1.7), (x1 + .3 * side, h - .5, z + 1.2), (x1 + .3 * side, h - .5, z + .7)], mix(tone, '#3c4878', .35)))
            for k, (wz, wy) in enumerate(((.25, -.35), (.95, -.35), (.6, .4))):
                if (int(z * 10) + k + side) % 3:
                    a = cam.side(x1 - .01 * side, wy, wy + .5, z + wz, z + wz + .42, '#ffca74')
                    d.add(a, cam.side(x1 - .012 * side, wy, wy + .5, z + wz + .19, z + wz + .23, '#8a5a4c'))
                    gx, gy = cam.at(x1, wy + .25, z + wz + .2)
                    d.add(d.glow(gx, gy, 200 / z, 170 / z, '#ffb45c', .3))
    # Lanterns in a row, and what the wet street makes of them.
    for z in (11, 8, 5.6, 3.8, 2.5):
        for side in (-1, 1):
            x = 1.42 * side
            px, py = cam.at(x, .62, z)
            fx, fy = cam.at(x, -1.2, z)
            s = 30 / z
            d.add(line(px, py, fx, fy, '#0c1230', max(1.4, 9 / z)))
            d.add(d.glow(fx * .8 + 330 * .2, fy + 18 / z, 300 / z, 60 / z, '#ffb868', .55))
            d.add(polygon([(fx - s * .5, fy), (fx + s * .5, fy), (fx + s * .9 + side * -4, fy + 250 / z), (fx - s * .9 + side * -4, fy + 250 / z)],
                          d.linear([(0, '#ffd48c', .62), (1, '#ffb868', 0)])))
            d.add(d.glow(px, py, 330 / z, 330 / z, '#ffb45c', .6))
            d.add(path(f'M{px - s:.1f} {py - s:.1f}h{2 * s:.1f}C{px + 2 * s:.1f} {py - s * .6:.1f} {px + 2 * s:.1f} {py + s * 1.2:.1f} {px + s:.1f} {py + s * 1.7:.1f}h{-2 * s:.1f}C{px - 2 * s:.1f} {py + s * 1.2:.1f} {px - 2 * s:.1f} {py - s * .6:.1f} {px - s:.1f} {py - s:.1f}Z',
                       d.linear([(0, '#ffb45c'), (.5, '#fff2c0'), (1, '#ffa850')]), '#8a4a34', max(.6, 3 / z)),
                  rect(px - s, py - s * 1.5, 2 * s, s * .5, '#241830'), rect(px - s, py + s * 1.7, 2 * s, s * .5, '#241830'),
                  line(px - s * 1.5, py + s * .3, px + s * 1.5, py + s * .3, '#c8703c', max(.5, 2 / z), .7))
    d.add(path('M0 92Q170 168 318 236M0 118Q170 186 318 240M640 70Q500 150 342 236M640 96Q500 170 342 240', 'none', '#0c1230', 1.2))
    d.save(name)


def main():
    gate('KBA014', 'rain')
    gate('KBA015', 'clear')
    roof('KBA040', 'dusk')
    roof('KBA042', 'noon')
    street('KBA049')


if __name__ == '__main__':
    main()
