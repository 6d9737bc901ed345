"""The two heroines in their poses, and their mouths."""

import math

from faces import (MOUTH, SKIN, SKIN_LINE, SKIN_SHADE, HAIR, calm, edges, face, fringe, lock, mouthStrip, ribbon, smooth)
from svg import FOLDER, Drawing, ellipse, group, line, path, rect

WHITE, BLOUSE_SHADE, CLOTH_LINE = '#fbfcff', '#c6d2ea', '#55638a'
W, H = 300, 460
CENTRE = 150
HEAD = (150, 96)  # where a head's origin stands
SHORTER = 14      # how much lower Lessa stands


# ---- What both wear, and hands ----


def sleeve(d, spine, widths, colours, edge=1.5):
    """A tapered sleeve or arm; colours: light, middle, shade, line."""
    light, middle, shade, outline = colours
    # A round beginning: the shoulder, or where an elbow lies over the upper arm.
    (x1, y1), (x2, y2) = spine[:2]
    back = widths[0] * .3 / (math.hypot(x2 - x1, y2 - y1) or 1)
    spine = [(x1 - (x2 - x1) * back, y1 - (y2 - y1) * back), *spine]
    widths = [widths[0] * .55, *widths]
    xs = [x for x, _ in spine]
    centre, reach = sum(xs) / len(xs), (max(xs) - min(xs)) / 2 + max(widths) / 2
    fill = d.linear([(0, light), (.45, middle), (1, shade)], centre - reach, 0, centre + reach, 0, True)
    body = ribbon(spine, widths)
    clip = d.clip(path(body))
    left, right = edges(spine, widths)
    lower = [(x + (a - x) * .32, y + (b - y) * .32) for (x, y), (a, b) in zip(right, left)]
    dark = f'M{right[0][0]:.1f} {right[0][1]:.1f}{smooth(right)}L{lower[-1][0]:.1f} {lower[-1][1]:.1f}{smooth(lower[::-1])}Z'
    return [path(body, fill, outline, edge), group([path(dark, shade, opacity=.75)], clip=clip), path(body, 'none', outline, edge)]


def cuff(x, y, turn, colours, w=24, h=13):
    light, _, shade, outline = colours
    return group([path(f'M{-w / 2} {-h / 2}Q0 {-h / 2 - 3} {w / 2} {-h / 2}L{w / 2 + 1} {h / 2}Q0 {h / 2 + 4} {-w / 2 - 1} {h / 2}Z', light, outline, 1.4),
                  path(f'M{w * .12} {-h / 2 - 1}L{w / 2} {-h / 2}L{w / 2 + 1} {h / 2}Q{w * .3} {h / 2 + 2} {w * .16} {h / 2 + 2}Z', shade, opacity=.8),
                  path(f'M{-w / 2 - .4} {h * .12}Q0 {h * .12 + 3.5} {w / 2 + .4} {h * .12}', 'none', outline, .9, .7)],
                 f'translate({x} {y}) rotate({turn})')


def fist(x, y, turn=0, side=1):
    """Fingers closed around something upright; side -1 mirrors it."""
    return group([
        path('M-8 -7.5C-4 -10.5 5 -10 8.5 -7C11.5 -5 11.5 -2.5 9.8 -1C11.6 .2 11.4 3.4 9.4 4.2C10.8 6 9.6 9.4 6.5 9.8C2 11 -5.5 10.5 -8 8C-10.5 4 -10.5 -3.5 -8 -7.5Z', SKIN, SKIN_LINE, 1.3),
        path('M-8 7.5C-5 10 2 10.8 6.5 9.8C3 8 -4 8 -8.5 3Z', SKIN_SHADE),
        path('M.5 -5.5Q5.5 -6.5 9.4 -4.6M.8 -1Q6 -1.8 9.8 -1M.5 3.6Q5.5 3.2 9.4 4.2', 'none', SKIN_LINE, .9),
    ], f'translate({x} {y}) rotate({turn}) scale({side} 1)')


def neck():
    return [path('M138 140V166Q150 186 162 166V140Z', SKIN, SKIN_LINE, 1.2),
            path('M138 146Q150 164 162 148V166Q152 164 138 158Z', SKIN_SHADE)]


