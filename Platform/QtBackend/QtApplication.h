#pragma once

#include <functional>

namespace RVCore {

// Makes the program's QApplication if it has none yet. One that is made here ends as the program exits, before static
// objects that are older than it do; windows that are still open then lose their screen, not their life.
void requireQtApplication();

// Calls out of Qt's event loop, which no exception may pass: one that tries stops the program with its message.
void callGuarded(const std::function<void()>& closure);

} // namespace RVCore
