#include "ui/sections/SectionView.h"

#include "core/library/LibraryStore.h"
#include "core/library/selection/Selection.h"
#include "core/library/tempo/Tempo.h"
#include "core/library/workspace/Workspace.h"
#include "platform/Notifications.h"
#include "ui/commands/CommandCenter.h"
#include "ui/context/DashboardActions.h"
#include "ui/drops/DropOutline.h"
#include "ui/drops/DropTarget.h"
#include "ui/sections/EmptyState.h"
#include "ui/sections/SectionDescriptor.h"
#include "ui/sections/SectionHeader.h"
#include "ui/sections/SectionParts.h"
#include "ui/sections/SortControls.h"
#include "ui/text/Texts.h"
#include "ui/theme/Theme.h"
#include "ui/tracks/RowSelection.h"
#include "ui/tracks/ScrollActivity.h"
#include "ui/tracks/ScrollMemory.h"
#include "ui/tracks/SelectionSync.h"
#include "ui/tracks/TrackTable.h"

#include <QPainter>
#include <QScrollBar>
#include <QStackedLayout>

namespace {
constexpr async::Duration kFactsDelay = async::seconds(0.12); // one pass over the list while tags stream in is enough
}

SectionView::SectionView(const WindowContext& context, const SectionDescriptor& descriptor, QWidget* parent)
    : QWidget(parent)
    , m_context(context)
    , m_descriptor(descriptor)
    , m_model(new TrackListModel(descriptor.columns(), this))
    , m_header(new SectionHeader(context, descriptor, this))
    , m_empty(new EmptyState(context, descriptor, this))
    , m_body(new SectionBody(this))
    , m_stack(new QStackedLayout)
    , m_facts(context.clock, kFactsDelay, [this] { updateFacts(); })
{
    m_model->setBPMStates([&tempo = context.store.tempo()](const TrackID& id) { return tempo.playlistBPMState(id); });
    buildList();
    if (descriptor.navigates) // the dashboard does not know this selection and tells by an event where the keys go
        connect(&context.store.notifications(), descriptor.navigates, this, [this](Notifications::Direction direction) {
            moveFocus(direction == Notifications::Direction::Up ? -1 : 1);
        });
    if (descriptor.makeParts)
        m_parts = descriptor.makeParts(context, *this);
    layOut();
    connect(&context.theme, &Theme::changed, this, qOverload<>(&QWidget::update));
    retranslate();
}

SectionView::~SectionView() = default;

LibraryTab SectionView::tab() const
{
    return m_descriptor.tab;
}

void SectionView::buildList()
{
    m_list = m_descriptor.makeList ? m_descriptor.makeList(m_context, *this) : makeTable();
    const std::unique_ptr<QItemSelectionModel> plain(m_list->selectionModel());
    m_list->setSelectionModel(new RowSelection(m_model, m_list));
    if (!m_descriptor.section().ownsSelection)
        m_sync = new SelectionSync(*m_list, *m_model, m_context.store.workspace(), m_context.actions);
    if (!m_descriptor.remembersScrolling)
        return;
    m_scrolling = new ScrollActivity(*m_list, m_context.clock);
    connect(m_scrolling, &ScrollActivity::scrollingChanged, this,
            [this](bool scrolling) { m_context.actions.setPlaylistScrolling(scrolling); });
}

QAbstractItemView* SectionView::makeTable()
{
    auto* table = new TrackTable(m_context, *m_model, this);
    connect(table, &TrackTable::contextMenuWanted, this, &SectionView::contextMenuWanted);
    connect(table, &TrackTable::playWanted, this, &SectionView::play);
    connect(table, &TrackTable::heartClicked, this,
            [this](const QUuid& id) { m_context.actions.commands().perform(CommandID::Favorite, {.ids = {id}}); });
    if (m_descriptor.section().isSortable)
        m_sorting = new SortControls(m_context, m_descriptor, *m_header, *table);
    if (!m_descriptor.remembersScrolling)
        return table;
    m_scrollMemory = new ScrollMemory(*table, m_context.store.preferences(), m_context.clock);
    connect(&m_context.store.workspace(), &Workspace::restoringChanged, this, [this](bool isRestoring) {
        if (!isRestoring)
            m_scrollMemory->workspaceRestored();
    });
    return table;
}

void SectionView::layOut()
{
    m_stack->addWidget(m_empty);
    m_stack->addWidget(m_list);
    m_body->content().setLayout(m_stack);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_header);
    QWidget* banner = m_parts ? m_parts->banner() : nullptr;
    if (banner)
        layout->addWidget(banner);
    layout->addWidget(m_body, 1);
    m_outline = new DropOutline(m_context.theme, m_body->content());
    addDropTarget(*m_empty);
    addDropTarget(*m_list->viewport());
    if (banner)
        addDropTarget(*banner);
}

void SectionView::addDropTarget(QWidget& area)
{
    auto* target = new DropTarget(area, m_descriptor.section().takesOgg);
    if (m_parts && m_parts->takesPictures()) {
        target->setTakesPictures(true);
        connect(target, &DropTarget::pictureDropped, m_parts, &SectionParts::take);
    }
    connect(target, &DropTarget::highlighted, m_outline, &QWidget::setVisible);
    connect(target, &DropTarget::dropped, this, &SectionView::filesDropped);
}

