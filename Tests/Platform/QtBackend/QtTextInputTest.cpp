#include <AppKit/NSTextField.h>
#include <AppKit/NSWindow.h>
#include <Backend/Backend.h>
#include <Platform/Backend/RecordingClient.h>
#include <Platform/Backend/TextInput.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QtBackend/QtWindow.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace RVCore::QtTextInputTests {
namespace {

// An editor in a window, as an input method sees it.
class QtTextInputTest : public testing::Test {
protected:
    QWindow& surface() { return dynamic_cast<QtWindow&>(*m_window).surface(); }
    QVariant ask(Qt::InputMethodQuery query)
    {
        QInputMethodQueryEvent event(query);
        QCoreApplication::sendEvent(&surface(), &event);
        return event.value(query);
    }
    void send(QInputMethodEvent& event) { QCoreApplication::sendEvent(&surface(), &event); }
    void send(QInputMethodEvent&& event) { QCoreApplication::sendEvent(&surface(), &event); }

    RecordingClient m_windowClient;
    RecordingEditorClient m_client;
    std::unique_ptr<WindowBackend> m_window = Backend::shared().makeWindow(m_windowClient, {100, 50});
    std::shared_ptr<TextEditor> m_editor =
        Backend::shared().makeTextEditor(m_client, {.text = "ab", .font = {.size = 13}}, {80, 20});
};

TEST_F(QtTextInputTest, AWindowWithoutAnEditorTakesNoText)
{
    EXPECT_FALSE(ask(Qt::ImEnabled).toBool());
    QInputMethodEvent event;
    event.setCommitString("x");
    send(event);
    EXPECT_EQ(m_editor->text(), "ab");
}

TEST_F(QtTextInputTest, ItsEditorAnswersWhatAnInputMethodAsks)
{
    m_window->setTextInput(m_editor, {10, 15});
    m_editor->select({1, 1});
    EXPECT_TRUE(ask(Qt::ImEnabled).toBool());
    EXPECT_EQ(ask(Qt::ImSurroundingText).toString(), "ab");
    EXPECT_EQ(ask(Qt::ImCursorPosition).toInt(), 2);
    EXPECT_EQ(ask(Qt::ImAnchorPosition).toInt(), 1);
    EXPECT_EQ(ask(Qt::ImCurrentSelection).toString(), "b");
    const QRectF caret = ask(Qt::ImCursorRectangle).toRectF();
    EXPECT_NEAR(caret.left(), 10 + m_editor->caretRect().minX(), 0.01);
    EXPECT_NEAR(caret.top(), 15 + m_editor->caretRect().minY(), 0.01);
    EXPECT_NEAR(caret.height(), m_editor->caretRect().size.height, 0.01);
    m_editor->setEditable(false);
    EXPECT_FALSE(ask(Qt::ImEnabled).toBool());
}

TEST_F(QtTextInputTest, WhatAnInputMethodComposesGoesToTheEditor)
{
    m_window->setTextInput(m_editor, {});
    send(QInputMethodEvent("xy", {}));
    EXPECT_TRUE(m_editor->isComposing());
    QInputMethodEvent commit;
    commit.setCommitString("z");
    send(commit);
    EXPECT_EQ(m_editor->text(), "zab");
    EXPECT_EQ(m_client.changeCount, 1);
    // A correction of what stands before the caret.
    QInputMethodEvent correction;
    correction.setCommitString("Z", -1, 1);
    send(correction);
    EXPECT_EQ(m_editor->text(), "Zab");
}

TEST_F(QtTextInputTest, AnEditorThatEndsIsNone)
{
    m_window->setTextInput(m_editor, {});
    m_editor->detach();
    m_editor.reset();
    EXPECT_FALSE(ask(Qt::ImEnabled).toBool());
    send(QInputMethodEvent("x", {}));
    m_editor = Backend::shared().makeTextEditor(m_client, {.font = {.size = 13}}, {80, 20});
    m_window->setTextInput(m_editor, {});
    EXPECT_TRUE(ask(Qt::ImEnabled).toBool());
    m_window->setTextInput(nullptr, {});
    EXPECT_FALSE(ask(Qt::ImEnabled).toBool());
}

// Blinking, with the desktop's rate set to one at which a test can wait for the end.
class QtCaretTest : public QtTextInputTest {
protected:
    QtCaretTest()
    {
        QApplication::setCursorFlashTime(2);
        m_window->setVisible(true);
        surface().requestActivate();
        waitUntil([this] { return surface().isActive(); });
    }
    ~QtCaretTest() override { QApplication::setCursorFlashTime(m_flashTime); }

