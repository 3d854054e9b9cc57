#include "ui/sections/SortControls.h"

#include "core/library/LibraryStore.h"
#include "core/library/order/Order.h"
#include "core/library/workspace/Workspace.h"
#include "platform/Preferences.h"
#include "ui/context/DashboardActions.h"
#include "ui/controls/ThemeButton.h"
#include "ui/sections/SectionDescriptor.h"
#include "ui/sections/SectionHeader.h"
#include "ui/text/Texts.h"
#include "ui/theme/Icons.h"
#include "ui/theme/Metrics.h"
#include "ui/theme/Theme.h"
#include "ui/tracks/ColumnHeader.h"
#include "ui/tracks/TrackListModel.h"
#include "ui/tracks/TrackTable.h"

#include <QActionGroup>
#include <QMenu>

namespace {

constexpr TrackSortField kFields[] = {TrackSortField::Original, TrackSortField::Name, TrackSortField::Genre,
                                      TrackSortField::Format,   TrackSortField::BPM,  TrackSortField::Rating};

QString iconOf(TrackSortDirection direction)
{
    return direction == TrackSortDirection::Ascending ? QStringLiteral("arrow-up") : QStringLiteral("arrow-down");
}

QString directionTitle(TrackSortDirection direction)
{
    return Texts::localized(direction == TrackSortDirection::Ascending ? QStringLiteral("По возрастанию")
                                                                       : QStringLiteral("По убыванию"));
}

} // namespace

SortControls::SortControls(const WindowContext& context, const SectionDescriptor& descriptor, SectionHeader& header,
                           TrackTable& table)
    : QObject(&header)
    , m_context(context)
    , m_descriptor(descriptor)
    , m_button(header.addAction())
{
    connect(m_button, &QAbstractButton::clicked, this, &SortControls::openMenu);
    connect(&context.store.workspace(), &Workspace::orderChanged, this, &SortControls::refresh);
    if (descriptor.sortsByHeadings)
        connectHeadings(table);
    refresh();
}

void SortControls::connectHeadings(TrackTable& table)
{
    m_headings = static_cast<ColumnHeader*>(table.horizontalHeader());
    m_headings->setSectionsClickable(true);
    const TrackListModel* model = &table.tracks();
    connect(m_headings, &QHeaderView::sectionClicked, this, [this, model](int section) {
        if (const auto field = TrackColumns::sortField(model->columnAt(section)))
            m_context.actions.activateFavoriteSortFromHeader(*field);
    });
}

void SortControls::refresh()
{
    const Order& order = m_context.store.order();
    const TrackSortField field = order.trackSortField(m_descriptor.tab);
    const TrackSortDirection direction = order.trackSortDirection(m_descriptor.tab);
    const bool isSorted = field != TrackSortField::Original;
    const bool isAscending = isSorted && direction == TrackSortDirection::Ascending;
    m_button->setContent(title(field),
                         isAscending ? QStringLiteral("sort-ascending") : QStringLiteral("sort-descending"));
    const QString facts = Texts::facts({Texts::localized(QStringLiteral("Порядок треков")), title(field),
                                        isSorted ? directionTitle(direction) : QString()});
    m_button->setToolTip(facts);
    m_button->setAccessibleName(facts);
    if (m_headings)
        m_headings->setSortMark(field, direction);
}

void SortControls::openMenu()
{
    auto* menu = new QMenu(m_button);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    fillMenu(*menu);
    menu->popup(m_button->mapToGlobal(QPoint(0, m_button->height() + Metrics::kStep)));
}

void SortControls::fillMenu(QMenu& menu) const
{
    addFields(menu);
    menu.addSeparator();
    addDirections(menu);
}

void SortControls::addFields(QMenu& menu) const
{
    const TrackSortField present = m_context.store.order().trackSortField(m_descriptor.tab);
    const bool hasRatings = m_context.store.preferences().playlistPopularityEnabled.get() &&
                            m_context.store.order().hasRatings(m_descriptor.tab);
    auto* group = new QActionGroup(&menu);
    for (const TrackSortField field : kFields) {
        if (field == TrackSortField::Rating && !hasRatings && present != field)
            continue;
        QAction* action = menu.addAction(title(field), [&actions = m_context.actions, field, tab = m_descriptor.tab] {
            actions.setTrackSortField(field, tab);
        });
        action->setCheckable(true);
        action->setChecked(field == present);
        group->addAction(action);
    }
}

void SortControls::addDirections(QMenu& menu) const
{
    const Order& order = m_context.store.order();
    const bool isSorted = order.trackSortField(m_descriptor.tab) != TrackSortField::Original;
    const ThemeColours& colours = m_context.theme.colours();
    auto* group = new QActionGroup(&menu);
    for (const TrackSortDirection direction : {TrackSortDirection::Ascending, TrackSortDirection::Descending}) {
        QAction* action = menu.addAction(directionTitle(direction),
                                         [&actions = m_context.actions, direction, tab = m_descriptor.tab] {
                                             actions.setTrackSortDirection(direction, tab);
                                         });
        action->setIcon(Icons::icon(iconOf(direction), isSorted ? colours.text2 : colours.text3, colours.accentText));
        action->setCheckable(true);
        action->setChecked(isSorted && order.trackSortDirection(m_descriptor.tab) == direction);
        action->setEnabled(isSorted); // the folders' own order has one direction
        group->addAction(action);
    }
}
