#pragma once

#include <QCoro/QCoroTask>

namespace async {

/// The one coroutine type of the program. Starts at once, runs to its end; co_await gives its value or throws what it
/// threw. A task that is dropped loses its exception, so tasks are started through TaskSlot, TaskQueue or TaskGroup
/// only.
/// Never write a lambda with captures or a braced aggregate inside a co_await expression, name it on a line before: GCC
/// 12 copies such a temporary bit by bit into the frame and destroys it twice. Types with constructors are safe there.
template <typename T = void>
using Task = QCoro::Task<T>;

} // namespace async
