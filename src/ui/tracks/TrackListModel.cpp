#include "ui/tracks/TrackListModel.h"

#include "core/library/workspace/PlaceTable.h"
#include "ui/cells/EditMark.h"
#include "ui/cells/KeyTexts.h"
#include "ui/cells/TempoText.h"
#include "ui/text/Texts.h"
#include "ui/tracks/RowRuns.h"

// How a list becomes another one:
// 1. what both have in common at the head and at the tail stays untouched;
// 2. of the middle, rows that are gone are removed, the survivors are put into their new order, new rows are inserted;
// 3. rows whose value differs are announced as changed.
// Many scattered removals or insertions are gathered by a move first: a view pays for each run, not for each row.

namespace {

constexpr int kMaximumRuns = 48; // chosen: beyond this one move of everything is cheaper than many small edits

bool isSameRow(const Track& left, const Track& right)
{
    return left.isSameValueAs(right) || left.id() == right.id();
}

QSet<TrackID> idsOf(const QList<Track>& rows, int first, int end)
{
    QSet<TrackID> ids;
    ids.reserve(end - first);
    for (int row = first; row < end; ++row)
        ids.insert(rows[row].id());
    return ids;
}

} // namespace

TrackListModel::TrackListModel(std::vector<TrackColumn> columns, QObject* parent)
    : QAbstractTableModel(parent)
    , m_columns(std::move(columns))
{
}

void TrackListModel::setRows(const QList<Track>& rows)
{
    if (m_rows.isSharedWith(rows))
        return;
    const int oldCount = static_cast<int>(m_rows.size());
    const int newCount = static_cast<int>(rows.size());
    const int common = std::min(oldCount, newCount);
    int head = 0;
    while (head < common && isSameRow(std::as_const(m_rows)[head], rows[head]))
        ++head;
    int tail = 0;
    while (tail < common - head && isSameRow(std::as_const(m_rows)[oldCount - 1 - tail], rows[newCount - 1 - tail]))
        ++tail;
    const bool structure = head + tail < std::max(oldCount, newCount);
    if (structure) {
        emit structureAboutToChange();
        replaceMiddle(rows, head, oldCount - tail, newCount - tail);
    }
    takeValues(rows);
    emit rowsReplaced(structure);
}

void TrackListModel::replaceMiddle(const QList<Track>& rows, int first, int oldEnd, int newEnd)
{
    if (first == oldEnd || first == newEnd) {
        replaceByOneRun(rows, first, oldEnd, newEnd);
        return;
    }
    if (oldEnd == newEnd ? onlyMoves(rows, first, newEnd) : onlyRemoves(rows, first, oldEnd, newEnd))
        return;
    const QSet<TrackID> kept = idsOf(rows, first, newEnd);
    const QSet<TrackID> known = idsOf(m_rows, first, oldEnd);
    removeThose(first, oldEnd, [&](int row) { return !kept.contains(std::as_const(m_rows)[row].id()); });
    arrange(rows, first, newEnd);
    insertMissing(rows, known, first, newEnd);
}

/// Rows came or went in one run: the new list is shared at once, so that nothing is copied row by row.
void TrackListModel::replaceByOneRun(const QList<Track>& rows, int first, int oldEnd, int newEnd)
{
    QList<int> changed;
    for (int row = 0; row < rows.size(); ++row) {
        if (row == first)
            row = newEnd;
        if (row >= rows.size())
            break;
        const int before = row < first ? row : row - newEnd + oldEnd;
        if (!std::as_const(m_rows)[before].isSameValueAs(rows[row]))
            changed.append(row);
    }
    if (newEnd > first) {
        beginInsertRows({}, first, newEnd - 1);
        m_rows = rows;
        endInsertRows();
    } else {
        beginRemoveRows({}, first, oldEnd - 1);
        m_rows = rows;
        endRemoveRows();
    }
    emitChanged(changed);
}

/// Puts the rows into their new order where none came or went.
bool TrackListModel::onlyMoves(const QList<Track>& rows, int first, int end)
{
    PlaceTable<TrackID> places;
    places.extend(end - first, [&](int row) { return std::as_const(m_rows)[first + row].id(); });
    QList<int> order;
    order.reserve(end - first);
    std::vector<bool> isTaken(size_t(end - first));
    for (int row = first; row < end; ++row) {
        const std::optional<int> place = places.find(rows[row].id());
        if (!place || isTaken[size_t(*place)])
            return false;
        isTaken[size_t(*place)] = true;
        order.append(*place);
    }
    permute(first, order);
    return true;
}

