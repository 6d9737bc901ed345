"""The two heroines, three poses each, and their mouths."""

from svg import Drawing, ellipse, group, limb, line, path, polar, rect

SKIN, SKIN_SHADE, SKIN_LINE = '#fde6da', '#f2c8bb', '#9c6260'
MOUTH_LINE, MOUTH_RED, TONGUE = '#a4535a', '#b4525c', '#ee9a9a'
WHITE, BLOUSE_SHADE, CLOTH_LINE = '#fbfcff', '#ccd6ea', '#5d6a8c'
CENTRE, MOUTH_Y = 130, 144
CELL = (32, 24)

HAIR = {
    'belune': dict(light='#f1f6ff', main='#c9d8f2', dark='#93a9d4', line='#566a98', shine='#ffffff'),
    'lessa': dict(light='#b9794f', main='#8f5236', dark='#6b3828', line='#43231f', shine='#dba377'),
}
EYES = {
    'belune': dict(top='#32488a', main='#4f7fd0', low='#a8ecf7', lash='#2c3560'),
    'lessa': dict(top='#1f4a3c', main='#2f9468', low='#b4f0a4', lash='#3c2220'),
}


def mouthShapes(cell):
    """Around 0, 0. A is closed, B half open, C open."""
    if cell == 'A':
        return [path('M-6.5 -.6Q-3 2.6 0 2.4Q3 2.6 6.5 -.6', 'none', MOUTH_LINE, 1.9)]
    if cell == 'B':
        return [path('M-5.8 -2Q0 -3.2 5.8 -2Q5 4.4 0 4.6Q-5 4.4 -5.8 -2Z', MOUTH_RED, MOUTH_LINE,
                     1.5), ellipse(0, 3, 2.8, 1.2, TONGUE)]
    return [path('M-7.4 -4Q0 -5.6 7.4 -4Q6.8 6.8 0 7.4Q-6.8 6.8 -7.4 -4Z', MOUTH_RED, MOUTH_LINE,
                 1.5), ellipse(0, 4.6, 4, 2.3, TONGUE)]


def mouthStrip(name):
    """Each cell brings the skin around the lips, so that it covers every other cell."""
    d = Drawing(CELL[0] * 3, CELL[1])
    for index, cell in enumerate('ABC'):
        skin = ellipse(0, 0, 11.5, 9.6, SKIN)
        d.add(group([skin] + mouthShapes(cell), f'translate({index * CELL[0] + 16} 12)'))
    d.save(name)


def openEye(d, x, y, side, c, look=(0, 0), wide=0):
    """side: -1 for the one at our left. The light comes from the left into both."""
    h = 12 + wide
    white = (f'M-12.5 1C-11 {-h + 1} 6 {-h - 2} 12 -3C13 6 6 {h} -2 {h}C-8 {h - 1} -12 7 -12.5 1Z')
    clip = d.clip(path(white))
    iris = d.linear([(0, c['top']), (.45, c['main']), (1, c['low'])])
    ix, iy = look[0] * side, look[1]
    turned = [
        path(white, '#fffdfd'),
        group([
            ellipse(ix - .5, iy + .5, 9, h + .3, iris, c['top'], 1.3),
            ellipse(ix - .5, iy, 3.6, 5.6, c['lash']),
            ellipse(ix - .5, iy + 8, 5.4, 2.6, c['low'], opacity=.9),
            path(f'M-14 2C-11 {-h} 6 {-h - 2} 13 -3L13 0C6 {-h + 4} -10 {-h + 5} -14 5Z', c['lash'],
                 opacity=.32),
        ], clip=clip),
        path(f'M-13.5 2.5C-12 {-h - 1} 6 {-h - 4} 13 -4.2L17 -4.6C15.5 -2.4 14.4 -1 13.4 -.4'
             f'C6 {-h + .8} -9 {-h + 1.8} -13.5 2.5Z', c['lash'], c['lash'], 1),
        path('M12.6 2.5C12 6.5 9.5 9.5 7 10.8', 'none', c['lash'], 1.1),
        path(f'M-8 {-h - 2.5}C-2 {-h - 5} 6 {-h - 4.5} 11 {-h + 1}', 'none', SKIN_LINE, .9, .75),
    ]
    return [
        group(turned, f'translate({x} {y}) scale({side} 1)'),
        ellipse(x + look[0] - 3.6, y + look[1] - 5, 3, 3.6, '#ffffff'),
        ellipse(x + look[0] + 3.8, y + look[1] + 4.6, 1.5, 1.8, '#ffffff'),
    ]


