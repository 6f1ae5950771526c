#include <Foundation/Stop.h>

#include <QApplication>
#include <QtBackend/QtApplication.h>
#include <QtBackend/QtTextEdit.h>
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

int callDepth = 0;
bool hasEnded = false;

void endApplication()
{
    // Inside a callback Qt's event loop is still on the stack: nothing that it uses can be taken away.
    if (callDepth == 0) {
        for (QWindow* window : QGuiApplication::allWindows()) {
            if (auto* surface = dynamic_cast<QtWindowSurface*>(window))
                surface->abandon();
        }
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            delete dynamic_cast<QtTextEdit*>(widget); // its editor may be held by an object that ends later
        }
        delete qApp;
    }
    hasEnded = true;
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

    // The application's end needs static objects that Qt made long after this. Objects of the main thread end before
    // any static one does.
    struct End {
        ~End() { endApplication(); }
    };
    [[maybe_unused]] static thread_local const End end;
}

bool hasQtApplicationEnded()
{
    return hasEnded;
}

void callGuarded(const std::function<void()>& closure)
{
    ++callDepth;
    try {
        closure();
    } catch (const std::exception& exception) {
        fatalError(std::string("an exception left a callback: ") + exception.what());
    } catch (...) {
        fatalError("an exception of an unknown type left a callback");
    }
    --callDepth;
}

} // namespace RVCore
