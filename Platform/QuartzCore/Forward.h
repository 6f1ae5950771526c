#pragma once

namespace RVCore {

class CALayer;

} // namespace RVCore
