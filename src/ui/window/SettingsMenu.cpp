#include "ui/window/SettingsMenu.h"

#include "core/library/LibraryStore.h"
#include "core/model/WorkspaceLayout.h"
#include "platform/Preferences.h"
#include "ui/text/Texts.h"
#include "ui/window/CheckpointMenu.h"
#include "ui/window/MenuChoices.h"
#include "ui/window/WaveformMenu.h"

namespace SettingsMenu {

void build(QMenu& menu, const WindowContext& context)
{
    Preferences& preferences = context.store.preferences();
    // The languages call themselves by their own names, whatever the interface speaks.
    MenuChoices::add<QString>(
        menu, Texts::localized(QStringLiteral("Язык")), preferences.appLanguage,
        {{QStringLiteral("Русский"), QStringLiteral("ru")}, {QStringLiteral("English"), QStringLiteral("en")}});
    MenuChoices::add<QString>(menu, Texts::localized(QStringLiteral("Тема")), preferences.appAppearance,
                              {{Texts::localized(QStringLiteral("Тёмная")), QStringLiteral("dark")},
                               {Texts::localized(QStringLiteral("Светлая")), QStringLiteral("light")}});
    MenuChoices::add<QString>(menu, Texts::localized(QStringLiteral("Компоновка")), preferences.workspaceLayout,
                              {{Texts::localized(QStringLiteral("Полная")), rawValue(WorkspaceLayout::Full)},
                               {Texts::localized(QStringLiteral("Компактная")), rawValue(WorkspaceLayout::Compact)}});
    menu.addMenu(new WaveformMenu(context, &menu));
    menu.addSeparator();
    QWidget* const window = menu.parentWidget();
    menu.addAction(Texts::localized(QStringLiteral("Вернуть из копии…")),
                   [window, context, &menu] { CheckpointMenu::open(*window, context, menu.pos()); });
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
    menu.addSeparator();
    QAction* keep = menu.addAction(Texts::localized(QStringLiteral("Сохранять обложку и прочие поля файла")),
                                   [&preferences](bool isOn) {
                                       preferences.keepsOtherTagEntriesAsked.set(true); // nothing left to ask
                                       preferences.keepsOtherTagEntries.set(isOn);
                                   });
    keep->setCheckable(true);
    keep->setChecked(preferences.keepsOtherTagEntries.get());
}

} // namespace SettingsMenu