    bool waitUntil(const std::function<bool()>& isDone)
    {
        QElapsedTimer timer;
        timer.start();
        while (!isDone() && timer.elapsed() < 5000)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
        return isDone();
    }
    // How often the caret has come and gone: at least so often if that can be waited for, more if it goes on.
    int blinks(int expected)
    {
        const int before = m_client.displayCount;
        waitUntil([&] { return m_client.displayCount - before >= expected; });
        QElapsedTimer timer;
        timer.start();
        waitUntil([&] { return timer.elapsed() > 50; });
        return m_client.displayCount - before;
    }

private:
    const int m_flashTime = QApplication::cursorFlashTime();
};

TEST_F(QtCaretTest, BlinksForAWhileAfterEveryKeyAndComesToRest)
{
    m_window->setTextInput(m_editor, {});
    EXPECT_EQ(blinks(20), 20);
    typeInto(*m_editor, "x");
    EXPECT_EQ(blinks(20), 20);
    EXPECT_EQ(blinks(0), 0) << "an idle window asks for nothing";
}

TEST_F(QtCaretTest, DoesNotBlinkWhereTheDesktopsDoNotOrNothingIsTyped)
{
    QApplication::setCursorFlashTime(0);
    m_window->setTextInput(m_editor, {});
    EXPECT_EQ(blinks(0), 0);
    QApplication::setCursorFlashTime(2);
    m_editor->setEditable(false);
    m_editor->select({1, 0});
    EXPECT_EQ(blinks(0), 0);
}

TEST_F(QtCaretTest, DoesNotBlinkOnceItsWindowLetsGoOfIt)
{
    m_window->setTextInput(m_editor, {});
    m_window->setTextInput(nullptr, {});
    EXPECT_EQ(blinks(0), 0);
    m_window->setTextInput(m_editor, {});
    m_editor->detach();
    EXPECT_EQ(blinks(0), 0);
}

// A field in a real window, with the events that the desktop's windows get.
class QtTextFieldTest : public testing::Test {
protected:
    QtTextFieldTest()
    {
        field->setStringValue("one two");
        window->contentView()->addSubview(field);
        window->makeKeyAndOrderFront();
        QCoreApplication::processEvents();
    }
    ~QtTextFieldTest() override { window->close(); }

    QWindow& surface()
    {
        for (QWindow* candidate : QApplication::topLevelWindows()) {
            if (dynamic_cast<QtWindowSurface*>(candidate) && candidate->isVisible())
                return *candidate;
        }
        throw std::runtime_error("no window");
    }
    void press(int key, const QString& text = {}, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
            QKeyEvent event(type, key, modifiers, text);
            QCoreApplication::sendEvent(&surface(), &event);
        }
    }
    void click(QPointF place)
    {
        for (const QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
            QMouseEvent event(type, place, place, Qt::LeftButton,
                              type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton, Qt::NoModifier);
            QCoreApplication::sendEvent(&surface(), &event);
        }
    }

    std::shared_ptr<NSWindow> window = make<NSWindow>(CGSize{200, 60});
    std::shared_ptr<NSTextField> field = make<NSTextField>(CGRect(10, 10, 150, 26));
};

TEST_F(QtTextFieldTest, IsClickedAndTypedInto)
{
    click({150, 37});
    EXPECT_TRUE(field->isEditing());
    EXPECT_EQ(field->selectedRange(), (TextRange{7, 0}));
    press(Qt::Key_X, "X", Qt::ShiftModifier);
    press(Qt::Key_Backspace, "\b");
    press(Qt::Key_Y, "y");
    EXPECT_EQ(field->stringValue(), "one twoy");
    press(Qt::Key_Left, {}, Qt::ControlModifier);
    press(Qt::Key_Delete, "\x7f", Qt::ControlModifier);
    EXPECT_EQ(field->stringValue(), "one ");
    press(Qt::Key_Z, "\x1a", Qt::ControlModifier);
    EXPECT_EQ(field->stringValue(), "one twoy");
    press(Qt::Key_A, "\x01", Qt::ControlModifier);
    EXPECT_EQ(field->selectedRange(), (TextRange{0, 8}));
    press(Qt::Key_1, "1");
    EXPECT_EQ(field->stringValue(), "1");
    press(Qt::Key_Escape, "\x1b");
    EXPECT_EQ(field->stringValue(), "one two");
}

TEST_F(QtTextFieldTest, ComposesAtItsCaret)
{
    click({150, 37});
    QCoreApplication::processEvents();
    QInputMethodQueryEvent query(Qt::ImCursorRectangle);
    QCoreApplication::sendEvent(&surface(), &query);
    const QRectF caret = query.value(Qt::ImCursorRectangle).toRectF();
    EXPECT_GT(caret.left(), 50);
    EXPECT_NEAR(caret.center().y(), 37, 3);
    QInputMethodEvent event;
    event.setCommitString(QString::fromUtf8("日本"));
    QCoreApplication::sendEvent(&surface(), &event);
    EXPECT_EQ(field->stringValue(), "one two日本");
}

TEST_F(QtTextFieldTest, ReturnSendsItsActionOnce)
{
    int count = 0;
    field->setOnAction([&] { ++count; });
    click({150, 37});
    press(Qt::Key_Return, "\r");
    EXPECT_EQ(count, 1);
}

} // namespace
} // namespace RVCore::QtTextInputTests
