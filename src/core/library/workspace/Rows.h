#pragma once

#include <QList>

#include <algorithm>
#include <iterator>

/// What lists by rows have in common, however long they are.
namespace Rows {

/// The list without some rows. \param gone ascending, each once.
template <typename Value>
QList<Value> without(const QList<Value>& list, const QList<int>& gone)
{
    QList<Value> kept;
    kept.reserve(list.size() - gone.size());
    auto from = list.cbegin();
    for (const int row : gone) {
        std::copy(from, list.cbegin() + row, std::back_inserter(kept));
        from = list.cbegin() + row + 1;
    }
    std::copy(from, list.cend(), std::back_inserter(kept));
    return kept;
}

} // namespace Rows
