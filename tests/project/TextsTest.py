import sys
import unittest

from tools import ROOT, TreeTest, run

sys.path.insert(0, str(ROOT / 'tools'))
import texts  # noqa: E402

LITERALS = {
    'f("Да"); g(u"Нет");': ['Да', 'Нет'],
    'f("Раз, "\n  // и\n  /* ещё */ "два");': ['Раз, два'],
    'f("Раз", "два") ? "три" : "четыре" + "пять"': ['Раз', 'два', 'три', 'четыре', 'пять'],
    '// "Нет"\n/* "Нет\n" */ "Да"': ['Да'],
    "auto a = '\"'; auto b = u'\\''; f(\"Да\")": ['Да'],
    'int a = 1\'000\'000; f("Да"); int b = 0xFF\'FFu;': ['Да'],
    r'f("\"Да\"\\\n\t\u0414 // %d")': ['"Да"\\\n\tД // %d'],
    'f(R"x("Да")" )x", uR"(\\n)")': ['"Да")" ', '\\n'],
    'FOOR"Да"': ['Да'],  # a macro before a literal is no prefix
    'f("Нет"); // not shown\nf("Да"); // shown': ['Да'],
    'f("Нет, "\n  "нет"); // not shown\nf("Да");': ['Да'],
    '"Да': ['Да'],
    '': [],
}


def message(key, forms, kind='', is_counted=False):
    text = ''.join(f'<numerusform>{form}</numerusform>' for form in forms) if is_counted else forms[0]
    numerus = ' numerus="yes"' if is_counted else ''
    type_of = f' type="{kind}"' if kind else ''
    return f'<message{numerus}><source>{key}</source><translation{type_of}>{text}</translation></message>'


YES = message('Да', ['Yes'])
MANY = message('Их %n', ['%n of it', '%n of them'], is_counted=True)
SYSTEM = message('Корзина Finder', ['Trash'])
SOUND = {'src/a.cpp': 'f("Да"); g("Их %n"); h("Корзина Finder");', 'en': [YES, MANY, SYSTEM],
         'ru': [message('Их %n', ['Их %n'] * 3, is_counted=True)],
         'system_en': [SYSTEM], 'system_ru': [message('Корзина Finder', ['Корзина'])]}
FAULTS = {
    'not translated': ({'src/a.cpp': SOUND['src/a.cpp'] + 'i("Нет");'}, 'a.cpp:1: no finished English text for "Нет"'),
    'not finished': ({'en': [message('Да', ['Yes'], 'unfinished'), MANY, SYSTEM]}, 'no finished English'),
    'no longer used': ({'en': [YES, MANY, SYSTEM, message('Нет', ['No'])]}, 'mark it as vanished'),
    'used again': ({'en': [message('Да', ['Yes'], 'vanished'), MANY, SYSTEM]}, 'is used again'),
    'counted in one form': ({'en': [YES, message('Их %n', ['%n'], is_counted=True), SYSTEM]}, 'lacks counted forms'),
    'not counted in Russian': ({'ru': [message('Да', ['Да'])]}, 'lacks counted forms'),
    'placeholder lost': ({'en': [YES, message('Их %n', ['one', '%n'], is_counted=True), SYSTEM]}, 'placeholders differ'),
    'out of order': ({'en': [MANY, YES, SYSTEM]}, 'out of order'),
    'wrong language': ({'en': [message('Да', ['Да']), MANY, SYSTEM]}, 'wrong language'),
    'another system': ({'system_en': [message('Корзина Finder', ['Trash of the Finder'])]}, 'names another system'),
    'no wording of its own': ({'system_ru': [message('Да', ['Да'])]}, 'lacks "Корзина Finder"'),
}


class TextsTest(TreeTest):
    def write_tree(self, changes):
        for name, content in {**SOUND, **changes}.items():
            self.write({name: content} if name.startswith('src/')
                       else {f'resources/i18n/velmora_{name}.ts': f'<TS><context>{"".join(content)}</context></TS>'})

    def test_literals_are_found_in_code(self):
        for code, expected in LITERALS.items():
            self.assertEqual(expected, [text for text, _ in texts.literals(code)], code)
        lines = texts.literals('/*\n\n*/\n"a"\n"b";\n R"(\n)" ; "c"')
        self.assertEqual([('ab', 4), ('\n', 6), ('c', 7)], lines)

    def test_each_fault_is_found(self):
        self.write_tree({})
        self.assertEqual((0, '3 texts, all translated\n'), run('texts.py', '--root', self.root))
        for name, (changes, expected) in FAULTS.items():
            with self.subTest(name):
                self.write_tree(changes)
                status, output = run('texts.py', '--root', self.root)
                self.assertEqual(1, status)
                self.assertIn(expected, output)


if __name__ == '__main__':
    unittest.main()
