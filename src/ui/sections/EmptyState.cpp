#include "ui/sections/EmptyState.h"

#include "ui/DashboardActions.h"
#include "ui/text/Texts.h"
#include "ui/theme/Icons.h"
#include "ui/theme/Paint.h"
#include "ui/theme/Theme.h"
#include "ui/window/ThemeButton.h"
#include "ui/window/ThemeLabel.h"

#include <QPainter>
#include <QVBoxLayout>

namespace {

constexpr int kDisc = 84; // behind the icon

struct Words {
    QString sentence;
    QString hint;
};

Words wordsFor(LibraryTab tab)
{
    const QString formats = QStringLiteral("Сюда можно перетащить файлы и папки: MP3, FLAC, WAV, AIFF, M4A");
    switch (tab) {
    case LibraryTab::Playlist:
        return {QStringLiteral("Плейлист пуст. Добавьте треки, чтобы начать подготовку."), formats};
    case LibraryTab::Favorites:
        return {QStringLiteral("Отмечайте треки сердцем, и они соберутся здесь."), formats};
    case LibraryTab::Covers:
        return {QStringLiteral("Здесь появятся обложки избранных и добавленных треков."), formats};
    case LibraryTab::Converter:
        return {QStringLiteral("Очередь конвертера пуста."),
                QStringLiteral("Сюда можно перетащить файлы и папки: MP3, FLAC, WAV, AIFF, M4A, OGG")};
    case LibraryTab::Analysis:
        return {QStringLiteral("Добавьте файлы, чтобы проверить качество звука."), formats};
    case LibraryTab::MusicalKey:
        return {QStringLiteral("Добавьте файлы для определения тональности"), formats};
    case LibraryTab::Duplicates:
        return {QStringLiteral("Добавьте папки, в которых нужно искать одинаковые треки."),
                QStringLiteral("Сюда можно перетащить папки и файлы")};
    }
    Q_UNREACHABLE();
}

} // namespace

EmptyState::EmptyState(const WindowContext& context, LibraryTab tab, QWidget* parent)
    : QWidget(parent)
    , m_context(context)
    , m_tab(tab)
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
    connect(m_button, &QAbstractButton::clicked, this, [this] { m_context.actions.openSectionPanel(); });
    connect(&context.theme, &Theme::changed, this, qOverload<>(&QWidget::update));
    setFocusPolicy(Qt::StrongFocus); // keeps the keyboard in the section without marking anything
    retranslate();
}

void EmptyState::retranslate()
{
    const Words words = wordsFor(m_tab);
    setAccessibleName(Texts::localized(words.sentence));
    m_sentence->setText(Texts::localized(words.sentence));
    m_hint->setText(Texts::localized(words.hint));
    m_button->setContent(Texts::addFiles(m_tab), QStringLiteral("plus"));
}

void EmptyState::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const ThemeColours& c = m_context.theme.colours();
    const QRect disc = m_iconSpace->geometry();
    Paint::card(painter, disc, kDisc / 2.0, c.surface, c.line);
    QRect icon(0, 0, Metrics::kIconLarge, Metrics::kIconLarge);
    icon.moveCenter(disc.center());
    Icons::paint(painter, icon, Icons::nameForTab(m_tab), c.text3);
}
