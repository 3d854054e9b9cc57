#pragma once

#include <QHash>
#include <QImage>
#include <QMutex>
#include <QString>

#include <list>

/// Pictures decoded lately, bounded by their number and by the sum of their costs; the least recently used go first.
/// Thread: any.
class DecodedPictures {
public:
    static constexpr qsizetype kEntryLimit = 128;
    static constexpr qsizetype kCostLimit = 67'108'864; // bytes of the encoded pictures

    /// \param entryLimit pictures at most. \param costLimit sum of their costs at most.
    explicit DecodedPictures(qsizetype entryLimit = kEntryLimit, qsizetype costLimit = kCostLimit);

    /// The picture under a key, which counts as its use; a null image if it is not here.
    QImage find(const QString& key);
    /// Keeps a picture, in place of one under the same key. One that costs more than the whole limit is not kept, and
    /// what stood under its key is gone.
    /// \param cost in bytes; the size of the encoded picture, as cheap to ask for as it is rough
    void store(const QString& key, const QImage& image, qsizetype cost);

private:
    struct Entry {
        QString key;
        QImage image;
        qsizetype cost = 0;
    };
    using Place = std::list<Entry>::iterator;

    void drop(Place place);

    const qsizetype m_entryLimit;
    const qsizetype m_costLimit;
    QMutex m_mutex;
    std::list<Entry> m_entries; // most recently used first
    QHash<QString, Place> m_places;
    qsizetype m_cost = 0;
};