/// Removes the rows that are gone where those that stay keep their order, found by one pass over both lists.
bool TrackListModel::onlyRemoves(const QList<Track>& rows, int first, int oldEnd, int newEnd)
{
    std::vector<bool> isGone(size_t(oldEnd - first));
    int next = first;
    for (int row = first; row < oldEnd; ++row) {
        const bool stays = next < newEnd && isSameRow(std::as_const(m_rows)[row], rows[next]);
        isGone[size_t(row - first)] = !stays;
        next += stays ? 1 : 0;
    }
    if (next == newEnd)
        removeThose(first, oldEnd, [&](int row) { return isGone[size_t(row - first)]; });
    return next == newEnd;
}

template <typename IsGone>
void TrackListModel::removeThose(int first, int oldEnd, IsGone isGone)
{
    QList<RowRun> runs = rowRuns(first, oldEnd, isGone);
    if (runs.size() > kMaximumRuns) {
        QList<int> order;
        QList<int> gone;
        for (int row = first; row < oldEnd; ++row)
            (isGone(row) ? gone : order).append(row - first);
        const int survivors = static_cast<int>(order.size());
        permute(first, order + gone);
        runs = {{first + survivors, oldEnd}};
    }
    for (auto run = runs.crbegin(); run != runs.crend(); ++run)
        removeRun(run->first, run->end);
}

void TrackListModel::arrange(const QList<Track>& rows, int first, int newEnd)
{
    QHash<TrackID, int> places; // of the survivors, as they stand now
    const int tail = static_cast<int>(rows.size()) - newEnd;
    const int end = static_cast<int>(m_rows.size()) - tail;
    places.reserve(end - first);
    for (int row = first; row < end; ++row)
        places.insert(std::as_const(m_rows)[row].id(), row - first);
    QList<int> order;
    order.reserve(end - first);
    for (int row = first; row < newEnd; ++row) {
        const auto place = places.constFind(rows[row].id());
        if (place != places.constEnd())
            order.append(*place);
    }
    if (order.size() == end - first && !std::is_sorted(order.cbegin(), order.cend()))
        permute(first, order);
}

void TrackListModel::insertMissing(const QList<Track>& rows, const QSet<TrackID>& known, int first, int newEnd)
{
    const auto isNew = [&](int row) { return !known.contains(rows[row].id()); };
    const QList<RowRun> runs = rowRuns(first, newEnd, isNew);
    if (runs.size() <= kMaximumRuns) {
        for (const RowRun& run : runs) {
            if (run.first > m_rows.size())
                return; // ids that occur twice; takeValues notices
            beginInsertRows({}, run.first, run.end - 1);
            m_rows = m_rows.mid(0, run.first) + rows.mid(run.first, run.end - run.first) + m_rows.mid(run.first);
            endInsertRows();
        }
        return;
    }
    const int tail = static_cast<int>(rows.size()) - newEnd;
    const int end = static_cast<int>(m_rows.size()) - tail;
    QList<Track> added;
    QList<int> order;
    int survivor = 0;
    for (int row = first; row < newEnd; ++row) {
        if (isNew(row)) {
            order.append(end - first + static_cast<int>(added.size()));
            added.append(rows[row]);
        } else {
            order.append(survivor++);
        }
    }
    beginInsertRows({}, end, end + static_cast<int>(added.size()) - 1);
    m_rows = m_rows.mid(0, end) + added + m_rows.mid(end);
    endInsertRows();
    if (survivor == end - first)
        permute(first, order);
}

void TrackListModel::removeRun(int first, int end)
{
    beginRemoveRows({}, first, end - 1);
    m_rows.remove(first, end - first);
    endRemoveRows();
}

/// \param order for each new place behind \p first the old one, counted from \p first.
void TrackListModel::permute(int first, const QList<int>& order)
{
    emit layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
    QList<int> newPlaces(order.size());
    QList<Track> rows = m_rows;
    for (qsizetype i = 0; i < order.size(); ++i) {
        newPlaces[order[i]] = static_cast<int>(i);
        rows[first + i] = std::as_const(m_rows)[first + order[i]];
    }
    m_rows = std::move(rows);
    const QModelIndexList before = persistentIndexList();
    QModelIndexList after;
    after.reserve(before.size());
    for (const QModelIndex& index : before) {
        const int offset = index.row() - first;
        const bool moves = offset >= 0 && offset < newPlaces.size();
        after.append(moves ? createIndex(first + newPlaces[offset], index.column()) : index);
    }
    changePersistentIndexList(before, after);
    emit layoutChanged({}, QAbstractItemModel::VerticalSortHint);
}

