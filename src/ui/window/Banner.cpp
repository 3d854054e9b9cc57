#include "ui/window/Banner.h"

#include "core/library/LibraryStore.h"
#include "core/library/tagwriting/ClosingQuestion.h"
#include "core/library/tagwriting/UnwrittenEdits.h"
#include "core/library/workspace/Workspace.h"
#include "ui/context/DashboardActions.h"
#include "ui/controls/ThemeButton.h"
#include "ui/controls/ThemeLabel.h"
#include "ui/text/Texts.h"
#include "ui/theme/Icons.h"
#include "ui/theme/Paint.h"

#include <QKeyEvent>
#include <QVBoxLayout>

namespace {
constexpr int kTop = 80; // below the section's header
constexpr int kIcon = 28;
constexpr int kShadow = 8; // room around the card
} // namespace

Banner::Banner(const WindowContext& context, QWidget& area)
    : QWidget(&area)
    , m_context(context)
    , m_area(area)
    , m_title(new ThemeLabel(context.theme, TextRole::BodyStrong, &ThemeColours::text, this))
    , m_text(new ThemeLabel(context.theme, TextRole::Body, &ThemeColours::text2, this))
    , m_keep(new ThemeButton(context.theme, ThemeButton::Kind::Accent, this))
    , m_drop(new ThemeButton(context.theme, ThemeButton::Kind::Plain, this))
    , m_close(new ThemeButton(context.theme, ThemeButton::Kind::Plain, this))
{
    constexpr int kInner = kShadow + Metrics::kSpace6;
    m_title->setWrapped(Metrics::kBannerWidth - 2 * kInner);
    m_text->setWrapped(Metrics::kBannerWidth - 2 * kInner);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(kInner, kInner + kIcon + Metrics::kSpace3, kInner, kInner);
    layout->setSpacing(Metrics::kSpace2);
    layout->addWidget(m_title, 0, Qt::AlignHCenter);
    layout->addWidget(m_text, 0, Qt::AlignHCenter);
    layout->addSpacing(Metrics::kSpace2);
    for (ThemeButton* button : {m_keep, m_drop, m_close}) {
        layout->addWidget(button, 0, Qt::AlignHCenter);
        button->setFocusPolicy(Qt::StrongFocus);
    }
    connect(m_keep, &QAbstractButton::clicked, this, [this] { answer(true); });
    connect(m_drop, &QAbstractButton::clicked, this, [this] { answer(false); });
    connect(m_close, &QAbstractButton::clicked, this, &Banner::dismiss);
    Workspace& workspace = context.store.workspace();
    connect(&workspace, &Workspace::noticeChanged, this, &Banner::refresh);
    connect(&workspace, &Workspace::askingWhatSavesKeepChanged, this, &Banner::refresh);
    connect(&workspace, &Workspace::lastErrorChanged, this, &Banner::refresh);
    connect(&context.store.closingQuestion(), &ClosingQuestion::changed, this, &Banner::refresh);
    connect(&context.theme, &Theme::changed, this, qOverload<>(&QWidget::update));
    area.installEventFilter(this);
    hide();
    retranslate();
}

void Banner::retranslate()
{
    refresh();
}

Banner::Subject Banner::subject() const
{
    const Workspace& workspace = m_context.store.workspace();
    if (m_context.store.closingQuestion().isAsking())
        return Subject::Closing;
    if (workspace.isAskingWhatSavesKeep())
        return Subject::Question;
    if (workspace.lastError())
        return Subject::Error;
    return workspace.notice() ? Subject::Notice : Subject::None;
}

void Banner::refresh()
{
    const Subject before = std::exchange(m_subject, subject());
    if (m_subject == Subject::None) {
        giveFocusBack();
        hide();
        return;
    }
    if (before == Subject::None)
        m_focusBefore = window()->focusWidget();
    m_close->setContent(
        Texts::localized(m_subject == Subject::Closing ? QStringLiteral("Не выходить") : QStringLiteral("Закрыть")));
    fill();
    setAccessibleName(m_title->text());
    setAccessibleDescription(m_text->text());
    m_keep->setVisible(isQuestion());
    m_drop->setVisible(isQuestion());
    m_close->setVisible(m_subject != Subject::Question);
    show();
    place();
    update();
    if (m_subject != before)
        focusFirst();
}

void Banner::fill()
{
    const Workspace& workspace = m_context.store.workspace();
    switch (m_subject) {
    case Subject::None:
        break;
    case Subject::Closing:
        fillClosing();
        break;
    case Subject::Question:
        setAnswers(QStringLiteral("Сохранять обложку и прочие поля"), QStringLiteral("Только десять полей"));
        m_title->setText(Texts::localized(QStringLiteral("Что оставить в файлах при сохранении?")));
        m_text->setText(Texts::localized(QStringLiteral(
            "Сохранение уберёт из файла обложку или поля, которых нет среди десяти полей Velmora. Выбор действует "
            "для всех следующих сохранений, изменить его можно в настройках.")));
        break;
    case Subject::Error: {
        const QString& error = *workspace.lastError();
        const QString& title = workspace.lastErrorTitle();
        m_title->setText(title.isEmpty() ? Texts::localized(QStringLiteral("Не удалось сохранить теги")) : title);
        m_text->setText(error.isEmpty() ? Texts::localized(QStringLiteral("Неизвестная ошибка")) : error);
        break;
    }
    case Subject::Notice:
        m_title->setText(Texts::localized(QStringLiteral("Трек находится в «Избранном»")));
        m_text->setText(*workspace.notice());
        break;
    }
}

