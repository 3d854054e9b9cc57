#!/usr/bin/env python3
"""Fails where the objects of the store call each other in a ring of more than two.

usage: storeorder.py [--root DIR]

An object calls what the code that builds it names: references and hooks alike, in the initialisers of LibraryConcerns
and the functions that they call. Objects that name one built after them are reported. Signals are no calls: the one
that sends them does not know who listens.
"""
import argparse
import re
import sys
from pathlib import Path

from layers import rings

MOST_IN_ONE_RING = 2
HEADER = 'src/core/library/LibraryConcerns.h'
WIRING = 'src/core/library/LibraryStoreWiring.cpp'


def body(text, start):
    """What stands between the bracket at or after start and its partner."""
    first = re.compile(r'[({]').search(text, start).start()
    depth = 0
    for place in range(first, len(text)):
        depth += {'(': 1, '{': 1, ')': -1, '}': -1}.get(text[place], 0)
        if depth == 0:
            return text[first + 1:place]
    return text[first + 1:]


def calls(header, wiring):
    """{object: objects that it calls} in the order in which they are built."""
    struct = re.sub(r'//.*', '', header[header.index('struct LibraryConcerns'):header.index('private:')])
    members = re.findall(r'^    [A-Z]\w+ (\w+);', struct, re.M)
    graph = {member: set() for member in members}
    for member in members:
        built = re.search(rf'^    [:,] {member}\(', wiring, re.M)
        code = body(wiring, built.start()) if built else ''
        for function in re.findall(r'(\w+Dependencies)\(\)', code):
            code += body(wiring, wiring.index('{', wiring.index(f'LibraryConcerns::{function}()')))
        named = set(re.findall(r'(?<![.\w])(\w+)\b', re.sub(r'//.*', '', code)))
        graph[member] = (named & set(members)) - {member}
    return graph


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument('--root', type=Path, default=Path(__file__).resolve().parent.parent)
    root = parser.parse_args().root
    graph = calls((root / HEADER).read_text(encoding='utf-8'), (root / WIRING).read_text(encoding='utf-8'))
    order = list(graph)
    for member, called in graph.items():
        for later in sorted(called, key=order.index):
            if order.index(later) > order.index(member):
                print(f'{member} calls {later}, which is built after it')
    found = rings(graph)
    longest = max((len(ring) for ring in found), default=0)
    print(f'{len(graph)} objects, {sum(map(len, graph.values()))} calls, {longest} objects in the longest ring')
    for ring in found:
        print('ring: ' + ' '.join(ring))
    return 1 if longest > MOST_IN_ONE_RING or not graph else 0


if __name__ == '__main__':
    sys.exit(main())
