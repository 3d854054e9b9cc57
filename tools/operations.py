#!/usr/bin/env python3
"""Writes docs/operations.md: every operation of the library in one view, from the headers of its concerns.

usage: operations.py [--root DIR] [--check]

The concerns are the classes that LibraryStore.h hands out and that stand below src/core/library. Of each its public
functions are listed with the first sentence of their /// comment.
--check writes nothing; the exit status is 1 if the document is not what would be written.
"""
import argparse
import re
import sys
from pathlib import Path

DOCUMENT = 'docs/operations.md'
LIBRARY = 'src/core/library'
# Handed out by the store, but no concern: the state that the concerns write.
STATE = {'Workspace'}
ACCESSOR = re.compile(r'^\s*(\w+)& (\w+)\(\) const;', re.M)
ACCESS = re.compile(r'^(public|protected|private|Q_SIGNALS|signals|(public )?(Q_SLOTS|slots))\s*:\s*(?!:)')


def first_sentence(comment):
    """The first sentence of a comment's text, before any \\param or the like."""
    text = ' '.join(re.split(r'(^|\s)\\(?=\w)', comment, maxsplit=1)[0].split())
    match = re.match(r'.*?[.:](?=\s+[A-Z]|$)', text)
    return match.group(0) if match else text


class Header:
    """One class of a header: its comment and its public functions as (declaration, comment)."""

    def __init__(self, text, name):
        match = re.search(rf'^(?:class|struct) {name}\b[^;{{]*{{', text, re.M)
        if not match:
            raise ValueError(f'no class {name} in its header')
        above = text[:match.start()].rstrip('\n').split('\n')
        comment = []
        while above and above[-1].lstrip().startswith('///'):
            comment.insert(0, above.pop().strip().removeprefix('///'))
        self.comment = first_sentence(' '.join(comment))
        self.functions = []
        self.name = name
        self.read_body(text[match.end():].split('\n'), text[match.start():].startswith('struct'))

    def read_body(self, lines, public):
        depth, comment, statement = 0, [], ''
        for line in lines:
            stripped = line.strip()
            if depth == 0 and not statement:
                if stripped.startswith('///'):
                    comment.append(stripped.removeprefix('///'))
                    continue
                access = ACCESS.match(stripped)
                if access:
                    public = access.group(1) == 'public'
                    comment = []
                    continue
                if not stripped:
                    comment = []
                    continue
            code = re.sub(r'//.*', '', stripped).strip()
            braces = code.count('{') - code.count('}')
            if depth == 0:
                statement = f'{statement} {code}'.strip()
            depth += braces
            if depth < 0:
                return
            if depth == 0 and statement and (statement.endswith((';', '}')) or stripped == 'Q_OBJECT'):
                if public:
                    self.add(statement, ' '.join(comment))
                statement, comment = '', []

    def add(self, statement, comment):
        # Braces count as a body only behind the parameters: a default argument may be "{}".
        declaration = re.sub(r'(\)(?: const)?(?: noexcept)?(?: override)?)\s*{.*$', r'\1', statement).rstrip('; ')
        declaration = re.sub(r'\s+override$', '', declaration)
        match = re.match(r'(?!using |struct |class |enum |friend |explicit |static constexpr |typedef )[\w:<>,&*\s]*?(~?\w+)\(',
                         declaration)
        if not match or match.group(1).lstrip('~') in (self.name, 'operator') or re.search(r'= ?(delete|default)$', declaration):
            return
        self.functions.append((' '.join(declaration.split()), first_sentence(comment)))


def concerns(root):
    """(accessor, header path, class) of every concern, in the order of LibraryStore.h."""
    store = (root / LIBRARY / 'LibraryStore.h').read_text(encoding='utf-8')
    for name, accessor in ACCESSOR.findall(store):
        headers = sorted((root / 'src').rglob(f'{name}.h'))
        if not headers:
            raise ValueError(f'LibraryStore.h hands out {name}, but there is no {name}.h')
        if name not in STATE and headers[0].is_relative_to(root / LIBRARY):
            yield accessor, headers[0], name


def document(root):
    parts = ['# Operations of the library\n\n'
             'Written by `tools/operations.py` from the headers of the concerns; do not edit. Each concern is reached through\n'
             'the accessor of `LibraryStore` that heads its table. All of them belong to the main thread.\n']
    for accessor, path, name in concerns(root):
        header = Header(path.read_text(encoding='utf-8'), name)
        if not header.functions:
            raise ValueError(f'{path.name}: no public function found')
        rows = ['| `{}` | {} |'.format(*(text.replace('|', '\\|') for text in function)) for function in header.functions]
        parts.append(f'\n## {accessor}()\n\n{header.comment} (`{path.relative_to(root / "src").as_posix()}`)\n\n'
                     + '\n'.join(['| Operation | What it does |', '|---|---|', *rows]) + '\n')
    return ''.join(parts)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument('--root', type=Path, default=Path(__file__).resolve().parent.parent)
    parser.add_argument('--check', action='store_true')
    arguments = parser.parse_args()
    path = arguments.root / DOCUMENT
    try:
        fresh = document(arguments.root)
    except ValueError as error:
        print(error)
        return 1
    if not arguments.check:
        path.parent.mkdir(exist_ok=True)
        path.write_text(fresh, encoding='utf-8')
    elif not path.is_file() or path.read_text(encoding='utf-8') != fresh:
        print(f'{DOCUMENT} differs from the headers; run tools/operations.py')
        return 1
    return 0


if __name__ == '__main__':
    sys.exit(main())
