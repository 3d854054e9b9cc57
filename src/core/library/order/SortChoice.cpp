#include "core/library/order/SortChoice.h"

SortChoice::SortChoice(Preference<QString>& field, Preference<QString>& direction)
    : m_field(field)
    , m_direction(direction)
    , m_key(read())
{
}

FolderSorts::Key SortChoice::read() const
{
    const auto field = trackSortFieldFromRawValue(m_field.get());
    const auto direction = trackSortDirectionFromRawValue(m_direction.get());
    return {field ? *field : *trackSortFieldFromRawValue(m_field.defaultValue()),
            direction ? *direction : *trackSortDirectionFromRawValue(m_direction.defaultValue())};
}

bool SortChoice::set(const FolderSorts::Key& key)
{
    const FolderSorts::Key before = std::exchange(m_key, key); // first, so that our own writes are no news
    if (before.direction != key.direction)
        m_direction.set(rawValue(key.direction));
    if (before.field != key.field)
        m_field.set(rawValue(key.field));
    return before != key;
}

bool SortChoice::preferenceChanged(const QString& preferenceKey)
{
    if (preferenceKey == m_field.key())
        return std::exchange(m_key.field, read().field) != m_key.field;
    if (preferenceKey == m_direction.key())
        return std::exchange(m_key.direction, read().direction) != m_key.direction;
    return false;
}
