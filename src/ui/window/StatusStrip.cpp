#include "ui/window/StatusStrip.h"

#include "core/library/LibraryStore.h"
#include "core/library/imports/StrayTemporaries.h"
#include "core/library/session/Session.h"
#include "core/library/tagwriting/UnwrittenEdits.h"
#include "core/library/undo/History.h"
#include "core/library/workspace/Workspace.h"
#include "ui/commands/CommandCenter.h"
#include "ui/context/DashboardActions.h"
#include "ui/controls/ThemeButton.h"
#include "ui/text/Texts.h"
#include "ui/theme/Icons.h"
#include "ui/theme/Paint.h"
#include "ui/window/CheckpointMenu.h"
#include "work/WorkBoard.h"

#include <QApplication>
#include <QPainter>

namespace {

constexpr int kIconLeft = Metrics::kSpace4;
constexpr async::Duration kProgressPause =
    async::seconds(0.1);            // the eye follows no more, and files may take less than one each
constexpr int kNamedLeftovers = 12; // in the tooltip; more would not fit the screen
constexpr int kTextLeft = kIconLeft + Metrics::kIconSmall + Metrics::kSpace2;

QColor ThemeColours::*colourOf(WorkspaceStatus::Tone tone)
{
    switch (tone) {
    case WorkspaceStatus::Tone::Success:
        return &ThemeColours::ok;
    case WorkspaceStatus::Tone::Warning:
        return &ThemeColours::warning;
    case WorkspaceStatus::Tone::Neutral:
        break;
    }
    return &ThemeColours::text2;
}

} // namespace

StatusStrip::StatusStrip(const WindowContext& context, QWidget* parent)
    : Panel(context.theme, &ThemeColours::side, Qt::TopEdge, parent)
    , m_context(context)
    , m_undo(new ThemeButton(context.theme, ThemeButton::Kind::Link, this))
    , m_offer(new ThemeButton(context.theme, ThemeButton::Kind::Link, this))
    , m_stop(new ThemeButton(context.theme, ThemeButton::Kind::Link, this))
    , m_restore(new ThemeButton(context.theme, ThemeButton::Kind::Link, this))
    , m_again(new ThemeButton(context.theme, ThemeButton::Kind::Link, this))
    , m_pause(context.clock, kProgressPause, [this] { refreshProgress(); })
{
    setFixedHeight(Metrics::kStatusHeight);
    History& undo = context.store.history();
    connect(m_undo, &QAbstractButton::clicked, this, [this] { m_context.actions.commands().perform(CommandID::Undo); });
    connect(&undo, &History::changed, this, &StatusStrip::refreshUndo);
    connect(m_restore, &QAbstractButton::clicked, this,
            [this] { CheckpointMenu::open(*window(), m_context, mapToGlobal(m_restore->pos())); });
    connect(&context.store.session(), &Session::leftOutChanged, this, &StatusStrip::refreshRestore);
    connect(&context.store.workspace(), &Workspace::workspaceStatusChanged, this, &StatusStrip::refreshMessage);
    connect(&context.store.workspace(), &Workspace::activeTabChanged, this, &StatusStrip::progressMoved);
    connect(&context.store.board(), &WorkBoard::changed, this, &StatusStrip::progressMoved);
    connect(m_stop, &QAbstractButton::clicked, this, &StatusStrip::stopWork);
    connect(qApp, &QApplication::focusChanged, this, &StatusStrip::focusMoved);
    connect(&context.store.strayTemporaries(), &StrayTemporaries::changed, this, &StatusStrip::refreshOffer);
    UnwrittenEdits& edits = context.store.unwrittenEdits();
    connect(&edits, &UnwrittenEdits::changed, this, &StatusStrip::refreshAgain);
    connect(m_again, &QAbstractButton::clicked, this, [&edits] { edits.writeAgain(edits.rows()); });
    connect(m_offer, &QAbstractButton::clicked, this,
            [this] { m_context.actions.commands().perform(CommandID::TrashLeftovers); });
    retranslate();
}

void StatusStrip::retranslate()
{
    m_stop->setContent(Texts::localized(QStringLiteral("Остановить")));
    refreshMessage();
    refreshUndo();
    refreshOffer();
    refreshAgain();
    refreshProgress();
    refreshRestore();
}

