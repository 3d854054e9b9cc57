#include "ui/window/PlayerCommands.h"

#include "ui/context/DashboardActions.h"
#include "ui/text/Texts.h"

#include <QAction>

PlayerCommands::PlayerCommands(const WindowContext& context, QWidget& window, std::function<void()> toggleMute,
                               std::function<void()> tap)
    : QObject(&window)
    , m_window(window)
{
    DashboardActions& actions = context.actions;
    const auto keys = [](auto... each) { return QList<QKeySequence>{QKeySequence(each)...}; };
    add(QStringLiteral("Воспроизвести или приостановить"), keys(Qt::Key_Space), Repeat::No,
        [&actions] { actions.toggleSelectedTrack(); });
    add(QStringLiteral("Перемотать назад"), keys(Qt::Key_Left), Repeat::Yes, [&actions] { actions.seekSteps(-1); });
    add(QStringLiteral("Перемотать вперёд"), keys(Qt::Key_Right), Repeat::Yes, [&actions] { actions.seekSteps(1); });
    add(QStringLiteral("Предыдущий трек"), keys(Qt::Key_Up, Qt::CTRL | Qt::Key_Left), Repeat::Yes,
        [&actions] { actions.selectAdjacent(-1); });
    add(QStringLiteral("Следующий трек"), keys(Qt::Key_Down, Qt::CTRL | Qt::Key_Right), Repeat::Yes,
        [&actions] { actions.selectAdjacent(1); });
    add(QStringLiteral("Выключить или включить звук"), keys(Qt::Key_M), Repeat::No, std::move(toggleMute));
    add(QStringLiteral("Задать темп нажатиями"), keys(Qt::Key_T), Repeat::No, std::move(tap));
    retranslate();
}

void PlayerCommands::add(const QString& name, const QList<QKeySequence>& keys, Repeat repeat,
                         std::function<void()> perform)
{
    auto* action = new QAction(this);
    action->setShortcuts(keys);
    action->setAutoRepeat(repeat == Repeat::Yes);
    connect(action, &QAction::triggered, this, std::move(perform));
    m_window.addAction(action);
    m_commands.append({action, name});
}

void PlayerCommands::retranslate()
{
    for (const Command& command : m_commands)
        command.action->setText(Texts::localized(command.name));
}