def closedEye(x, y, side, c):
    return [group([
        path('M-12 4C-8 -6 7 -7 12.5 3', 'none', c['lash'], 3),
        path('M11 .5L15.5 1.5M9 -2.5L13.4 -4', 'none', c['lash'], 1.6),
    ], f'translate({x} {y}) scale({side} 1)')]


def face(d, who, mood):
    """mood: eyes (open, closed, aside, wide), brows (height, slope), blush."""
    hair, c = HAIR[who], EYES[who]
    outline = ('M86 98C85 122 90 136 106 148C116 155.5 124 159 130 159C136 159 144 155.5 154 148'
               'C170 136 175 122 174 98C172 66 150 54 130 54C110 54 88 66 86 98Z')
    clip = d.clip(path(outline))
    parts = [path(outline, SKIN, SKIN_LINE, 1.5)]
    # Shadow of the fringe, and of the cheek that is turned from the light.
    parts.append(group([
        path('M80 60H180V104Q168 99 160 112Q150 97 136 110Q124 98 106 110Q98 99 80 116Z',
             SKIN_SHADE),
        path('M176 92C175 122 168 138 153 150C166 137 167 118 166 96Z', SKIN_SHADE),
    ], clip=clip))
    blush = d.radial([(0, '#f58f8f', mood['blush']), (1, '#f58f8f', 0)])
    for x in (101, 159):
        parts.append(ellipse(x, 135, 12, 6.5, blush))
    if mood['blush'] > .7:
        for x in (101, 159):
            parts += [line(x - 5 + i * 4, 136.5, x - 3 + i * 4, 133.5, '#e27878', 1.1)
                      for i in range(3)]
    for x, side in ((107, -1), (153, 1)):
        if mood['eyes'] == 'closed':
            parts += closedEye(x, 119, side, c)
        else:
            look = {'aside': (3.4, 0), 'wide': (0, 0)}.get(mood['eyes'], (.6, 0))
            parts += openEye(d, x, 119, side, c, look, 1 if mood['eyes'] == 'wide' else 0)
        rise, slope = mood['brows']
        parts.append(path(f'M{x - 11 * side} {98 - rise + slope}Q{x} {93.5 - rise} '
                          f'{x + 11 * side} {99 - rise - slope}', 'none', hair['line'], 1.9))
    parts.append(path('M129 131.2Q131.4 132.6 131.6 130.6', 'none', SKIN_LINE, 1.2))
    parts.append(group(mouthShapes('A'), f'translate({CENTRE} {MOUTH_Y})'))
    return parts


def fist(x, y, turn=0, fingers=1):
    parts = [path('M-9 -7C-4 -10 6 -9.5 9 -6C11 -1 10 6 7 9C2 11 -6 10.5 -9 7C-11 3 -11 -3 -9 -7Z',
                  SKIN, SKIN_LINE, 1.4)]
    if fingers:
        parts.append(path('M1 -4.5Q6 -5.5 9.4 -3M1.5 .2Q6 -.6 10 1M1.5 4.6Q5 4.2 8.8 5.4', 'none',
                          SKIN_LINE, 1))
    return group(parts, f'translate({x} {y}) rotate({turn})')


def hairFill(d, who, x1=70, x2=200):
    c = HAIR[who]
    return d.linear([(0, c['light']), (.45, c['main']), (1, c['dark'])], x1, 40, x2, 120, True)


