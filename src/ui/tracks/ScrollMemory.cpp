#include "ui/tracks/ScrollMemory.h"

#include "platform/Preferences.h"
#include "ui/tracks/TrackListModel.h"
#include "ui/tracks/TrackTable.h"

#include <QScrollBar>

#include <algorithm>
#include <cmath>
#include <limits>

ScrollMemory::ScrollMemory(TrackTable& table, Preferences& preferences, async::Clock& clock)
    : QObject(&table)
    , m_table(table)
    , m_preferences(preferences)
    , m_rest(clock, kRest, [this] { write(); })
{
    connect(table.verticalScrollBar(), &QScrollBar::valueChanged, this, [this] { m_rest.start(); });
}

void ScrollMemory::rowsChanged()
{
    const bool isEmpty = m_table.tracks().rows().isEmpty();
    const bool wasEmpty = std::exchange(m_isEmpty, isEmpty);
    if (isEmpty)
        m_rest.stop(); // the end of the old list is no place in the next one
    else if (wasEmpty)
        restore();
}

void ScrollMemory::workspaceRestored()
{
    if (!m_isEmpty)
        restore();
}

void ScrollMemory::restore()
{
    if (!m_preferences.playlistScrollOffset.isSet())
        return;
    const double offset =
        std::clamp(m_preferences.playlistScrollOffset.get(), 0.0, double(std::numeric_limits<int>::max()));
    const auto anchor = QUuid::fromString(m_preferences.playlistScrollAnchorTrackID.get());
    m_table.setScrollPlace({static_cast<int>(std::lround(offset)), anchor});
    m_rest.stop(); // it is where the preferences say
}

void ScrollMemory::flush()
{
    if (m_rest.isActive())
        write();
}

void ScrollMemory::write()
{
    m_rest.stop();
    if (m_isEmpty)
        return;
    const TrackTable::ScrollPlace place = m_table.scrollPlace();
    m_preferences.playlistScrollOffset.set(place.offset);
    m_preferences.playlistScrollAnchorTrackID.set(place.topRow.toString(QUuid::WithoutBraces).toUpper());
}
