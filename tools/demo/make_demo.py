#!/usr/bin/env python3
"""Makes the folder of sample tracks: about thirty short pieces in every supported format, well and badly tagged.

usage: make_demo.py FOLDER [--only TEXT]

FOLDER is left alone when it holds the present samples already, and refused when it holds something else.
--only TEXT makes only the tracks whose path contains TEXT, without the spoilt files; the folder does not count as complete.
Needs ffmpeg. The result is the same on every run of one version of ffmpeg.
"""
import argparse
import hashlib
import os
import shutil
import subprocess
import sys
import tempfile
import unicodedata
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

import synth
import tracks

STAMP = '.velmora-demo'  # its text names the version of the samples
# How a kind is encoded: extension, sample rate, arguments of ffmpeg, and whether a picture can be put in by it.
ENCODINGS = {
    'mp3-320': ('mp3', 44100, ['-c:a', 'libmp3lame', '-b:a', '320k'], True),
    'mp3-192': ('mp3', 44100, ['-c:a', 'libmp3lame', '-b:a', '192k', '-id3v2_version', '3'], True),
    'mp3-128': ('mp3', 44100, ['-c:a', 'libmp3lame', '-b:a', '128k', '-write_xing', '0'], True),
    'mp3-v0': ('mp3', 48000, ['-c:a', 'libmp3lame', '-q:a', '0', '-id3v2_version', '3'], True),
    'mp3-v2': ('mp3', 44100, ['-c:a', 'libmp3lame', '-q:a', '2'], True),
    'flac': ('flac', 44100, ['-c:a', 'flac', '-sample_fmt', 's16'], True),
    'flac24': ('flac', 48000, ['-c:a', 'flac', '-sample_fmt', 's32', '-bits_per_raw_sample', '24'], True),
    'wav': ('wav', 44100, ['-c:a', 'pcm_s16le'], False),
    'aiff': ('aiff', 44100, ['-c:a', 'pcm_s16be', '-write_id3v2', '1'], True),
    'aiff24': ('aif', 48000, ['-c:a', 'pcm_s24be', '-write_id3v2', '1'], True),
    'm4a': ('m4a', 44100, ['-c:a', 'aac', '-b:a', '256k'], True),
    'alac': ('m4a', 44100, ['-c:a', 'alac'], True),
    'aac': ('aac', 44100, ['-c:a', 'aac', '-b:a', '192k', '-write_id3v2', '1'], False),
}
# The generic names of tags that a container knows by another one.
TAG_NAMES = {
    'mp3': {'bpm': 'TBPM', 'key': 'TKEY'},
    'aiff': {'bpm': 'TBPM', 'key': 'TKEY'},
    'aif': {'bpm': 'TBPM', 'key': 'TKEY'},
    'flac': {'bpm': 'BPM', 'key': 'INITIALKEY'},
    'm4a': {'bpm': 'tmpo'},
}


def ffmpeg(*arguments):
    command = ['ffmpeg', '-nostdin', '-v', 'error', '-y', *map(str, arguments)]
    result = subprocess.run(command, capture_output=True, text=True, check=False)
    if result.returncode != 0:
        raise RuntimeError(f'ffmpeg failed: {result.stderr.strip()}')


def path_of(folder, sample):
    name = unicodedata.normalize('NFD', sample.name) if sample.name == tracks.DECOMPOSED else sample.name
    return folder / sample.folder / f'{name}.{ENCODINGS[sample.kind][0]}'


def make_cover(sample, path):
    size = sample.cover_size
    first, second = (colour.replace('#', '0x') for colour in sample.cover)
    ffmpeg('-f', 'lavfi', '-i',
           f'gradients=s={size}x{size}:c0={first}:c1={second}:x0=0:y0=0:x1={size}:y1={size}:nb_colors=2:duration=1:seed=1',
           '-frames:v', '1', '-q:v', '3', '-bitexact', path)


