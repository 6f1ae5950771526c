#pragma once

namespace RVCore {

class DispatchClock;
class DispatchQueue;
class DispatchTime;
class ManualDispatchClock;

} // namespace RVCore