void TrackListModel::takeValues(const QList<Track>& rows)
{
    if (m_rows.isSharedWith(rows))
        return;
    bool matches = m_rows.size() == rows.size();
    QList<int> changed;
    for (qsizetype row = 0; matches && row < rows.size(); ++row) {
        if (std::as_const(m_rows)[row].isSameValueAs(rows[row]))
            continue;
        matches = std::as_const(m_rows)[row].id() == rows[row].id();
        changed.append(static_cast<int>(row));
    }
    if (!matches) {
        beginResetModel();
        m_rows = rows;
        endResetModel();
        return;
    }
    m_rows = rows;
    emitChanged(changed);
}

void TrackListModel::emitChanged(const QList<int>& rows)
{
    const int lastColumn = static_cast<int>(m_columns.size()) - 1;
    for (qsizetype i = 0; i < rows.size();) {
        qsizetype end = i + 1;
        while (end < rows.size() && rows[end] == rows[end - 1] + 1)
            ++end;
        emit dataChanged(index(rows[i], 0), index(rows[end - 1], lastColumn));
        i = end;
    }
}

std::optional<int> TrackListModel::rowOf(const TrackID& id) const
{
    for (qsizetype row = 0; row < m_rows.size(); ++row) {
        if (m_rows[row].id() == id)
            return static_cast<int>(row);
    }
    return std::nullopt;
}

void TrackListModel::setStatusTexts(const QHash<TrackID, QString>& texts)
{
    if (m_statusTexts == texts)
        return;
    m_statusTexts = texts;
    const auto column = std::find(m_columns.begin(), m_columns.end(), TrackColumn::Status);
    if (column == m_columns.end() || m_rows.isEmpty())
        return;
    const int place = static_cast<int>(column - m_columns.begin());
    emit dataChanged(index(0, place), index(rowCount() - 1, place));
}

void TrackListModel::keyStatesChanged(const QSet<TrackID>& ids)
{
    QList<int> changed;
    for (int row = 0; row < rowCount() && changed.size() < ids.size(); ++row) {
        if (ids.contains(track(row).id()))
            changed.append(row);
    }
    emitChanged(changed);
}

void TrackListModel::bpmStateChanged(int row)
{
    if (const std::optional<int> column = columnOf(TrackColumn::BPM))
        emit dataChanged(index(row, *column), index(row, *column));
}

std::optional<int> TrackListModel::columnOf(TrackColumn column) const
{
    const auto found = std::ranges::find(m_columns, column);
    return found == m_columns.end() ? std::nullopt : std::optional(static_cast<int>(found - m_columns.begin()));
}

void TrackListModel::retranslate()
{
    emit headerDataChanged(Qt::Horizontal, 0, columnCount() - 1);
    if (!m_rows.isEmpty())
        emit dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
}

int TrackListModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int TrackListModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_columns.size());
}

QVariant TrackListModel::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const Track& track = m_rows[index.row()];
    const TrackColumn column = columnAt(index.column());
    const bool saysKey = KeyTexts::isKeyColumn(column);
    switch (role) {
    case Qt::DisplayRole:
        if (column == TrackColumn::BPM)
            return TempoText::bpmDisplayText(track, bpmState(track.id()));
        if (saysKey)
            return KeyTexts::text(column, track, keyState(track.id()));
        return column == TrackColumn::Status ? statusText(track.id()) : TrackColumns::text(column, track);
    case Qt::AccessibleTextRole:
        if (column == TrackColumn::BPM)
            return TempoText::spoken(track, bpmState(track.id()));
        if (saysKey)
            return KeyTexts::spoken(column, track, keyState(track.id()));
        if (column == TrackColumn::Status && m_statusTexts.contains(track.id()))
            return statusText(track.id());
        if (column == TrackColumn::Title && track.editedFields())
            return Texts::facts({TrackColumns::spokenText(column, track), EditMark::text(track)});
        return TrackColumns::spokenText(column, track);
    case Qt::TextAlignmentRole:
        return QVariant(Qt::AlignVCenter | (TrackColumns::isNumeric(column) ? Qt::AlignRight : Qt::AlignLeft));
    default:
        return {};
    }
}

QVariant TrackListModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Vertical) {
        const bool speaks = role == Qt::AccessibleTextRole || role == Qt::DisplayRole;
        return speaks && section >= 0 && section < m_rows.size() ? QVariant(section + 1) : QVariant();
    }
    if (section < 0 || section >= columnCount())
        return {};
    if (role == Qt::AccessibleTextRole)
        return TrackColumns::spokenHeading(columnAt(section));
    return role == Qt::DisplayRole ? QVariant(TrackColumns::heading(columnAt(section))) : QVariant();
}

Qt::ItemFlags TrackListModel::flags(const QModelIndex& index) const
{
    return index.isValid() ? Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemNeverHasChildren : Qt::NoItemFlags;
}
