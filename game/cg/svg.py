"""The few shapes that all drawings of the sample are made of, as SVG text."""

import math
import pathlib

FOLDER = pathlib.Path(__file__).parent


class Drawing:
    """Collects elements and definitions; `save` writes NAME.svg beside this file."""

    def __init__(self, width, height):
        self.width, self.height = width, height
        self.parts, self.definitions, self.count = [], [], 0

    def add(self, *parts):
        self.parts.extend(parts)

    def name(self):
        self.count += 1
        return f'd{self.count}'

    def define(self, text):
        self.definitions.append(text)

    def linear(self, stops, x1=0, y1=0, x2=0, y2=1, absolute=False):
        """A gradient along a line; stops: (offset, colour) or (offset, colour, opacity)."""
        units = ' gradientUnits="userSpaceOnUse"' if absolute else ''
        name = self.name()
        self.define(f'<linearGradient id="{name}" x1="{x1}" y1="{y1}" x2="{x2}" y2="{y2}"{units}>'
                    f'{stopList(stops)}</linearGradient>')
        return f'url(#{name})'

    def radial(self, stops):
        name = self.name()
        self.define(f'<radialGradient id="{name}">{stopList(stops)}</radialGradient>')
        return f'url(#{name})'

    def clip(self, shape):
        name = self.name()
        self.define(f'<clipPath id="{name}">{shape}</clipPath>')
        return f'url(#{name})'

    def glow(self, x, y, rx, ry, colour, opacity):
        fill = self.radial([(0, colour, opacity), (.4, colour, opacity * .45), (1, colour, 0)])
        return ellipse(x, y, rx, ry, fill)

    def text(self):
        definitions = f'<defs>{"".join(self.definitions)}</defs>\n' if self.definitions else ''
        return (f'<svg xmlns="http://www.w3.org/2000/svg" width="{self.width}" '
                f'height="{self.height}" viewBox="0 0 {self.width} {self.height}">\n'
                f'{definitions}' + '\n'.join(self.parts) + '\n</svg>\n')

    def save(self, name):
        path = FOLDER / f'{name}.svg'
        text = self.text()
        # An untouched file keeps its time, so that the build makes only what changed.
        if not path.exists() or path.read_text() != text:
            path.write_text(text)


def stopList(stops):
    return ''.join(
        f'<stop offset="{s[0]}" stop-color="{s[1]}"' +
        (f' stop-opacity="{s[2]:.3g}"' if len(s) > 2 else '') + '/>' for s in stops)


def number(value):
    return f'{value:.1f}'.rstrip('0').rstrip('.') if isinstance(value, float) else str(value)


def paint(fill, line, width, opacity):
    text = f' fill="{fill}"'
    if line:
        text += f' stroke="{line}" stroke-width="{width}" stroke-linejoin="round"'
        text += ' stroke-linecap="round"'
    if opacity < 1:
        text += f' opacity="{opacity:.3g}"'
    return text


def path(d, fill='none', line=None, width=1.6, opacity=1):
    return f'<path d="{d}"{paint(fill, line, width, opacity)}/>'


def polygon(points, fill, line=None, width=1.2, opacity=1):
    text = ' '.join(f'{x:.1f},{y:.1f}' for x, y in points)
    return f'<polygon points="{text}"{paint(fill, line, width, opacity)}/>'


def rect(x, y, w, h, fill, line=None, width=1.2, opacity=1, r=0):
    rounded = f' rx="{r}"' if r else ''
    return (f'<rect x="{number(x)}" y="{number(y)}" width="{number(w)}" height="{number(h)}"'
            f'{rounded}{paint(fill, line, width, opacity)}/>')


def ellipse(x, y, rx, ry, fill, line=None, width=1.2, opacity=1):
    return (f'<ellipse cx="{number(x)}" cy="{number(y)}" rx="{number(rx)}" ry="{number(ry)}"'
            f'{paint(fill, line, width, opacity)}/>')


def line(x1, y1, x2, y2, colour, width=1.0, opacity=1):
    return path(f'M{number(x1)} {number(y1)}L{number(x2)} {number(y2)}', 'none', colour, width,
                opacity)


def group(parts, transform='', opacity=1, clip=''):
    text = f' transform="{transform}"' if transform else ''
    if opacity < 1:
        text += f' opacity="{opacity}"'
    if clip:
        text += f' clip-path="{clip}"'
    return f'<g{text}>' + ''.join(parts) + '</g>'


def limb(points, width, fill, outline, edge=1.6):
    """A sleeve or an arm: a thick soft line with an outline."""
    d = 'M' + ' '.join(f'{x} {y}' for x, y in points[:1])
    if len(points) == 3:
        (_, _), (x1, y1), (x2, y2) = points
        d += f'Q{x1} {y1} {x2} {y2}'
    else:
        d += ''.join(f'L{x} {y}' for x, y in points[1:])
    return path(d, 'none', outline, width + 2 * edge) + path(d, 'none', fill, width)


def mix(a, b, t):
    """The colour between two "#rrggbb"."""
    va, vb = ([int(c[i:i + 2], 16) for i in (1, 3, 5)] for c in (a, b))
    return '#' + ''.join(f'{round(x + (y - x) * t):02x}' for x, y in zip(va, vb))


def polar(x, y, radius, degrees):
    angle = math.radians(degrees)
    return x + radius * math.cos(angle), y + radius * math.sin(angle)
