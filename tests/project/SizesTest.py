import unittest

from tools import TreeTest, run


class SizesTest(TreeTest):
    def test_only_sources_of_more_than_600_lines_fail(self):
        self.write({'src/a/Fits.cpp': 'int a;\n' * 600, 'src/a/Data.txt': 'x\n' * 900})
        self.assertEqual(0, run('sizes.py', '--root', self.root)[0])
        self.write({'src/a/TooLong.h': 'int a;\n' * 601})
        status, output = run('sizes.py', '--root', self.root)
        self.assertEqual(1, status)
        self.assertIn('src/a/TooLong.h: 601 lines', output)
        self.assertNotIn('Fits', output)

    def test_a_tree_without_sources_is_no_success(self):
        self.assertEqual(1, run('sizes.py', '--root', self.root)[0])


if __name__ == '__main__':
    unittest.main()
