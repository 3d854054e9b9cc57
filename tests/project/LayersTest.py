import unittest

from tools import TreeTest, run

LAYERS = 'async:\nlow: async\nlow/deep: async\nui: low low/deep async\napp: ui low low/deep async\n'
# A tree without a fault: nested folders, a library of each kind in its place, an include in a comment.
SOUND = {
    'layers.txt': LAYERS,
    'src/async/Task.h': '#include <QCoroTask>\n',
    'src/low/Low.h': '#include "async/Task.h"\n#include <QStringView>\n#include <QTextLayout>\n',
    'src/low/Low.cpp': '#include "low/Low.h"\n#include "Low.moc"\n',
    'src/low/deep/Deep.h': '// #include "ui/Window.h"\n/*\n#include "ui/Window.h"\n*/\n',
    'src/low/deep/CMakeLists.txt': '# never WIDGETS here\nvelmora_library(low/deep SOURCES x.cpp)\n',
    'src/ui/Window.h': '#include "low/deep/Deep.h"\n#include <QWidget>\n',
    'src/ui/CMakeLists.txt': 'velmora_library(ui SOURCES x.cpp WIDGETS)\n',
}
# Files that bring in one fault each, and what has to be said of it.
FAULTS = {
    'against the arrows': ({'src/low/Low.h': '#include "ui/Window.h"\n'}, 'low may not include ui'),
    'in angle brackets': ({'src/low/Low.h': '#include <ui/Window.h>\n'}, 'low may not include ui'),
    'from the outer folder to the nested one': ({'src/low/Low.h': '#include "low/deep/Deep.h"\n'},
                                                'low may not include low/deep'),
    'folder not listed': ({'src/other/Other.h': ''}, 'not listed'),
    'layer without a line': ({'layers.txt': LAYERS + 'top: nowhere\n'}, 'top names nowhere'),
    'ring of files': ({'src/low/Low.h': '#include "low/B.h"\n', 'src/low/B.h': '#include "low/C.h"\n',
                       'src/low/C.h': '#include "low/Low.h"\n'}, 'ring among files: low/B.h low/C.h low/Low.h'),
    'file that includes itself': ({'src/low/Low.h': '#include "low/Low.h"\n'}, 'ring among files: low/Low.h'),
    'ring of folders': ({'layers.txt': LAYERS.replace('low/deep:', 'low/deep: ui'),
                         'src/low/deep/New.h': '#include "ui/Other.h"\n', 'src/ui/Other.h': ''},
                        'ring among folders: low/deep ui'),
    'ring of leaf folders': ({'src/ui/rows/Row.h': '#include "ui/rows/keys/Key.h"\n', 'src/ui/rows/keys/Key.h': '',
                              'src/ui/rows/keys/Wheel.h': '#include "ui/Style.h"\n', 'src/ui/Style.h': '',
                              'src/ui/Rows.h': '#include "ui/rows/Row.h"\n'},
                             'ring among leaf folders: ui ui/rows ui/rows/keys'),
    'ring that only the list allows': ({'layers.txt': LAYERS.replace('async:', 'async: low')},
                                       'ring among layers.txt: async low'),
    'dots': ({'src/low/deep/Deep.h': '#include "../Low.h"\n'}, 'include with ".."'),
    'not from the root': ({'src/low/Low.cpp': '#include "Low.h"\n'}, 'not written from the include root'),
    'coroutines outside async': ({'src/low/Low.h': '#  include <QCoro/QCoroTask>\n'}, 'QCoro is for async only'),
    'coroutines by the lower-case name': ({'src/ui/Window.h': '#include "qcorotask.h"\n'}, 'QCoro is for async only'),
    'widgets below ui': ({'src/low/Low.h': '#include <QTableView>\n'}, 'Qt Widgets is for ui and app only'),
    'widgets by their folder': ({'src/low/Low.h': '#include <QtWidgets/qaction.h>\n'}, 'Qt Widgets is for ui and app only'),
    'library linked to widgets': ({'src/low/CMakeLists.txt': 'velmora_library(low SOURCES x.cpp WIDGETS)\n'},
                                  'low/CMakeLists.txt: Qt Widgets'),
}


class LayersTest(TreeTest):
    def test_a_sound_tree_passes(self):
        self.write(SOUND)
        self.assertEqual((0, '5 files in 4 folders, 2 edges: all as listed\n'), run('layers.py', '--root', self.root))

    def test_each_fault_is_found_and_nothing_else(self):
        for name, (files, message) in FAULTS.items():
            with self.subTest(name):
                self.setUp()
                self.write(SOUND)
                self.write(files)
                status, output = run('layers.py', '--root', self.root)
                self.assertEqual(1, status, output)
                self.assertIn(message, output)
                # A ring of folders needs a list that allows it, so that is told of the list as well.
                self.assertEqual(2 if name == 'ring of folders' else 1, len(output.splitlines()), output)

    def test_a_picture_that_differs_from_the_code_is_found_and_mended(self):
        self.write(SOUND)
        document = self.root / 'page.md'
        arguments = ['layers.py', '--root', self.root, '--document', document]
        document.write_text('no markers\n')
        self.assertEqual(1, run(*arguments)[0])
        document.write_text('before\n<!-- layers: begin (tools/layers.py --document docs/architecture.md --write) -->\n'
                            'old\n<!-- layers: end -->\nafter\n')
        self.assertEqual(1, run(*arguments)[0])
        self.assertEqual(0, run(*arguments, '--write')[0])
        self.assertEqual(0, run(*arguments)[0])
        text = document.read_text()
        self.assertTrue(text.startswith('before\n') and text.endswith('after\n') and 'old' not in text, text)
        self.assertIn('ui --> low_deep', text)
        self.write({'src/ui/Window.h': '#include "low/Low.h"\n'})
        self.assertEqual(1, run(*arguments)[0])


if __name__ == '__main__':
    unittest.main()
