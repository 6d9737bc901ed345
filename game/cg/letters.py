"""The mark of the story, a drop, and letters of strokes: drawings hold no fonts."""

from svg import ellipse, path

# Letters of one unit's height, as strokes; the width follows the name.
LETTERS = {
    'A': (.86, 'M0 1L.43 0L.86 1M.16 .66H.7'), 'B': (.7, 'M0 0V1H.4C.8 1 .8 .48 .4 .48H0M0 0H.36C.7 0 .7 .48 .36 .48'),
    'E': (.6, 'M.6 0H0V1H.6M0 .48H.5'), 'I': (.0, 'M0 0V1'), 'L': (.56, 'M0 0V1H.56'),
    'O': (.86, 'M.43 0C-.14 0 -.14 1 .43 1C1 1 1 0 .43 0Z'), 'N': (.76, 'M0 1V0L.76 1V0'), 'R': (.68, 'M0 1V0H.38C.78 0 .78 .54 .38 .54H0M.36 .54L.68 1'),
    'D': (.76, 'M0 0V1H.28C.9 1 .9 0 .28 0Z'), 'K': (.68, 'M0 0V1M.64 0L0 .6M.22 .42L.68 1'),
    'P': (.68, 'M0 1V0H.38C.78 0 .78 .54 .38 .54H0'), 'Y': (.78, 'M0 0L.39 .5L.78 0M.39 .5V1'),
    'S': (.62, 'M.6 .16C.5 -.06 .04 -.08 .04 .25C.04 .6 .62 .4 .62 .74C.62 1.08 .1 1.06 0 .82'),
    'V': (.84, 'M0 0L.42 1L.84 0'), 'Q': (.96, 'M.48 0C-.16 0 -.16 1 .48 1C1.12 1 1.12 0 .48 0M.6 .74L.94 1.06'),
}


def drop(x, y, size, fill, outline=None, width=1.5, wide=1.0):
    s, a, b, c = size, size * .3 * wide, size * .82 * wide, size * .45 * wide
    return path(f'M{x} {y - s * 1.25:.1f}'
                f'C{x + a:.1f} {y - s * .6:.1f} {x + b:.1f} {y - s * .25:.1f} {x + b:.1f} {y + s * .25:.1f}'
                f'C{x + b:.1f} {y + s * .72:.1f} {x + c:.1f} {y + s:.1f} {x} {y + s:.1f}'
                f'C{x - c:.1f} {y + s:.1f} {x - b:.1f} {y + s * .72:.1f} {x - b:.1f} {y + s * .25:.1f}'
                f'C{x - b:.1f} {y - s * .25:.1f} {x - a:.1f} {y - s * .6:.1f} {x} {y - s * 1.25:.1f}Z',
                fill, outline, width)


def lettering(text, x, y, size, gap, colour, width, dropFill=None, dropLine=None):
    """With a fill, an O becomes a drop. Gives the elements and the width."""
    parts, left = [], x
    for letter in text:
        if letter == 'O' and dropFill:
            parts.append(drop(left + size * .41, y + size * .555, size * .47, dropFill, dropLine or colour, width * .8))
            parts.append(ellipse(left + size * .28, y + size * .64, size * .07, size * .12, '#ffffff', opacity=.9))
            left += size * .82 + gap
            continue
        wide, d = LETTERS[letter]
        parts.append(f'<path d="{d}" transform="translate({left:.1f} {y}) scale({size})" fill="none" stroke="{colour}" '
                     f'stroke-width="{width / size:.3f}" stroke-linecap="round" stroke-linejoin="round"/>')
        left += wide * size + gap
    return parts, left - gap - x