# ---- Belune ----

CARDIGAN, CARDIGAN_SHADE = '#b9c9e6', '#97abd2'
SKIRT, SKIRT_SHADE = '#4a5a88', '#364270'
SKY, SKY_DEEP, SKY_PALE = '#9fdcf0', '#5fadd6', '#dcf5fb'


def umbrellaOpen(d, x=130, y=118, turn=0, scale=1):
    """Seen from the front, held behind the head: its inner side, eight ribs, the rim's edge."""
    inner = d.radial([(0, '#4f93c4'), (.55, '#79c0e2'), (1, '#aee2f3')])
    # Scallops between the ribs' ends.
    ends = [(-120, 0), (-84, 10), (-44, 14), (0, 16), (44, 14), (84, 10), (120, 0)]
    rim = 'M-120 0C-116 -70 -62 -112 0 -112C62 -112 116 -70 120 0'
    for (x1, y1), (x2, y2) in zip(ends[::-1], ends[::-1][1:]):
        rim += f'Q{(x1 + x2) / 2} {(y1 + y2) / 2 - 12} {x2} {y2}'
    parts = [path(rim + 'Z', inner, '#3f7fb4', 2)]
    parts += [path(f'M0 -108Q{ex * .86:.1f} {-92 + abs(ex) * .12:.1f} {ex} {ey}', 'none', '#e9fbff', 1.3, .75)
              for ex, ey in ends]
    parts.append(path('M-118 -4C-112 -68 -60 -108 0 -109C-52 -102 -98 -64 -104 -3Q-110 -8 -118 -4Z',
                      SKY_PALE, opacity=.75))
    parts.append(path('M118 -4C112 -68 60 -108 0 -109C60 -98 92 -60 102 -2Q110 -8 118 -4Z',
                      '#3c79ae', opacity=.4))
    parts.append(path('M0 -112V-116', 'none', '#e9fbff', 4))
    return group(parts, f'translate({x} {y}) rotate({turn}) scale({scale})')


def umbrellaClosed(x, y, length, turn=0):
    """From the handle at 0, 0 downwards."""
    n = length
    return group([
        path(f'M0 14V{n + 12}', 'none', '#566a98', 3),
        path(f'M-4 26C-15 60 -13 {n - 40} -2 {n}L2 {n}C13 {n - 40} 15 60 4 26Z', SKY, '#3f7fb4', 1.8),
        path(f'M3 28C12 62 11 {n - 44} 1 {n - 4}C4 {n - 60} 4 70 3 28Z', SKY_DEEP),
        path(f'M-4 30C-10 62 -9 {n - 50} -3 {n - 12}', 'none', SKY_PALE, 2.4),
        path('M-13 70Q0 76 13 69', 'none', '#f4fbff', 3.4),
        path('M0 22V-6', 'none', '#7b4f3c', 5.4),
        path('M0 22V-6', 'none', '#b98460', 2.6),
    ], f'translate({x} {y}) rotate({turn})')


def beluneBackHair(d):
    c = HAIR['belune']
    fill = d.linear([(0, c['main']), (.55, c['dark']), (1, '#aebfe2')], 0, 60, 0, 420, True)
    return [
        path('M130 34C84 34 66 78 68 128C69 176 50 220 38 282C30 326 34 366 46 396'
             'C50 384 54 378 58 372C58 392 66 410 78 420C80 404 86 390 92 380L168 380'
             'C174 392 180 404 182 420C194 410 202 392 202 372C206 378 210 384 214 396'
             'C226 366 230 326 222 282C210 220 191 176 192 128C194 78 176 34 130 34Z',
             fill, c['line'], 1.8),
        path('M58 372C50 330 62 270 74 220M92 380C80 340 84 280 88 250M202 372C210 330 198 270 186 220'
             'M168 380C180 340 176 280 172 250', 'none', c['line'], 1.2, .7),
        path('M48 300C54 262 66 226 76 196', 'none', c['light'], 3, .8),
    ]


