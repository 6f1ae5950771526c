#pragma once

#include <Backend/InputEvent.h>

#include <QKeyEvent>

namespace RVCore {

// The press of a key as Qt would report it.
QKeyEvent toQKeyEvent(const InputEvent& event);

Qt::KeyboardModifiers toQtModifiers(std::uint32_t modifiers);

} // namespace RVCore
