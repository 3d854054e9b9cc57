#pragma once

#include "platform/Preference.h"

#include <QActionGroup>
#include <QList>
#include <QMenu>

/// One of several values of a preference.
template <typename T>
struct MenuChoice {
    QString title; ///< localised
    T value;
};

namespace MenuChoices {

/// A submenu with the values of a preference, of which the present one is marked. \param title localised. \param
/// preference outlives the menu.
template <typename T>
QMenu* add(QMenu& menu, const QString& title, Preference<T>& preference, const QList<MenuChoice<T>>& choices)
{
    QMenu* submenu = menu.addMenu(title);
    auto* group = new QActionGroup(submenu);
    for (const MenuChoice<T>& choice : choices) {
        QAction* action =
            submenu->addAction(choice.title, [&preference, value = choice.value] { preference.set(value); });
        action->setCheckable(true);
        action->setChecked(preference.get() == choice.value);
        group->addAction(action);
    }
    return submenu;
}

} // namespace MenuChoices