def beluneFrontHair(d):
    c = HAIR['belune']
    fill = hairFill(d, 'belune')
    lock = d.linear([(0, c['light']), (1, c['main'])], 0, 110, 0, 260, True)
    lockDark = d.linear([(0, c['main']), (1, c['dark'])], 0, 110, 0, 260, True)
    return [
        path('M76 96C70 134 76 164 66 204C62 226 68 246 77 258C80 236 92 206 91 172'
             'C91 150 84 136 88 108Z', lock, c['line'], 1.6),
        path('M184 96C190 134 184 164 194 204C198 226 192 246 183 258C180 236 168 206 169 172'
             'C169 150 176 136 172 108Z', lockDark, c['line'], 1.6),
        path('M80 150C80 180 72 206 73 236M180 150C180 180 188 206 187 236', 'none', c['line'], 1, .6),
        path('M74 122C68 70 90 33 130 33C170 33 192 70 186 122C180 114 177 106 175 94'
             'C173 102 169 107 162 111C163 102 161 94 157 84C153 96 146 104 136 109'
             'C138 100 137 92 134 82C127 95 116 104 101 110C104 102 105 96 105 88'
             'C98 100 88 112 74 122Z', fill, c['line'], 1.8),
        # The ring of light, broken by the strands.
        path('M88 74C98 62 112 57 124 56L122 64C110 65 98 71 90 82Z'
             'M131 56C146 56 158 62 168 72L165 79C155 69 145 65 131 64Z', c['shine'], opacity=.85),
        path('M134 82C133 66 130 50 128 38M105 88C106 72 112 54 120 42M157 84C156 68 148 50 140 40',
             'none', c['line'], 1, .45),
        path('M126 34C122 24 128 18 136 20C131 23 131 29 134 34Z', c['light'], c['line'], 1.4),
        # Her clip: a drop.
        path('M171 84C178 93 179 99 173 102C166 104 161 98 163 92C164 88 168 87 171 84Z',
             '#6fc6ea', '#3a76a8', 1.4), ellipse(169, 95, 1.9, 2.5, '#ffffff'),
    ]


def neck():
    return [path('M117 146V172Q130 188 143 172V146Z', SKIN, SKIN_LINE, 1.3),
            path('M117 150Q130 172 143 152V166Q130 172 117 160Z', SKIN_SHADE)]


def pleatedSkirt(d, colour, shade, linecolour):
    fill = d.linear([(0, colour), (1, shade)], 60, 0, 210, 0, True)
    parts = [path('M92 300C84 340 70 392 58 446H202C190 392 176 340 168 300Z', fill, linecolour, 1.6)]
    for top, low in ((104, 84), (117, 108), (130, 131), (143, 154), (156, 178)):
        parts.append(path(f'M{top} 318L{low} 446L{low + 9} 446Z', linecolour, opacity=.35))
        parts.append(line(top, 312, low, 446, linecolour, 1.2, .8))
    return parts


def beluneBody(d):
    knit = d.linear([(0, '#d3def2'), (.5, CARDIGAN), (1, CARDIGAN_SHADE)], 70, 0, 195, 0, True)
    return pleatedSkirt(d, SKIRT, SKIRT_SHADE, '#2a335a') + [
        path('M112 168C92 174 78 180 72 196C68 220 80 262 86 330Q130 342 174 330'
             'C180 262 192 220 188 196C182 180 168 174 148 168Q130 186 112 168Z', knit, CLOTH_LINE,
             1.6),
        # Blouse, its collar and the ribbon.
        path('M110 172L130 262L150 172Q130 190 110 172Z', WHITE, CLOTH_LINE, 1.2),
        path('M130 262V336', 'none', CLOTH_LINE, 1.4),
        ellipse(124, 284, 2.2, 2.2, '#f3f6fc', CLOTH_LINE, 1), ellipse(124, 310, 2.2, 2.2, '#f3f6fc',
                                                                    CLOTH_LINE, 1),
        path('M86 326Q130 338 174 326', 'none', CLOTH_LINE, 1, .7),
        path('M113 165L85 188L127 230L130 214L133 230L175 188L147 165L130 206Z', '#566aa0',
             '#35426f', 1.5),
        path('M91 189L124 221M169 189L136 221', 'none', '#eef3ff', 1.5),
        path('M130 222C116 212 104 216 102 226C104 236 118 236 130 226C142 236 156 236 158 226'
             'C156 216 144 212 130 222Z', SKY, '#3f7fb4', 1.5),
        path('M127 226C124 240 118 250 112 258L124 256L131 232L138 256L149 258C142 250 136 240 133 226Z',
             SKY_DEEP, '#3f7fb4', 1.4),
        ellipse(130, 225, 4.4, 4.8, SKY_PALE, '#3f7fb4', 1.3),
    ]


