import unittest

from tools import TreeTest, run

HEADER = """struct LibraryConcerns {
    Services services;
    Order order;
    Loads loads;
    Tempo tempo;

private:
"""


class StoreOrderTest(TreeTest):
    def check(self, order, loads, tempo_dependencies):
        self.write({'src/core/library/LibraryConcerns.h': HEADER, 'src/core/library/LibraryStoreWiring.cpp': f"""
    : services(libraryServices)
    , order({{{order}}})
    , loads({{{loads}}})
    , tempo(tempoDependencies())

Tempo::Dependencies LibraryConcerns::tempoDependencies()
{{
    return {{{tempo_dependencies}}};
}}
"""})
        return run('storeorder.py', '--root', self.root)

    def test_references_to_what_was_built_before_are_no_ring(self):
        status, output = self.check('services.clock', 'order', 'order, loads')
        self.assertEqual((0, '4 objects, 4 calls, 0 objects in the longest ring\n'), (status, output))

    def test_hooks_count_like_references(self):
        status, output = self.check('[this] { tempo.start(); }', 'order', 'loads')
        self.assertEqual(1, status)
        self.assertIn('order calls tempo, which is built after it', output)
        self.assertIn('ring: loads order tempo', output)
        self.assertEqual(0, self.check('[this] { loads.isBusy(); }', 'order', 'services')[0])


if __name__ == '__main__':
    unittest.main()