def skirt(d, colour, shade, deep, outline, top=312, low=462, halfTop=40, halfLow=82):
    """Pleats: each turns from light to shade, and overlaps the next one."""
    parts = [path(f'M{CENTRE - halfTop} {top}L{CENTRE - halfLow} {low}H{CENTRE + halfLow}L{CENTRE + halfTop} {top}Z', shade, outline, 1.6)]
    count = 8

    def bow(t):  # narrower towards the sides
        return .5 - .5 * math.cos(t * math.pi)

    for i in range(count):
        a, b = i / count, (i + 1) / count
        x1, x2 = CENTRE - halfTop + 2 * halfTop * bow(a), CENTRE - halfTop + 2 * halfTop * bow(b)
        x3, x4 = CENTRE - halfLow + 2 * halfLow * bow(a), CENTRE - halfLow + 2 * halfLow * bow(b)
        light = 1 - abs(a - .3)
        fill = d.linear([(0, colour), (.62, colour if light > .75 else shade), (1, deep)], x3, 0, x4, 0, True)
        parts.append(path(f'M{x1:.1f} {top}L{x2:.1f} {top}L{x4:.1f} {low}L{x3:.1f} {low}Z', fill))
        parts.append(path(f'M{x2:.1f} {top + 4}L{x4:.1f} {low}', 'none', outline, 1.1, .75))
    parts.append(path(f'M{CENTRE - halfTop} {top}L{CENTRE - halfLow} {low}M{CENTRE + halfTop} {top}L{CENTRE + halfLow} {low}', 'none', outline, 1.6))
    # The shade under what hangs over the waist.
    parts.append(path(f'M{CENTRE - halfTop - 1} {top}H{CENTRE + halfTop + 1}L{CENTRE + halfTop + 5} {top + 14}Q{CENTRE} {top + 22} {CENTRE - halfTop - 5} {top + 14}Z', deep, opacity=.6))
    return parts


# ---- Umbrellas ----

SKY, SKY_DEEP, SKY_PALE = '#9fdcf0', '#5fadd6', '#dcf5fb'


def umbrellaOpen(d, x=CENTRE, y=118, turn=0, scale=1):
    """Seen from the front, held behind the head: its inner side, eight ribs, the rim's edge."""
    ends = [(-120, 0), (-86, 11), (-45, 16), (0, 18), (45, 16), (86, 11), (120, 0)]
    rim = 'M-120 0C-117 -66 -64 -108 0 -108C64 -108 117 -66 120 0'
    for (x1, y1), (x2, y2) in zip(ends[::-1], ends[::-1][1:]):
        rim += f'Q{(x1 + x2) / 2} {(y1 + y2) / 2 - 13} {x2} {y2}'
    clip = d.clip(path(rim + 'Z'))
    tones = ('#a8e2f4', '#8fd4ee', '#79c4e6', '#6cb8e0', '#62aedb', '#589fd2')
    parts = [path(rim + 'Z', '#79c0e2', '#2f6ba4', 2)]
    panels = []
    for (x1, y1), (x2, y2), tone in zip(ends, ends[1:], tones):
        panels.append(path(f'M0 -112Q{x1 * .9:.0f} {-96 + abs(x1) * .14:.0f} {x1} {y1 + 4}L{x2} {y2 + 4}Q{x2 * .9:.0f} {-96 + abs(x2) * .14:.0f} 0 -112Z', tone))
    panels.append(path('M-120 6C-100 -16 -50 -40 0 -40C50 -40 100 -16 120 6L120 30H-120Z', '#3c86bc', opacity=.32))
    panels.append(path('M-60 24C-48 -20 -26 -50 0 -52C26 -50 48 -20 60 24Z', '#2c6ca4', opacity=.4))
    parts.append(group(panels, clip=clip))
    parts += [path(f'M0 -107Q{ex * .9:.1f} {-92 + abs(ex) * .13:.1f} {ex} {ey}', 'none', '#eefcff', 1.4, .85) for ex, ey in ends]
    parts += [path('M-117 -6C-111 -68 -60 -106 -8 -107C-58 -98 -98 -62 -105 -8Q-111 -12 -117 -6Z', '#e8fbff', opacity=.75),
              path(rim + 'Z', 'none', '#2f6ba4', 1.8),
              path('M0 -108V-117', 'none', '#2f6ba4', 5), path('M0 -108V-116', 'none', '#e9fbff', 2.6)]
    parts += [ellipse(ex, ey + 1, 1.8, 1.8, '#f4fcff', '#2f6ba4', .8) for ex, ey in ends]
    return group(parts, f'translate({x} {y}) rotate({turn}) scale({scale})')


