#pragma once

#include <functional>

/// Work for the main thread, from any thread, while a QCoreApplication exists.
namespace MainThread {

bool isCurrent();

/// Runs the work on the main thread and returns when it is done: directly when already there. After
/// close() nothing is run any more for other threads, and none of them is left waiting.
void runAndWait(const std::function<void()> &work);

/// Queues the work on the main loop, even when already on the main thread, and returns at once.
void runLater(std::function<void()> work);

/// The main loop has ended for good. Whoever still waits for it goes on without the work done, so
/// that the main thread can wait for them instead.
void close();

} // namespace MainThread
