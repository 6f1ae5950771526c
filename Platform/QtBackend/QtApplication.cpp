#include <Foundation/Stop.h>

#include <QApplication>
#include <QtBackend/QtApplication.h>
#include <QtBackend/QtWindow.h>

#include <cstdlib>
#include <exception>
#include <string>

namespace RVCore {

namespace {

bool isSet(const char* variable)
{
    const char* value = std::getenv(variable);
    return value && *value;
}

void endApplication()
{
    for (QWindow* window : QGuiApplication::allWindows()) {
        if (auto* ours = dynamic_cast<QtWindowSurface*>(window))
            ours->leaveDesktop();
    }
    delete qApp;
}

} // namespace

void requireQtApplication()
{
    if (QCoreApplication::instance())
        return;

    // Qt keeps references to both for as long as the application lives.
    static char name[] = "RVCore";
    static char platformOption[] = "-platform";
    static char offscreen[] = "offscreen";
    static char* arguments[] = {name, platformOption, offscreen, nullptr};
    const bool needsPlatform = !isSet("DISPLAY") && !isSet("WAYLAND_DISPLAY") && !isSet("QT_QPA_PLATFORM");
    static int count = needsPlatform ? 3 : 1;
    if (!needsPlatform)
        arguments[1] = nullptr;

    new QApplication(count, arguments);
    QApplication::setQuitOnLastWindowClosed(false);
    // Not a static object's destructor: those of Qt that the application needs at its end are younger than ours.
    std::atexit(endApplication);
}

void callGuarded(const std::function<void()>& closure)
{
    try {
        closure();
    } catch (const std::exception& exception) {
        fatalError(std::string("an exception left a callback: ") + exception.what());
    } catch (...) {
        fatalError("an exception of an unknown type left a callback");
    }
}

} // namespace RVCore
