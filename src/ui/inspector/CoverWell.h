#pragma once

#include "core/model/Track.h"
#include "ui/context/WindowContext.h"
#include "ui/drops/PictureSource.h"

#include <QAbstractButton>
#include <QBasicTimer>

/// The cover of the tracks shown, as a stack where they differ. Takes pictures that are dropped, pasted or chosen.
/// Thread: main.
class CoverWell : public QAbstractButton {
    Q_OBJECT

public:
    /// Pixels of its side, in a window that is high enough.
    static constexpr int kSide = 144;
    static constexpr int kSmallSide = 72; ///< in a low window

    /// Whether a picture can be put in, one is on its way into the file, or the format takes none.
    enum class Mode { Open, Writing, Closed };

    CoverWell(const WindowContext& context, QWidget* parent = nullptr);

    /// Smaller where the panel is low.
    void setSmall(bool isSmall);
    /// \param covers one track per different cover; may be empty.
    void setCovers(const QList<Track>& covers);
    /// Whether pictures are taken; while one is being written a veil lies over the cover.
    void setMode(Mode mode);
    /// As setMode() was last told; Open at first.
    Mode mode() const { return m_mode; }
    /// Why pictures are not taken, or what may be done; localised.
    void setHint(const QString& hint);
    /// Takes the picture of the clipboard, if there is one.
    void paste();
    /// Takes the language of the interface over.
    void retranslate();

Q_SIGNALS:
    /// A picture was dropped or pasted; it is not prepared yet.
    void offered(const PictureSource& offer);
    /// A click, or Return: the dialog is wanted.
    void chooseWanted();
    /// Something was done with the well while a picture is being written.
    void refused();

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    void take(const std::optional<PictureSource>& offer);
    void choose();
    void setHighlighted(bool isOn);
    int stackStep() const;
    QRect square(int place) const;
    void paintCovers(QPainter& painter) const;
    void paintVeil(QPainter& painter) const;
    void paintRing(QPainter& painter, const QRect& glyph) const;

    WindowContext m_context;
    QList<Track> m_covers;
    Mode m_mode = Mode::Open;
    bool m_isHighlighted = false;
    QBasicTimer m_turning; ///< of the ring, while a picture is being written
    int m_angle = 0;       ///< degrees
};
