#include "ui/sections/EmptyState.h"

#include "ui/commands/CommandCenter.h"
#include "ui/context/DashboardActions.h"
#include "ui/controls/ThemeButton.h"
#include "ui/controls/ThemeLabel.h"
#include "ui/sections/SectionDescriptor.h"
#include "ui/text/Texts.h"
#include "ui/theme/Icons.h"
#include "ui/theme/Paint.h"
#include "ui/theme/Theme.h"

#include <QPainter>
#include <QVBoxLayout>

namespace {

constexpr int kDisc = 84; // behind the icon

} // namespace

EmptyState::EmptyState(const WindowContext& context, const SectionDescriptor& descriptor, QWidget* parent)
    : QWidget(parent)
    , m_context(context)
    , m_descriptor(descriptor)
    , m_iconSpace(new QWidget(this))
    , m_sentence(new ThemeLabel(context.theme, TextRole::Body, &ThemeColours::text, this))
    , m_button(new ThemeButton(context.theme, ThemeButton::Kind::Plain, this))
    , m_hint(new ThemeLabel(context.theme, TextRole::Secondary, &ThemeColours::text3, this))
{
    m_iconSpace->setFixedSize(kDisc, kDisc);
    m_sentence->setWrapped(Metrics::kEmptyTextWidth);
    m_hint->setWrapped(Metrics::kEmptyTextWidth);
    auto* layout = new QVBoxLayout(this);
    layout->setSpacing(0);
    layout->addStretch(4);
    layout->addWidget(m_iconSpace, 0, Qt::AlignHCenter);
    layout->addSpacing(Metrics::kSpace4);
    layout->addWidget(m_sentence, 0, Qt::AlignHCenter);
    layout->addSpacing(Metrics::kSpace4);
    layout->addWidget(m_button, 0, Qt::AlignHCenter);
    layout->addSpacing(Metrics::kSpace4);
    layout->addWidget(m_hint, 0, Qt::AlignHCenter);
    layout->addStretch(5);
    connect(m_button, &QAbstractButton::clicked, this, [this] { m_context.actions.commands().perform(m_command); });
    connect(&context.theme, &Theme::changed, this, qOverload<>(&QWidget::update));
    setFocusPolicy(Qt::StrongFocus); // keeps the keyboard in the section without marking anything
    retranslate();
}

void EmptyState::retranslate()
{
    refresh();
}

void EmptyState::refresh()
{
    const SectionDescriptor::Words& words = m_descriptor.words;
    const QString hiddenBy = m_descriptor.hiddenBy ? m_descriptor.hiddenBy(m_context.store) : QString();
    const QString sentence = hiddenBy.isEmpty() ? Texts::localized(words.empty) : hiddenBy;
    m_command = hiddenBy.isEmpty() ? CommandID::AddFilesHere : CommandID::ClearFavoriteFilter;
    setAccessibleName(sentence);
    m_sentence->setText(sentence);
    m_hint->setText(Texts::localized(words.accepted));
    m_button->setContent(hiddenBy.isEmpty() ? Texts::localized(words.add) : Commands::text(m_command),
                         Commands::of(m_command).icon);
}

void EmptyState::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const ThemeColours& c = m_context.theme.colours();
    const QRect disc = m_iconSpace->geometry();
    Paint::card(painter, disc, kDisc / 2.0, c.surface, c.line);
    QRect icon(0, 0, Metrics::kIconLarge, Metrics::kIconLarge);
    icon.moveCenter(disc.center());
    Icons::paint(painter, icon, m_descriptor.icon, c.text3);
}
