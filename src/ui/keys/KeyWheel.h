#pragma once

#include "core/model/MusicalKey.h"

#include <QHash>
#include <QWidget>

#include <optional>

class KeyWheelGeometry;
class Theme;

/// The Camelot wheel: the key of a track in the middle, the keys that mix with it lit, the others dimmed, those that
/// rows have less so. A click or Return on a segment asks for the rows in that key. Thread: main.
class KeyWheel : public QWidget {
    Q_OBJECT

public:
    explicit KeyWheel(const Theme& theme, QWidget* parent = nullptr);

    /// Another key takes the keyboard's place on the wheel along. \param key nothing if there is none. \param words
    /// what stands in the middle then.
    void setKey(const std::optional<MusicalKey>& key, const QString& words);
    /// How many rows have a key, by its Camelot code; keys without an entry have none.
    void setCounts(const QHash<QString, int>& counts);
    /// Takes the language of the interface over.
    void retranslate();
    QSize sizeHint() const override;

Q_SIGNALS:
    /// By a click, or by Return or the space bar where the keyboard stands; whether rows have the key is not asked.
    void keyChosen(const MusicalKey& key);

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;

private:
    QRectF square() const;
    KeyWheelGeometry geometryOfWheel() const;
    std::optional<MusicalKey> keyAt(const QPointF& position) const;
    QColor fillOf(const MusicalKey& key) const;
    bool isLit(const MusicalKey& key) const;
    QString describe(const MusicalKey& key) const;
    void paintSegment(QPainter& painter, const KeyWheelGeometry& geometry, const MusicalKey& key) const;
    void paintMiddle(QPainter& painter, const KeyWheelGeometry& geometry) const;
    void setHovered(const std::optional<MusicalKey>& key);
    void moveCursor(int steps);

    const Theme& m_theme;
    std::optional<MusicalKey> m_key;
    QString m_words;
    QHash<QString, int> m_counts;
    std::optional<MusicalKey> m_hovered;
    MusicalKey m_cursor; ///< where the keyboard stands
};
