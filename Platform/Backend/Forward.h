#pragma once

namespace RVCore {

class AccessibleElement;
class Backend;
class ControlLook;
class Clipboard;
class TextEditor;
class TextEditorClient;
class WindowBackend;
class WindowClient;
struct ScreenDescription;
struct WindowPlacement;
struct WindowStyle;

} // namespace RVCore
