#pragma once

#include "ui/context/Delay.h"

#include <QObject>

class QAbstractItemView;

/// Tells when a list scrolls and when it has come to rest. Thread: main.
class ScrollActivity : public QObject {
    Q_OBJECT

public:
    /// Without a move for so long it has come to rest.
    static constexpr async::Duration kRest = async::seconds(0.15);

    /// Owned by the view, whose scroll bar it watches. \param clock outlives it.
    ScrollActivity(QAbstractItemView& view, async::Clock& clock);

    /// As scrollingChanged() was last told.
    bool isScrolling() const { return m_isScrolling; }
    /// While muted, moves of the scroll bar come from the program and do not count.
    void setMuted(bool muted) { m_isMuted = muted; }

Q_SIGNALS:
    /// Once at the first move, once at rest.
    void scrollingChanged(bool scrolling);

private:
    void moved();
    void rest();

    QAbstractItemView& m_view;
    bool m_isScrolling = false;
    bool m_isMuted = false;
    Delay m_rest;
};
