#pragma once

namespace RVCore {

class QtBackend;
class QtCanvas;
class QtWindow;

} // namespace RVCore
