#include "support/WindowFixture.h"

#include <QLineEdit>
#include <QPlainTextEdit>

class RemovalKeysTest : public WindowFixture {
protected:
    /// What a key asked of the dashboard about removals, with the section.
    QStringList press(QWidget& focused, int key, Qt::KeyboardModifiers modifiers)
    {
        focused.setFocus(Qt::TabFocusReason);
        turn();
        dashboard.calls.clear();
        QTest::keyClick(&focused, static_cast<Qt::Key>(key), modifiers);
        QStringList asked;
        for (const FakeDashboard::Call& call : std::as_const(dashboard.calls)) {
            if (call.name == QLatin1StringView("remove") || call.name == QLatin1StringView("trash"))
                asked += call.text.isEmpty() ? call.name : call.name + u' ' + call.text;
        }
        return asked;
    }

    struct Key {
        int key;
        Qt::KeyboardModifiers modifiers;
        QStringList asked;
    };
    const QList<Key> keys{
        {Qt::Key_Delete, {}, {QStringLiteral("remove")}},
        {Qt::Key_Backspace, {}, {QStringLiteral("remove")}},
        {Qt::Key_Delete, Qt::ShiftModifier, {QStringLiteral("trash")}},
        {Qt::Key_Backspace, Qt::ControlModifier, {QStringLiteral("trash")}},
        {Qt::Key_Delete, Qt::AltModifier, {}},
    };
};

TEST_F(RemovalKeysTest, InAListTheyRemoveWhatIsSelected)
{
    const QList<Track> tracks = rows(3);
    fill(tracks);
    show();
    EXPECT_EQ(press(table(), Qt::Key_Delete, {}), QStringList()) << "nothing is selected";
    store->selection().select({tracks[0].id(), tracks[2].id()}, tracks[2].id());
    for (const Key& each : keys) {
        EXPECT_EQ(press(table(), each.key, each.modifiers), each.asked) << each.key;
        if (!each.asked.isEmpty()) {
            EXPECT_EQ(dashboard.calls.last().ids, ids({tracks[0], tracks[2]}));
        }
    }
}

TEST_F(RemovalKeysTest, InAFieldTheyStayThere)
{
    const QList<Track> tracks = rows(1);
    fill(tracks);
    show();
    store->selection().select({tracks[0].id()}, tracks[0].id());
    QLineEdit line(QStringLiteral("abc"), window.get());
    QLineEdit readOnly(QStringLiteral("abc"), window.get());
    readOnly.setReadOnly(true);
    QPlainTextEdit text(QStringLiteral("abc"), window.get());
    for (QWidget* field : std::initializer_list<QWidget*>{&line, &readOnly, &text}) {
        field->show();
        for (const Key& each : keys)
            EXPECT_EQ(press(*field, each.key, each.modifiers), QStringList()) << each.key;
    }
}
