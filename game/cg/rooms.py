"""The rooms of the story: the classroom and the library, each in two lights."""

import random

from backgrounds import H, W, Camera, cloud, crown
from svg import Drawing, ellipse, group, line, mix, path, polygon, rect


ROOM = {
    'dusk': dict(
        sky=[(0, '#6a6fb4'), (.4, '#e8948c'), (.75, '#ffd08a'), (1, '#ffe8b4')], far='#8a6a94',
        near='#5f4a74', sun='#fff2c0', wall=('#c98f74', '#7a5668'), back=('#b98474', '#6f5068'),
        ceiling=('#8a6478', '#5c4668'), floor=('#d99a6a', '#6f4a58'), beam='#ffc870', beamStrength=.5,
        desk=('#e2a068', '#f8c884', '#8f5a50'), leg='#4c3c54', board=('#3f5a58', '#2c4048'),
        frame='#6f4a54', frameLight='#f0b478', curtain=('#ffdca8', '#d48c78'), chalk='#d8dcc8'),
    'bright': dict(
        sky=[(0, '#3f97e4'), (.55, '#8fd0f6'), (1, '#e6f8fa')], far='#7cc0b4', near='#4aa070',
        sun='#ffffff', wall=('#fbf3e0', '#cfd4dc'), back=('#f4ecd8', '#d0d2d8'),
        ceiling=('#eef0ee', '#ccd6e0'), floor=('#e4c08c', '#a8805c'), beam='#fffbe0', beamStrength=.62,
        desk=('#dca868', '#f6d49c', '#a87848'), leg='#6f7c90', board=('#3f7a62', '#2f6052'),
        frame='#a8b4c4', frameLight='#ffffff', curtain=('#ffffff', '#cfe2f2'), chalk='#f4f8ee'),
}


def desk(cam, x, z, c, parts, item=None):
    y, w, depth = -.62, .34, .42
    leg = c['leg']
    for lx in (x - w, x + w):
        for lz in (z + depth, z):
            a, b = cam.at(lx, y - .1, lz), cam.at(lx, -1.35, lz)
            parts.append(line(*a, *b, leg, max(1.2, 9 / z)))
    parts += cam.box(x - w * .9, x + w * .9, y - .17, y - .03, z + .03, z + depth, c['desk'][2], c['desk'][2],
                     mix(c['desk'][2], leg, .5))
    parts += cam.box(x - w, x + w, y - .04, y, z, z + depth, c['desk'][0], c['desk'][1], c['desk'][2])
    # Light along the edge towards the windows.
    parts.append(cam.floor(x - w, x - w + .05, z, z + depth, y, '#fff6d8', opacity=.6))
    # The chair, pushed in towards us.
    back = z - .14
    parts += [line(*cam.at(x + s, -.42, back), *cam.at(x + s, -1.35, back), leg, max(1, 7 / z))
              for s in (-.17, .17)]
    parts += cam.box(x - .2, x + .2, -.56, -.36, back, back + .04, c['desk'][0], c['desk'][1], c['desk'][2])
    if item:
        parts += item(cam, x, y, z)


def umbrellaOnDesk(cam, x, y, z):
    a, b = cam.at(x - .3, y + .03, z + .1), cam.at(x + .3, y + .03, z + .26)
    return [line(*a, *b, '#3f6f9c', 11), line(*a, *b, '#9fdcf0', 8), line(*a, b[0] - 4, b[1] - 2, '#e8fbff', 2)]


