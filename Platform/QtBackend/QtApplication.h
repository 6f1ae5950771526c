#pragma once

#include <functional>

namespace RVCore {

// Makes the program's QApplication if it has none yet. One that is made here ends as the program exits, before any
// static object does; windows that are still open then leave the screen and do nothing from then on. A program that
// exits inside a callback leaves all that to the system.
void requireQtApplication();

// Whether the program is past that.
bool hasQtApplicationEnded();

// Calls out of Qt's event loop, which no exception may pass: one that tries stops the program with its message.
void callGuarded(const std::function<void()>& closure);

} // namespace RVCore