void StatusStrip::focusMoved(QWidget* from, QWidget* to)
{
    if (to && isAncestorOf(to) && from && !isAncestorOf(from))
        m_focusBefore = from;
}

/// The focus is given back before a link hides or is switched off: the toolkit would pass it on to whatever comes next.
void StatusStrip::setShown(ThemeButton& link, bool isShown, bool isEnabled)
{
    if (!(isShown && isEnabled) && window()->focusWidget() == &link) {
        if (m_focusBefore && m_focusBefore->isVisible() && m_focusBefore->isEnabled())
            m_focusBefore->setFocus(Qt::OtherFocusReason);
        else
            emit leaveWanted();
    }
    link.setVisible(isShown);
    link.setEnabled(isEnabled);
}

void StatusStrip::refreshMessage()
{
    const std::optional<WorkspaceStatus>& status = m_context.store.workspace().workspaceStatus();
    m_message = status ? status->message : QString();
    m_iconName = status ? Icons::of(status->icon) : QString();
    m_tone = status ? colourOf(status->tone) : &ThemeColours::text3;
    setAccessibleName(status ? m_message : Texts::localized(QStringLiteral("Строка состояния")));
    if (status) {
        QAccessibleEvent event(this, QAccessible::Alert);
        QAccessible::updateAccessibility(&event);
    }
    place();
    update();
}

void StatusStrip::refreshUndo()
{
    const History& undo = m_context.store.history();
    setShown(*m_undo, undo.canUndo());
    const QString action = undo.undoActionName();
    const QString word = Commands::text(CommandID::Undo);
    const QString keys = Commands::keys(CommandID::Undo);
    m_undo->setContent(action.isEmpty() ? word : QStringLiteral("%1: %2").arg(word, action));
    m_undo->setToolTip(action.isEmpty() ? keys : QStringLiteral("%1 (%2)").arg(action, keys));
    m_undo->setAccessibleDescription(action);
    place();
}

/// What a failed or stopped write left out, until the files hold it.
void StatusStrip::refreshAgain()
{
    const int count = m_context.store.unwrittenEdits().leftCount();
    const bool isShown = !m_again->isHidden();
    setShown(*m_again, count > 0);
    m_again->setContent(VelmoraLocalization::format(QStringLiteral("Записать ещё раз: %d"), {count}));
    if (!isShown && count == 0)
        return;
    place();
    update();
}

void StatusStrip::refreshRestore()
{
    setShown(*m_restore, m_context.store.session().leftOutCount() > 0);
    m_restore->setContent(Texts::localized(QStringLiteral("Вернуть из копии…")));
    m_restore->setToolTip(VelmoraLocalization::format(QStringLiteral("Файлов не найдено при запуске: %d"),
                                                      {m_context.store.session().leftOutCount()}));
    place();
    update();
}

void StatusStrip::refreshOffer()
{
    const StrayTemporaries& strays = m_context.store.strayTemporaries();
    const auto count = static_cast<int>(strays.list().size());
    setShown(*m_offer, count > 0, !strays.isMoving());
    m_offer->setContent(VelmoraLocalization::format(QStringLiteral("Временные файлы в Корзину: %d"), {count}));
    QStringList names;
    for (const QUrl& url : strays.list().first(std::min(count, kNamedLeftovers)))
        names.append(url.toLocalFile());
    m_offer->setToolTip(names.join(u'\n'));
    place();
}

std::optional<StatusStrip::Work> StatusStrip::currentWork() const
{
    WorkEntry* const entry = m_context.store.board().first();
    if (!entry)
        return std::nullopt;
    const WorkProgress progress = entry->progress();
    return Work{entry, VelmoraLocalization::format(entry->text(), {progress.done, progress.total}), progress,
                entry->text()};
}

/// Shows the first step, the end and a change of what is done at once, and what comes between from time to time.
void StatusStrip::progressMoved()
{
    const std::optional<Work> work = currentWork();
    const bool isOther = work.has_value() != m_work.has_value() || (work && work->kind != m_work->kind);
    if (isOther || !m_pause.isActive())
        refreshProgress();
    if (work)
        m_pause.startOnce();
}

