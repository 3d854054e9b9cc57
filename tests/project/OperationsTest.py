import unittest

from tools import TreeTest, run

STORE = '''class LibraryStore {
public:
    Workspace& workspace() const;
    Removal& removal() const;
    Preferences& preferences() const;
};
'''
REMOVAL = '''#pragma once
class Workspace;
class Removal;

/// Takes tracks out of the lists. Knows the
/// Trash.
class Removal : public QObject {
    Q_OBJECT

public:
    using Completion = std::function<void(int)>;
    /// A state. Of no concern here.
    struct State {
        void inner();
    };
    explicit Removal(const Dependencies& dependencies);
    ~Removal() override;
    Removal(const Removal&) = delete;

    /// Removes tracks, e.g. one. The rest stays.
    /// \\param ids the tracks
    void remove(const QSet<TrackID>& ids, Completion completion = {});
    /// Whether a removal runs
    /// at this moment. \\return true if so.
    bool isRunning() const override { return m_running; }
    std::optional<State> last(int one,
                              int two = 2) const; ///< behind the line

    /// Text of a | b.
    int choice() const
    {
        return 1;
    }

Q_SIGNALS:
    /// A signal.
    void removed();

private:
    /// Hidden.
    void hidden();
    bool m_running = false;
};
'''
EXPECTED = '''
## removal()

Takes tracks out of the lists. (`core/library/removal/Removal.h`)

| Operation | What it does |
|---|---|
| `void remove(const QSet<TrackID>& ids, Completion completion = {})` | Removes tracks, e.g. one. |
| `bool isRunning() const` | Whether a removal runs at this moment. |
| `std::optional<State> last(int one, int two = 2) const` |  |
| `int choice() const` | Text of a \\| b. |
'''


class OperationsTest(TreeTest):
    def setUp(self):
        super().setUp()
        self.write({
            'src/core/library/LibraryStore.h': STORE,
            'src/core/library/removal/Removal.h': REMOVAL,
            'src/core/library/workspace/Workspace.h': 'class Workspace {\npublic:\n    void set();\n};\n',
            'src/platform/Preferences.h': 'class Preferences {\npublic:\n    void set();\n};\n',
        })

    def check(self):
        return run('operations.py', '--root', self.root, '--check')[0]

    def test_public_functions_of_the_concerns_are_listed(self):
        self.assertEqual((0, ''), run('operations.py', '--root', self.root))
        text = (self.root / 'docs/operations.md').read_text()
        self.assertEqual(EXPECTED, text[text.index('\n## '):])

    def test_a_stale_or_missing_document_is_found(self):
        self.assertEqual(1, self.check())
        run('operations.py', '--root', self.root)
        self.assertEqual(0, self.check())
        self.write({'src/core/library/removal/Removal.h': REMOVAL.replace('Removes tracks', 'Drops tracks')})
        self.assertEqual(1, self.check())

    def test_a_class_without_a_header_is_an_error(self):
        self.write({'src/core/library/LibraryStore.h': STORE.replace('Removal&', 'Undoing&')})
        status, output = run('operations.py', '--root', self.root)
        self.assertEqual((1, 'LibraryStore.h hands out Undoing, but there is no Undoing.h\n'), (status, output))


if __name__ == '__main__':
    unittest.main()
