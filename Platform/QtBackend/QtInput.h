#pragma once

#include <Backend/InputEvent.h>

#include <Qt>

class QKeyEvent;
class QMouseEvent;
class QWheelEvent;

namespace RVCore {

// A press, release or move.
InputEvent fromQMouseEvent(const QMouseEvent& event);
InputEvent fromQWheelEvent(const QWheelEvent& event);
// A press or release; of a modifier key, a change of the modifiers.
InputEvent fromQKeyEvent(const QKeyEvent& event);
InputEvent pointerLeft();

Qt::CursorShape toQCursorShape(CursorShape shape);

} // namespace RVCore
