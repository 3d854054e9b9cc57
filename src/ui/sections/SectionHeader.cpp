#include "ui/sections/SectionHeader.h"

#include "core/library/LibraryStore.h"
#include "platform/Preferences.h"
#include "ui/commands/CommandCenter.h"
#include "ui/context/DashboardActions.h"
#include "ui/controls/ThemeButton.h"
#include "ui/controls/ThemeLabel.h"
#include "ui/sections/SectionDescriptor.h"
#include "ui/text/Texts.h"

#include <QHBoxLayout>

SectionHeader::SectionHeader(const WindowContext& context, const SectionDescriptor& descriptor, QWidget* parent)
    : Panel(context.theme, &ThemeColours::background, Qt::BottomEdge, parent)
    , m_context(context)
    , m_descriptor(descriptor)
    , m_title(new ThemeLabel(context.theme, TextRole::Title, &ThemeColours::text, this))
    , m_facts(new ThemeLabel(context.theme, TextRole::Secondary, &ThemeColours::text2, this))
    , m_factsLine(new QHBoxLayout)
    , m_actions(new QHBoxLayout)
    , m_menuButton(new ThemeButton(context.theme, ThemeButton::Kind::Quiet, this))
    , m_mainButton(new ThemeButton(context.theme, ThemeButton::Kind::Accent, this))
{
    setFixedHeight(Metrics::kHeaderHeight);
    auto* words = new QVBoxLayout;
    words->setSpacing(0);
    words->addStretch();
    words->addWidget(m_title);
    words->addLayout(m_factsLine);
    m_factsLine->setSpacing(Metrics::kSpace2);
    m_factsLine->addWidget(m_facts);
    m_factsLine->addStretch();
    words->addStretch();
    m_actions->setSpacing(Metrics::kSpace2);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(Metrics::kSpace6, 0, Metrics::kSpace6, 0);
    layout->setSpacing(Metrics::kSpace3);
    layout->addLayout(words, 1);
    if (m_descriptor.addsByMainButton()) {
        layout->addLayout(m_actions);
        addTagsButton();
        layout->addWidget(m_menuButton);
        connect(m_mainButton, &QAbstractButton::clicked, this,
                [this] { m_context.actions.commands().perform(CommandID::AddFilesHere); });
    } else { // the two actions are steps of one thing and stand together
        addTagsButton();
        layout->addWidget(m_menuButton);
        layout->addLayout(m_actions);
    }
    layout->addWidget(m_mainButton);
    retranslate();
}

void SectionHeader::setFacts(const QString& facts)
{
    m_facts->setText(facts);
    m_facts->setVisible(!facts.isEmpty());
}

const QString& SectionHeader::facts() const
{
    return m_facts->text();
}

ThemeButton* SectionHeader::addLink()
{
    auto* link = new ThemeButton(m_context.theme, ThemeButton::Kind::Link, this);
    m_factsLine->insertWidget(1, link);
    return link;
}

ThemeButton* SectionHeader::addAction()
{
    auto* button = new ThemeButton(m_context.theme, ThemeButton::Kind::Plain, this);
    m_actions->addWidget(button);
    return button;
}

/// Opens and closes the inspector, where there are rows for it.
void SectionHeader::addTagsButton()
{
    if (!m_descriptor.section().holdsLibraryTracks())
        return;
    m_tagsButton = new ThemeButton(m_context.theme, ThemeButton::Kind::Quiet, this);
    layout()->addWidget(m_tagsButton);
    const Preferences& preferences = m_context.store.preferences();
    connect(m_tagsButton, &QAbstractButton::clicked, this,
            [this] { m_context.actions.commands().perform(CommandID::ShowTags); });
    connect(&preferences, &Preferences::changed, this, [this, &preferences](const QString& key) {
        if (key == preferences.inspectorVisible.key())
            showTagsButton();
    });
    connect(&m_context.theme, &Theme::changed, this, &SectionHeader::showTagsButton);
    showTagsButton();
}

void SectionHeader::showTagsButton()
{
    if (!m_tagsButton)
        return;
    const bool isOpen = m_context.store.preferences().inspectorVisible.get();
    m_tagsButton->setIconColour(isOpen ? m_context.theme.colours().accent : QColor());
    m_tagsButton->setIconOnly(
        QStringLiteral("inspector"),
        Texts::localized(isOpen ? QStringLiteral("Скрыть теги") : QStringLiteral("Показать теги")),
        Commands::keys(CommandID::ShowTags));
}

void SectionHeader::retranslate()
{
    showTagsButton();
    m_title->setText(Texts::localized(m_descriptor.words.title));
    if (m_descriptor.addsByMainButton()) {
        m_mainButton->setContent(Texts::localized(m_descriptor.words.add), QStringLiteral("plus"));
        m_mainButton->setToolTip(Commands::keys(CommandID::AddFiles));
    }
    m_menuButton->setIconOnly(QStringLiteral("more"), Texts::localized(QStringLiteral("Команды")));
}
