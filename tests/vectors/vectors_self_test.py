#!/usr/bin/env python3
"""Shows that vectors_test can fail: each folder below holds one thing that it must notice."""

import json
import pathlib
import subprocess
import sys
import tempfile

GOOD = {"id": "t-1", "kind": "substring", "ambiguous": False,
        "text": "616263", "from": 0, "to": 1, "expect": "6162"}

# Cases of topic "strings" (or the file's text), the last line, the status, a word of the output.
FOLDERS = [
    ([GOOD], "1 passed, 0 failed, 0 skipped", 0, ""),
    ([{**GOOD, "expect": "6163"}], "0 passed, 1 failed, 0 skipped", 1, "t-1: expect: 2 bytes"),
    ([GOOD, {**GOOD, "id": "t-2", "to": 2}], "1 passed, 1 failed, 0 skipped", 1, "t-2: expect"),
    ([{**GOOD, "ambiguous": True}], "0 passed, 0 failed, 1 skipped", 0,
     "skipped, ambiguous, strings: substring (1)"),
    ([{**GOOD, "kind": "juggle"}], "0 passed, 1 failed, 0 skipped", 1, "t-1: the kind"),
    ([{**GOOD, "kind": "juggle", "ambiguous": True}], "0 passed, 1 failed, 0 skipped", 1,
     "in no list"),
    ([{key: GOOD[key] for key in ("id", "kind", "ambiguous")}], "0 passed, 1 failed, 0 skipped", 1,
     "t-1: cannot be run"),
    ([{**GOOD, "text": "6g"}], "0 passed, 1 failed, 0 skipped", 1, "hexadecimal"),
    ([{"id": "t-1"}], None, 2, ""),
    ("{", None, 2, ""),
    (None, None, 2, ""),
]


def main():
    program = sys.argv[1]
    failures = 0
    for cases, last, status, word in FOLDERS:
        with tempfile.TemporaryDirectory() as folder:
            if cases is not None:
                text = cases if isinstance(cases, str) else json.dumps(
                    {"topic": "strings", "about": "", "cases": cases})
                (pathlib.Path(folder) / "14_strings.json").write_text(text)
            done = subprocess.run([program, folder], capture_output=True, text=True, check=False)
        lines = done.stdout.splitlines()
        ok = done.returncode == status and word in done.stdout
        ok = ok and (lines[-1] == last if last else not lines and done.stderr != "")
        if not ok:
            failures += 1
            print(f"{cases}: status {done.returncode}, expected {status}\n"
                  f"{done.stdout}{done.stderr}")
    missing = subprocess.run([program, "/nonexistent"], capture_output=True, check=False)
    if missing.returncode != 2:
        failures += 1
        print(f"a missing folder: status {missing.returncode}, expected 2")
    print(f"{len(FOLDERS) + 1} folders, {failures} not answered as they should be")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
