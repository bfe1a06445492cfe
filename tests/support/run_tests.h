#pragma once

#include <functional>
#include <source_location>

namespace tessellar::test {

/// Runs all tests of the program, with a guard: a test that takes longer than any should ends the
/// program with its name, and with the place where it waits.
int runTests(int argc, char** argv);

/// Takes turns until it is so. What a test waits for without end, the guard names.
void waitUntil(const std::function<bool()>& isSo, const std::function<void()>& takeTurn,
               const std::source_location& where = std::source_location::current());

/// Lets the event loop run until it is so.
void processEventsUntil(const std::function<bool()>& isSo,
                        const std::source_location& where = std::source_location::current());

} // namespace tessellar::test
