#include "ui/window/Banner.h"

#include "core/library/LibraryStore.h"
#include "core/library/workspace/Workspace.h"
#include "ui/DashboardActions.h"
#include "ui/text/Texts.h"
#include "ui/theme/Icons.h"
#include "ui/theme/Paint.h"
#include "ui/window/ThemeButton.h"
#include "ui/window/ThemeLabel.h"

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
    layout->addWidget(m_close, 0, Qt::AlignHCenter);
    m_close->setFocusPolicy(Qt::StrongFocus);
    connect(m_close, &QAbstractButton::clicked, this, &Banner::dismiss);
    Workspace& workspace = context.library.workspace();
    connect(&workspace, &Workspace::noticeChanged, this, &Banner::refresh);
    connect(&workspace, &Workspace::lastErrorChanged, this, &Banner::refresh);
    connect(&context.theme, &Theme::changed, this, qOverload<>(&QWidget::update));
    area.installEventFilter(this);
    hide();
    retranslate();
}

void Banner::retranslate()
{
    m_close->setContent(Texts::localized(QStringLiteral("Закрыть")));
    refresh();
}

void Banner::refresh()
{
    const Workspace& workspace = m_context.library.workspace();
    m_isError = workspace.lastError().has_value();
    if (!m_isError && !workspace.notice()) {
        hide();
        return;
    }
    if (m_isError) {
        const QString& error = *workspace.lastError();
        m_title->setText(Texts::localized(QStringLiteral("Не удалось сохранить теги")));
        m_text->setText(error.isEmpty() ? Texts::localized(QStringLiteral("Неизвестная ошибка")) : error);
    } else {
        m_title->setText(Texts::localized(QStringLiteral("Трек находится в «Избранном»")));
        m_text->setText(*workspace.notice());
    }
    setAccessibleName(m_title->text());
    setAccessibleDescription(m_text->text());
    const bool wasHidden = isHidden();
    show();
    place();
    if (wasHidden)
        m_close->setFocus(Qt::OtherFocusReason);
}

void Banner::dismiss()
{
    if (m_isError)
        m_context.actions.dismissLastError();
    else
        m_context.actions.dismissNotice();
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
    if (event->key() == Qt::Key_Escape || event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        dismiss();
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
    Icons::paint(painter, icon, m_isError ? QStringLiteral("warning") : QStringLiteral("heart-filled"),
                 m_isError ? c.warning : c.heart);
}
