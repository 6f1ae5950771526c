#include <QClipboard>
#include <QGuiApplication>
#include <QtBackend/QtClipboard.h>
#include <QtBackend/QtConversions.h>

namespace RVCore {

std::string QtClipboard::text() const
{
    return fromQString(QGuiApplication::clipboard()->text());
}

void QtClipboard::setText(const std::string& text)
{
    QGuiApplication::clipboard()->setText(toQString(text));
}

} // namespace RVCore