def umbrellaClosed(x, y, length, turn=0):
    """From the handle at 0, 0 downwards."""
    n = length
    return group([
        path(f'M0 14V{n + 12}', 'none', '#53669c', 3),
        path(f'M-4 26C-16 60 -14 {n - 40} -2 {n}L2 {n}C14 {n - 40} 16 60 4 26Z', SKY, '#2f6ba4', 1.7),
        path(f'M2 28C13 62 12 {n - 44} 1 {n - 4}C5 {n - 60} 4 70 2 28Z', SKY_DEEP),
        path(f'M-4 30C-11 62 -10 {n - 50} -3 {n - 12}', 'none', '#e8fbff', 2.2),
        path('M-13.5 70Q0 77 13.5 69', 'none', '#2f6ba4', 5), path('M-13.5 70Q0 77 13.5 69', 'none', '#f4fbff', 2.8),
        path('M0 24V-6', 'none', '#6b4234', 6), path('M0 24V-6', 'none', '#b98460', 3.6), path('M-1 22V-5', 'none', '#e0b48c', 1),
    ], f'translate({x} {y}) rotate({turn})')


def shaft(x1, y1, x2, y2):
    return [line(x1, y1, x2, y2, '#45578c', 4.2), line(x1, y1, x2, y2, '#cfdcf2', 2)]


def crook(x, y):
    d = f'M{x} {y}V{y + 22}Q{x} {y + 34} {x - 9} {y + 33}Q{x - 15} {y + 31} {x - 14} {y + 25}'
    return [path(d, 'none', '#6b4234', 6.4), path(d, 'none', '#b98460', 3.8), path(d, 'none', '#e0b48c', 1, .8)]


# ---- Belune: a cardigan too wide for her over a sailor blouse ----

KNIT = ('#e2eaf8', '#c2d0ec', '#93a7d2', CLOTH_LINE)
NAVY, NAVY_SHADE, NAVY_DEEP = '#4d6096', '#394a7e', '#283562'


def beluneBackHair(d):
    x, y = HEAD
    parts = [path(f'M{x} {y - 66}C{x - 50} {y - 66} {x - 58} {y - 20} {x - 56} {y + 30}C{x - 62} {y + 90} {x - 84} {y + 170} {x - 80} {y + 250}'
                  f'C{x - 78} {y + 290} {x - 66} {y + 310} {x - 56} {y + 320}H{x + 56}C{x + 66} {y + 310} {x + 80} {y + 290} {x + 82} {y + 250}'
                  f'C{x + 84} {y + 170} {x + 62} {y + 90} {x + 56} {y + 30}C{x + 58} {y - 20} {x + 50} {y - 66} {x} {y - 66}Z',
                  d.linear([(0, '#8ea3d2'), (.5, '#7489bd'), (1, '#8ea3d2')]))]
    for side in (-1, 1):
        def at(*points):
            return [(x + side * px, y + py) for px, py in points]
        tone = ('light', 'main', 'dark') if side < 0 else ('main', 'dark', 'deep')
        parts += lock(d, 'belune', at((26, 10), (34, 80), (42, 150), (44, 220), (36, 290), (26, 334)), [20, 28, 34, 32, 20, 0], ('main', 'dark', 'deep'))
        parts += lock(d, 'belune', at((34, -34), (46, 10), (56, 70), (74, 160), (82, 240), (70, 306), (62, 348)), [8, 22, 32, 36, 34, 22, 0], tone)
        parts += lock(d, 'belune', at((40, -30), (54, 30), (62, 92), (84, 180), (96, 250), (92, 296), (100, 330)), [4, 12, 20, 24, 22, 14, 0], tone)
        parts += lock(d, 'belune', at((40, 0), (52, 100), (62, 190), (60, 262), (48, 318), (52, 362)), [18, 28, 30, 28, 18, 0], ('light', 'main', 'dark') if side < 0 else tone)
    return parts


