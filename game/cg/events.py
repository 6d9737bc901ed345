"""The pictures at the story's turns: fireworks over the town, once with Belune, once with Lessa."""

import math
import random

import characters as people
from backgrounds import hills
from svg import Drawing, ellipse, group, line, mix, path, rect

W, H = 640, 480


def burst(d, x, y, radius, colours, seed, rays=26):
    """A firework at its widest: each ray a chain of sparks that grow outwards."""
    r = random.Random(seed)
    inner, outer = colours
    parts = [d.glow(x, y, radius * 1.5, radius * 1.5, outer, .5), d.glow(x, y, radius * .5, radius * .5, '#fff6e0', .55)]
    for ring, count in ((1.0, rays), (.62, rays - 6), (.3, rays // 2)):
        for i in range(count):
            angle = 2 * math.pi * (i + r.uniform(-.18, .18)) / count
            reach = radius * ring * r.uniform(.92, 1.06)
            sag = radius * .1 * ring
            points = []
            for k in range(5, 13):
                t = k / 12
                points.append((x + math.cos(angle) * reach * t, y + math.sin(angle) * reach * t + sag * t * t))
            text = 'M' + 'L'.join(f'{px:.1f} {py:.1f}' for px, py in points)
            parts.append(path(text, 'none', mix(inner, outer, .35), 1.5 if ring == 1.0 else 1.1, .75))
            for k, (px, py) in enumerate(points):
                size = .5 + 1.7 * (k / len(points)) ** 2 * (1 if ring > .5 else .8)
                parts.append(ellipse(px, py, size, size, mix(inner, outer, k / len(points)), opacity=.35 + .08 * k))
            px, py = points[-1]
            parts.append(ellipse(px, py, 1.3, 1.3, '#ffffff', opacity=.95))
    for _ in range(30):  # what falls
        angle, reach = r.uniform(0, 2 * math.pi), radius * r.uniform(.2, 1.1)
        px, py = x + math.cos(angle) * reach, y + math.sin(angle) * reach + radius * .16
        parts.append(line(px, py, px, py + r.uniform(3, 9), mix(inner, outer, .6), 1, .6))
    return parts


def nightSky(d):
    d.add(rect(0, 0, W, H, d.linear([(0, '#080d2c'), (.4, '#141f56'), (.72, '#3a3c84'), (.8, '#6a5290')])))
    r = random.Random(3)
    for _ in range(90):
        s = r.uniform(.4, 1.1)
        d.add(ellipse(r.uniform(0, W), r.uniform(0, 300), s, s, '#dfe8ff', opacity=r.uniform(.25, .9)))
    # Smoke of the earlier ones, lit from within.
    for x, y, w, h, tone in ((150, 150, 190, 60, '#8a4a80'), (420, 90, 150, 46, '#4a5a9c'), (560, 220, 150, 50, '#6a4a7c'), (60, 250, 140, 40, '#5a4a8a')):
        d.add(d.glow(x, y, w, h, tone, .5))


def town(d, top):
    """The far bank, the river with the lights in it."""
    hills(d, top, 46, '#1c2454', 3, '#3a4078', 1)
    hills(d, top + 12, 26, '#141b42', 8, '#2a3266', 2)
    r = random.Random(12)
    x = -6
    while x < W:
        w, h = r.uniform(12, 36), r.uniform(8, 28)
        d.add(rect(x, top + 14 - h, w, h + 14, mix('#10163a', '#1c2350', r.random())))
        for _ in range(int(w * h / 80)):
            d.add(rect(x + r.uniform(2, max(3, w - 4)), top + 16 - r.uniform(3, h), 1.8, 2.2, r.choice(('#ffd884', '#ffb868', '#cfe0ff')), opacity=r.uniform(.5, 1)))
        x += w
    d.add(rect(0, top + 22, W, H, d.linear([(0, '#5a4a8c'), (.25, '#2a2f6c'), (1, '#0c1236')])))
    for _ in range(150):
        y = top + 24 + r.random() ** 1.6 * 130
        w = r.uniform(6, 30) * (1 + (y - top) / 120)
        tone = r.choice(('#ff9c9c', '#ffd48c', '#8fb4ff', '#ffb4c8', '#ffe9b0'))
        d.add(rect(r.uniform(-10, W), y, w, 1.3, tone, opacity=r.uniform(.12, .55)))


def lit(d, parts, transform, light, cool=(.52, .56, .86), warm=(1.06, .9, .86)):
    """Figures at night: in the dark's colours, and in the fire's where its light falls."""
    names = []
    for r, g, b in (cool, warm):
        name = d.name()
        d.define(f'<filter id="{name}" x="-5%" y="-5%" width="110%" height="110%" color-interpolation-filters="sRGB">'
                 f'<feColorMatrix values="{r} 0 0 0 0 0 {g} 0 0 0 0 0 {b} 0 0.02 0 0 0 1 0"/></filter>')
        names.append(name)
    x, y, radius = light
    fade = d.name()
    d.define(f'<radialGradient id="{fade}" gradientUnits="userSpaceOnUse" cx="{x}" cy="{y}" r="{radius}">'
             f'<stop offset="0" stop-color="#fff"/><stop offset=".5" stop-color="#fff" stop-opacity=".8"/>'
             f'<stop offset="1" stop-color="#fff" stop-opacity="0"/></radialGradient>')
    mask = d.name()
    d.define(f'<mask id="{mask}" maskUnits="userSpaceOnUse" x="0" y="0" width="{W}" height="{H}">{rect(0, 0, W, H, f"url(#{fade})")}</mask>')
    inside = group(parts, transform)
    d.add(f'<g filter="url(#{names[0]})">{inside}</g>',
          f'<g mask="url(#{mask})"><g filter="url(#{names[1]})">{inside}</g></g>')


def sparks(d, seed, count=26):
    r = random.Random(seed)
    for _ in range(count):
        x, y, s = r.uniform(0, W), r.uniform(40, 460), r.uniform(.8, 2)
        d.add(d.glow(x, y, s * 4, s * 4, '#ffd8a0', .5), ellipse(x, y, s * .6, s * .6, '#fff4d8'))


def railing(d):
    """The slope's rail before the river."""
    d.add(path('M-10 402Q320 388 650 396V480H-10Z', d.linear([(0, '#2a2f60'), (1, '#10153a')])))
    for x in range(-4, 660, 36):
        d.add(line(x, 340, x, 404, '#0c1130', 5), line(x - 1.5, 340, x - 1.5, 402, '#8a5a8c', 1.2, .8))
    for y in (340, 364):
        d.add(line(-10, y, 650, y - 4, '#0c1130', 6), line(-10, y - 2, 650, y - 6, '#d88ca0', 1.4, .8))


def withBelune(name):
    d = Drawing(W, H)
    nightSky(d)
    d.add(*burst(d, 178, 130, 128, ('#fff0c8', '#ff5a6a'), 1, 30), *burst(d, 360, 62, 60, ('#e8fbff', '#58b4ff'), 2, 20),
          *burst(d, 52, 232, 54, ('#fff6d0', '#ffb040'), 3, 18), *burst(d, 606, 150, 62, ('#fff0ff', '#c070ff'), 4, 20))
    town(d, 300)
    for y in range(330, 420, 7):
        d.add(rect(178 - 40 + (y * 13) % 21, y, 70 - (y * 7) % 31, 1.6, '#ff8c94', opacity=.5))
    railing(d)
    mood = people.calm(eyes='open', brows=(3, -1), blush=.75, turn=-4)
    figure = [people.umbrellaOpen(d, 156, 112, 12, 1.05), *people.beluneParts(d, people.armsUpright, mood, 5)]
    lit(d, figure, 'translate(252 -6) scale(1.32)', (200, 130, 430), warm=(1.14, 1, .93))
    sparks(d, 5)
    d.save(name)


def withLessa(name):
    d = Drawing(W, H)
    nightSky(d)
    d.add(*burst(d, 470, 128, 122, ('#fff6d0', '#ffb040'), 11, 30), *burst(d, 300, 60, 58, ('#f0ffe8', '#5ae09c'), 12, 20),
          *burst(d, 600, 260, 52, ('#fff0c8', '#ff5a6a'), 13, 18), *burst(d, 60, 110, 66, ('#e8fbff', '#58b4ff'), 14, 20))
    town(d, 300)
    for y in range(330, 420, 7):
        d.add(rect(470 - 36 + (y * 13) % 21, y, 66 - (y * 7) % 31, 1.6, '#ffc878', opacity=.5))
    railing(d)
    mood = people.calm(eyes='wide', brows=(3, 1.4), blush=.8, turn=4)
    lit(d, people.lessaParts(d, people.armsOpenBook, mood, -4), 'translate(34 -44) scale(1.36)', (450, 130, 470), warm=(1.14, 1.02, .88))
    # The open page throws the light back.
    d.add(d.glow(241, 268, 96, 52, '#ffe4a8', .5))
    sparks(d, 9)
    d.save(name)


def main():
    withBelune('KEV101')
    withLessa('KEV201')


if __name__ == '__main__':
    main()
