#include "ui/sections/SectionBody.h"

#include <QEvent>

SectionBody::SectionBody(QWidget* parent)
    : QWidget(parent)
    , m_content(new QWidget(this))
{
}

void SectionBody::setPanel(QWidget* panel, Narrow narrow)
{
    m_narrow = narrow;
    if (m_panel == panel)
        return;
    if (m_panel)
        m_panel->removeEventFilter(this);
    m_panel = panel;
    if (m_panel) {
        const bool isHidden = m_panel->isHidden();
        m_panel->setParent(this);
        m_panel->setVisible(!isHidden); // a new parent hides
        m_panel->installEventFilter(this);
    }
    place();
}

QSize SectionBody::minimumSizeHint() const
{
    return m_content->minimumSizeHint();
}

void SectionBody::place()
{
    if (m_panel && m_narrow == Narrow::Without)
        m_panel->setVisible(width() >= kListMinimum + m_panel->minimumWidth());
    const bool isShown = m_panel && m_panel->parentWidget() == this && !m_panel->isHidden();
    const int panel = isShown ? std::clamp(width() - kListComfort, m_panel->minimumWidth(),
                                           std::max(m_panel->minimumWidth(), m_panel->maximumWidth()))
                              : 0;
    m_content->setGeometry(0, 0, std::max(width() - panel, std::min(width(), kListMinimum)), height());
    if (!isShown)
        return;
    m_panel->setGeometry(width() - panel, 0, panel, height());
    m_panel->raise();
}

void SectionBody::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    place();
}

bool SectionBody::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::ShowToParent || event->type() == QEvent::HideToParent)
        place();
    return QWidget::eventFilter(watched, event);
}
