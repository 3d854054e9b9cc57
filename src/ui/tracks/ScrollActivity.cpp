#include "ui/tracks/ScrollActivity.h"

#include <QAbstractItemView>
#include <QScrollBar>

ScrollActivity::ScrollActivity(QAbstractItemView& view, async::Clock& clock)
    : QObject(&view)
    , m_view(view)
    , m_rest(clock, kRest, [this] { rest(); })
{
    connect(view.verticalScrollBar(), &QScrollBar::valueChanged, this, &ScrollActivity::moved);
    connect(view.verticalScrollBar(), &QScrollBar::sliderPressed, this, &ScrollActivity::moved);
    connect(view.verticalScrollBar(), &QScrollBar::sliderReleased, this, [this] { m_rest.start(); });
}

void ScrollActivity::moved()
{
    if (m_isMuted || !m_view.isVisible())
        return;
    m_rest.start();
    if (!std::exchange(m_isScrolling, true))
        emit scrollingChanged(true);
}

void ScrollActivity::rest()
{
    if (m_view.verticalScrollBar()->isSliderDown())
        return; // held, though not moving
    if (std::exchange(m_isScrolling, false))
        emit scrollingChanged(false);
}