def sleeveFill(d, light='#cfdbf1', dark=CARDIGAN_SHADE):
    return d.linear([(0, light), (1, dark)], 50, 0, 210, 0, True)


def sleeveCuff(x, y, turn):
    """The wide end of a sleeve that hides the hand."""
    return group([path('M-13 -10Q0 -14 13 -10L15 10Q0 15 -15 10Z', '#c3d1eb', CLOTH_LINE, 1.5),
                  path('M-13.5 4Q0 9 13.5 4', 'none', CLOTH_LINE, 1, .7)],
                 f'translate({x} {y}) rotate({turn})')


def beluneParts(d, arms, mood, tilt):
    before, after = arms(d)
    head = group(face(d, 'belune', mood) + beluneFrontHair(d), f'rotate({tilt} {CENTRE} {MOUTH_Y})')
    return [*beluneBackHair(d), *beluneBody(d), *neck(), *before, head, *after]


def belune(name, arms, mood, tilt, behind=()):
    d = Drawing(260, 440)
    d.add(*[item(d) for item in behind], *beluneParts(d, arms, mood, tilt))
    d.save(name)


def shaft(x1, y1, x2, y2):
    return [line(x1, y1, x2, y2, '#4c6090', 4.2), line(x1, y1, x2, y2, '#c8d6ee', 1.8)]


def crook(x, y):
    return [path(f'M{x} {y}V{y + 24}Q{x} {y + 36} {x - 9} {y + 35}Q{x - 15} {y + 33} {x - 14} {y + 27}',
                 'none', '#6b4234', 6.4),
            path(f'M{x} {y}V{y + 24}Q{x} {y + 36} {x - 9} {y + 35}Q{x - 15} {y + 33} {x - 14} {y + 27}',
                 'none', '#b98460', 3.4)]


def armsShoulder(d):
    """The umbrella on the shoulder, the other sleeve hanging long."""
    f = sleeveFill(d)
    return [limb([(80, 200), (56, 262), (70, 322)], 28, f, CLOTH_LINE), sleeveCuff(71, 330, -12),
            limb([(180, 202), (214, 270), (188, 266)], 27, f, CLOTH_LINE),
            *shaft(190, 70, 178, 268)], [
        *crook(178, 262),
        fist(176, 262, 186), sleeveCuff(194, 264, 84)]


def armsUpright(d):
    """Both hands at the handle, the umbrella straight above."""
    f = sleeveFill(d)
    return [limb([(79, 202), (66, 292), (124, 280)], 28, f, CLOTH_LINE),
            limb([(181, 202), (204, 282), (168, 262)], 27, f, CLOTH_LINE),
            *shaft(168, 60, 150, 272)], [
        *crook(150, 266),
        fist(150, 276, 4), fist(153, 257, 184), sleeveCuff(131, 281, 84), sleeveCuff(171, 258, -82)]


