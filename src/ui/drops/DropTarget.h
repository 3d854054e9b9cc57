#pragma once

#include <QList>
#include <QObject>
#include <QUrl>
#include <QWidget>

class QMimeData;

/// Takes files and folders that are dragged onto a widget. Drops without anything usable are refused. Owned by the
/// widget.
class DropTarget : public QObject {
    Q_OBJECT

public:
    /// \param takesOgg whether Ogg files are usable here as well.
    explicit DropTarget(QWidget& area, bool takesOgg = false);

    /// Whether a picture is taken where there is nothing to import.
    void setTakesPictures(bool takes) { m_takesPictures = takes; }
    /// Whether something usable is held over the widget.
    bool isHighlighted() const { return m_isHighlighted; }
    /// The local files and folders of a drag; empty unless one of the first 64 is a folder or an audio file. Longer
    /// drags are not looked through: they count as usable.
    static QList<QUrl> usableURLs(const QMimeData& data, bool takesOgg);

Q_SIGNALS:
    /// Something usable is held over the widget.
    void highlighted(bool isOn);
    /// Local files and folders, at least one of them usable.
    void dropped(const QList<QUrl>& urls);
    /// A picture without anything to import. \param data lives until the signal returns.
    void pictureDropped(const QMimeData& data);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void setHighlighted(bool isOn);
    bool isUsable(const QMimeData& data) const;
    void take(const QMimeData& data);

    bool m_takesOgg;
    bool m_takesPictures = false;
    bool m_isHighlighted = false;
};
