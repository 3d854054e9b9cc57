#include "ui/window/StatusStrip.h"

#include "core/library/LibraryStore.h"
#include "core/library/imports/Imports.h"
#include "core/library/undo/UndoManager.h"
#include "core/library/workspace/Workspace.h"
#include "ui/DashboardActions.h"
#include "ui/text/Texts.h"
#include "ui/theme/Icons.h"
#include "ui/theme/Paint.h"
#include "ui/window/ThemeButton.h"

#include <QPainter>

namespace {

constexpr int kIconLeft = Metrics::kSpace4;
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
{
    setFixedHeight(Metrics::kStatusHeight);
    UndoManager& undo = context.actions.undoManager();
    connect(m_undo, &QAbstractButton::clicked, &undo, &UndoManager::undo);
    connect(&undo, &UndoManager::changed, this, &StatusStrip::refreshUndo);
    connect(&context.library.workspace(), &Workspace::workspaceStatusChanged, this, &StatusStrip::refreshMessage);
    connect(&context.library.imports(), &Imports::metadataProgressChanged, this, &StatusStrip::refreshProgress);
    retranslate();
}

void StatusStrip::retranslate()
{
    refreshMessage();
    refreshUndo();
    refreshProgress();
}

void StatusStrip::refreshMessage()
{
    const std::optional<WorkspaceStatus>& status = m_context.library.workspace().workspaceStatus();
    m_message = status ? status->message : QString();
    m_iconName = status ? Icons::nameForSymbol(status->icon) : QString();
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
    const UndoManager& undo = m_context.actions.undoManager();
    m_undo->setVisible(undo.canUndo());
    const QString action = undo.undoActionName();
    m_undo->setContent(Texts::localized(QStringLiteral("Отменить")));
    m_undo->setToolTip(action.isEmpty() ? QStringLiteral("Ctrl+Z") : QStringLiteral("%1 (Ctrl+Z)").arg(action));
    m_undo->setAccessibleDescription(action);
    place();
}

void StatusStrip::refreshProgress()
{
    const Imports::Progress progress = m_context.library.imports().metadataProgress();
    const bool isRunning = progress.total > 0 && progress.done < progress.total;
    m_progress = isRunning ? static_cast<double>(progress.done) / progress.total : 0;
    m_progressText = isRunning ? VelmoraLocalization::format(QStringLiteral("Чтение тегов: %d из %d"),
                                                             {progress.done, progress.total})
                               : QString();
    setAccessibleDescription(m_progressText);
    place();
    update();
}

int StatusStrip::messageWidth() const
{
    return QFontMetrics(m_context.theme.font(TextRole::Secondary)).horizontalAdvance(m_message);
}

int StatusStrip::progressLeft() const
{
    if (m_progressText.isEmpty())
        return width() - Metrics::kSpace4;
    const int text = Paint::numberWidth(m_progressText, m_context.theme.font(TextRole::Secondary));
    return width() - Metrics::kSpace4 - Metrics::kProgressWidth - Metrics::kSpace3 - text;
}

void StatusStrip::place()
{
    m_undo->resize(m_undo->sizeHint());
    const int after = m_message.isEmpty() ? kIconLeft - Metrics::kStep : kTextLeft + messageWidth() + Metrics::kSpace2;
    const int limit = progressLeft() - Metrics::kSpace4 - m_undo->width();
    m_undo->move(std::max(kTextLeft, std::min(after, limit)), (height() - m_undo->height()) / 2);
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
    if (!m_progressText.isEmpty())
        paintProgress(painter);
}

void StatusStrip::paintMessage(QPainter& painter) const
{
    const ThemeColours& c = m_context.theme.colours();
    const int side = Metrics::kIconSmall;
    Icons::paint(painter, {kIconLeft, (height() - side) / 2, side, side}, m_iconName, c.*m_tone);
    const int right = !m_undo->isHidden() ? m_undo->x() - Metrics::kStep : progressLeft() - Metrics::kSpace4;
    Paint::line(painter, {kTextLeft, 0, right - kTextLeft, height()}, m_message,
                m_context.theme.font(TextRole::Secondary), c.text2);
}

void StatusStrip::paintProgress(QPainter& painter) const
{
    const ThemeColours& c = m_context.theme.colours();
    QRectF bar(width() - Metrics::kSpace4 - Metrics::kProgressWidth, (height() - Metrics::kProgressThickness) / 2,
               Metrics::kProgressWidth, Metrics::kProgressThickness);
    const QRect text(0, 0, static_cast<int>(bar.left()) - Metrics::kSpace3, height());
    Paint::number(painter, text, m_progressText, m_context.theme.font(TextRole::Secondary), c.text2);
    Paint::roundedFill(painter, bar, Metrics::kProgressThickness / 2.0, c.line);
    bar.setWidth(std::max<double>(Metrics::kProgressThickness, bar.width() * m_progress));
    Paint::roundedFill(painter, bar, Metrics::kProgressThickness / 2.0, c.accent);
}
