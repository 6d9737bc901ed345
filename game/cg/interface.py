"""The message frame and its prompt, the logo, the title, masks of wipes, the strip of clouds."""

import math

import characters as people
import controls
from backgrounds import FLOWERS, hills, hydrangeaBush, cloud, crown, rain, ripples, school
from letters import drop, lettering
from svg import Drawing, ellipse, group, path, polygon, rect

W, H = 640, 480

# ---- The message frame: its middle stays open, the game's tint shows through ----

FRAME = 'M14 4H626Q636 4 636 14V113Q636 123 626 123H14Q4 123 4 113V14Q4 4 14 4Z'


def messageFrame():
    d = Drawing(640, 127)
    edge = d.linear([(0, '#f4fbff'), (.5, '#9cc8e6'), (1, '#5480b4')])
    d.add(path(FRAME, 'none', '#22345c', 6.4), path(FRAME, 'none', edge, 3.8),
          path('M18 10H622Q630 10 630 18V109Q630 117 622 117H18Q10 117 10 109V18Q10 10 18 10Z', 'none', '#6f9cc8', 1.2))
    # Corners: rings on water; the prompt's medallion at the foot.
    for x, y, sx, sy in ((12, 12, 1, 1), (628, 12, -1, 1), (12, 115, 1, -1), (628, 115, -1, -1)):
        d.add(group([path('M-8 22C-2 18 2 16 4 4C16 2 18 -2 22 -8L-8 -8Z', '#2c4474', '#b4dcf2', 1.5),
                     drop(-1, 0, 5.6, '#8ed2f0', '#f4fbff', 1.3), ellipse(-2.6, 1, 1.1, 1.7, '#ffffff')],
                    f'translate({x} {y}) scale({sx * .78} {sy * .78})') if sy > 0 else
              group([path('M-8 22C-2 18 2 16 4 4C16 2 18 -2 22 -8L-8 -8Z', '#2c4474', '#b4dcf2', 1.5),
                     ellipse(0, 0, 5, 5, '#8ed2f0', '#f4fbff', 1.3), ellipse(-1.8, 1.6, 1.3, 1.3, '#ffffff')],
                    f'translate({x} {y}) scale({sx * .78} {sy * .78})'))
    d.add(path('M284 123C298 123 300 116 306 112M356 123C342 123 340 116 334 112', 'none', '#22345c', 4.6),
          path('M284 123C298 123 300 116 306 112M356 123C342 123 340 116 334 112', 'none', '#b4dcf2', 2))
    for side in (-1, 1):
        for k, r in ((0, 2.6), (1, 2), (2, 1.5)):
            d.add(ellipse(320 + side * (44 + k * 11), 119, r, r, '#e4f6ff', '#22345c', .8))
    # Under the name: a thread of rain, at its end an umbrella that stays above the words.
    thread = d.linear([(0, '#b4dcf2', .2), (.3, '#b4dcf2'), (1, '#b4dcf2')], 0, 0, 1, 0)
    d.add(rect(14, 46.4, 208, 2.4, '#22345c'), rect(14, 46.8, 208, 1.2, thread),
          group([path('M222 49C223 41 229 38 234 38C239 38 245 41 246 49Q243 46.5 240 49Q237 46.5 234 49Q231 46.5 228 49Q225 46.5 222 49Z',
                      '#8ed2f0', '#22345c', 1.3), path('M234 38V56Q234 59.5 231 59', 'none', '#22345c', 2.6),
                 path('M234 49V56Q234 59 231.5 58.6', 'none', '#b4dcf2', 1.1)], 'translate(59 5.5) scale(.72)'))
    # Between text and buttons.
    d.add(*[drop(540, 30 + i * 19, 3 - abs(i - 2) * .4, '#9cd4f0', '#22345c', 1) for i in range(5)])
    d.add(*controls.frameButtons(d))
    d.save('mframe')
    d = Drawing(640, 127)
    d.add('<g shape-rendering="crispEdges">', path('M14 1H626Q639 1 639 14V113Q639 126 626 126H14Q1 126 1 113V14Q1 1 14 1Z', '#ffffff'), '</g>')
    d.save('mframeR')


