#include <AppKit/NSTextField.h>
#include <AppKit/NSWindow.h>
#include <Backend/Backend.h>

#include <QProcess>
#include <QTimer>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

// These run under Tests/VirtualDisplay/with-virtual-display: an X server, a window manager, a pointer and a keyboard
// of their own.

namespace RVCore::QtTextDisplayTests {
namespace {

constexpr int patience = 20000; // milliseconds until a test that waits for the desktop gives up

// Two fields, one above the other.
class QtTextDisplay : public testing::Test {
protected:
    QtTextDisplay()
    {
        m_window->setTitle("Text Test");
        for (const auto& field : {m_first, m_second})
            m_window->contentView()->addSubview(field);
        m_window->makeKeyAndOrderFront();
    }
    ~QtTextDisplay() override { m_window->close(); }

    // Serves the desktop until the condition holds.
    bool eventually(const std::function<bool()>& condition)
    {
        QTimer look, end;
        look.callOnTimeout([&] {
            if (condition())
                Backend::shared().stop();
        });
        look.start(10);
        end.callOnTimeout([] { Backend::shared().stop(); });
        end.start(patience);
        Backend::shared().run();
        return condition();
    }

    // A pointer and a keyboard at work on the window: the arguments of xdotool that follow its search. Returns
    // whether they brought the condition about.
    bool user(const QStringList& arguments, const std::function<bool()>& condition)
    {
        QProcess process;
        process.start("xdotool",
                      QStringList{"search", "--sync", "--onlyvisible", "--name", "^Text Test$"} + arguments);
        const bool isMet = eventually([&] { return process.state() == QProcess::NotRunning && condition(); });
        process.waitForFinished(patience);
        return isMet;
    }

    std::shared_ptr<NSTextField> m_first = make<NSTextField>(CGRect(20, 60, 200, 26));  // 14 to 40 from the top
    std::shared_ptr<NSTextField> m_second = make<NSTextField>(CGRect(20, 20, 200, 26)); // 54 to 80
    std::shared_ptr<NSWindow> m_window = make<NSWindow>(CGSize{260, 100});
};

TEST_F(QtTextDisplay, AFieldIsClickedAndTypedIntoAndTabGoesOn)
{
    EXPECT_TRUE(
        user({"mousemove", "--window", "%1", "60", "27", "click", "1"}, [&] { return m_first->isEditing(); }));
    const auto holds = [](const std::shared_ptr<NSTextField>& field, const std::string& text) {
        return [&field, text] { return field->stringValue() == text; };
    };
    EXPECT_TRUE(user({"key", "--delay", "20", "A", "d", "a", "space"}, holds(m_first, "Ada ")));
    // A letter that is on no key takes one over for as long, in milliseconds; until then it must have been read.
    EXPECT_TRUE(user({"key", "--delay", "400", "eacute"}, holds(m_first, "Ada é")));
    EXPECT_TRUE(user({"key", "--delay", "400", "Cyrillic_zhe"}, holds(m_first, "Ada éж")));
    EXPECT_TRUE(user({"key", "--delay", "20", "Tab", "x"}, holds(m_second, "x")));
    EXPECT_FALSE(m_first->isEditing());
    EXPECT_TRUE(m_second->isEditing());
}

TEST_F(QtTextDisplay, ShortcutsSelectCopyPasteAndUndo)
{
    m_first->setStringValue("one two");
    EXPECT_TRUE(
        user({"mousemove", "--window", "%1", "60", "27", "click", "1"}, [&] { return m_first->isEditing(); }));
    EXPECT_TRUE(user({"key", "--delay", "20", "End", "ctrl+shift+Left", "ctrl+c", "Home", "ctrl+v"}, [&] {
        return m_first->stringValue() == "twoone two";
    })) << m_first->stringValue();
    EXPECT_TRUE(user({"key", "--delay", "20", "ctrl+z"}, [&] { return m_first->stringValue() == "one two"; }));
    EXPECT_EQ(Backend::shared().clipboard().text(), "two");
}

TEST_F(QtTextDisplay, ADoubleClickAndADragSelect)
{
    m_first->setStringValue("wonderful words");
    EXPECT_TRUE(user({"mousemove", "--window", "%1", "40", "27", "click", "--repeat", "2", "--delay", "50", "1"},
                     [&] { return m_first->selectedRange().length > 0; }));
    EXPECT_EQ(m_first->selectedRange(), (TextRange{0, 9}));
    EXPECT_TRUE(
        user({"mousemove", "--window", "%1", "26", "67", "click", "1"}, [&] { return m_second->isEditing(); }));
    EXPECT_TRUE(user({"mousemove", "--window", "%1", "28", "27", "mousedown", "1", "mousemove", "--window", "%1",
                      "120", "27", "mousemove", "--window", "%1", "235", "90", "mouseup", "1"},
                     [&] { return m_first->selectedRange().length > 12; }));
    EXPECT_EQ(m_first->stringValue(), "wonderful words");
}

} // namespace
} // namespace RVCore::QtTextDisplayTests
