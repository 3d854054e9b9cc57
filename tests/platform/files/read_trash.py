"""Reads the info files of a trash as other programs do. Prints for each: the kept file's name and the path it came from,
both in hexadecimal, and the seconds since its deletion."""

import datetime
import os
import sys
import urllib.parse

SUFFIX = b".trashinfo"

info = os.path.join(os.fsencode(sys.argv[1]), b"info")
for name in os.listdir(info):
    assert name.endswith(SUFFIX), name
    with open(os.path.join(info, name), "rb") as file:
        lines = file.read().split(b"\n")
    assert lines[0] == b"[Trash Info]" and lines[-1] == b"" and len(lines) == 4, lines
    fields = dict(line.split(b"=", 1) for line in lines[1:3])
    assert set(fields) == {b"Path", b"DeletionDate"}, fields
    assert fields[b"Path"].isascii(), fields
    deleted = datetime.datetime.strptime(fields[b"DeletionDate"].decode(), "%Y-%m-%dT%H:%M:%S")
    age = int((datetime.datetime.now() - deleted).total_seconds())
    print(name[: -len(SUFFIX)].hex(), urllib.parse.unquote_to_bytes(fields[b"Path"]).hex(), age)