def armsCane(d):
    """The closed umbrella before her, both sleeves on its handle."""
    f = sleeveFill(d)
    return [umbrellaClosed(130, 292, 170),
            limb([(79, 202), (56, 284), (108, 296)], 28, f, CLOTH_LINE),
            limb([(181, 202), (204, 284), (152, 296)], 28, f, CLOTH_LINE)], [
        fist(130, 300, 0), fist(131, 287, 180, 0),
        sleeveCuff(113, 296, 78), sleeveCuff(148, 294, -78)]


# ---- Lessa ----

VEST, VEST_SHADE, VEST_LINE = '#efe0c4', '#d2b994', '#84684c'
PLAID, PLAID_SHADE = '#7c4a4a', '#5a3038'
BOOK, BOOK_DARK, BRASS = '#3f6f74', '#284c54', '#e8bc58'


def lessaBackHair(d):
    c = HAIR['lessa']
    fill = d.linear([(0, c['dark']), (1, '#532a22')], 0, 80, 0, 180, True)
    return [path('M130 36C84 36 68 76 70 118C70 138 66 152 74 164C86 171 98 168 104 162L156 162'
                 'C162 168 174 171 186 164C194 152 190 138 190 118C192 76 176 36 130 36Z', fill,
                 c['line'], 1.8)]


def lessaFrontHair(d):
    c = HAIR['lessa']
    fill = hairFill(d, 'lessa')
    side = d.linear([(0, c['light']), (1, c['main'])], 0, 90, 0, 178, True)
    sideDark = d.linear([(0, c['main']), (1, c['dark'])], 0, 90, 0, 178, True)
    return [
        path('M78 90C66 116 72 138 67 158C75 169 89 167 96 157C89 146 84 130 90 104Z', side,
             c['line'], 1.6),
        path('M182 90C194 116 188 138 193 158C185 169 171 167 164 157C171 146 176 130 170 104Z',
             sideDark, c['line'], 1.6),
        path('M80 126C78 140 80 150 77 160M181 126C182 140 180 150 183 160', 'none', c['line'], 1, .6),
        path('M73 124C66 70 90 33 130 33C170 33 194 70 187 124C181 116 178 104 176 92'
             'C168 100 158 104 150 105C152 99 152 92 149 86C138 99 122 105 104 106'
             'C107 101 109 95 109 90C100 98 90 110 73 124Z', fill, c['line'], 1.8),
        path('M86 78C94 64 108 57 122 56L121 63C109 65 97 72 90 86Z'
             'M129 55.5C146 56 160 62 170 76L166 81C156 69 146 64 129 63Z', c['shine'], opacity=.75),
        path('M149 86C147 70 142 52 134 40M109 90C108 72 114 54 124 40', 'none', c['line'], 1, .5),
        # Two pins at her left.
        path('M166 82L178 92M164 88L175 98', 'none', '#3a201c', 3.8),
        path('M166 82L178 92M164 88L175 98', 'none', BRASS, 2.2),
    ]


def glasses():
    frame = '#7a3440'
    return [ellipse(x, 120, 18.5, 16.5, '#dff2ff', None, 1, .06) for x in (107, 153)] + [
        ellipse(107, 120, 18.5, 16.5, 'none', frame, 2.2),
        ellipse(153, 120, 18.5, 16.5, 'none', frame, 2.2),
        path('M125.5 117Q130 113.6 134.5 117M88.5 117L80 114M171.5 117L180 114', 'none', frame, 2.2),
        path('M96 112L102 107M142 112L148 107', 'none', '#ffffff', 2, .85)]


