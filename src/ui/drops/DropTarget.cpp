#include "ui/drops/DropTarget.h"

#include "core/model/SupportedAudio.h"
#include "ui/drops/PictureSource.h"

#include <QDropEvent>
#include <QFileInfo>
#include <QMimeData>

namespace {

constexpr int kExamined = 64; // chosen: a drag of thousands of strange files must not stall the pointer

bool isAudioOrFolder(const QUrl& url, bool takesOgg)
{
    const QString name = url.fileName();
    if (SupportedAudio::hasSupportedExtension(name))
        return true;
    if (takesOgg && name.endsWith(QLatin1StringView(".ogg"), Qt::CaseInsensitive))
        return true;
    return QFileInfo(url.toLocalFile()).isDir();
}

} // namespace

DropTarget::DropTarget(QWidget& area, bool takesOgg)
    : QObject(&area)
    , m_takesOgg(takesOgg)
{
    area.setAcceptDrops(true);
    area.installEventFilter(this);
}

QList<QUrl> DropTarget::usableURLs(const QMimeData& data, bool takesOgg)
{
    QList<QUrl> local;
    const QList<QUrl> urls = data.urls();
    for (const QUrl& url : urls) {
        if (url.isLocalFile())
            local.append(url);
    }
    const auto end = local.cbegin() + std::min<qsizetype>(local.size(), kExamined);
    const bool any = std::any_of(local.cbegin(), end, [&](const QUrl& url) { return isAudioOrFolder(url, takesOgg); });
    return any || local.size() > kExamined ? local : QList<QUrl>();
}

bool DropTarget::isUsable(const QMimeData& data) const
{
    return !usableURLs(data, m_takesOgg).isEmpty() || (m_takesPictures && PictureSources::hasPicture(data));
}

/// Music goes first: a folder of an album that is dragged together with its cover is an import.
void DropTarget::take(const QMimeData& data)
{
    const QList<QUrl> urls = usableURLs(data, m_takesOgg);
    if (!urls.isEmpty())
        emit dropped(urls);
    else
        emit pictureDropped(data);
}

bool DropTarget::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type()) {
    case QEvent::DragEnter: {
        auto* drag = static_cast<QDragEnterEvent*>(event);
        setHighlighted(isUsable(*drag->mimeData()));
        [[fallthrough]];
    }
    case QEvent::DragMove: {
        auto* drag = static_cast<QDragMoveEvent*>(event);
        if (m_isHighlighted) {
            drag->setDropAction(Qt::CopyAction);
            drag->accept();
        } else {
            drag->ignore();
        }
        return true;
    }
    case QEvent::DragLeave:
        setHighlighted(false);
        return true;
    case QEvent::Drop: {
        auto* drop = static_cast<QDropEvent*>(event);
        setHighlighted(false);
        if (!isUsable(*drop->mimeData())) {
            drop->ignore();
            return true;
        }
        drop->setDropAction(Qt::CopyAction);
        drop->accept();
        take(*drop->mimeData());
        return true;
    }
    default:
        return QObject::eventFilter(watched, event);
    }
}

void DropTarget::setHighlighted(bool isOn)
{
    if (std::exchange(m_isHighlighted, isOn) != isOn)
        emit highlighted(isOn);
}
