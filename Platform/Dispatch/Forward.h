#pragma once

namespace RVCore {

class DispatchClock;
class DispatchQueue;
class DispatchThread;
class DispatchTime;
class ManualDispatchClock;

} // namespace RVCore
