#!/usr/bin/env python3
"""Checks that every text of the sources is translated, and that the translations are sound.

usage: texts.py [--root DIR]

A text is a string literal with Cyrillic letters, under src/, but those on a line that ends with "// not shown". Reports every
fault, one per line; the exit status is 1 if there is one: a text without finished English, a counted text without all its forms,
placeholders in another order, a text that no source uses any more and that is not marked so, a text that names another system
without a wording for this one, a file out of order or in the wrong language.
"""
import argparse
import re
import sys
import xml.etree.ElementTree as ElementTree
from pathlib import Path

TOKEN = re.compile(r'''
    (?P<comment>//[^\n]*|/\*.*?(?:\*/|\Z))
  | (?:u8|[uUL])?R"(?P<fence>[^()\\\s]*)\((?P<raw>.*?)\)(?P=fence)"
  | (?:u8|[uUL])?"(?P<text>(?:[^"\\\n]|\\.)*)(?:"|\Z)
  | '(?:[^'\\\n]|\\.)*' | [0-9](?:'?[0-9A-Za-z_.])* | \w+ | (?P<space>\s+) | .''', re.S | re.X)
ESCAPE = re.compile(r'\\(?:u([0-9a-fA-F]{4})|U([0-9a-fA-F]{8})|x([0-9a-fA-F]{1,4})|(.))', re.S)
LETTERS = {'n': '\n', 't': '\t', 'r': '\r', '0': '\0', '\n': ''}
CYRILLIC = re.compile('[\u0400-\u04ff]')
PLACEHOLDER = re.compile('%[dn@]')
OTHER_SYSTEM = re.compile('macOS|Finder|brew', re.I)
FILES = ('velmora_en.ts', 'velmora_ru.ts', 'velmora_system_en.ts', 'velmora_system_ru.ts')


def resolved(text):
    def one(match):
        digits = match[1] or match[2] or match[3]
        return chr(int(digits, 16)) if digits else LETTERS.get(match[4], match[4])
    return ESCAPE.sub(one, text)


def literals(code):
    """(text, line where it begins) of each literal, neighbouring ones joined."""
    found, parts, exempt, line = [], [], set(), 1

    def end():
        if parts:
            found.append((''.join(part[0] for part in parts), parts[0][1], parts[-1][2]))
            parts.clear()
    for token in TOKEN.finditer(code):
        begin, line = line, line + token[0].count('\n')
        if token['comment'] and token[0].strip() == '// not shown':
            exempt.add(begin)
        if token['raw'] is not None or token['text'] is not None:
            text = token['raw'] if token['raw'] is not None else resolved(token['text'])
            parts.append((text, begin, line))
        elif not token['comment'] and not token['space']:
            end()
    end()
    return [(text, first) for text, first, last in found if not {first, last} & exempt]


class Message:
    def __init__(self, element):
        translation = element.find('translation')
        kind = translation.get('type', '')
        self.key = element.findtext('source')
        self.is_counted = element.get('numerus') == 'yes'
        self.is_vanished = kind in ('vanished', 'obsolete')
        self.is_finished = not kind
        self.forms = ([form.text or '' for form in translation.findall('numerusform')] if self.is_counted
                      else [translation.text or ''])


class Check:
    def __init__(self, root):
        self.faults = []
        self.texts = [(text, f'{path.relative_to(root)}:{line}') for path in sorted((root / 'src').rglob('*'))
                      if path.suffix in ('.cpp', '.h') for text, line in literals(path.read_text(encoding='utf-8'))
                      if CYRILLIC.search(text)]
        self.messages = {name: [Message(each) for each in ElementTree.parse(root / 'resources/i18n' / name).iter('message')]
                         for name in FILES}
        self.files = {name: {message.key: message for message in messages} for name, messages in self.messages.items()}

    def fault(self, is_fault, where, what):
        if is_fault:
            self.faults.append(f'{where}: {what}')

    def run(self):
        if not self.texts:
            self.faults.append('no source holds a text')
        self.check_texts()
        for name in FILES:
            self.check_file(name)
        return self.faults

    def check_texts(self):
        english, russian = self.files['velmora_en.ts'], self.files['velmora_ru.ts']
        for text, place in self.texts:
            message, counted = english.get(text), russian.get(text)
            self.fault(not (message and message.is_finished and all(message.forms)), place,
                       f'no finished English text for "{text}"')
            if '%n' in text:
                self.fault(not (message and message.is_counted and counted and counted.is_counted and counted.is_finished),
                           place, f'"{text}" lacks counted forms')
        used = {text for text, _ in self.texts}
        for key, message in english.items():
            self.fault(message.is_vanished == (key in used), 'velmora_en.ts',
                       f'"{key}": ' + ('is used again, so it is not vanished' if message.is_vanished
                                       else 'no source uses it, mark it as vanished'))
        for key in filter(OTHER_SYSTEM.search, sorted(used | english.keys())):
            for name in FILES[2:]:
                message = self.files[name].get(key)
                self.fault(not (message and message.is_finished), name, f'lacks "{key}", which names another system')

    def check_file(self, name):
        is_russian = name.endswith('_ru.ts')
        messages = self.messages[name]
        keys = [message.key.encode('utf-16-be') for message in messages]
        self.fault(not messages or any(a >= b for a, b in zip(keys, keys[1:])), name, 'is empty, out of order or names a text twice')
        for message in messages:
            where = f'{name}: "{message.key}"'
            forms = 1 if not message.is_counted else 3 if is_russian else 2
            self.fault(len(message.forms) != forms or message.is_counted != ('%n' in message.key), where, 'lacks counted forms')
            self.fault(any(PLACEHOLDER.findall(form) != PLACEHOLDER.findall(message.key) for form in message.forms), where,
                       'placeholders differ')
            self.fault(message.key not in self.files['velmora_en.ts'], where, 'has no English')
            names_itself = message.key == 'Русский'  # each language names itself
            self.fault(bool(CYRILLIC.search(''.join(message.forms))) != (is_russian or names_itself), where,
                       'is in the wrong language')
            self.fault(name in FILES[2:] and OTHER_SYSTEM.search('\n'.join(message.forms)) is not None, where,
                       'names another system')


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument('--root', type=Path, default=Path(__file__).resolve().parent.parent)
    check = Check(parser.parse_args().root)
    faults = check.run()
    for fault in faults:
        print(fault)
    if not faults:
        print(f'{len(check.texts)} texts, all translated')
    return 1 if faults else 0


if __name__ == '__main__':
    sys.exit(main())
