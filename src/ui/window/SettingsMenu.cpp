#include "ui/window/SettingsMenu.h"

#include "core/model/WorkspaceLayout.h"
#include "platform/Preferences.h"
#include "ui/text/Texts.h"

#include <QActionGroup>
#include <QMenu>

namespace {

struct Choice {
    QString title; // localised
    QString raw;
};

void addChoices(QMenu& menu, const QString& title, Preference<QString>& preference, const QList<Choice>& choices)
{
    QMenu* submenu = menu.addMenu(title);
    auto* group = new QActionGroup(submenu);
    for (const Choice& choice : choices) {
        QAction* action = submenu->addAction(choice.title, [&preference, raw = choice.raw] { preference.set(raw); });
        action->setCheckable(true);
        action->setChecked(preference.get() == choice.raw);
        group->addAction(action);
    }
}

} // namespace

namespace SettingsMenu {

void build(QMenu& menu, Preferences& preferences)
{
    // The languages call themselves by their own names, whatever the interface speaks.
    addChoices(menu, Texts::localized(QStringLiteral("Язык")), preferences.appLanguage,
               {{QStringLiteral("Русский"), QStringLiteral("ru")}, {QStringLiteral("English"), QStringLiteral("en")}});
    addChoices(menu, Texts::localized(QStringLiteral("Тема")), preferences.appAppearance,
               {{Texts::localized(QStringLiteral("Тёмная")), QStringLiteral("dark")},
                {Texts::localized(QStringLiteral("Светлая")), QStringLiteral("light")}});
    addChoices(menu, Texts::localized(QStringLiteral("Компоновка")), preferences.workspaceLayout,
               {{Texts::localized(QStringLiteral("Полная")), rawValue(WorkspaceLayout::Full)},
                {Texts::localized(QStringLiteral("Компактная")), rawValue(WorkspaceLayout::Compact)}});
    menu.addSeparator();
    QAction* onTop = menu.addAction(Texts::localized(QStringLiteral("Плеер сверху")),
                                    [&preferences](bool isOn) { preferences.dashboardPlayerOnTop.set(isOn); });
    onTop->setCheckable(true);
    onTop->setChecked(preferences.dashboardPlayerOnTop.get());
    QAction* dense = menu.addAction(Texts::localized(QStringLiteral("Плотные строки")), [&preferences](bool isOn) {
        preferences.tableDensity.set(isOn ? kDenseDensity : kOrdinaryDensity);
    });
    dense->setCheckable(true);
    dense->setChecked(preferences.tableDensity.get() < kOrdinaryDensity);
}

} // namespace SettingsMenu
