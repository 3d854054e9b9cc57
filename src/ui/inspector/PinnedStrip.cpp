#include "ui/inspector/PinnedStrip.h"

#include "ui/controls/ThemeButton.h"
#include "ui/inspector/WrappedText.h"
#include "ui/text/Texts.h"

#include <QHBoxLayout>
#include <QPainter>

namespace {
constexpr int kSide = 20; // the panel's margin
constexpr int kLines = 2;
} // namespace

PinnedStrip::PinnedStrip(const Theme& theme, QWidget* parent)
    : Panel(theme, &ThemeColours::surface, Qt::BottomEdge, parent)
    , m_theme(theme)
    , m_text(new WrappedText(theme, {TextRole::SecondaryStrong, &ThemeColours::text, kLines}, this))
    , m_save(new ThemeButton(theme, ThemeButton::Kind::Link, this))
    , m_revert(new ThemeButton(theme, ThemeButton::Kind::Link, this))
{
    auto* links = new QHBoxLayout;
    links->setSpacing(Metrics::kSpace2);
    links->addWidget(m_save);
    links->addWidget(m_revert);
    links->addStretch();
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(kSide - Metrics::kStep, Metrics::kSpace2, kSide, Metrics::kStep);
    layout->setSpacing(0);
    auto* words = new QHBoxLayout;
    words->setContentsMargins(Metrics::kStep, 0, 0, 0); // the links' own padding lies left of the text's edge
    words->addWidget(m_text);
    layout->addLayout(words);
    layout->addLayout(links);
    retranslate();
}

void PinnedStrip::setSubject(const QString& whose)
{
    m_whose = whose;
    m_text->setText(VelmoraLocalization::format(QStringLiteral("Правки для: %@ — не сохранены"), {whose}));
}

const QString& PinnedStrip::text() const
{
    return m_text->text();
}

void PinnedStrip::retranslate()
{
    m_save->setContent(Texts::localized(QStringLiteral("Сохранить")));
    m_revert->setContent(Texts::localized(QStringLiteral("Отменить правки")));
    setSubject(m_whose);
}

void PinnedStrip::paintEvent(QPaintEvent* event)
{
    Panel::paintEvent(event);
    QPainter painter(this);
    painter.fillRect(rect().adjusted(0, 0, 0, -Metrics::kHairline), m_theme.colours().selection);
}