def make_track(folder, scratch, number, sample):
    extension, rate, encoder, takes_picture = ENCODINGS[sample.kind]
    path = path_of(folder, sample)
    loop = synth.Loop(sample.tempo, sample.key, sample.style, has_arpeggio=number % 3 != 1)
    graph = synth.filter_graph(loop, sample.seconds, rate)
    inputs, maps = [], ['-map', '[music]']
    if sample.cover:
        assert takes_picture, sample.name
        cover = scratch / f'{number}.jpg'
        make_cover(sample, cover)
        inputs = ['-i', cover]
        maps += ['-map', '0:v', '-c:v', 'copy', '-disposition:v', 'attached_pic']
    names = TAG_NAMES.get(extension, {})
    metadata = [part for name, value in sample.tags.items() for part in ('-metadata', f'{names.get(name, name)}={value}')]
    if not sample.tags and extension == 'mp3':
        metadata = ['-id3v2_version', '0']
    ffmpeg(*inputs, '-filter_complex', graph, *maps, *encoder, *metadata, '-threads', '1', '-bitexact', path)


def id3v1_in_windows_1251(title, artist, album, year, comment, genre):
    fields = [text.encode('cp1251').ljust(length, b'\0')[:length]
              for text, length in ((title, 30), (artist, 30), (album, 30), (year, 4), (comment, 30))]
    return b'TAG' + b''.join(fields) + bytes([genre])


def spoil(folder):
    """Adds what no encoder makes."""
    name, fields = tracks.WINDOWS_1251
    with open(folder / name, 'ab') as file:
        file.write(id3v1_in_windows_1251(*fields))
    source, copy = tracks.DUPLICATE
    shutil.copyfile(folder / source, folder / copy)
    source, cut, share = tracks.TRUNCATED
    data = (folder / source).read_bytes()
    (folder / cut).write_bytes(data[:int(len(data) * share)])
    (folder / tracks.EMPTY).write_bytes(b'')
    (folder / tracks.TEXT[0]).write_text(tracks.TEXT[1], encoding='utf-8')
    (folder / tracks.COMPANION[0]).write_bytes(tracks.COMPANION[1])


def version():
    sources = sorted(Path(__file__).resolve().parent.glob('*.py'))
    return hashlib.sha256(b''.join(path.read_bytes() for path in sources)).hexdigest()


def make_all(folder, samples):
    for name in {sample.folder for sample in samples}:
        (folder / name).mkdir(parents=True, exist_ok=True)
    workers = os.cpu_count() or 2
    with tempfile.TemporaryDirectory() as scratch, ThreadPoolExecutor(workers) as pool:
        jobs = [pool.submit(make_track, folder, Path(scratch), number, sample) for number, sample in enumerate(samples)]
        for done, job in enumerate(jobs, start=1):
            job.result()
            if sys.stderr.isatty():
                print(f'\rSample tracks: {done} of {len(jobs)}', end='', file=sys.stderr, flush=True)
    if sys.stderr.isatty():
        print(file=sys.stderr)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument('folder', type=Path)
    parser.add_argument('--only', default='')
    arguments = parser.parse_args()
    folder = arguments.folder.absolute()
    stamp = folder / STAMP
    if stamp.is_file() and stamp.read_text() == version():
        return 0
    if folder.exists() and any(folder.iterdir()) and not stamp.is_file():
        print(f'{folder} holds something else; name an empty folder', file=sys.stderr)
        return 1
    samples = [sample for sample in tracks.SAMPLES if arguments.only in f'{sample.folder}/{sample.name}']
    if not samples:
        print(f'no track of that name: {arguments.only}', file=sys.stderr)
        return 1
    print(f'Making {len(samples)} sample tracks in {folder}', file=sys.stderr)
    # Made beside and put in place when complete, so that a stopped run leaves no half folder.
    folder.parent.mkdir(parents=True, exist_ok=True)
    fresh = Path(tempfile.mkdtemp(prefix=f'{folder.name}-', dir=folder.parent))
    try:
        fresh.chmod(0o755)
        make_all(fresh, samples)
        if not arguments.only:
            spoil(fresh)
        (fresh / STAMP).write_text(arguments.only and 'partial' or version())
        shutil.rmtree(folder, ignore_errors=True)
        fresh.rename(folder)
    finally:
        shutil.rmtree(fresh, ignore_errors=True)
    return 0


if __name__ == '__main__':
    try:
        sys.exit(main())
    except (RuntimeError, OSError) as error:
        print(f'make_demo.py: {error}', file=sys.stderr)
        sys.exit(1)
