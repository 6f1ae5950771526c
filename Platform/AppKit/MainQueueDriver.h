#pragma once

namespace RVCore {

// Lets the program's backend serve the main queue: work wakes its loop, and a time in the future sets its one
// wake-up. To be called again when the backend is another one.
void connectMainQueue();

} // namespace RVCore
