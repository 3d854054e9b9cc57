#include "core/model/DecodedPictures.h"

DecodedPictures::DecodedPictures(qsizetype entryLimit, qsizetype costLimit)
    : m_entryLimit(entryLimit)
    , m_costLimit(costLimit)
{
}

QImage DecodedPictures::find(const QString& key)
{
    const QMutexLocker lock(&m_mutex);
    const auto known = m_places.constFind(key);
    if (known == m_places.constEnd())
        return {};
    m_entries.splice(m_entries.begin(), m_entries, *known);
    return m_entries.front().image;
}

void DecodedPictures::store(const QString& key, const QImage& image, qsizetype cost)
{
    const QMutexLocker lock(&m_mutex);
    if (const auto known = m_places.constFind(key); known != m_places.constEnd())
        drop(*known);
    if (cost > m_costLimit)
        return;
    m_entries.push_front({key, image, cost});
    m_places.insert(key, m_entries.begin());
    m_cost += cost;
    while (m_cost > m_costLimit || m_places.size() > m_entryLimit)
        drop(std::prev(m_entries.end()));
}

void DecodedPictures::drop(Place place)
{
    m_cost -= place->cost;
    m_places.remove(place->key);
    m_entries.erase(place);
}
