#include "ui/inspector/SaveBar.h"

#include "ui/controls/ThemeButton.h"
#include "ui/inspector/WrappedText.h"
#include "ui/text/Texts.h"

#include <QHBoxLayout>

namespace {
constexpr int kSide = 20; // the panel's margin
constexpr int kSummaryLines = 3;
} // namespace

SaveBar::SaveBar(const Theme& theme, QWidget* parent)
    : Panel(theme, &ThemeColours::surface, Qt::TopEdge, parent)
    , m_summary(new WrappedText(theme, {TextRole::Secondary, &ThemeColours::text2, kSummaryLines}, this))
    , m_link(new ThemeButton(theme, ThemeButton::Kind::Link, this))
    , m_buttons(new QWidget(this))
    , m_save(new ThemeButton(theme, ThemeButton::Kind::Accent, m_buttons))
    , m_revert(new ThemeButton(theme, ThemeButton::Kind::Plain, m_buttons))
{
    auto* buttons = new QHBoxLayout(m_buttons);
    buttons->setContentsMargins(0, 0, 0, 0);
    buttons->setSpacing(Metrics::kSpace2);
    buttons->addStretch();
    buttons->addWidget(m_revert);
    buttons->addWidget(m_save);
    auto* words = new QVBoxLayout;
    words->setSpacing(0);
    auto* summaryRow = new QHBoxLayout;
    summaryRow->setContentsMargins(Metrics::kStep, 0, 0, 0); // the link's own padding lies left of the text's edge
    summaryRow->addWidget(m_summary);
    words->addLayout(summaryRow);
    auto* linkRow = new QHBoxLayout;
    linkRow->addWidget(m_link);
    linkRow->addStretch();
    words->addLayout(linkRow);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(kSide - Metrics::kStep, Metrics::kSpace3, kSide, Metrics::kSpace3);
    layout->setSpacing(Metrics::kSpace2);
    layout->addLayout(words);
    layout->addWidget(m_buttons);
    setEnabled(false, false);
    retranslate();
}

void SaveBar::setSummary(const QString& summary, const QString& link)
{
    m_summary->setText(summary);
    m_link->setContent(link);
    m_link->setVisible(!link.isEmpty());
}

const QString& SaveBar::summary() const
{
    return m_summary->text();
}

void SaveBar::setButtonsShown(bool areShown)
{
    m_buttons->setVisible(areShown);
}

void SaveBar::setEnabled(bool canSave, bool canRevert)
{
    m_save->setEnabled(canSave);
    m_revert->setEnabled(canRevert);
}

void SaveBar::retranslate()
{
    m_save->setContent(Texts::localized(QStringLiteral("Сохранить")));
    m_save->setToolTip(QStringLiteral("Ctrl+S"));
    m_revert->setContent(Texts::localized(QStringLiteral("Отменить правки")));
}
