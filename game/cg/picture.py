#!/usr/bin/env python3
"""Makes docs/picture.png, a screen of the story's first morning, and docs/title.png.

    picture.py BUILD

BUILD holds bin/qvtool and the built pictures in vorlane/. Run it when one of these pictures changed.
"""

import base64
import pathlib
import subprocess
import sys
import tempfile

HERE = pathlib.Path(__file__).parent
DOCS = HERE.parent.parent / 'docs'
SCREEN = [('cg/KBA014', '0,0'), ('cg/KDS012', '190,48'), ('cg/Kds012_a', '304,180,1,32'),
          ('dat/mframeR', '0,352,tint'), ('dat/mframe', '0,352'), ('dat/Blink', '312,455,0,16')]
NAME = 'ベルーネ'
LINES = ['「半分、貸してあげる」', '「そのかわり、夏休みの補習、最後までつきあってよね」']


def lettering():
    text = ''
    for y, size, words in [(394, 20, NAME)] + [(424 + i * 24, 18, t) for i, t in enumerate(LINES)]:
        for shift, colour in ((1.5, '#000000'), (0, '#ffffff')):
            text += (f'<text x="{22 + shift}" y="{y + shift}" font-size="{size}" fill="{colour}" '
                     f'font-family="IPAPMincho, IPAMincho">{words}</text>')
    return text


def main():
    build = pathlib.Path(sys.argv[1])
    tool = build / 'bin' / 'qvtool'
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        arguments = []
        for picture, place in SCREEN:
            png = folder / (pathlib.Path(picture).name + '.png')
            subprocess.run([tool, 'mcg', 'decode', build / 'vorlane' / (picture + '.mcg'), png],
                           check=True)
            arguments += [png, place]
        subprocess.run([sys.executable, HERE / 'screen.py', folder / 'screen.png', *arguments],
                       check=True)
        data = base64.b64encode((folder / 'screen.png').read_bytes()).decode()
        (folder / 'picture.svg').write_text(
            '<svg xmlns="http://www.w3.org/2000/svg" xmlns:xlink="http://www.w3.org/1999/xlink" '
            'width="640" height="480"><image width="640" height="480" '
            f'xlink:href="data:image/png;base64,{data}"/>{lettering()}</svg>')
        subprocess.run([tool, 'mcg', 'encode', '--true-colour', folder / 'picture.svg',
                        folder / 'picture.mcg'], check=True)
        subprocess.run([tool, 'mcg', 'decode', folder / 'picture.mcg', DOCS / 'picture.png'],
                       check=True)
    subprocess.run([tool, 'mcg', 'decode', build / 'vorlane/cg/KAI001.mcg', DOCS / 'title.png'],
                   check=True)


if __name__ == '__main__':
    main()
