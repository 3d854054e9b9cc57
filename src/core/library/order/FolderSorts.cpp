#include "core/library/order/FolderSorts.h"

#include "core/library/workspace/Rows.h"

#include <algorithm>

namespace {

bool sameValues(const QList<Track>& left, int leftFirst, const QList<Track>& right, int rightFirst, int count)
{
    return std::equal(left.cbegin() + leftFirst, left.cbegin() + leftFirst + count, right.cbegin() + rightFirst,
                      [](const Track& l, const Track& r) { return l.isSameValueAs(r); });
}

} // namespace

const QList<Track>& FolderSorts::update(const QList<Track>& base, const std::vector<FolderSection>& sections,
                                        const Key& key, const TrackSorter::Inputs& inputs)
{
    const bool holds = m_areInputsKnown && m_key == key;
    m_key = key;
    m_areInputsKnown = true;
    if (holds && m_base.size() == base.size() && m_sections == sections) {
        resort(base, inputs);
        return m_rows;
    }
    QHash<QString, int> known; // folders of the last sort that may be taken over
    if (holds) {
        known.reserve(qsizetype(m_sections.size()));
        for (size_t i = 0; i < m_sections.size(); ++i)
            known.insert(m_sections[i].folder, int(i));
    }
    rebuild(base, sections, inputs, known);
    return m_rows;
}

/// The folders stand where they stood: only those with other rows are touched.
void FolderSorts::resort(const QList<Track>& base, const TrackSorter::Inputs& inputs)
{
    for (const FolderSection& section : m_sections) {
        if (sameValues(base, section.first, m_base, section.first, section.end - section.first))
            continue;
        sortSection(base, section, inputs);
        place(base, section);
        std::copy(base.cbegin() + section.first, base.cbegin() + section.end, m_base.begin() + section.first);
    }
}

void FolderSorts::rebuild(const QList<Track>& base, const std::vector<FolderSection>& sections,
                          const TrackSorter::Inputs& inputs, const QHash<QString, int>& known)
{
    const std::vector<int> oldSource = std::exchange(m_source, std::vector<int>(size_t(base.size())));
    m_places.resize(size_t(base.size()));
    m_rows = base;
    for (const FolderSection& section : sections) {
        if (const FolderSection* old = sameSection(base, section, known)) {
            for (int row = section.first; row < section.end; ++row)
                m_source[size_t(row)] =
                    oldSource[size_t(row - section.first + old->first)] - old->first + section.first;
        } else {
            sortSection(base, section, inputs);
        }
        place(base, section);
    }
    m_base = base;
    m_sections = sections;
}

/// The section of the last sort whose order still holds for \p section, or null.
const FolderSorts::FolderSection* FolderSorts::sameSection(const QList<Track>& base, const FolderSection& section,
                                                           const QHash<QString, int>& known) const
{
    const auto found = known.constFind(section.folder);
    if (found == known.constEnd())
        return nullptr;
    const FolderSection& old = m_sections[size_t(*found)];
    const int count = section.end - section.first;
    return old.end - old.first == count && sameValues(base, section.first, m_base, old.first, count) ? &old : nullptr;
}

void FolderSorts::sortSection(const QList<Track>& base, const FolderSection& section, const TrackSorter::Inputs& inputs)
{
    const std::span<const Track> rows(base.constData() + section.first, size_t(section.end - section.first));
    int row = section.first;
    for (const int source : TrackSorter::order(rows, m_key.field, m_key.direction, inputs))
        m_source[size_t(row++)] = section.first + source;
    ++m_sortCount;
}

/// Puts the rows of a section where m_source has them.
void FolderSorts::place(const QList<Track>& base, const FolderSection& section)
{
    for (int row = section.first; row < section.end; ++row) {
        const int source = m_source[size_t(row)];
        m_places[size_t(source)] = row;
        m_rows[row] = base[source];
    }
}

void FolderSorts::refresh(const QList<Track>& base, const QList<int>& baseRows, Placing placing)
{
    if (m_rows.size() != base.size())
        return;
    for (const int baseRow : baseRows) {
        Track& shown = m_rows[m_places[size_t(baseRow)]];
        // A row that is owed a place stays so until its folder is sorted.
        if (placing == Placing::Same && shown.isSameValueAs(m_base.at(baseRow)))
            m_base[baseRow] = base[baseRow];
        shown = base[baseRow];
    }
}

void FolderSorts::remove(const QList<int>& baseRows, const std::vector<FolderSection>& sections)
{
    constexpr int kGone = -1;
    std::vector<int> moved(size_t(m_base.size())); // the new base row of each old one
    auto gone = baseRows.cbegin();
    int next = 0;
    for (int row = 0; row < m_base.size(); ++row) {
        const bool isGone = gone != baseRows.cend() && *gone == row;
        gone += isGone ? 1 : 0;
        moved[size_t(row)] = isGone ? kGone : next++;
    }
    const auto survives = [&](const FolderSection& section) {
        return std::any_of(moved.begin() + section.first, moved.begin() + section.end,
                           [](int row) { return row != kGone; });
    };
    if (std::ranges::count_if(m_sections, survives) != std::ssize(sections)) {
        clear(); // what stood between two parts of one folder left, and they are sorted as one from now on
        return;
    }
    QList<Track> rows;
    rows.reserve(next);
    std::vector<int> source;
    source.reserve(size_t(next));
    m_places.resize(size_t(next));
    for (qsizetype row = 0; row < m_rows.size(); ++row) {
        const int baseRow = moved[size_t(m_source[size_t(row)])];
        if (baseRow == kGone)
            continue;
        m_places[size_t(baseRow)] = static_cast<int>(source.size());
        source.push_back(baseRow);
        rows.append(std::as_const(m_rows)[row]);
    }
    m_base = Rows::without(m_base, baseRows);
    m_rows = std::move(rows);
    m_source = std::move(source);
    m_sections = sections;
}

void FolderSorts::clear()
{
    const int sortCount = m_sortCount;
    *this = FolderSorts();
    m_sortCount = sortCount;
}
