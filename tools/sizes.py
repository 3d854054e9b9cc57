#!/usr/bin/env python3
"""Fails on sources of more than 600 lines; reports how long files and functions are.

usage: sizes.py [--root DIR]

Functions are measured only where universal-ctags is installed, and reported only: a table may be long.
"""
import argparse
import json
import shutil
import subprocess
import sys
from pathlib import Path

MOST_LINES = 600  # beyond this a file has been more than one noun every time
LONG_FUNCTION = 60


def share(values, fraction):
    ordered = sorted(values)
    return ordered[min(len(ordered) - 1, int(fraction * len(ordered)))]


def long_functions(root, files):
    """(length, place) of the functions above LONG_FUNCTION lines; None where they cannot be measured."""
    ctags = shutil.which('ctags')
    if not ctags or 'Universal' not in subprocess.run([ctags, '--version'], capture_output=True, text=True).stdout:
        return None
    answer = subprocess.run([ctags, '--langmap=C++:+.h', '--kinds-C++=f', '--fields=+ne', '--output-format=json', '-f', '-',
                             '-L', '-'], cwd=root, input='\n'.join(files), capture_output=True, text=True, check=True)
    tags = [json.loads(line) for line in answer.stdout.splitlines() if line.startswith('{')]
    lengths = [(tag['end'] - tag['line'] + 1, f'{tag["path"]}:{tag["line"]} {tag["name"]}') for tag in tags if 'end' in tag]
    return sorted((entry for entry in lengths if entry[0] > LONG_FUNCTION), reverse=True)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument('--root', type=Path, default=Path(__file__).resolve().parent.parent)
    root = parser.parse_args().root
    lines = {path.relative_to(root).as_posix(): len(path.read_bytes().splitlines())
             for path in sorted((root / 'src').rglob('*')) if path.suffix in ('.h', '.cpp')}
    if not lines:
        print(f'no sources below {root / "src"}')
        return 1
    counts = list(lines.values())
    print(f'{len(lines)} files: median {share(counts, 0.5)} lines, nine in ten up to {share(counts, 0.9)}, '
          f'longest {max(counts)}')
    functions = long_functions(root, list(lines))
    if functions is None:
        print('functions not measured: universal-ctags is not installed')
    for length, place in functions or []:
        print(f'function of {length} lines: {place}')
    too_long = [name for name, count in lines.items() if count > MOST_LINES]
    for name in too_long:
        print(f'{name}: {lines[name]} lines, {MOST_LINES} are the most')
    return 1 if too_long else 0


if __name__ == '__main__':
    sys.exit(main())
