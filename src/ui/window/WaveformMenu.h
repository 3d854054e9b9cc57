#pragma once

#include "WaveformScrubber/WaveformCache.h"
#include "async/TaskSlot.h"
#include "ui/context/WindowContext.h"

#include <QMenu>

/// How waveforms look, what the wheel does over them, and how much their cache takes.
class WaveformMenu : public QMenu {
    Q_OBJECT

public:
    /// Measures the envelopes on disk while it is open.
    /// Changes preferences alone: those who draw waveforms follow these.
    WaveformMenu(const WindowContext& context, QWidget* parent);

    /// The size of the cache as it is shown. \param size nothing while it is not known.
    static QString cacheText(const std::optional<EnvelopeCacheSize>& size);

private:
    void addDrawers();
    void addColours();
    void addHeights();
    void addCache();
    void chooseColour();
    async::Task<> measure(std::stop_token stop);

    WindowContext m_context;
    QString m_presetBefore; ///< of the colours, should the choice of an own colour be given up
    QAction* m_size = nullptr;
    QAction* m_empty = nullptr;
    async::TaskSlot m_measuring;
};