def classroom(name, mood, umbrella):
    c = ROOM[mood]
    d = Drawing(W, H)
    cam = Camera(396, 206, 400)
    left, right, top, low, back, near = -2.6, 3.4, 1.5, -1.35, 7.4, 1.2
    d.add(rect(0, 0, W, H, d.linear([(0, c['ceiling'][0]), (1, c['ceiling'][1])])))
    d.add(cam.floor(left, right, near, back, top, d.linear([(0, c['ceiling'][1]), (1, c['ceiling'][0])])))
    d.add(cam.floor(left, right, .8, back, low, d.linear([(0, c['floor'][0]), (1, c['floor'][1])])))
    for i in range(-10, 16):
        x = i * .25
        if left < x < right:
            d.add(line(*cam.at(x, low, .9), *cam.at(x, low, back), c['floor'][1], .8, .4))
    # Back wall with the board.
    d.add(cam.front(left, right, low, top, back, d.linear([(0, c['back'][0]), (1, c['back'][1])], 0, 0, 1, 0)))
    d.add(cam.front(left, right, low, low + .16, back, c['frame'], opacity=.7))
    d.add(cam.front(-1.5, 2.5, -.3, .92, back - .02, c['desk'][2]),
          cam.front(-1.42, 2.42, -.22, .85, back - .03, d.linear([(0, c['board'][0]), (1, c['board'][1])], 0, 0, 1, 0)))
    r = random.Random(3)
    for row in range(3):
        x0, y0 = cam.at(-1.2, .6 - row * .24, back - .04)
        text = ''
        for k in range(7 - row * 2):
            text += f'M{x0 + k * 9:.1f} {y0:.1f}q2 {r.uniform(-4, 2):.1f} 5 0q1 3 -2 {r.uniform(2, 5):.1f}'
        d.add(path(text, 'none', c['chalk'], 1.3, .75))
    ux, uy = cam.at(1.7, .2, back)
    d.add(path(f'M{ux - 15:.0f} {uy:.0f}q15 -24 30 0q-5 -4 -10 0q-5 -4 -10 0q-5 -4 -10 0M{ux:.0f} {uy - 1:.0f}v15q0 5 -5 3',
               'none', c['chalk'], 1.3, .8))
    d.add(*[ellipse(*cam.at(.5, 1.2, back), 13, 13, '#fffaf0', c['frame'], 2.2)])
    cx, cy = cam.at(.5, 1.2, back)
    d.add(path(f'M{cx:.0f} {cy:.0f}v-8M{cx:.0f} {cy:.0f}l5 4', 'none', c['leg'], 1.5))
    # Lectern on its step.
    d.add(*cam.box(-1.7, 2.7, low, low + .14, back - 1.1, back, c['desk'][2], c['desk'][0], c['desk'][2]))
    d.add(*cam.box(.2, .95, low + .14, -.5, back - .9, back - .5, c['desk'][0], c['desk'][1], c['desk'][2]))
    # Right wall with its door.
    d.add(cam.side(right, low, top, near, back, d.linear([(0, c['back'][1]), (1, c['back'][0])], 0, 0, 1, 0)))
    d.add(cam.side(right - .01, low, .8, 5.2, 6.4, c['desk'][2]),
          cam.side(right - .02, -.1, .6, 5.4, 6.2, c['sky'][2][1], opacity=.55))
    d.add(cam.side(right - .01, low, low + .16, near, back, c['frame'], opacity=.6))
    # Window wall: the sky first, the wall's frames over it.
    clip = d.clip(cam.side(left, -.55, 1.2, .8, back - .4, '#000'))
    outside = [rect(0, 0, 260, 320, d.linear(c['sky']))]
    sun = (118, 176)
    outside.append(d.glow(*sun, 150, 130, c['sun'], .95))
    outside += [path('M0 236C60 200 120 226 170 214C210 206 240 220 260 214V330H0Z', c['far']),
                path('M0 268C50 240 100 262 150 244C200 232 240 240 260 236V340H0Z', c['near'])]
    d.add(group(outside, clip=clip))
    if mood == 'bright':
        sub = Drawing(W, H)
        sub.count = 500
        cloud(sub, 60, 150, 80, '#ffffff', '#cfe8f8', 1, 8)
        d.definitions += sub.definitions
        d.add(group(sub.parts, clip=clip))
    elif mood == 'dusk':
        d.add(group([ellipse(*sun, 19, 19, '#fffbe6'),
                     path('M0 120q60 -14 130 -4q50 6 100 -6v9q-60 14 -110 7q-70 -6 -120 6Z', '#f8b49a', opacity=.8),
                     path('M30 96q60 -10 150 0v6q-80 -6 -150 4Z', '#b48ab4', opacity=.8)], clip=clip))
    wall = d.linear([(0, c['wall'][0]), (1, c['wall'][1])], 1, 0, 0, 0)
    d.add(cam.side(left, low, -.55, .8, back, wall), cam.side(left, 1.2, top, .8, back, wall))
    d.add(cam.side(left, low, low + .16, .8, back, c['frame'], opacity=.6))
    z = back - .4
    d.add(cam.side(left, -.55, 1.2, z, back, wall))
    while z > 1.0:
        d.add(cam.side(left, -.55, 1.2, z - .12, z, c['frame']),
              cam.side(left + .03, -.55, 1.2, z - .12, z - .06, c['frameLight'], opacity=.8))
        if (z - 1.5) > .9:
            d.add(cam.side(left, -.55, 1.2, z - .82, z - .76, c['frame'], opacity=.9))
        z -= 1.55
    d.add(cam.side(left, .62, .68, .8, back - .4, c['frame']))
    d.add(cam.side(left, -.6, -.52, .8, back, c['frameLight']), cam.floor(left, left + .16, .8, back, -.52, c['frameLight'], opacity=.9))
    # Curtains gathered between the windows.
    for z in (7.0, 5.45, 3.9, 2.36):
        fold = d.linear([(0, c['curtain'][1]), (.3, c['curtain'][0]), (.55, c['curtain'][1]), (.8, c['curtain'][0]), (1, c['curtain'][1])], 0, 0, 1, 0)
        p = [cam.at(left + .06, 1.25, z + .25), cam.at(left + .06, 1.25, z - .36), cam.at(left + .06, -.2, z - .14), cam.at(left + .06, -.66, z - .26), cam.at(left + .06, -.66, z + .2), cam.at(left + .06, -.2, z + .08)]
        d.add(polygon(p, fold, opacity=.95))
    # Light on the floor.
    for z in (6.2, 4.65, 3.1, 1.9):
        d.add(cam.quad([(left + .3, low, z), (left + .3, low, z - 1.0), (1.6, low, z - 1.5), (1.6, low, z - .5)],
                       d.linear([(0, c['beam'], c['beamStrength'] * 1.3), (1, c['beam'], .08)], 0, 0, 1, 0)))
    parts = []
    places = [(x, z) for z in (5.2, 3.9, 2.6) for x in (-1.7, -.55, .6, 1.75)]
    for x, z in places:
        desk(cam, x, z, c, parts, umbrellaOnDesk if umbrella and (x, z) == (-.55, 2.6) else None)
    d.add(*parts)
    # Slanting light, dust in it.
    for x, w in ((40, 60), (150, 46), (214, 30)):
        d.add(polygon([(x, 60), (x + w, 70), (x + w + 290, 470), (x + 170, 480)],
                      d.linear([(0, c['beam'], 0), (.22, c['beam'], c['beamStrength'] * .42), (1, c['beam'], 0)])))
    for _ in range(46):
        x, y = r.uniform(60, 420), r.uniform(110, 420)
        d.add(ellipse(x, y, r.uniform(.6, 1.5), r.uniform(.6, 1.5), c['sun'], opacity=r.uniform(.3, .8)))
    d.add(rect(0, 0, W, H, d.linear([(0, '#2c2448', 0), (.55, '#2c2448', 0), (1, '#2c2448', .3 if mood == 'dusk' else .12)], 0, 0, 1, .5)))
    d.save(name)