def lessaBody(d):
    vest = d.linear([(0, '#f8eeda'), (.5, VEST), (1, VEST_SHADE)], 70, 0, 195, 0, True)
    shirt = d.linear([(0, WHITE), (1, BLOUSE_SHADE)], 70, 0, 195, 0, True)
    return pleatedSkirt(d, PLAID, PLAID_SHADE, '#3c1c26') + [
        line(72, 400, 188, 400, '#c9957c', 2, .5), line(66, 424, 194, 424, '#c9957c', 1.4, .5),
        path('M112 170C94 175 80 181 74 196C70 222 80 262 88 320Q130 330 172 320'
             'C180 262 190 222 186 196C180 181 166 175 148 170Q130 186 112 170Z', shirt, CLOTH_LINE,
             1.6),
        path('M104 174C98 186 94 200 88 212C84 244 86 280 87 318Q130 330 173 318C174 280 176 244 172 212'
             'C166 200 162 186 156 174L130 236Z', vest, VEST_LINE, 1.6),
        path('M104 176L130 238L156 176', 'none', '#8a4a4a', 3), path('M87 310Q130 322 173 310', 'none',
                                                                    VEST_LINE, 1.1, .8),
        path('M116 168L104 182L122 200L130 188L138 200L156 182L144 168L130 184Z', WHITE, CLOTH_LINE,
             1.4),
        path('M130 194L118 188V204L130 198L142 204V188Z', '#a8434c', '#66222e', 1.4),
        path('M128 198L122 222L130 230L138 222L132 198Z', '#a8434c', '#66222e', 1.4),
        ellipse(130, 196.5, 4, 4.4, '#c4606a', '#66222e', 1.3),
    ]


def book(x, y, turn, w=66, h=84):
    return group([
        rect(-w / 2 + 4, -h / 2 + 3, w, h, '#f3ead2', '#6b5a44', 1.4, r=2),
        rect(-w / 2, -h / 2, w, h, BOOK, '#1b343c', 1.7, r=3),
        rect(-w / 2, -h / 2, 10, h, BOOK_DARK, r=3),
        rect(-w / 2 + 17, -h / 2 + 9, w - 25, h - 18, 'none', BRASS, 1.5, r=2),
        path('M4.5 -20C13 -7 15 0 15 5A10.5 10.5 0 0 1 -6 5C-6 0 -4 -7 4.5 -20Z', BRASS, '#8d6a2c', 1.1),
        path('M-1 6A6 6 0 0 0 4 11', 'none', '#fff3cf', 1.6),
    ], f'translate({x} {y}) rotate({turn})')


def openBook(x, y):
    return group([
        path('M-58 -34L-4 -22V40L-60 26Z', BOOK, '#1b343c', 1.7),
        path('M58 -34L4 -22V40L60 26Z', BOOK_DARK, '#1b343c', 1.7),
        path('M-4 -22Q0 -18 4 -22V40Q0 44 -4 40Z', '#1f3d45', '#1b343c', 1.4),
        path('M-56 -35Q-26 -38 0 -24Q26 -38 56 -35L57 -31Q28 -34 0 -20Q-28 -34 -57 -31Z', '#fbf3de',
             '#6b5a44', 1.2),
        path('M-50 -22L-12 -13V28L-52 18Z', 'none', BRASS, 1.4),
        path('M50 -22L12 -13V28L52 18Z', 'none', BRASS, 1.2, .7)], f'translate({x} {y})')


def keys(x, y, scale=1):
    def key(turn):
        return group([line(0, 15, 0, 40, '#7d5c22', 5), line(0, 15, 0, 40, BRASS, 2.8),
                      path('M0 30H7M0 37H8', 'none', '#7d5c22', 4.2), path('M0 30H6.5M0 37H7.5', 'none',
                                                                          BRASS, 2.2),
                      ellipse(0, 13, 5.6, 5.6, 'none', '#7d5c22', 4.6), ellipse(0, 13, 5.6, 5.6, 'none',
                                                                              BRASS, 2.6)],
                     f'rotate({turn})')
    return group([key(34), key(-30), key(2), ellipse(0, 0, 10, 10, 'none', '#5e6678', 4),
                  ellipse(0, 0, 10, 10, 'none', '#dfe6f2', 2)], f'translate({x} {y}) scale({scale})')


def shirtSleeve(d):
    return d.linear([(0, WHITE), (1, BLOUSE_SHADE)], 50, 0, 210, 0, True)


def cuff(x, y, turn):
    return group([rect(-11, -6, 22, 12, '#f4f7fd', CLOTH_LINE, 1.4, r=3)],
                 f'translate({x} {y}) rotate({turn})')


