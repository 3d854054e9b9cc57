#include "ui/window/CheckpointMenu.h"

#include "core/library/LibraryStore.h"
#include "core/library/session/Session.h"
#include "ui/context/WindowContext.h"
#include "ui/text/Texts.h"

#include <QMenu>
#include <QPointer>

namespace {

/// "21.11.2026 19:30 · 1 248 треков · в избранном 12".
QString title(const Session::Checkpoint& checkpoint)
{
    const QString date = VelmoraLocalization::locale().toString(checkpoint.date, QLocale::ShortFormat);
    const QString favorites =
        checkpoint.favorites > 0 ? VelmoraLocalization::format(QStringLiteral("в избранном %d"), {checkpoint.favorites})
                                 : QString();
    return Texts::facts({date, Texts::trackCount(checkpoint.tracks), favorites});
}

void fill(QMenu& menu, Session& session, const QList<Session::Checkpoint>& checkpoints)
{
    menu.addAction(Texts::localized(QStringLiteral("Вернуть при следующем запуске")))->setEnabled(false);
    menu.addSeparator();
    QString before;
    for (const Session::Checkpoint& checkpoint : checkpoints) {
        const QString text = title(checkpoint);
        if (text != before) // of copies that read alike the newest
            menu.addAction(text, [&session, url = checkpoint.url] { session.restoreFromCheckpoint(url); });
        before = text;
    }
    if (checkpoints.isEmpty())
        menu.addAction(Texts::localized(QStringLiteral("Копий пока нет")))->setEnabled(false);
}

} // namespace

void CheckpointMenu::open(QWidget& parent, const WindowContext& context, const QPoint& globalPosition)
{
    Session& session = context.store.session();
    session.listCheckpoints(
        [&session, window = QPointer<QWidget>(&parent), globalPosition](const QList<Session::Checkpoint>& checkpoints) {
            if (!window)
                return;
            auto* menu = new QMenu(window);
            menu->setAttribute(Qt::WA_DeleteOnClose);
            menu->setObjectName(QStringLiteral("checkpoints"));
            fill(*menu, session, checkpoints);
            menu->popup(globalPosition);
        });
}
