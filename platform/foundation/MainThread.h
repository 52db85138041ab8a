#pragma once

#include <functional>

/// Work for the main thread, from any thread, while a QCoreApplication exists.
namespace MainThread {

bool isCurrent();

/// Runs the work on the main thread and returns when it is done: directly when already there.
void runAndWait(const std::function<void()> &work);

/// Queues the work on the main loop, even when already on the main thread, and returns at once.
void runLater(std::function<void()> work);

} // namespace MainThread