def bookRow(d, cam, x, z1, z2, y, height, seed, tones, parts):
    """Spines along a shelf at the wall x, seen from the aisle."""
    r = random.Random(seed)
    z = z2
    while z > z1 + .03:
        w = r.uniform(.05, .1)
        h = height * r.uniform(.68, .94)
        tone = r.choice(tones)
        parts.append(cam.side(x, y, y + h, max(z1, z - w), z, tone))
        if r.random() < .35:
            parts.append(cam.side(x, y + h * .66, y + h * .76, max(z1, z - w), z, '#e4c47c', opacity=.7))
        z -= w


LIBRARY = {
    'rain': dict(room=('#2c2438', '#3c2a34'), floor=('#8a5a40', '#3f2a30'), seam='#2c1e28', back=('#4c3c4c', '#7a5648'), top=('#241e30', '#3c3040'),
                 view=('#3f5a94', '#6f8fc0', '#9db4cc'), trees=(('#30466c', '#3c5a7c', '#4f7090'), ('#2c4066', '#385474', '#48688a')),
                 case='#2c1c22', board='#a06c46', post='#8a5a3c', dark=('#1c1630', .62, .1), table=('#e8ac66', '#9c6240'), shade=0),
    'summer': dict(room=('#a48468', '#c4a484'), floor=('#d8ac78', '#8c6448'), seam='#7a5640', back=('#d8c4a4', '#e8d8b8'), top=('#b49c80', '#dccab0'),
                   view=('#5fb0ec', '#a8dcf8', '#e4f8f4'), trees=(('#3c8a50', '#58a85c', '#8cc874'), ('#348048', '#509c54', '#80bc6c')),
                   case='#6a4632', board='#c89058', post='#b07a4c', dark=('#4c3028', .4, .04), table=('#f4d09c', '#b8824c'), shade=.2),
}