LESSA_DOWN = 20


def lessaParts(d, arms, mood, tilt):
    before, after = arms(d)
    turn = f'rotate({tilt} {CENTRE} {MOUTH_Y})'
    head = group(face(d, 'lessa', mood) + glasses() + lessaFrontHair(d), turn)
    return [group(lessaBackHair(d), turn), *lessaBody(d), *neck(), *before, head, *after]


def lessa(name, arms, mood, tilt):
    d = Drawing(260, 440)
    d.add(group(lessaParts(d, arms, mood, tilt), f'translate(0 {LESSA_DOWN})'))
    d.save(name)


def armsBook(d):
    """A book held to the breast with both arms; the keys hang from her belt."""
    s = shirtSleeve(d)
    return [keys(168, 326, .8)], [
        book(131, 256, -6),
        limb([(80, 202), (52, 290), (120, 286)], 25, s, CLOTH_LINE), cuff(124, 285, 84),
        fist(138, 284, 4),
        limb([(180, 202), (206, 262), (160, 262)], 25, s, CLOTH_LINE), cuff(156, 262, -84),
        fist(144, 260, 182)]


def armsKeys(d):
    """The found keys held up; the book under the other arm."""
    s = shirtSleeve(d)
    raised = 'M181 203C190 236 202 274 216 266C228 258 226 226 222 202'
    return [], [
        book(96, 290, 8, 56, 76),
        limb([(80, 202), (50, 282), (88, 308)], 25, s, CLOTH_LINE), cuff(93, 311, 104),
        fist(105, 314, 12),
        path(raised, 'none', CLOTH_LINE, 28), path(raised, 'none', s, 25), cuff(221, 196, 4),
        keys(221, 186, .95), fist(221, 180, 0)]


def armsOpenBook(d):
    """She hides as much of herself as an open book can hide."""
    s = shirtSleeve(d)
    return [keys(92, 326, .8)], [
        limb([(80, 202), (46, 280), (84, 268)], 25, s, CLOTH_LINE),
        limb([(180, 202), (214, 280), (176, 268)], 25, s, CLOTH_LINE),
        cuff(80, 270, 74), cuff(180, 270, -74), openBook(130, 244), fist(83, 252, 0), fist(177, 252, 180)]


def calm(**changes):
    return dict(dict(eyes='open', brows=(0, 0), blush=.42), **changes)


def main():
    belune('KDS012', armsShoulder, calm(), -3, [lambda d: umbrellaOpen(d, 134, 122, 7, .95)])
    belune('KDS013', armsUpright, calm(eyes='closed', brows=(2, 0), blush=.6), 4,
           [lambda d: umbrellaOpen(d, 130, 120, 0, .99)])
    belune('KDS015', armsCane, calm(eyes='wide', brows=(3, -1)), -5)
    lessa('KDS022', armsBook, calm(brows=(0, -1.2)), 2)
    lessa('KDS024', armsKeys, calm(eyes='closed', brows=(3, 0), blush=.55), -4)
    lessa('KDS025', armsOpenBook, calm(eyes='aside', brows=(1, 2), blush=.8), 3)
    mouthStrip('Kds01_a')
    mouthStrip('Kds02_a')
    x = CENTRE - CELL[0] // 2
    lines = ['# Where a mouth strip (three cells of 32 by 24: A closed, B half open, C open) lies on',
             '# its character\'s sprites, from their left top corner; the same in every pose.',
             '# STRIP   X    Y  SPRITES',
             f'Kds01_a  {x}  {MOUTH_Y - 12}  KDS012 KDS013 KDS015',
             f'Kds02_a  {x}  {MOUTH_Y - 12 + LESSA_DOWN}  KDS022 KDS024 KDS025', '']
    from svg import FOLDER
    (FOLDER / 'mouths.txt').write_text('\n'.join(lines))


if __name__ == '__main__':
    main()