def beluneSideLocks(d):
    """Before the shoulders; they hang from the head, and hang straight when it tilts."""
    x, y = HEAD
    parts = []
    for side in (-1, 1):
        def at(*points):
            return [(x + side * px, y + py) for px, py in points]
        tone = ('light', 'main', 'dark') if side < 0 else ('main', 'main', 'dark')
        parts += lock(d, 'belune', at((42, -34), (48, 6), (50, 60), (55, 110), (47, 162)), [10, 16, 20, 17, 0], tone)
        parts += lock(d, 'belune', at((46, -30), (52, 18), (57, 66), (64, 108), (60, 136)), [4, 9, 11, 8, 0], tone, (.5, ))
    return parts


def ahoge(c):
    return path('M-2 -67C-10 -80 0 -92 14 -86C5 -85 2 -78 5 -67Z', c['light'], c['line'], 1.4)


def clip(x, y):
    """Her clip: a drop."""
    return group([path('M0 -11C6 -3 8 2 7 6A7.2 7.2 0 0 1 -7 6C-8 2 -6 -3 0 -11Z', '#5fbce6', '#2f6ba4', 1.4),
                  path('M3 9A6 6 0 0 0 6 2C5 7 3 8 -1 9Z', '#2f7ab4'), ellipse(-2.4, 3.4, 1.8, 2.6, '#ffffff')], f'translate({x} {y}) rotate(16)')


def beluneBody(d):
    knit = d.linear([(0, KNIT[0]), (.45, KNIT[1]), (1, KNIT[2])], 96, 0, 206, 0, True)
    torso = ('M134 164C122 170 108 172 99 182C94 196 100 216 106 238C110 256 108 276 104 322Q150 336 196 322'
             'C192 276 190 256 194 238C200 216 206 196 201 182C192 172 178 170 166 164Q150 184 134 164Z')
    clipTorso = d.clip(path(torso))
    return skirt(d, NAVY, NAVY_SHADE, NAVY_DEEP, '#222c54', 318) + [
        path(torso, knit, CLOTH_LINE, 1.5),
        group([path('M206 170V336H170C182 300 178 260 184 236C188 214 190 196 184 182Z', KNIT[2], opacity=.6),
               path('M99 236C120 252 130 250 146 242C136 262 118 262 104 252ZM194 242C182 252 172 254 158 246C166 264 184 264 196 254Z', KNIT[2], opacity=.7),
               path('M110 300C118 292 128 290 136 292M166 296C178 292 186 294 192 300M112 276C118 280 124 281 130 280', 'none', '#7f93c0', 1.2, .8),
               path('M96 308Q150 324 204 308V340H96Z', '#a8b9de', opacity=.55)], clip=clipTorso),
        path('M104 312Q150 326 196 312', 'none', CLOTH_LINE, 1, .7),
        # The opening, the blouse in it, buttons.
        path('M132 168L150 266L168 168Q150 188 132 168Z', WHITE, CLOTH_LINE, 1.2),
        path('M150 196L150 266L166 180Z', BLOUSE_SHADE, opacity=.8),
        path('M150 264V330', 'none', CLOTH_LINE, 1.3), path('M153 270V328', 'none', '#7f93c0', .8, .7),
        ellipse(145, 284, 2.2, 2.2, '#f8fbff', CLOTH_LINE, 1), ellipse(145, 308, 2.2, 2.2, '#f8fbff', CLOTH_LINE, 1),
        # The sailor collar and its bow.
        path('M134 160L108 184Q106 190 112 196L147 232L150 214L153 232L188 196Q194 190 192 184L166 160L150 200Z', NAVY, '#222c54', 1.4),
        path('M166 160L192 184Q194 190 188 196L153 232L150 214L160 190Z', NAVY_SHADE),
        path('M114 189L145 221M186 189L155 221', 'none', '#f4f8ff', 1.5), path('M117 186L147 216M183 186L153 216', 'none', '#f4f8ff', .8, .8),
        path('M150 226C138 214 124 216 121 226C122 238 138 240 150 229C162 240 178 238 179 226C176 216 162 214 150 226Z', SKY, '#2f6ba4', 1.4),
        path('M150 228C160 222 170 222 178 228C174 238 162 239 150 229ZM150 228C142 222 132 224 124 232C130 238 142 236 150 229Z', SKY_DEEP, opacity=.7),
        path('M147 229C144 243 138 254 130 264L143 261L150 236L157 261L170 264C162 254 156 243 153 229Z', SKY_DEEP, '#2f6ba4', 1.3),
        path('M147 232C145 244 140 254 134 261L138 260C144 252 148 244 149 234Z', SKY),
        ellipse(150, 228, 4.6, 5, SKY_PALE, '#2f6ba4', 1.3),
    ]


