#include "ui/inspector/InspectorField.h"

#include "ui/controls/ThemeButton.h"
#include "ui/inspector/SuggestionList.h"
#include "ui/theme/Paint.h"

#include <QClipboard>
#include <QCompleter>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QStringListModel>

namespace {

constexpr int kHeight = 44;
constexpr int kTextHeight = 72; // three lines
constexpr int kPadding = 10;
constexpr int kLabelTop = 5;
constexpr int kLabelHeight = 14;
constexpr int kEditorTop = 20;
constexpr int kEditorHeight = 20;
constexpr int kRevertSide = 24;
constexpr int kBarWidth = Metrics::kSelectionBar;
constexpr int kEditorMargin = 2; // that a line edit keeps to itself
constexpr int kShownSuggestions = 8;

} // namespace

InspectorField::InspectorField(const Theme& theme, TagField field, Lines lines, QWidget* parent)
    : QWidget(parent)
    , m_theme(theme)
    , m_field(field)
    , m_revert(new ThemeButton(theme, ThemeButton::Kind::Quiet, this))
{
    setFixedHeight(lines == Lines::One ? kHeight : kTextHeight);
    if (lines == Lines::One)
        buildLine();
    else
        buildText();
    editor().installEventFilter(this);
    editor().setFont(theme.font(TextRole::Body));
    editor().setAcceptDrops(false); // a dropped path is no tag
    setFocusProxy(&editor());
    m_revert->setFocusPolicy(Qt::NoFocus); // Escape does the same
    m_revert->hide();
    connect(m_revert, &QAbstractButton::clicked, this, &InspectorField::revertWanted);
    connect(&theme, &Theme::changed, this, &InspectorField::applyColours);
    applyColours();
}

void InspectorField::buildLine()
{
    m_line = new QLineEdit(this);
    m_line->setFrame(false);
    connect(m_line, &QLineEdit::textChanged, this, [this](const QString& text) {
        if (!m_isSetting)
            emit edited(text);
    });
}

void InspectorField::buildText()
{
    m_text = new QPlainTextEdit(this);
    m_text->setFrameShape(QFrame::NoFrame);
    m_text->setTabChangesFocus(true);
    m_text->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_text->document()->setDocumentMargin(kEditorMargin);
    m_text->viewport()->setAutoFillBackground(false);
    m_text->viewport()->setAcceptDrops(false);
    connect(m_text, &QPlainTextEdit::textChanged, this, [this] {
        if (!m_isSetting)
            emit edited(m_text->toPlainText());
    });
}

QWidget& InspectorField::editor() const
{
    return m_line ? static_cast<QWidget&>(*m_line) : *m_text;
}

QString InspectorField::text() const
{
    return m_line ? m_line->text() : m_text->toPlainText();
}

void InspectorField::setText(const QString& text)
{
    if (text == this->text())
        return;
    m_isSetting = true;
    if (m_line) {
        m_line->setText(text);
        if (!m_line->hasFocus())
            m_line->setCursorPosition(0); // of a long text its beginning is seen
    } else {
        m_text->setPlainText(text);
    }
    m_isSetting = false;
}

void InspectorField::setState(const State& state)
{
    const bool isDone = m_state.isTouched && !state.isTouched;
    m_state = state;
    setText(state.text);
    if (isDone)
        forgetSteps();
    if (m_line)
        m_line->setPlaceholderText(state.hint);
    else
        m_text->setPlaceholderText(state.hint);
    editor().setEnabled(state.isEnabled);
    editor().setAccessibleDescription(state.text.isEmpty() ? state.hint : state.remark);
    m_revert->setVisible(state.isTouched && state.isEnabled);
    place();
    update();
}

/// What was typed has been saved or taken back: from here on Ctrl+Z means the program's own undo.
void InspectorField::forgetSteps()
{
    m_isSetting = true;
    if (m_line)
        m_line->setText(m_line->text());
    else
        m_text->document()->clearUndoRedoStacks();
    m_isSetting = false;
}

void InspectorField::setWords(const QString& label, const QString& revert)
{
    m_label = label;
    editor().setAccessibleName(label);
    m_revert->setIconOnly(QStringLiteral("undo"), revert, QStringLiteral("Esc"));
    m_revert->setAccessibleDescription(label);
    update();
}

