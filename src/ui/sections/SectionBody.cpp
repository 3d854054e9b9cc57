#include "ui/sections/SectionBody.h"

#include <QEvent>

SectionBody::SectionBody(QWidget* parent)
    : QWidget(parent)
    , m_content(new QWidget(this))
{
}

void SectionBody::setPanel(QWidget* panel)
{
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
    const bool isShown = m_panel && m_panel->parentWidget() == this && !m_panel->isHidden();
    const int panel = isShown ? m_panel->minimumWidth() : 0;
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
