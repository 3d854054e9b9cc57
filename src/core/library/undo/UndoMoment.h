#pragma once

#include <QtGlobal>

/// The place of an action among all that can be taken back: rises with every call, never 0. What histories of different
/// kinds are ordered by. Thread: main.
inline quint64 nextUndoMoment()
{
    static quint64 last = 0;
    return ++last;
}
