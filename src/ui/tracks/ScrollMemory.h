#pragma once

#include "ui/context/Delay.h"

#include <QObject>

class Preferences;
class TrackTable;

/// Keeps in the preferences where the playlist is scrolled to, and takes it back there when its rows come. Thread:
/// main.
class ScrollMemory : public QObject {
    Q_OBJECT

public:
    /// The place is written once the list has rested so long: a write is a write to the disk.
    static constexpr async::Duration kRest = async::seconds(0.3);

    /// All outlive the memory.
    ScrollMemory(TrackTable& table, Preferences& preferences, async::Clock& clock);

    /// The rows were replaced. Rows that come into an empty list are scrolled to the remembered place.
    void rowsChanged();
    /// A workspace of an earlier run is in place, and taking up its focus has moved the list: back to the remembered
    /// place.
    void workspaceRestored();
    /// Writes a place that still waits.
    void flush();

private:
    void write();
    void restore();

    TrackTable& m_table;
    Preferences& m_preferences;
    bool m_isEmpty = true;
    Delay m_rest;
};
