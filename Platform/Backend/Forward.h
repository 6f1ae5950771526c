#pragma once

namespace RVCore {

class Backend;
class WindowBackend;
class WindowClient;

} // namespace RVCore
