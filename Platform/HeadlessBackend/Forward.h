#pragma once

namespace RVCore {

class HeadlessBackend;
class HeadlessWindow;
class RecordingCanvas;

} // namespace RVCore