def beluneParts(d, arms, mood, tilt):
    c = HAIR['belune']
    before, after = arms(d)
    place = f'translate({HEAD[0]} {HEAD[1]}) rotate({tilt} 0 {MOUTH[1]})'
    return [*beluneBackHair(d), *beluneBody(d), *neck(), *before, group(face(d, 'belune', mood), place),
            *beluneSideLocks(d), group(fringe(d, 'belune') + [ahoge(c), clip(40, -14)], place), *after]


def belune(name, arms, mood, tilt, behind=()):
    d = Drawing(W, H)
    d.add(*[item(d) for item in behind], *beluneParts(d, arms, mood, tilt))
    d.save(name)


def armsShoulder(d):
    """The umbrella on the shoulder, the other sleeve hanging long."""
    return [*sleeve(d, [(106, 188), (92, 236), (88, 284), (98, 330)], [26, 27, 25, 24], KNIT), cuff(99, 336, -10, KNIT, 27, 14),
            *shaft(212, 62, 200, 268)], [
        *sleeve(d, [(196, 190), (213, 226), (222, 258), (208, 274)], [25, 26, 25, 22], KNIT), *crook(199, 264),
        fist(198, 266, 8), cuff(210, 270, 80, KNIT, 25, 12)]


def armsUpright(d):
    """Both hands at the handle, the umbrella straight above."""
    return shaft(182, 60, 164, 268), [
        *sleeve(d, [(106, 188), (92, 230), (100, 276), (140, 282)], [26, 27, 27, 24], KNIT),
        *sleeve(d, [(195, 188), (213, 224), (214, 256), (182, 260)], [25, 26, 26, 23], KNIT), *crook(164, 264),
        fist(164, 277, 4), fist(166, 258, 4, -1), cuff(147, 280, 84, KNIT), cuff(182, 260, -78, KNIT)]


def armsSleeve(d):
    """No umbrella: a sleeve hangs long, the other one is lifted to her breast."""
    return [*sleeve(d, [(106, 188), (92, 236), (88, 284), (98, 330)], [26, 27, 25, 24], KNIT), cuff(99, 336, -10, KNIT, 27, 14)], [
        *sleeve(d, [(195, 188), (214, 230), (214, 262), (178, 234)], [25, 27, 27, 23], KNIT),
        fist(169, 225, -48, -1), cuff(176, 232, -52, KNIT, 25, 14)]


def armsCane(d):
    """The closed umbrella before her, both sleeves on its handle."""
    return [umbrellaClosed(150, 292, 164)], [
        *sleeve(d, [(106, 188), (90, 232), (98, 284), (134, 300)], [26, 27, 27, 24], KNIT),
        *sleeve(d, [(194, 188), (210, 232), (202, 284), (166, 300)], [25, 26, 26, 24], KNIT),
        fist(150, 303, 0), fist(150, 290, 0, -1), cuff(134, 300, 78, KNIT), cuff(166, 298, -78, KNIT)]


# ---- Lessa: a knitted vest, a white shirt, a book and keys ----

VEST = ('#f8eeda', '#eddcbc', '#cdb48c', '#7c6046')
SHIRT = (WHITE, '#e6edf8', '#b9c7e2', CLOTH_LINE)
PLAID, PLAID_SHADE, PLAID_DEEP = '#86504e', '#693c42', '#4a2832'
BOOK, BOOK_DARK, BRASS = '#3f6f74', '#284c54', '#e8bc58'