def prompt():
    """A cut drop that turns once in eight cells, rising and sinking a little."""
    d = Drawing(128, 24)
    for cell in range(8):
        angle = cell * math.pi / 4
        x, y = cell * 16 + 8, 12.5 + math.sin(angle) * 1.6
        turn = math.cos(angle / 2)
        s, wide = 6.8, max(.5, abs(turn))
        # Two facets share the drop; their border wanders as it turns.
        edge = -math.cos(angle) * .5 * s * wide
        fill = '#b4e8fa' if turn > 0 else '#8ccaf0'
        clip = d.clip(drop(0, 0, s, '#000', wide=wide))
        d.add(group([drop(0, 0, s, fill, '#22345c', 1.4 + wide, wide),
                     group([rect(edge, -10, 20, 20, '#4a86c4'), drop(0, 0, s, 'none', '#22345c', 1, wide)],
                           clip=clip),
                     ellipse(-2.6 * wide, 1.6, 1.5 * wide, 2.4, '#ffffff')],
                    f'translate({x} {y:.1f})'))
    d.save('Blink')


def logo():
    d = Drawing(W, H)
    d.add(rect(0, 0, W, H, d.linear([(0, '#0f1a3c'), (.55, '#24406f'), (1, '#5f92b8')])),
          d.glow(320, 210, 300, 240, '#a8dcf4', .6))
    rain(d, 11, 120, '#cfe8fa', .32)
    for r, o in ((230, .22), (170, .34), (112, .5), (62, .7)):
        d.add(ellipse(320, 402, r, r * .2, 'none', '#dff4ff', 1.8, o))
    body = d.linear([(0, '#ffffff'), (.4, '#a4e0f6'), (1, '#3c84c4')], .1, 0, .9, 1)
    d.add(drop(320, 176, 92, body, '#f4fcff', 3))
    clip = d.clip(drop(320, 176, 92, '#000'))
    d.add(group([path('M220 226Q280 196 330 222T440 214V290H220Z', '#2f6fb0', opacity=.55),
                 path('M220 246Q280 222 330 244T440 236V290H220Z', '#245a98', opacity=.6),
                 # The mark: an umbrella inside the drop.
                 path('M272 196C276 154 304 142 320 140C336 142 364 154 368 196Q360 186 352 196Q344 186 336 196Q328 186 320 196Q312 186 304 196Q296 186 288 196Q280 186 272 196Z',
                      '#ffffff', opacity=.95), path('M320 140V238Q320 250 309 250Q301 249 302 241', 'none', '#ffffff', 5),
                 path('M304 196C304 170 312 150 320 140C328 150 336 170 336 196', 'none', '#8cc8e8', 2)], clip=clip),
          path('M262 200C258 168 282 130 300 104', 'none', '#ffffff', 6, .8))
    parts, wide = lettering('QVLIB', 0, 0, 62, 26, '#f6fcff', 7)
    d.add(group(parts, f'translate({320 - wide / 2:.1f} 322)'))
    d.save('QVlogo')


