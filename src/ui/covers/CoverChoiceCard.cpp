#include "ui/covers/CoverChoiceCard.h"

#include "ui/controls/ThemeButton.h"
#include "ui/controls/ThemeLabel.h"
#include "ui/text/Texts.h"
#include "ui/theme/Paint.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPainterPath>

namespace {

constexpr int kPictureSide = 96;

QString factsOf(const ChosenPicture& picture)
{
    const QString pixels = QStringLiteral("%1 × %2").arg(picture.size.width()).arg(picture.size.height());
    return Texts::facts({pixels, picture.format, Texts::byteCount(picture.bytes.size())});
}

QString hintOf(const ChosenPicture& picture)
{
    if (picture.isSmall())
        return Texts::localized(QStringLiteral("Меньше 500 пикселей: на больших экранах будет нечётко"));
    if (!picture.isSquare())
        return Texts::localized(QStringLiteral("Не квадратное: плееры могут обрезать края"));
    return {};
}

} // namespace

CoverChoiceCard::CoverChoiceCard(const WindowContext& context, QWidget* parent)
    : Panel(context.theme, &ThemeColours::surface, Qt::BottomEdge, parent)
    , m_context(context)
    , m_pictureArea(new QWidget(this))
    , m_title(new ThemeLabel(context.theme, TextRole::BodyStrong, &ThemeColours::text, this))
    , m_facts(new ThemeLabel(context.theme, TextRole::Secondary, &ThemeColours::text2, this))
    , m_format(new ThemeLabel(context.theme, TextRole::Secondary, &ThemeColours::text2, this))
    , m_hint(new ThemeLabel(context.theme, TextRole::Secondary, &ThemeColours::warning, this))
    , m_apply(new ThemeButton(context.theme, ThemeButton::Kind::Plain, this))
    , m_remove(new ThemeButton(context.theme, ThemeButton::Kind::Plain, this))
{
    buildLayout();
    connect(m_apply, &QAbstractButton::clicked, this, &CoverChoiceCard::applyWanted);
    connect(m_remove, &QAbstractButton::clicked, this, &CoverChoiceCard::removeWanted);
    hide();
    retranslate();
}

void CoverChoiceCard::buildLayout()
{
    m_pictureArea->setFixedSize(kPictureSide, kPictureSide);
    auto* words = new QVBoxLayout;
    words->setSpacing(Metrics::kStep);
    words->addStretch();
    for (ThemeLabel* line : {m_title, m_facts, m_format, m_hint})
        words->addWidget(line);
    words->addStretch();
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(Metrics::kSpace6, Metrics::kSpace4, Metrics::kSpace6, Metrics::kSpace4);
    layout->setSpacing(Metrics::kSpace3);
    layout->addWidget(m_pictureArea);
    layout->addSpacing(Metrics::kStep);
    layout->addLayout(words, 1);
    layout->addSpacing(Metrics::kStep);
    layout->addWidget(m_remove);
    layout->addWidget(m_apply);
}

void CoverChoiceCard::setPicture(const std::optional<ChosenPicture>& picture)
{
    m_picture = picture;
    m_scaled = QPixmap();
    refreshWords();
    setVisible(picture.has_value());
    update();
}

void CoverChoiceCard::setTargetCount(qsizetype count)
{
    if (std::exchange(m_targetCount, count) != count)
        refreshApply();
}

void CoverChoiceCard::retranslate()
{
    m_title->setText(Texts::localized(QStringLiteral("Новая обложка")));
    m_remove->setContent(Texts::localized(QStringLiteral("Убрать")));
    setAccessibleName(m_title->text());
    refreshWords();
    refreshApply();
}

void CoverChoiceCard::refreshWords()
{
    if (!m_picture)
        return;
    m_facts->setText(factsOf(*m_picture));
    m_format->setText(Texts::localized(m_picture->isKept() ? QStringLiteral("Будет сохранена как PNG, без изменений")
                                                           : QStringLiteral("Будет сохранена как JPEG")));
    const QString hint = hintOf(*m_picture);
    m_hint->setText(hint);
    m_hint->setVisible(!hint.isEmpty());
    setAccessibleDescription(Texts::facts({m_facts->text(), m_format->text(), hint}));
}

void CoverChoiceCard::refreshApply()
{
    const bool isUsable = m_targetCount > 0;
    m_apply->setContent(
        isUsable ? VelmoraLocalization::format(QStringLiteral("Присвоить выбранным: %d"), {qint64(m_targetCount)})
                 : Texts::localized(QStringLiteral("Выберите треки")));
    m_apply->setEnabled(isUsable);
}

void CoverChoiceCard::paintEvent(QPaintEvent* event)
{
    Panel::paintEvent(event);
    if (!m_picture)
        return;
    QPainter painter(this);
    paintPicture(painter);
}

/// The whole picture, however long it is, in the middle of its square.
void CoverChoiceCard::paintPicture(QPainter& painter)
{
    const double ratio = devicePixelRatioF();
    const QRect area = m_pictureArea->geometry();
    const QSize pixels = m_picture->preview.size().scaled((QSizeF(area.size()) * ratio).toSize(), Qt::KeepAspectRatio);
    if (m_scaled.size() != pixels) {
        m_scaled = QPixmap::fromImage(
            m_picture->preview.scaled(pixels.expandedTo({1, 1}), Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
        m_scaled.setDevicePixelRatio(ratio);
    }
    QRectF place(QPointF(), QSizeF(pixels) / ratio);
    place.moveCenter(QRectF(area).center());
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    const double radius = std::min<double>(Metrics::kRadiusSmall, std::min(place.width(), place.height()) / 2);
    QPainterPath outline;
    outline.addRoundedRect(place, radius, radius);
    painter.setClipPath(outline);
    painter.fillRect(place, Qt::white); // what is transparent lies on white in files as well
    painter.drawPixmap(place, m_scaled, QRectF(m_scaled.rect()));
}

void CoverChoiceCard::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape)
        emit removeWanted();
    else
        Panel::keyPressEvent(event);
}