def lessaBackHair(d):
    c = HAIR['lessa']
    parts = [path('M0 -69C-48 -69 -60 -30 -56 10C-54 34 -60 50 -58 66C-44 78 -24 76 -16 70H16C24 76 44 78 58 66C60 50 54 34 56 10C60 -30 48 -69 0 -69Z',
                  d.linear([(0, c['dark']), (.6, c['deep']), (1, '#3f1f1a')], 0, -20, 0, 70, True), c['line'], 1.5)]
    for side in (-1, 1):
        def at(*points):
            return [(side * px, py) for px, py in points]
        parts += lock(d, 'lessa', at((34, 20), (40, 46), (34, 68), (18, 74)), [26, 26, 18, 0], ('dark', 'deep', 'deep'))
    return parts


def lessaSideLocks(d):
    parts = []
    for side in (-1, 1):
        def at(*points):
            return [(side * px, py) for px, py in points]
        tone = ('light', 'main', 'dark') if side < 0 else ('main', 'dark', 'deep')
        parts += lock(d, 'lessa', at((46, -36), (54, -4), (54, 30), (56, 56), (44, 78)), [14, 19, 22, 20, 0], tone)
        parts += lock(d, 'lessa', at((50, -24), (58, 6), (60, 36), (64, 58), (58, 74)), [8, 11, 12, 9, 0], tone, (.5, ))
        parts += lock(d, 'lessa', at((43, -20), (46, 6), (45, 30), (40, 52)), [7, 11, 10, 0], tone, (.5, ))
    return parts


def glasses(turn):
    frame, x1, x2 = '#7a3440', -22 + turn, 22 + turn
    return [group([ellipse(x, 14, 17.5, 15.8, '#dff2ff', opacity=.1) for x in (x1, x2)]),
            ellipse(x1, 14, 17.5, 15.8, 'none', frame, 2), ellipse(x2, 14, 17.5, 15.8, 'none', frame, 2),
            path(f'M{x1 + 17} 11Q{turn} 7.5 {x2 - 17} 11M{x1 - 17} 10L-45 7M{x2 + 17} 10L45 7', 'none', frame, 2),
            path(f'M{x1 - 11} 6L{x1 - 5} 1M{x1 - 12} 12L{x1 + .5} 1.5M{x2 - 11} 6L{x2 - 5} 1', 'none', '#ffffff', 1.7, .8)]


def pins():
    return [path('M33 -22L46 -12M31 -15L44 -5', 'none', '#3a201c', 4), path('M33 -22L46 -12M31 -15L44 -5', 'none', BRASS, 2.4),
            path('M34 -22L40 -17M32 -15L38 -10', 'none', '#fff0c4', 1)]


def lessaBody(d):
    vest = d.linear([(0, VEST[0]), (.45, VEST[1]), (1, VEST[2])], 100, 0, 200, 0, True)
    shirt = d.linear([(0, WHITE), (1, BLOUSE_SHADE)], 96, 0, 204, 0, True)
    front = ('M122 172C116 186 112 200 107 214C106 244 110 276 107 318Q150 330 193 318C190 276 194 244 193 214'
             'C188 200 184 186 178 172L150 232Z')
    clipFront = d.clip(path(front))
    knit = [path(f'M100 {y}Q150 {y + 10} 200 {y}', 'none', VEST[2], 1, .5) for y in range(232, 312, 9)]
    return skirt(d, PLAID, PLAID_SHADE, PLAID_DEEP, '#3c1c26', 314) + [
        path('M84 420L216 420M80 432H220M90 388H210', 'none', '#d8a488', 1.6, .4),
        path('M134 166C120 171 108 174 101 184C97 198 104 218 108 240L107 312H193L192 240C196 218 203 198 199 184C192 174 180 171 166 166Q150 186 134 166Z', shirt, CLOTH_LINE, 1.5),
        path(front, vest, VEST[3], 1.5),
        group(knit + [path('M200 170V330H172C184 296 178 256 186 230Z', VEST[2], opacity=.6),
                      path('M104 240C120 254 132 252 146 244C138 264 118 264 106 256ZM196 244C182 254 172 256 158 248C168 266 186 264 196 256Z', VEST[2], opacity=.75)], clip=clipFront),
        path('M123 174L150 234L177 174', 'none', '#7a3f44', 3.4), path('M123 174L150 234L177 174', 'none', '#a8605c', 1.4),
        path('M107 306Q150 319 193 306', 'none', VEST[3], 1.1, .8), path('M106 312Q150 325 194 312', 'none', '#8a4a4a', 2, .8),
        path('M136 161L123 178L142 198L150 184L158 198L177 178L164 161L150 181Z', WHITE, CLOTH_LINE, 1.3),
        path('M164 161L177 178L158 198L150 184L157 172Z', BLOUSE_SHADE),
        path('M136 161L123 178L142 198L150 184L158 198L177 178L164 161L150 181Z', 'none', CLOTH_LINE, 1.3),
        path('M150 192C142 184 132 184 131 192C131 200 142 202 150 195C158 202 169 200 169 192C168 184 158 184 150 192Z', '#b24a54', '#66222e', 1.3),
        path('M148 195L139 222L150 214L161 222L152 195Z', '#a03c48', '#66222e', 1.3),
        ellipse(150, 193.5, 4, 4.4, '#d07078', '#66222e', 1.2),
    ]