void StatusStrip::refreshProgress()
{
    m_work = currentWork();
    setShown(*m_stop, m_work && m_work->entry && m_work->entry->isStoppable());
    setAccessibleDescription(m_work ? m_work->text : QString());
    place();
    update();
}

void StatusStrip::stopWork()
{
    if (m_work && m_work->entry)
        m_work->entry->stop();
}

int StatusStrip::messageWidth() const
{
    return QFontMetrics(m_context.theme.font(TextRole::Secondary)).horizontalAdvance(m_message);
}

/// Those shown, from the left.
QList<ThemeButton*> StatusStrip::links() const
{
    QList<ThemeButton*> shown;
    for (ThemeButton* link : {m_again, m_restore, m_undo, m_offer}) {
        if (!link->isHidden())
            shown.append(link);
    }
    return shown;
}

int StatusStrip::linksWidth() const
{
    int width = 0;
    for (const ThemeButton* link : links())
        width += link->sizeHint().width() + Metrics::kStep;
    return width;
}

int StatusStrip::barLeft() const
{
    const int right = m_stop->isHidden() ? Metrics::kSpace4 : Metrics::kSpace3 + m_stop->width() + Metrics::kSpace2;
    return width() - right - Metrics::kProgressWidth;
}

int StatusStrip::progressLeft() const
{
    if (!m_work)
        return width() - Metrics::kSpace4;
    const int text = Paint::numberWidth(m_work->text, m_context.theme.font(TextRole::Secondary));
    return barLeft() - Metrics::kSpace3 - text;
}

void StatusStrip::place()
{
    m_stop->resize(m_stop->sizeHint());
    m_stop->move(width() - Metrics::kSpace3 - m_stop->width(), (height() - m_stop->height()) / 2);
    const int after = m_message.isEmpty() ? kIconLeft - Metrics::kStep : kTextLeft + messageWidth() + Metrics::kSpace2;
    const int limit = progressLeft() - Metrics::kSpace4 - linksWidth();
    int left = std::max(m_message.isEmpty() ? kIconLeft - Metrics::kStep : kTextLeft, std::min(after, limit));
    for (ThemeButton* link : links()) {
        link->resize(link->sizeHint());
        link->move(left, (height() - link->height()) / 2);
        left += link->width() + Metrics::kStep;
    }
}

void StatusStrip::resizeEvent(QResizeEvent* event)
{
    Panel::resizeEvent(event);
    place();
}

void StatusStrip::paintEvent(QPaintEvent* event)
{
    Panel::paintEvent(event);
    QPainter painter(this);
    if (!m_message.isEmpty())
        paintMessage(painter);
    if (m_work)
        paintProgress(painter);
}

void StatusStrip::paintMessage(QPainter& painter) const
{
    const ThemeColours& c = m_context.theme.colours();
    const int side = Metrics::kIconSmall;
    Icons::paint(painter, {kIconLeft, (height() - side) / 2, side, side}, m_iconName, c.*m_tone);
    const QList<ThemeButton*> shown = links();
    const int right = shown.isEmpty() ? progressLeft() - Metrics::kSpace4 : shown.first()->x() - Metrics::kStep;
    Paint::line(painter, {kTextLeft, 0, right - kTextLeft, height()}, m_message,
                m_context.theme.font(TextRole::Secondary), c.text2);
}

void StatusStrip::paintProgress(QPainter& painter) const
{
    const ThemeColours& c = m_context.theme.colours();
    QRectF bar(barLeft(), (height() - Metrics::kProgressThickness) / 2, Metrics::kProgressWidth,
               Metrics::kProgressThickness);
    const QRect text(0, 0, static_cast<int>(bar.left()) - Metrics::kSpace3, height());
    Paint::number(painter, text, m_work->text, m_context.theme.font(TextRole::Secondary), c.text2);
    Paint::roundedFill(painter, bar, Metrics::kProgressThickness / 2.0, c.line);
    bar.setWidth(
        std::max<double>(Metrics::kProgressThickness, bar.width() * m_work->progress.done / m_work->progress.total));
    Paint::roundedFill(painter, bar, Metrics::kProgressThickness / 2.0, c.accent);
}