def library(name, mood):
    """By its lamp in the rain, or in the light of a summer's day."""
    c, wet = LIBRARY[mood], mood == 'rain'
    d = Drawing(W, H)
    cam = Camera(320, 196, 420)
    d.add(rect(0, 0, W, H, d.linear([(0, c['room'][0]), (1, c['room'][1])])))
    low, top, back = -1.4, 1.75, 7.2
    d.add(cam.floor(-3, 3, .8, back, low, d.linear([(0, c['floor'][0]), (1, c['floor'][1])])))
    for i in range(-9, 10):
        d.add(line(*cam.at(i * .32, low, .9), *cam.at(i * .32, low, back), c['seam'], 1, .5))
    # Back wall with a tall window on rain at night-fall.
    d.add(cam.front(-3, 3, low, top, back, d.linear([(0, c['back'][0]), (1, c['back'][1])])))
    d.add(cam.floor(-3, 3, .8, back, top, d.linear([(0, c['top'][0]), (1, c['top'][1])])))
    x1, y1 = cam.at(-.95, 1.45, back)
    x2, y2 = cam.at(.95, -.5, back)
    d.add(rect(x1 - 6, y1 - 6, x2 - x1 + 12, y2 - y1 + 12, '#6a4636'),
          rect(x1, y1, x2 - x1, y2 - y1, d.linear([(0, c['view'][0]), (.6, c['view'][1]), (1, c['view'][2])])))
    clip = d.clip(rect(x1, y1, x2 - x1, y2 - y1, '#000'))
    sub = crown(x1 + 10, y2 - 2, 30, c['trees'][0], 3) + crown(x2 - 6, y2 + 2, 36, c['trees'][1], 5)
    r = random.Random(8)
    drops = ''.join(f'M{r.uniform(x1, x2):.0f} {r.uniform(y1 - 10, y2):.0f}l-2 {r.uniform(9, 18):.0f}' for _ in range(60))
    d.add(group(sub + ([path(drops, 'none', '#dcebf8', .9, .6)] if wet else []), clip=clip))
    for k in (1, 2):
        x = x1 + (x2 - x1) * k / 3
        d.add(line(x, y1, x, y2, '#6a4636', 3))
    for k in (1, 2, 3):
        y = y1 + (y2 - y1) * k / 4
        d.add(line(x1, y, x2, y, '#6a4636', 2.4))
    d.add(rect(x1 - 10, y2 + 4, x2 - x1 + 20, 6, '#a8744c'))
    tones = ('#8a4440', '#a8643c', '#4c6a5c', '#3f5a74', '#b08a54', '#6a4a68', '#c4a878', '#7a3840')
    # Shelves along both sides.
    for side in (-1, 1):
        x = 1.75 * side
        parts = [cam.side(x + .02 * side, low, 1.6, 1.0, back - .3, c['case'])]
        for shelf in range(6):
            y = low + .14 + shelf * .49
            bookRow(d, cam, x, 1.05, back - .4, y, .44, 11 * shelf + side, [mix(t, '#fff0d8', c['shade']) for t in tones], parts)
            parts.append(cam.side(x - .01 * side, y - .06, y, 1.0, back - .3, c['board']))
        for z in (1.0, 2.3, 3.6, 4.9, 6.2):
            parts.append(cam.side(x - .02 * side, low, 1.6, z, z + .09, c['post']))
        parts.append(cam.side(x - .02 * side, 1.52, 1.64, 1.0, back - .3, '#b47c50'))
        d.add(*parts)
    # Dark gathers at the far ends and towards us.
    d.add(rect(0, 0, W, H, d.linear([(x, c['dark'][0], c['dark'][k] if k else 0) for x, k in ((0, 1), (.3, 2), (.5, 0), (.7, 2), (1, 1))], 0, 0, 1, 0)))
    # The lamp's light.
    lx, ly = 344, 262
    if wet:
        d.add(d.glow(lx, ly + 20, 330, 230, '#ffcf7a', .62))
    else:  # the window's light on the floor, and what hangs in it
        d.add(d.glow(320, 170, 250, 190, '#fffbe8', .8))
        d.add(*[polygon([(x1 + k * 40, y1), (x1 + k * 40 + 26, y1), (x1 + k * 74 - 10, 480), (x1 + k * 74 - 90, 480)],
                        d.linear([(0, '#fffbe0', .42), (1, '#fffbe0', 0)])) for k in range(3)])
    # Long table.
    d.add(ellipse(330, 430, 260, 40, '#241620', opacity=.5 if wet else .2))
    table = [cam.quad([(-.95, -.62, 1.9), (1.05, -.62, 1.9), (.75, -.62, 4.3), (-.7, -.62, 4.3)],
                      d.linear([(0, c['table'][0]), (1, c['table'][1])])),
             cam.front(-.95, 1.05, -.72, -.62, 1.9, '#7a4a34'),
             cam.front(-.88, -.76, low, -.72, 1.95, '#4c2e28'), cam.front(.86, .98, low, -.72, 1.95, '#4c2e28')]
    d.add(*table, d.glow(lx, 300, 150, 40, '#fff0b8', .9 if wet else .5))
    # A banker's lamp.
    d.add(ellipse(lx, 304, 24, 6, '#7d5c22'), ellipse(lx, 302, 24, 6, '#d8ac54'),
          path(f'M{lx} 302V258', 'none', '#7d5c22', 6), path(f'M{lx - .8} 302V258', 'none', '#e8c878', 3),
          path(f'M{lx - 46} 262C{lx - 44} 232 {lx + 44} 232 {lx + 46} 262Z', d.linear([(0, '#2f7a66'), (1, '#7fd0a0')]), '#1f4c44', 1.6),
          path(f'M{lx - 34} 254C{lx - 28} 242 {lx - 10} 239 {lx} 239', 'none', '#d8fbe0', 2.4, .9),
          ellipse(lx, 262, 45, 5, '#fff6d0' if wet else '#c8d8c0'), *([d.glow(lx, 264, 120, 56, '#fff4c4', .8)] if wet else []))
    # Books, cards and the key on the table.
    for i, (w, tone) in enumerate(((84, '#7a3840'), (74, '#3f5a74'), (66, '#4c6a5c'))):
        y = 336 - i * 12
        d.add(rect(208 - w / 2 + i * 3, y, w, 12, tone, '#2c1c22', 1.2, r=2), rect(208 - w / 2 + i * 3 + w - 9, y + 2, 8, 8, '#f3ead2'),
              rect(208 - w / 2 + i * 3 + 10, y + 3, 4, 6, '#e4c47c'))
    d.add(polygon([(404, 330), (452, 318), (500, 330), (452, 344)], '#f6ecd2', '#8a6a48', 1.2),
          path('M452 318V344M414 331L446 323M418 335L447 328M458 323L490 331M458 328L486 336', 'none', '#a88a64', 1),
          polygon([(300, 344), (338, 338), (346, 350), (306, 357)], '#fbf3de', '#a88a64', 1),
          path('M310 348l24 -4M312 352l20 -3', 'none', '#a88a64', .9),
          ellipse(364, 350, 6, 3.4, 'none', '#7d5c22', 3.4), path('M370 350l22 4m-6 -1l-1 5m5 -4l-1 4', 'none', '#7d5c22', 3.2),
          ellipse(364, 349.4, 6, 3.4, 'none', '#f0cc74', 2), path('M370 349.4l22 4m-6 -1l-1 4m5 -3l-1 3', 'none', '#f0cc74', 1.9))
    for _ in range(40):
        d.add(ellipse(r.uniform(150, 520), r.uniform(120, 330), 1, 1, '#ffe8b0', opacity=r.uniform(.2, .7)))
    d.save(name)


def main():
    classroom('KBA021', 'dusk', True)
    classroom('KBA041', 'bright', False)
    library('KBA030', 'rain')
    library('KBA031', 'summer')


if __name__ == '__main__':
    main()
