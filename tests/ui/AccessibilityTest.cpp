#include "support/WindowFixture.h"

#include <QAccessible>

namespace {

constexpr QAccessible::Role kNamedRoles[]{QAccessible::Button,      QAccessible::ButtonMenu, QAccessible::CheckBox,
                                          QAccessible::RadioButton, QAccessible::ComboBox,   QAccessible::EditableText,
                                          QAccessible::List,        QAccessible::Table,      QAccessible::Tree,
                                          QAccessible::Cell,        QAccessible::ListItem,   QAccessible::ColumnHeader,
                                          QAccessible::RowHeader,   QAccessible::MenuItem};

/// Walks the tree and counts the controls that have names, noting those that have none.
int walk(QAccessibleInterface* node, const QString& path, QStringList& unnamed)
{
    if (!node || !node->isValid())
        return 0;
    const QString here = path + u'/' +
                         (node->object() ? QString::fromLatin1(node->object()->metaObject()->className())
                                         : QString::number(node->role()));
    int named = 0;
    if (std::ranges::count(kNamedRoles, node->role()) > 0 && !node->state().invisible) {
        if (node->text(QAccessible::Name).isEmpty())
            unnamed.append(here);
        else
            ++named;
    }
    for (int i = 0; i < node->childCount(); ++i)
        named += walk(node->child(i), here, unnamed);
    return named;
}

} // namespace

class AccessibilityTest : public WindowFixture {};

TEST_F(AccessibilityTest, EveryControlHasANameInBothLanguages)
{
    QList<Track> tracks = rows(3);
    tracks.append(fullTrack(QStringLiteral("full")));
    for (Track& each : tracks)
        each.setIsInCoverWorkspace(true);
    fill(tracks);
    workspace().setConversionItems({ConversionItem{QUuid::createUuid(), tracks[0].url(), {}, {}}});
    workspace().setNotice(QStringLiteral("Заметка"));
    show();
    for (AppLanguage language : {AppLanguage::Russian, AppLanguage::English}) {
        VelmoraLocalization::setLanguage(language);
        emit notifications.velmoraLanguageDidChange();
        for (LibraryTab tab : kAllLibraryTabs) {
            open(tab);
            QStringList unnamed;
            const int named = walk(QAccessible::queryAccessibleInterface(window.get()), {}, unnamed);
            EXPECT_TRUE(unnamed.isEmpty()) << qPrintable(unnamed.join(u'\n'));
            EXPECT_GT(named, 12);
        }
    }
}

TEST_F(AccessibilityTest, CellsSpeakWords)
{
    Track loved = fullTrack(QStringLiteral("Low Sun"));
    loved.setIsFavorite(true);
    loved.setIsInCoverWorkspace(true);
    fill({loved, rows(1).first()});
    show();
    const auto spoken = [&](int row, TrackColumn column) {
        return cell(row, column).data(Qt::AccessibleTextRole).toString();
    };
    const int full = *table().tracks().rowOf(loved.id());
    const int bare = 1 - full;
    EXPECT_EQ(spoken(full, TrackColumn::Heart), QStringLiteral("В избранном"));
    EXPECT_EQ(spoken(bare, TrackColumn::Heart), QStringLiteral("Не в избранном"));
    EXPECT_EQ(spoken(full, TrackColumn::Title), QStringLiteral("Low Sun — Nadia Volk"));
    EXPECT_EQ(spoken(bare, TrackColumn::Genre), QStringLiteral("Не указано"));
    EXPECT_EQ(spoken(full, TrackColumn::Length), QStringLiteral("1:02:07"));
}
