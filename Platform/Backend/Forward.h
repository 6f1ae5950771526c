#pragma once

namespace RVCore {

class AccessibleElement;
class Backend;
class ControlLook;
class WindowBackend;
class WindowClient;

} // namespace RVCore