void InspectorField::setSuggestions(const QStringList& values)
{
    if (!m_suggestions) {
        m_suggestions = new QStringListModel(this);
        auto* completer = new QCompleter(m_suggestions, this);
        completer->setCaseSensitivity(Qt::CaseInsensitive);
        completer->setFilterMode(Qt::MatchContains);
        completer->setMaxVisibleItems(kShownSuggestions);
        completer->setPopup(new SuggestionList(m_theme)); // takes ownership
        m_line->setCompleter(completer);
    }
    if (m_suggestions->stringList() != values)
        m_suggestions->setStringList(values);
}

void InspectorField::applyColours()
{
    QPalette palette = m_theme.palette();
    palette.setColor(QPalette::Base, m_theme.colours().raised);
    palette.setColor(QPalette::Disabled, QPalette::Base, m_theme.colours().surface);
    palette.setColor(QPalette::Disabled, QPalette::Text, m_theme.colours().text2); // to be read all the same
    editor().setPalette(palette);
    update();
}

void InspectorField::place()
{
    const int right = m_revert->isHidden() ? kPadding : kRevertSide + Metrics::kStep;
    const int left = kPadding - kEditorMargin;
    const int height = m_line ? kEditorHeight : this->height() - kEditorTop - kEditorMargin;
    editor().setGeometry(left, kEditorTop, width() - left - right, height);
    m_revert->setGeometry(width() - kRevertSide - Metrics::kStep, (kHeight - kRevertSide) / 2, kRevertSide,
                          kRevertSide);
}

void InspectorField::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    place();
}

void InspectorField::mousePressEvent(QMouseEvent*)
{
    editor().setFocus(Qt::MouseFocusReason);
}

bool InspectorField::handleKey(int key, bool hasShift)
{
    const bool isReturn = key == Qt::Key_Return || key == Qt::Key_Enter;
    if (isReturn && !(m_text && hasShift)) {
        emit saveWanted();
        return true;
    }
    if (key == Qt::Key_Escape) {
        if (m_state.isTouched)
            emit revertWanted();
        else
            emit leaveWanted();
        return true;
    }
    return false;
}

bool InspectorField::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::ShortcutOverride && !m_state.isTouched) {
        auto* press = static_cast<QKeyEvent*>(event);
        if (press->matches(QKeySequence::Undo) || press->matches(QKeySequence::Redo))
            return true; // not the field's
    }
    if (event->type() == QEvent::KeyPress) {
        auto* press = static_cast<QKeyEvent*>(event);
        const QMimeData* data =
            press->matches(QKeySequence::Paste) ? QGuiApplication::clipboard()->mimeData() : nullptr;
        if (data && !data->hasText()) {
            press->ignore(); // a picture is for the panel
            return true;
        }
        if (handleKey(press->key(), press->modifiers().testFlag(Qt::ShiftModifier)))
            return true;
    }
    if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut)
        update();
    return QWidget::eventFilter(watched, event);
}

void InspectorField::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const ThemeColours& c = m_theme.colours();
    Paint::card(painter, rect(), Metrics::kRadiusSmall, m_state.isEnabled ? c.raised : c.surface, c.line);
    if (m_state.isTouched) {
        const QRectF bar(kBarWidth, kLabelTop + Metrics::kHairline, kBarWidth, height() - 2.0 * kLabelTop - 2);
        Paint::roundedFill(painter, bar, kBarWidth / 2.0, c.accent);
    }
    if (editor().hasFocus())
        Paint::focusRing(painter, rect(), Metrics::kRadiusSmall, c.accent);
    const QFont& font = m_theme.font(TextRole::ColumnHead);
    QRect place(kPadding, kLabelTop, width() - 2 * kPadding, kLabelHeight);
    Paint::line(painter, place, m_label, font, m_state.isTouched ? c.accent : m_state.isEnabled ? c.text2 : c.text3);
    if (m_state.remark.isEmpty())
        return;
    place.setLeft(place.left() + QFontMetrics(font).horizontalAdvance(m_label) + Metrics::kSpace2);
    Paint::line(painter, place, m_state.remark, font, c.text3, Qt::AlignRight);
}
