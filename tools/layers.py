#!/usr/bin/env python3
"""Checks the includes under src/ against layers.txt, and draws the folders.

usage: layers.py [--root DIR] [--document FILE [--write]] [--picture | --dot]

Without an option it reports every fault, one per line, and the exit status is 1 if there is one:
an include against the arrows, a folder that layers.txt does not list, a ring among folders or files, among the leaf
folders of one library too (those that hold sources themselves), "..", an include that is not written from the include root, QCoro outside async, widgets outside ui and app.
--document FILE  also checks that the picture between the markers in FILE is the present one; --write puts it there.
--picture        prints the picture (Mermaid); --dot prints it for Graphviz.
"""
import argparse
import re
import sys
from collections import defaultdict
from pathlib import Path

BEGIN = '<!-- layers: begin (tools/layers.py --document docs/architecture.md --write) -->'
END = '<!-- layers: end -->'
SOURCES = {'.h', '.cpp'}
INCLUDE = re.compile(r'^[ \t]*#[ \t]*include[ \t]*(["<])([^">]+)[">]', re.M)
COMMENT = re.compile(r'/\*.*?\*/', re.S)
# Folders that alone may know a library, with the includes by which it is known.
KEPT_APART = {
    'QCoro': (('async',), re.compile(r'^(QCoro|qcoro)')),
    'Qt Widgets': (('ui', 'app'), re.compile(
        r'^(QtWidgets(/|$)|Q(\w*Widget|Application|MainWindow|\w*Dialog|Frame|Label|\w*Button|(Group|Combo|Check|\w*Spin)Box'
        r'|([HV]?Box|Grid|Form|Stacked)?Layout|Menu|MenuBar|ToolBar|ToolTip|StatusBar|LineEdit|\w*TextEdit|Splitter'
        r'|\w*Slider|ProgressBar|ScrollBar|\w*ScrollArea|\w*ItemDelegate|AbstractItemView|(Tree|Table|List|Header)View'
        r'|(Common|Proxy)?Style|StyleOption\w*|Completer|SystemTrayIcon|Graphics\w+)$)')),
}
WIDGETS_IN_CMAKE = re.compile(r'\bWIDGETS\b|Qt6::Widgets')


def read_layers(path):
    """{folder: folders that it may include} from lines "folder: folder folder"."""
    allowed = {}
    for line in path.read_text(encoding='utf-8').splitlines():
        name, colon, rest = line.partition('#')[0].partition(':')
        if colon:
            allowed[name.strip()] = set(rest.split())
    return allowed


def rings(graph):
    """The strongly connected components of more than one node (or with an edge to itself), each sorted."""
    index, low, stack, found = {}, {}, [], []
    for start in sorted(graph):
        if start in index:
            continue
        index[start] = low[start] = len(index)
        stack.append(start)
        walk = [(start, iter(sorted(graph.get(start, ()))))]
        while walk:
            node, successors = walk[-1]
            following = next(successors, None)
            if following is None:
                walk.pop()
                if walk:
                    low[walk[-1][0]] = min(low[walk[-1][0]], low[node])
                if low[node] == index[node]:
                    ring = []
                    while not ring or ring[-1] != node:
                        ring.append(stack.pop())
                    if len(ring) > 1 or node in graph.get(node, ()):
                        found.append(sorted(ring))
            elif following not in index:
                index[following] = low[following] = len(index)
                stack.append(following)
                walk.append((following, iter(sorted(graph.get(following, ())))))
            elif following in stack:
                low[node] = min(low[node], index[following])
    return found