def book(x, y, turn, w=62, h=80):
    return group([
        rect(-w / 2 + 4, -h / 2 + 3, w, h, '#f3ead2', '#6b5a44', 1.4, r=2),
        rect(-w / 2, -h / 2, w, h, BOOK, '#1b343c', 1.7, r=3),
        path(f'M{w / 2 - 22} {-h / 2}H{w / 2 - 2}V{h / 2}H{w / 2 - 40}Z', '#33626a', opacity=.8),
        rect(-w / 2, -h / 2, 10, h, BOOK_DARK, r=3),
        rect(-w / 2 + 16, -h / 2 + 8, w - 23, h - 16, 'none', BRASS, 1.5, r=2),
        path('M4.5 -18C12 -6 14 0 14 4.5A9.8 9.8 0 0 1 -5.6 4.5C-5.6 0 -3.5 -6 4.5 -18Z', BRASS, '#8d6a2c', 1.1),
        path('M-1 6A5.5 5.5 0 0 0 4 10', 'none', '#fff3cf', 1.5),
    ], f'translate({x} {y}) rotate({turn})')


def openBook(x, y):
    return group([
        path('M-56 -34L-4 -22V40L-58 26Z', BOOK, '#1b343c', 1.7), path('M56 -34L4 -22V40L58 26Z', BOOK_DARK, '#1b343c', 1.7),
        path('M-4 -22Q0 -18 4 -22V40Q0 44 -4 40Z', '#1f3d45', '#1b343c', 1.4),
        path('M-54 -35Q-26 -38 0 -24Q26 -38 54 -35L55 -31Q28 -34 0 -20Q-28 -34 -55 -31Z', '#fbf3de', '#6b5a44', 1.2),
        path('M-48 -22L-12 -13V28L-50 18Z', 'none', BRASS, 1.4), path('M48 -22L12 -13V28L50 18Z', 'none', BRASS, 1.2, .7),
        path('M-30 -12C-25 -4 -24 0 -24 3A6.5 6.5 0 0 1 -37 1C-37 -3 -34 -6 -30 -12Z', BRASS, '#8d6a2c', 1)], f'translate({x} {y})')


def keys(x, y, scale=1):
    def key(turn):
        shape = 'M0 15V40M0 30H7M0 37H8'
        return group([path(shape, 'none', '#7d5c22', 5), path(shape, 'none', BRASS, 2.8),
                      ellipse(0, 13, 5.6, 5.6, 'none', '#7d5c22', 4.6), ellipse(0, 13, 5.6, 5.6, 'none', BRASS, 2.6)], f'rotate({turn})')
    return group([key(34), key(-30), key(2), ellipse(0, 0, 10, 10, 'none', '#5e6678', 4), ellipse(0, 0, 10, 10, 'none', '#dfe6f2', 2)],
                 f'translate({x} {y}) scale({scale})')


def lessaParts(d, arms, mood, tilt):
    before, after = arms(d)
    place = f'translate({HEAD[0]} {HEAD[1]}) rotate({tilt} 0 {MOUTH[1]})'
    head = group(face(d, 'lessa', mood) + glasses(mood['turn']) + lessaSideLocks(d) + fringe(d, 'lessa') + pins(), place)
    return [group(lessaBackHair(d), place), *lessaBody(d), *neck(), *before, head, *after]


