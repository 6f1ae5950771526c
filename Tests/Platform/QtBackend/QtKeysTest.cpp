#include <Backend/Backend.h>
#include <Platform/Backend/TextInput.h>

#include <QtBackend/QtInput.h>
#include <QtBackend/QtKeys.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace RVCore::QtKeysTests {
namespace {

// Events belong to a keyboard, and that to an application, which the backend makes.
class QtKeys : public testing::Test {
protected:
    QtKeys() { Backend::shared(); }
};

TEST_F(QtKeys, EveryKeyGoesToQtAndBackAsItWas)
{
    struct Key {
        int key;
        const char* text;
        Qt::KeyboardModifiers modifiers;
    };
    const Key keys[] = {
        {Qt::Key_A, "a", Qt::NoModifier},
        {Qt::Key_A, "A", Qt::ShiftModifier},
        {Qt::Key_C, "", Qt::ControlModifier},
        {Qt::Key_Z, "", Qt::ControlModifier | Qt::ShiftModifier},
        {Qt::Key_Space, " ", Qt::NoModifier},
        {Qt::Key_Left, "", Qt::ControlModifier},
        {Qt::Key_End, "", Qt::ShiftModifier},
        {Qt::Key_Backspace, "\x7f", Qt::NoModifier},
        {Qt::Key_Delete, "", Qt::AltModifier},
        {Qt::Key_Return, "\r", Qt::NoModifier},
        {Qt::Key_Enter, "\x03", Qt::KeypadModifier},
        {Qt::Key_Menu, "", Qt::MetaModifier},
        {0x416, "ж", Qt::NoModifier},
    };
    for (const Key& key : keys) {
        const QKeyEvent before(QEvent::KeyPress, key.key, key.modifiers, QString::fromUtf8(key.text));
        const QKeyEvent after = toQKeyEvent(fromQKeyEvent(before));
        EXPECT_EQ(after.key(), before.key());
        EXPECT_EQ(after.modifiers(), before.modifiers()) << key.key;
        EXPECT_EQ(after.text(), before.text()) << key.key;
    }
}

TEST_F(QtKeys, AKeyThatStandsForNothingIsNone)
{
    EXPECT_EQ(toQKeyEvent(keyPress("")).key(), 0);
    EXPECT_EQ(toQKeyEvent(keyPress(NSKey::f1)).key(), 0) << "no text is edited with it";
    EXPECT_EQ(toQKeyEvent(keyPress(NSKey::f1)).text(), "");
}

} // namespace
} // namespace RVCore::QtKeysTests
