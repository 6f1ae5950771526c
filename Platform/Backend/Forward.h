#pragma once

namespace RVCore {

class AccessibleElement;
class Backend;
class WindowBackend;
class WindowClient;

} // namespace RVCore
