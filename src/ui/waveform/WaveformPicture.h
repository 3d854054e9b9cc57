#pragma once

#include "WaveformScrubber/shape/Envelope.h"
#include "ui/waveform/WaveformColours.h"
#include "ui/waveform/WaveformDrawer.h"

#include <QPixmap>

class QPainter;

/// An envelope drawn in two colours, kept until anything that it depends on changes. Painting copies pixels only.
class WaveformPicture {
public:
    /// What the pixels depend on.
    struct Look {
        WaveformDrawer drawer = WaveformDrawer::Bars;
        QSize size;       ///< device-independent pixels
        double ratio = 1; ///< of the device
        WaveformColours colours;

        bool operator==(const Look&) const = default;
    };

    /// Draws what has changed. \return whether anything had.
    bool prepare(const Envelope& envelope, const Look& look);
    /// The prepared picture at a place, which is moved to the next pixel of the device. \param split device-independent
    /// pixels from the left edge that are drawn as played.
    void paint(QPainter& painter, const QPointF& place, double split);
    /// What was prepared last; null if nothing.
    const Envelope& envelope() const { return m_envelope; }
    /// Gives the pixels back.
    void clear();

private:
    const QPixmap& played();

    Envelope m_envelope;
    Look m_look;
    QPixmap m_unplayed;
    QPixmap m_played; ///< made when first needed: of the rows of a list at most one has such a part
};