/// Covers, and originals that are put back, are no edits of a row: they cannot be kept.
void Banner::fillClosing()
{
    const auto count = static_cast<int>(m_context.store.unwrittenEdits().rows().size());
    if (count == 0) {
        m_title->setText(Texts::localized(QStringLiteral("Файлы ещё записываются")));
        m_text->setText(Texts::localized(
            QStringLiteral("Теги или обложки ещё пишутся в файлы. Чего нет в файлах при выходе, того не будет и после "
                           "следующего запуска.")));
        setAnswers(QStringLiteral("Дописать и выйти"), QStringLiteral("Выйти сразу"));
        return;
    }
    m_title->setText(Texts::localized(QStringLiteral("Есть правки, которых ещё нет в файлах")));
    QString text = VelmoraLocalization::format(
        QStringLiteral("Файлов с такими правками: %d. Их можно дописать сейчас или оставить до следующего запуска: "
                       "тогда Velmora запишет их сама."),
        {count});
    if (!m_context.store.workspace().artworkWritingIDs().isEmpty())
        text += u' ' + Texts::localized(QStringLiteral("Обложки, которые сейчас пишутся, будут дописаны до выхода."));
    m_text->setText(text);
    setAnswers(QStringLiteral("Дописать и выйти"), QStringLiteral("Оставить до следующего запуска"));
}

/// The question takes the focus itself: a Return or a space that was on its way to a field must not answer it.
void Banner::focusFirst()
{
    setFocusPolicy(isQuestion() ? Qt::StrongFocus : Qt::NoFocus);
    if (isQuestion())
        setFocus(Qt::OtherFocusReason);
    else
        m_close->setFocus(Qt::OtherFocusReason);
}

/// Before it hides: the toolkit would pass the focus on to whatever comes next.
void Banner::giveFocusBack()
{
    const QWidget* focused = window()->focusWidget();
    if (!focused || (focused != this && !isAncestorOf(focused)))
        return;
    if (m_focusBefore && m_focusBefore->isVisible() && m_focusBefore->isEnabled())
        m_focusBefore->setFocus(Qt::OtherFocusReason);
    else
        emit leaveWanted();
}

void Banner::setAnswers(const QString& first, const QString& second)
{
    m_keep->setContent(Texts::localized(first));
    m_drop->setContent(Texts::localized(second));
    const int width = std::max(m_keep->sizeHint().width(), m_drop->sizeHint().width());
    m_keep->setFixedWidth(width); // equal answers
    m_drop->setFixedWidth(width);
}

void Banner::answer(bool isFirst)
{
    using Answer = ClosingQuestion::Answer;
    if (m_subject == Subject::Closing)
        m_context.store.closingQuestion().answer(isFirst ? Answer::Finish : Answer::Keep);
    else
        m_context.actions.answerWhatSavesKeep(isFirst);
}

void Banner::dismiss()
{
    if (m_subject == Subject::Closing)
        m_context.store.closingQuestion().answer(ClosingQuestion::Answer::Stay);
    else if (m_subject != Subject::Question)
        m_context.actions.dismissMessage();
}

void Banner::place()
{
    layout()->activate();
    const QSize size(Metrics::kBannerWidth, sizeHint().height());
    const int top = std::min(kTop, std::max(0, (m_area.height() - size.height()) / 2));
    setGeometry(QRect(QPoint((m_area.width() - size.width()) / 2, top), size));
    raise();
}

bool Banner::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Resize && isVisible())
        place();
    return QWidget::eventFilter(watched, event);
}

void Banner::keyPressEvent(QKeyEvent* event)
{
    const bool closes =
        event->key() == Qt::Key_Escape || event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (closes)
        dismiss(); // a question ignores it
    else
        QWidget::keyPressEvent(event);
}

void Banner::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const ThemeColours& c = m_context.theme.colours();
    QColor shade = c.shadow;
    shade.setAlphaF(c.shadow.alphaF() / kShadow);
    for (int spread = kShadow; spread > 0; --spread) {
        const int inset = kShadow - spread;
        Paint::roundedFill(painter, QRectF(rect()).adjusted(inset, inset, -inset, -inset),
                           Metrics::kRadiusLarge + spread, shade);
    }
    const QRect card = rect().adjusted(kShadow, kShadow, -kShadow, -kShadow);
    Paint::card(painter, card, Metrics::kRadiusLarge, c.raised, c.line);
    const QRect icon(width() / 2 - kIcon / 2, card.top() + Metrics::kSpace6 - Metrics::kStep, kIcon, kIcon);
    if (m_subject == Subject::Notice)
        Icons::paint(painter, icon, QStringLiteral("heart-filled"), c.heart);
    else if (m_subject == Subject::Error)
        Icons::paint(painter, icon, QStringLiteral("warning"), c.warning);
    else
        Icons::paint(painter, icon, QStringLiteral("info"), c.accent);
}
