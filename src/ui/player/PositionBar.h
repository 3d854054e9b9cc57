#pragma once

#include "ui/context/WindowContext.h"

#include <QWidget>

class EnvelopeArea;
class TimeLabel;

/// Elapsed time, the area to seek in, remaining time.
class PositionBar : public QWidget {
    Q_OBJECT

public:
    explicit PositionBar(const WindowContext& context, QWidget* parent = nullptr);

    /// \param seconds length of the track that would be played, shown while none is loaded; 0 if not known.
    void setAwaitedLength(double seconds);
    /// Takes the language of the interface over.
    void retranslate();
    /// The area between the two times.
    EnvelopeArea& envelope() const { return *m_envelope; }
    /// What stands at the left, "2:14".
    QString elapsedText() const;
    /// What stands at the right, with a minus sign; an em dash while the length is not known.
    QString remainingText() const;
    /// Pixels beside the area that the two times take.
    int timesWidth() const;

private:
    void refreshTimes();

    WindowContext m_context;
    TimeLabel* m_elapsed;
    EnvelopeArea* m_envelope;
    TimeLabel* m_remaining;
    double m_awaitedLength = 0;
};