def lessa(name, arms, mood, tilt):
    d = Drawing(W, H)
    d.add(group(lessaParts(d, arms, mood, tilt), f'translate(0 {SHORTER})'))
    d.save(name)


def armsBook(d):
    """A book held to the breast with both arms; the keys hang from her belt."""
    return [keys(182, 322, .8)], [
        book(150, 258, -6),
        *sleeve(d, [(107, 190), (91, 230), (98, 278), (140, 286)], [24, 26, 25, 20], SHIRT), cuff(142, 286, 84, SHIRT, 21, 10), fist(156, 284, 4),
        *sleeve(d, [(193, 190), (209, 224), (210, 254), (176, 261)], [24, 25, 24, 20], SHIRT), cuff(174, 260, -84, SHIRT, 21, 10), fist(160, 258, 4, -1)]


def armsKeys(d):
    """The found keys held up; the book under the other arm."""
    return [], [
        book(116, 294, 8, 54, 74),
        *sleeve(d, [(107, 190), (88, 234), (84, 276), (98, 304)], [24, 26, 25, 22], SHIRT), cuff(103, 309, 130, SHIRT, 21, 10), fist(113, 318, 20),
        *sleeve(d, [(193, 192), (207, 226), (230, 250), (240, 210)], [24, 25, 24, 20], SHIRT), cuff(240, 206, 2, SHIRT, 21, 10),
        keys(241, 194, .95), fist(240, 190, 0)]


def armsOpenBook(d):
    """She hides as much of herself as an open book can hide."""
    return [keys(112, 322, .8)], [
        *sleeve(d, [(107, 190), (86, 228), (80, 258), (94, 274)], [24, 26, 25, 23], SHIRT),
        *sleeve(d, [(193, 190), (214, 228), (220, 258), (206, 274)], [24, 25, 24, 23], SHIRT),
        cuff(97, 272, 64, SHIRT, 21, 10), cuff(203, 272, -64, SHIRT, 21, 10), openBook(150, 246), fist(104, 258, 0), fist(196, 258, 0, -1)]


# ---- The poses; a mouth lies where the face has turned it ----

MOODS = {
    'KDS012': calm(brows=(0, 0), turn=2),
    'KDS012a': calm(brows=(1, .4), blush=.5, turn=-3),
    'KDS013': calm(eyes='closed', brows=(2, 0), blush=.6, turn=-2),
    'KDS015': calm(eyes='wide', brows=(3, -1), turn=3),
    'KDS022': calm(brows=(0, -1.2), turn=-2),
    'KDS024': calm(eyes='closed', brows=(3, 0), blush=.55, turn=2),
    'KDS025': calm(eyes='aside', brows=(1, 2), blush=.8, turn=3),
}


def main():
    belune('KDS012', armsShoulder, MOODS['KDS012'], -3, [lambda d: umbrellaOpen(d, 154, 120, 7, 1)])
    belune('KDS012a', armsSleeve, MOODS['KDS012a'], 4)
    belune('KDS013', armsUpright, MOODS['KDS013'], 4, [lambda d: umbrellaOpen(d, 150, 118, 0, 1.02)])
    belune('KDS015', armsCane, MOODS['KDS015'], -5)
    lessa('KDS022', armsBook, MOODS['KDS022'], 2)
    lessa('KDS024', armsKeys, MOODS['KDS024'], -4)
    lessa('KDS025', armsOpenBook, MOODS['KDS025'], 3)
    mouthStrip('Kds01_a')
    mouthStrip('Kds02_a')
    lines = ['# Where a mouth strip (three cells of 32 by 24: A closed, B half open, C open) lies on',
             '# its sprite, from their left top corner, as the figures of story.txt say it.',
             '# SPRITE  X    Y']
    for name, mood in MOODS.items():
        down = SHORTER if name >= 'KDS02' else 0
        lines.append(f'{name}  {HEAD[0] + MOUTH[0] + mood["turn"] - 16}  {HEAD[1] + MOUTH[1] - 12 + down}')
    (FOLDER / 'mouths.txt').write_text('\n'.join(lines) + '\n')


if __name__ == '__main__':
    main()