class Tree:
    """The sources below one root with their includes, folded to the folders of layers.txt."""

    def __init__(self, root):
        self.src = root / 'src'
        self.allowed = read_layers(root / 'layers.txt')
        self.faults = []
        self.files = {}  # path below src: list of (quote, target)
        for path in sorted(self.src.rglob('*')):
            if path.suffix in SOURCES and path.is_file():
                text = COMMENT.sub('', path.read_text(encoding='utf-8', errors='replace'))
                self.files[path.relative_to(self.src).as_posix()] = INCLUDE.findall(text)
        self.file_edges = {name: set() for name in self.files}
        self.folder_edges = defaultdict(set)
        self.leaf_edges = defaultdict(set)  # within one library
        self.read_edges()

    def folder(self, name):
        """The listed folder that a file belongs to: the longest that matches; None if there is none."""
        matches = [listed for listed in self.allowed if name.startswith(listed + '/')]
        return max(matches, key=len, default=None)

    def read_edges(self):
        for name, includes in self.files.items():
            folder = self.folder(name)
            if folder is None:
                self.faults.append(f'{name}: its folder is not listed in layers.txt')
                continue
            self.folder_edges[folder] |= set()
            for quote, target in includes:
                self.read_include(name, folder, quote, target)

    def read_include(self, name, folder, quote, target):
        if '..' in target.split('/'):
            self.faults.append(f'{name}: include with "..": {target}')
            return
        for library, (owners, pattern) in KEPT_APART.items():
            if folder not in owners and pattern.match(target):
                self.faults.append(f'{name}: {library} is for {" and ".join(owners)} only: {target}')
        if target not in self.files:
            if quote == '"' and (self.src / name).parent.joinpath(target).is_file():
                self.faults.append(f'{name}: include not written from the include root: {target}')
            return
        self.file_edges[name].add(target)
        other = self.folder(target)
        if other == folder:
            leaf, other_leaf = name.rpartition('/')[0], target.rpartition('/')[0]
            if leaf != other_leaf:
                self.leaf_edges[leaf].add(other_leaf)
        if other is None or other == folder:
            return
        self.folder_edges[folder].add(other)
        if other not in self.allowed[folder]:
            self.faults.append(f'{name}: {folder} may not include {other}: {target}')

    def check(self):
        faults = list(self.faults)
        for path in sorted(self.src.rglob('CMakeLists.txt')):
            folder = self.folder(path.relative_to(self.src).as_posix())
            text = re.sub(r'#.*', '', path.read_text(encoding='utf-8'))
            if folder not in (None, *KEPT_APART['Qt Widgets'][0]) and WIDGETS_IN_CMAKE.search(text):
                faults.append(f'{folder}/CMakeLists.txt: Qt Widgets is for ui and app only')
        for what, graph in (('layers.txt', self.allowed), ('folders', self.folder_edges),
                            ('leaf folders', self.leaf_edges), ('files', self.file_edges)):
            faults += [f'ring among {what}: {" ".join(ring)}' for ring in rings(graph)]
        for folder, targets in self.allowed.items():
            faults += [f'layers.txt: {folder} names {other}, which has no line of its own'
                       for other in sorted(targets - self.allowed.keys())]
        return faults

    def edges(self):
        """Pairs of folders, in the order of layers.txt read from the top of the program down."""
        place = {name: -number for number, name in enumerate(self.allowed)}
        return [(folder, other) for folder in sorted(self.folder_edges, key=place.get)
                for other in sorted(self.folder_edges[folder], key=place.get)]

    def picture(self):
        nodes = [f'    {identifier(name)}["{name}"]' for name in reversed(self.allowed) if name in self.folder_edges]
        arrows = [f'    {identifier(folder)} --> {identifier(other)}' for folder, other in self.edges()]
        return '\n'.join(['```mermaid', 'graph TD', *nodes, *arrows, '```'])

    def dot(self):
        arrows = [f'    "{folder}" -> "{other}";' for folder, other in self.edges()]
        return '\n'.join(['digraph layers {', '    node [shape=box];', *arrows, '}'])


def identifier(folder):
    return folder.replace('/', '_')


def check_document(path, picture, write):
    """The faults of the picture in a document; with write they are mended instead."""
    text = path.read_text(encoding='utf-8')
    before, begin, rest = text.partition(BEGIN)
    _, end, after = rest.partition(END)
    if not begin or not end:
        return [f'{path.name}: the markers of the picture are missing']
    fresh = f'{before}{begin}\n{picture}\n{end}{after}'
    if write:
        path.write_text(fresh, encoding='utf-8')
        return []
    if fresh == text:
        return []
    return [f'{path.name}: the picture differs from the code; tools/layers.py --document docs/{path.name} --write']


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument('--root', type=Path, default=Path(__file__).resolve().parent.parent)
    parser.add_argument('--document', type=Path)
    parser.add_argument('--write', action='store_true')
    parser.add_argument('--picture', action='store_true')
    parser.add_argument('--dot', action='store_true')
    arguments = parser.parse_args()
    tree = Tree(arguments.root)
    if arguments.picture or arguments.dot:
        print(tree.picture() if arguments.picture else tree.dot())
        return 0
    faults = tree.check()
    if arguments.document:
        faults += check_document(arguments.document, tree.picture(), arguments.write)
    for fault in faults:
        print(fault)
    if not faults:
        print(f'{len(tree.files)} files in {len(tree.folder_edges)} folders, {len(tree.edges())} edges: all as listed')
    return 1 if faults else 0


if __name__ == '__main__':
    sys.exit(main())
