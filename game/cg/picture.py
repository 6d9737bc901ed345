#!/usr/bin/env python3
"""Takes docs/picture.png and docs/title.png from the game as it runs: the title, and a line of the
story's first morning.

    picture.py BUILD

BUILD holds bin/qvrun and the game folder vorlane/. Run it when one of these pictures changed.
"""

import pathlib
import subprocess
import sys
import tempfile

DOCS = pathlib.Path(__file__).parent.parent.parent / 'docs'
LINES_BEFORE = 3
PLAY = '''ready
sleep 2000
shot title.png
click 320 240
''' + 'ready\nclick 320 240\n' * LINES_BEFORE + 'ready\nsleep 200\nshot picture.png\nquit\n'


def main():
    build = pathlib.Path(sys.argv[1])
    with tempfile.TemporaryDirectory() as name:
        script = pathlib.Path(name) / 'picture.play'
        script.write_text(PLAY)
        subprocess.run([build / 'bin' / 'qvrun', '--play', script, '--headless', '--simulate', '1', '--shots', DOCS,
                        '--user', pathlib.Path(name) / 'player', build / 'vorlane'], check=True)


if __name__ == '__main__':
    main()