void SectionView::setShown(bool shown)
{
    m_isShown = shown;
    if (m_sync && !shown)
        m_sync->setActive(false);
    if (shown && m_isDirty)
        refresh();
    if (!m_sync || !shown)
        return;
    const int place = m_list->verticalScrollBar()->value();
    m_sync->setActive(true);
    if (m_scrollMemory) // the focus is taken up again, but the user left the list where it is
        m_list->verticalScrollBar()->setValue(place);
}

void SectionView::markDirty()
{
    m_isDirty = true;
    if (m_isShown)
        refresh();
}

void SectionView::refresh()
{
    m_isDirty = false;
    auto* table = qobject_cast<TrackTable*>(m_list);
    bool structure = false;
    const auto watch =
        connect(m_model, &TrackListModel::rowsReplaced, this, [&](bool changed) { structure = changed; });
    if (m_scrolling)
        m_scrolling->setMuted(true);
    if (m_sync)
        m_sync->beginRows();
    if (table)
        table->beginRows();
    takeStatusTexts();
    m_model->setRows(m_descriptor.rows ? m_descriptor.rows(m_context.store, m_model->rows())
                                       : m_context.store.selection().tracks(tab()));
    if (table) {
        table->rowsChanged();
        if (m_descriptor.folders)
            table->setFolders(m_descriptor.folders(m_context.store));
        if (structure)
            table->endRows();
    }
    if (m_sync)
        m_sync->endRows(structure);
    if (m_scrollMemory) // last, for the selection scrolls to its focus
        m_scrollMemory->rowsChanged();
    if (m_scrolling)
        m_scrolling->setMuted(false);
    disconnect(watch);

    const bool isEmpty = m_model->rows().isEmpty();
    if (isEmpty)
        m_empty->refresh();
    QWidget* page = isEmpty ? static_cast<QWidget*>(m_empty) : m_list;
    if (m_stack->currentWidget() != page) {
        const bool hadFocus = m_stack->currentWidget()->isAncestorOf(window()->focusWidget());
        m_stack->setCurrentWidget(page);
        if (hadFocus || m_stack->currentWidget()->isAncestorOf(window()->focusWidget()))
            focusList();
    }
    if (isEmpty || m_header->facts().isEmpty())
        updateFacts();
    else
        factsChanged();
}

void SectionView::factsChanged()
{
    m_facts.startOnce();
}

void SectionView::updateFacts()
{
    m_header->setFacts(m_descriptor.facts(m_context.store, m_model->rows()));
}

void SectionView::takeStatusTexts()
{
    if (m_descriptor.statusTexts)
        m_model->setStatusTexts(m_descriptor.statusTexts(m_context.store));
}

void SectionView::retranslate()
{
    m_header->retranslate();
    m_empty->retranslate();
    if (m_sorting)
        m_sorting->retranslate();
    if (m_parts)
        m_parts->retranslate();
    m_list->setAccessibleName(Texts::localized(m_descriptor.words.title));
    takeStatusTexts();
    m_model->retranslate();
    updateFacts();
}

void SectionView::setDensity(double density)
{
    if (auto* table = qobject_cast<TrackTable*>(m_list))
        table->setDensity(density);
}

QSet<TrackID> SectionView::selectedIDs()
{
    if (m_sync)
        m_sync->flush();
    return SelectionSync::selectedIDs(*m_list, *m_model);
}

std::optional<Track> SectionView::focusedTrack()
{
    const QSet<TrackID> ids = selectedIDs();
    const QModelIndex current = m_list->currentIndex();
    if (current.isValid() && ids.contains(m_model->track(current.row()).id()))
        return m_model->track(current.row());
    const QModelIndexList rows = m_list->selectionModel()->selectedRows();
    return rows.isEmpty() ? std::nullopt : std::optional(m_model->track(rows.first().row()));
}

void SectionView::scrollTo(const TrackID& id)
{
    if (const std::optional<int> row = m_model->rowOf(id))
        m_list->scrollTo(m_model->index(*row, 0), QAbstractItemView::PositionAtCenter);
}

void SectionView::play(const Track& track)
{
    if (m_sync)
        m_sync->flush();
    m_context.actions.commands().perform(CommandID::PlayRow, {.track = track});
}

void SectionView::moveFocus(int offset)
{
    const int count = m_model->rowCount();
    const QModelIndex current = m_list->currentIndex();
    if (!m_isShown || count == 0)
        return;
    const int row = current.isValid() ? std::clamp(current.row() + offset, 0, count - 1) : 0;
    const QModelIndex index = m_model->index(row, 0);
    m_list->selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    m_list->scrollTo(index);
}

void SectionView::selectAll()
{
    m_list->selectAll();
}

void SectionView::setPanel(QWidget* panel, SectionBody::Narrow narrow)
{
    m_body->setPanel(panel, narrow);
}

void SectionView::focusList()
{
    m_stack->currentWidget()->setFocus(Qt::OtherFocusReason);
}

void SectionView::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    if (m_parts)
        m_parts->fitHeader(width());
}

void SectionView::hideEvent(QHideEvent* event)
{
    if (m_scrollMemory)
        m_scrollMemory->flush();
    QWidget::hideEvent(event);
}

void SectionView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(rect(), m_context.theme.colours().background);
}
