#pragma once

#include <functional>

/// The main thread's queue of things to do on the next turn of its event loop.
namespace async::MainQueue {

/// Runs \p function on the main thread at a later turn, in posting order; it must not throw. What is posted before the
/// application object exists waits for it; what is posted after its end is dropped. Thread: any.
void post(std::function<void()> function);
/// Runs everything posted so far, and what that posts, until the queue is empty. For tests and orderly shutdown; main
/// thread.
void drain();
/// Whether the calling thread is the main thread.
bool isMainThread();

} // namespace async::MainQueue

/// Stated at the head of every public entry of main-thread objects.
#define VELMORA_ASSERT_MAIN_THREAD() Q_ASSERT(::async::MainQueue::isMainThread())
