#pragma once

#include <Backend/InputEvent.h>

#include <Qt>

class QKeyEvent;
class QMouseEvent;
class QWheelEvent;

namespace RVCore {

// A press, release or move. Qt's report of a second quick press is a press like any other.
InputEvent fromQMouseEvent(const QMouseEvent& event);
InputEvent fromQWheelEvent(const QWheelEvent& event);
// A press or release; of a modifier key, a change of the modifiers.
InputEvent fromQKeyEvent(const QKeyEvent& event);
InputEvent pointerLeft();

Qt::CursorShape toQCursorShape(CursorShape shape);

} // namespace RVCore
