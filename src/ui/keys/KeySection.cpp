#include "ui/keys/KeySection.h"

#include "core/library/LibraryStore.h"
#include "core/library/keys/Keys.h"
#include "ui/cells/KeyTexts.h"
#include "ui/commands/CommandCenter.h"
#include "ui/context/DashboardActions.h"
#include "ui/controls/ThemeButton.h"
#include "ui/keys/KeyWheel.h"
#include "ui/sections/SectionFacts.h"
#include "ui/sections/SectionHeader.h"
#include "ui/sections/SectionView.h"
#include "ui/text/Texts.h"

#include <QAbstractItemView>
#include <QItemSelectionModel>

namespace {
constexpr async::Duration kCountDelay = async::seconds(0.12); // as the facts of a header
constexpr int kRoomForAllButtons = 920;                       // of the header, in pixels, with Russian words
} // namespace

KeySection::KeySection(const WindowContext& context, SectionView& section)
    : SectionParts(&section)
    , m_context(context)
    , m_section(section)
    , m_add(section.header().addAction())
    , m_selected(section.header().addAction())
    , m_all(section.header().addAction())
    , m_write(&section.header().mainButton())
    , m_panel(new KeyPanel(context.theme, &section))
    , m_count(context.clock, kCountDelay, [this] { count(); })
{
    const Keys& keys = context.store.keys();
    section.model().setKeyStates([&keys](const TrackID& id) { return KeyState::of(keys, id); });
    section.setPanel(m_panel, SectionBody::Narrow::Without);
    connect(m_add, &QAbstractButton::clicked, this, [this] { perform(CommandID::AddFilesHere, {}); });
    connect(m_selected, &QAbstractButton::clicked, this,
            [this] { perform(CommandID::AnalyzeKeys, m_section.selectedIDs()); });
    connect(m_all, &QAbstractButton::clicked, this, [this] { perform(CommandID::AnalyzeKeys, allIDs()); });
    connect(m_write, &QAbstractButton::clicked, this, [this] { perform(CommandID::WriteKeys, allIDs()); });
    connect(&m_panel->wheel(), &KeyWheel::keyChosen, this, &KeySection::selectRowsIn);
    connect(&keys, &Keys::musicalKeyStatesChanged, this, &KeySection::statesChanged);
    connect(&section.model(), &TrackListModel::rowsReplaced, this, [this] {
        refreshPanel();
        count();
    });
    const QItemSelectionModel* selection = section.list().selectionModel();
    connect(selection, &QItemSelectionModel::selectionChanged, this, &KeySection::refreshPanel);
    connect(selection, &QItemSelectionModel::currentChanged, this, &KeySection::refreshPanel);
    retranslate();
}

void KeySection::retranslate()
{
    m_add->setIconOnly(QStringLiteral("plus"), Texts::localized(QStringLiteral("Добавить файлы…")));
    m_selected->setContent(Commands::text(CommandID::AnalyzeKeys));
    m_all->setContent(Texts::localized(QStringLiteral("Определить все")));
    m_all->setToolTip(
        Texts::localized(QStringLiteral("Лучший найденный код Camelot для каждого успешно прочитанного трека.")));
    m_write->setContent(Texts::localized(QStringLiteral("Записать в теги")));
    m_write->setToolTip(Texts::localized(Commands::of(CommandID::WriteKeys).hint));
    m_panel->retranslate();
    refreshButtons();
}

void KeySection::perform(CommandID id, const QSet<TrackID>& ids) const
{
    m_context.actions.commands().perform(id, {.ids = ids});
}

QString KeySection::facts(LibraryStore& library, const QList<Track>& rows)
{
    using Step = KeyState::Step;
    if (rows.isEmpty())
        return {};
    QHash<Step, qint64> counts;
    for (const Track& track : rows)
        ++counts[KeyState::of(library.keys(), track.id()).step];
    const auto counted = [&](const QString& text, qint64 count) {
        return count > 0 ? VelmoraLocalization::format(text, {count}) : QString();
    };
    const bool waits = counts.value(Step::Queued) > 0 && !library.keys().activeMusicalKeyTrackID();
    return Texts::facts(
        {SectionFacts::fileCount(rows.size()), counted(QStringLiteral("определено %d"), counts.value(Step::Determined)),
         counted(QStringLiteral("без результата %d"), counts.value(Step::Undetermined)),
         counted(QStringLiteral("в очереди %d"), counts.value(Step::Queued) + counts.value(Step::Running)),
         waits ? Texts::localized(QStringLiteral("пауза")) : QString()});
}

void KeySection::fitHeader(int width)
{
    m_selected->setVisible(width >= kRoomForAllButtons); // the menu of the rows has it too
}

QSet<TrackID> KeySection::allIDs() const
{
    QSet<TrackID> ids;
    for (const Track& track : m_section.model().rows())
        ids.insert(track.id());
    return ids;
}

void KeySection::selectRowsIn(const MusicalKey& key)
{
    QSet<TrackID> ids;
    std::optional<TrackID> first;
    for (const Track& track : m_section.model().rows()) {
        const KeyState state = m_section.model().keyState(track.id());
        if (!state.analysis || state.analysis->key != key)
            continue;
        ids.insert(track.id());
        if (!first)
            first = track.id();
    }
    if (!first)
        return;
    m_context.actions.select(ids, first);
    m_section.scrollTo(*first);
}

void KeySection::statesChanged(const QSet<TrackID>& ids)
{
    m_section.model().keyStatesChanged(ids);
    refreshButtons();
    refreshPanel();
    m_section.factsChanged();
    m_count.startOnce();
}

/// How many rows each key has, for the wheel.
void KeySection::count()
{
    QHash<QString, int> counts;
    for (const Track& track : m_section.model().rows()) {
        if (const KeyState state = m_section.model().keyState(track.id()); state.analysis)
            ++counts[state.analysis->key.camelot()];
    }
    m_hasResults = !counts.isEmpty();
    m_panel->wheel().setCounts(counts);
    refreshButtons();
}

void KeySection::refreshButtons()
{
    m_all->setEnabled(m_context.store.keys().queuedCount() <
                      m_section.model().rowCount()); // what is queued is among the rows
    m_selected->setEnabled(m_section.list().selectionModel()->hasSelection());
    m_write->setEnabled(m_hasResults);
}

void KeySection::refreshPanel()
{
    refreshButtons();
    const QModelIndex current = m_section.list().currentIndex();
    const bool isFocused = current.isValid() && m_section.list().selectionModel()->isRowSelected(current.row());
    const QModelIndexList rows = m_section.list().selectionModel()->selectedRows();
    const int row = isFocused ? current.row() : rows.isEmpty() ? -1 : rows.first().row();
    if (row < 0 || row >= m_section.model().rowCount()) {
        m_panel->setTrack(std::nullopt, {});
        return;
    }
    const Track& track = m_section.model().track(row);
    m_panel->setTrack(track, m_section.model().keyState(track.id()));
}
