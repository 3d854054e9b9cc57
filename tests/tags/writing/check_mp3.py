#!/usr/bin/env python3
"""check_mp3.py ORIGINAL CHANGED FRAME=TEXT...: whether another reader finds exactly these frames in the changed file
("-" as the text: whatever it is), and its decoded sound and its packets are the original's."""

import subprocess
import sys

import mutagen.id3


def sound(path, *options):
    command = ["ffmpeg", "-v", "error", "-i", path, "-map", "0:a", *options, "-f", "md5", "-"]
    return subprocess.run(command, check=True, capture_output=True).stdout


original, changed, *expected = sys.argv[1:]
frames = dict(pair.split("=", 1) for pair in expected)
tag = mutagen.id3.ID3(changed, translate=False)
assert tag.version == (2, 3, 0), tag.version
assert sorted(frame.FrameID for frame in tag.values()) == sorted(frames), tag.keys()
for frame in tag.values():
    text = frames[frame.FrameID]
    assert text == "-" or frame.text == [text], (frame, text)
assert sound(changed) == sound(original), "decoded sound differs"
assert sound(changed, "-c", "copy") == sound(original, "-c", "copy"), "packets differ"
