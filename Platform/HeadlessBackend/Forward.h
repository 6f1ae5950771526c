#pragma once

namespace RVCore {

class HeadlessBackend;
class HeadlessControlLook;
class HeadlessWindow;
class RecordingCanvas;

} // namespace RVCore