def title():
    d = Drawing(W, H)
    d.add(rect(0, 0, W, H, d.linear([(0, '#3f5aa0'), (.34, '#7f9cd0'), (.6, '#c4d8ec'), (.75, '#eaf2f4')])))
    d.add(d.glow(120, 170, 320, 260, '#fff4e0', .6))
    for i, (x, y, s) in enumerate(((110, 56, 170), (400, 40, 200), (600, 110, 150), (250, 130, 130))):
        cloud(d, x, y, s, '#c8d8f0', '#7f98cc', .5, i + 80)
    for i, (y, h, a, b) in enumerate(((300, 54, '#9cb4dc', '#c4d8ea'), (320, 40, '#7f9cca', '#a8c4dc'))):
        hills(d, y, h, a, 31 + i, b)
    pale = dict(wall='#dfe8f4', wallLow='#bccce4', wallShade='#8ca0c8', trim='#f2f6fc', glass='#8ca8d4', glassTop='#6f8cc0',
                glassLit='#ffe9b4', lit=(0, 4), roof='#6f8ac0', roofShade='#5672a8', clock='#fffbea')
    school(d, 172, 318, 15, pale)
    for x, y, s, n in ((20, 296, 46, 1), (70, 312, 26, 2), (276, 310, 30, 3), (330, 306, 36, 7), (600, 290, 56, 5), (640, 250, 60, 6)):
        d.add(*crown(x, y, s, ('#55789c', '#6b90ac', '#8fb2c0'), 70 + n))
    d.add(rect(0, 316, W, 164, d.linear([(0, '#b4cce0'), (.4, '#8faacc'), (1, '#6079ac')])))
    for x, y, rx, ry in ((150, 352, 110, 6), (60, 384, 90, 8), (250, 392, 70, 7)):
        d.add(ellipse(x, y, rx, ry, '#e4f0f8', opacity=.6))
    ripples(d, ((150, 352, 16), (60, 384, 18), (240, 392, 15)), '#ffffff', .9)
    d.add(d.glow(420, 250, 250, 230, '#f4fbff', .75))
    rain(d, 23, 150, '#ffffff', .6, bottom=470)
    # Both under one umbrella.
    d.add(people.umbrellaOpen(d, 425, 196, 0, 1.52))
    d.add(group(people.lessaParts(d, people.armsBook, people.calm(brows=(1, -1)), 5), 'translate(362 98)'))
    d.add(group(people.beluneParts(d, people.armsUpright, people.calm(brows=(1, 0), blush=.55), 4), 'translate(238 76)'))
    # Rain runs off the rim.
    for x, y in ((243, 222), (251, 268), (607, 226), (598, 286)):
        d.add(drop(x, y, 4, '#e8fbff', '#5fa8d8', 1.1))
    hydrangeaBush(d, 120, 456, 300, 15, ('#35627c', '#447a88', '#5a9494'), FLOWERS, 27)
    hydrangeaBush(d, 590, 462, 150, 19, ('#35627c', '#447a88', '#5a9494'), FLOWERS[::-1], 27)
    # The name.
    parts, wide = lettering('VORLANE', 0, 0, 44, 13, '#24397c', 15, '#24397c')
    front, wide = lettering('VORLANE', 0, 0, 44, 13, '#ffffff', 6.4, '#8edcf6', '#ffffff')
    size = 206 / wide
    d.add(group([group(parts, opacity=.55)] + front, f'translate(26 84) scale({size:.3f})'),
          path('M24 138H218', 'none', '#ffffff', 1.6, .9), drop(228, 138, 4, '#ffffff'))
    d.save('KAI001')


# ---- Masks of wipes: solid where they follow, broken where they lead ----

PALE = '#a6caf0'  # a static colour, so that the wipe has it with any picture


def mask(name, parts):
    d = Drawing(W, H)
    # The corner stays open: there the game reads its key.
    clip = d.clip(rect(1, 0, W - 1, H, '#000') + rect(0, 1, W, H - 1, '#000'))
    d.add('<g shape-rendering="crispEdges">', group(parts, clip=clip), '</g>')
    d.save(name)


def masks():
    slant = 180
    parts = [polygon([(-200, 0), (260, 0), (260 - slant, H), (-200, H)], PALE)]
    for i in range(12):
        x, w = 260 + i * 48, 44 - i * 3.6
        parts.append(polygon([(x, 0), (x + w, 0), (x + w - slant, H), (x - slant, H)], PALE))
    mask('mask01', parts)

    parts = [rect(0, 0, W, 40, PALE)]
    for i in range(12):
        y, h = 38 + i * 35, 34 - i * 2.6
        top = ' '.join(f'{x} {y + 11 * math.sin(x / 40 * math.pi / 2 + i * .9):.1f}' for x in range(0, W + 1, 8))
        low = ' '.join(f'{x} {y + h + 11 * math.sin(x / 40 * math.pi / 2 + i * .9):.1f}' for x in range(W, -1, -8))
        parts.append(path(f'M{top} {low}Z', PALE))
    mask('mask02', parts)

    parts = [rect(0, 0, W, 60, PALE)]
    for row in range(12):
        for column in range(-1, 17):
            size = 31 - row * 2.3
            parts.append(drop(column * 40 + row % 2 * 20 + 10, 62 + row * 37, size, PALE))
    mask('mask03', parts)

    parts = [rect(600, 0, 40, H, PALE)]
    for i in range(16):
        w = 39 - i * 2.3
        parts.append(rect(600 - i * 39, 0, w, H, PALE))
    mask('mask04', parts)


def clouds():
    """1280 wide, clouds that stand alone; what leaves at the right comes in at the left."""
    d = Drawing(1280, 120)
    for seed, (x, y, size) in enumerate(((90, 84, 92), (300, 46, 54), (470, 98, 70), (690, 70, 104),
                                         (905, 38, 48), (1090, 92, 80))):
        for shift in (-1280, 0, 1280):
            cloud(d, x + shift, y, size, '#ffffff', '#b4cae6', seed=20 + seed)
    d.save('KSC001')


def main():
    messageFrame()
    prompt()
    logo()
    title()
    masks()
    clouds()


if __name__ == '__main__':
    main()
