#include "ui/window/Sidebar.h"

#include "core/library/LibraryStore.h"
#include "core/library/selection/Selection.h"
#include "ui/commands/CommandCenter.h"
#include "ui/context/DashboardActions.h"
#include "ui/controls/ThemeButton.h"
#include "ui/drops/DropTarget.h"
#include "ui/text/Texts.h"
#include "ui/theme/Icons.h"
#include "ui/theme/Paint.h"
#include "ui/window/Sections.h"
#include "ui/window/SidebarRow.h"

#include <QPainter>
#include <QVBoxLayout>

namespace {
constexpr int kMark = 22;
constexpr int kMarkLeft = 22;
constexpr int kBrandGap = 10;
constexpr async::Duration kCountDelay =
    async::seconds(0.1); // three passes over the lists while rows stream in are enough
} // namespace

Sidebar::Sidebar(const WindowContext& context, QWidget* parent)
    : Panel(context.theme, &ThemeColours::side, Qt::RightEdge, parent)
    , m_context(context)
    , m_settings(new SidebarRow(context.theme, QStringLiteral("settings"), this))
    , m_collapse(new ThemeButton(context.theme, ThemeButton::Kind::Quiet, this))
    , m_countDelay(context.clock, kCountDelay, [this] { updateCounts(); })
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(Metrics::kSpace3, Metrics::kHeaderHeight, Metrics::kSpace3, Metrics::kSpace3);
    layout->setSpacing(2);
    for (LibraryTab tab : kAllLibraryTabs)
        layout->addWidget(addRow(tab));
    layout->addStretch();
    layout->addWidget(m_settings);
    auto* bottom = new QHBoxLayout;
    bottom->setContentsMargins(1, Metrics::kStep, 0, 0);
    bottom->addWidget(m_collapse);
    bottom->addStretch();
    layout->addLayout(bottom);

    connect(m_settings, &QAbstractButton::clicked, this,
            [this] { emit settingsWanted(m_settings->mapToGlobal(QPoint(m_settings->width() + Metrics::kStep, 0))); });
    connect(m_collapse, &QAbstractButton::clicked, this, &Sidebar::collapseToggled);
    setTabOrder(m_rows.back(), m_settings);
    setTabOrder(m_settings, m_collapse);
    setCollapsed(false);
    updateCounts();
    retranslate();
}

SidebarRow* Sidebar::addRow(LibraryTab tab)
{
    auto* row = new SidebarRow(m_context.theme, Sections::of(tab).icon, this);
    row->setCheckable(true);
    m_rows[static_cast<size_t>(tab)] = row;
    connect(row, &QAbstractButton::clicked, this, [this, row, tab] {
        row->setChecked(true); // a click on the active section does not leave it
        m_context.actions.commands().perform(Commands::showing(tab));
    });
    auto* target = new DropTarget(*row, LibrarySection::of(tab).takesOgg);
    connect(target, &DropTarget::highlighted, row, &SidebarRow::setDropHighlighted);
    connect(target, &DropTarget::dropped, this, [this, tab](const QList<QUrl>& urls) { emit filesDropped(urls, tab); });
    return row;
}

void Sidebar::setActiveTab(LibraryTab tab)
{
    for (LibraryTab each : kAllLibraryTabs)
        row(each).setChecked(each == tab);
}

void Sidebar::setCollapsed(bool collapsed)
{
    m_isCollapsed = collapsed;
    setFixedWidth(collapsed ? Metrics::kSidebarCollapsedWidth : Metrics::kSidebarWidth);
    for (SidebarRow* row : m_rows)
        row->setCollapsed(collapsed);
    m_settings->setCollapsed(collapsed);
    retranslate();
    update();
}

void Sidebar::countsChanged()
{
    m_countDelay.startOnce();
}

void Sidebar::updateCounts()
{
    for (LibraryTab tab : kAllLibraryTabs)
        row(tab).setCount(m_context.store.selection().rowCount(tab));
}

void Sidebar::retranslate()
{
    for (LibraryTab tab : kAllLibraryTabs)
        row(tab).setLabel(Texts::localized(rawValue(tab)), Commands::keys(Commands::showing(tab)));
    m_settings->setLabel(Texts::localized(QStringLiteral("Настройки")), {});
    m_collapse->setIconOnly(QStringLiteral("sidebar"),
                            Texts::localized(m_isCollapsed ? QStringLiteral("Развернуть боковую панель")
                                                           : QStringLiteral("Свернуть боковую панель")));
}

void Sidebar::paintEvent(QPaintEvent* event)
{
    Panel::paintEvent(event);
    QPainter painter(this);
    const int left = m_isCollapsed ? (width() - kMark) / 2 : kMarkLeft;
    const int centre = Metrics::kHeaderHeight / 2 - 1;
    Icons::paintMark(painter, {left, centre - kMark / 2, kMark, kMark});
    if (!m_isCollapsed)
        Paint::line(painter, {left + kMark + kBrandGap, 0, width(), 2 * centre}, QStringLiteral("Velmora"),
                    m_context.theme.font(TextRole::Brand), m_context.theme.colours().text);
}
