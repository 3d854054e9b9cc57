#pragma once

#include <QObject>
#include <QTimer>

class QAbstractItemView;

/// Tells when a list scrolls and when it has come to rest. Thread: main.
class ScrollActivity : public QObject {
    Q_OBJECT

public:
    static constexpr int kRestMilliseconds = 150;

    explicit ScrollActivity(QAbstractItemView& view);

    bool isScrolling() const { return m_isScrolling; }
    /// While muted, moves of the scroll bar come from the program and do not count.
    void setMuted(bool muted) { m_isMuted = muted; }

Q_SIGNALS:
    void scrollingChanged(bool scrolling);

private:
    void moved();
    void rest();

    QAbstractItemView& m_view;
    QTimer m_restTimer;
    bool m_isScrolling = false;
    bool m_isMuted = false;
};
