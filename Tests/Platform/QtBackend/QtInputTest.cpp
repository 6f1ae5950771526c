#include <Platform/Backend/RecordingClient.h>

#include <QCoreApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWheelEvent>
#include <QtBackend/QtInput.h>
#include <QtBackend/QtWindow.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace RVCore::QtInputTests {
namespace {

using testing::ElementsAre;

class QtInputTest : public testing::Test {
protected:
    QWindow& surface() { return dynamic_cast<QtWindow&>(*m_window).surface(); }

    // What the client hears of the event.
    InputEvent heard(QEvent& event)
    {
        m_client.inputs.clear();
        QCoreApplication::sendEvent(&surface(), &event);
        EXPECT_EQ(m_client.inputs.size(), 1U);
        return m_client.inputs.empty() ? InputEvent() : m_client.inputs.front();
    }
    InputEvent mouse(QEvent::Type type, Qt::MouseButton button, Qt::KeyboardModifiers modifiers = {})
    {
        QMouseEvent event(type, QPointF(3.5, 4), QPointF(103.5, 104), button, button, modifiers);
        return heard(event);
    }
    InputEvent key(int qtKey, const QString& text = {}, Qt::KeyboardModifiers modifiers = {},
                   QEvent::Type type = QEvent::KeyPress)
    {
        QKeyEvent event(type, qtKey, modifiers, 38, 0, 0, text, false, 1);
        return heard(event);
    }

    RecordingClient m_client;
    std::unique_ptr<WindowBackend> m_window = Backend::shared().makeWindow(m_client, {100, 50});
};

TEST_F(QtInputTest, buttonsAreCountedFromTheLeftOne)
{
    const InputEvent press = mouse(QEvent::MouseButtonPress, Qt::LeftButton);
    EXPECT_EQ(press.kind, InputKind::buttonPressed);
    EXPECT_EQ(press.button, 0);
    EXPECT_EQ(press.location, (CGPoint{3.5, 4}));
    EXPECT_GT(press.time, 0);
    EXPECT_EQ(mouse(QEvent::MouseButtonRelease, Qt::RightButton).button, 1);
    EXPECT_EQ(mouse(QEvent::MouseButtonRelease, Qt::RightButton).kind, InputKind::buttonReleased);
    EXPECT_EQ(mouse(QEvent::MouseButtonPress, Qt::MiddleButton).button, 2);
    EXPECT_EQ(mouse(QEvent::MouseButtonPress, Qt::BackButton).button, 3);
    EXPECT_EQ(mouse(QEvent::MouseMove, Qt::NoButton).kind, InputKind::pointerMoved);
}

TEST_F(QtInputTest, aDoubleClickIsNoPressOfItsOwn)
{
    QMouseEvent event(QEvent::MouseButtonDblClick, QPointF(), QPointF(), Qt::LeftButton, Qt::LeftButton, {});
    QCoreApplication::sendEvent(&surface(), &event);
    EXPECT_TRUE(m_client.inputs.empty()) << "Qt has reported its second press before";
}

TEST_F(QtInputTest, thePointerLeaves)
{
    QEvent event(QEvent::Leave);
    EXPECT_EQ(heard(event).kind, InputKind::pointerLeft);
}

TEST_F(QtInputTest, modifiersHaveTheNamesOfTheirUse)
{
    const auto bits = [&](Qt::KeyboardModifiers modifiers) {
        return mouse(QEvent::MouseMove, Qt::NoButton, modifiers).modifiers;
    };
    EXPECT_EQ(bits(Qt::NoModifier), 0U);
    EXPECT_EQ(bits(Qt::ControlModifier), InputModifier::command);
    EXPECT_EQ(bits(Qt::AltModifier | Qt::ShiftModifier), InputModifier::option | InputModifier::shift);
    EXPECT_EQ(bits(Qt::MetaModifier), InputModifier::control);
}

TEST_F(QtInputTest, aNotchOfTheWheelIsTenPoints)
{
    QWheelEvent notch(QPointF(1, 2), QPointF(), QPoint(), QPoint(0, 120), Qt::NoButton, {}, Qt::NoScrollPhase, false);
    InputEvent event = heard(notch);
    EXPECT_EQ(event.kind, InputKind::scrolled);
    EXPECT_EQ(event.location, (CGPoint{1, 2}));
    EXPECT_DOUBLE_EQ(event.scroll.y, 10);
    EXPECT_FALSE(event.isPreciseScroll);
    QWheelEvent fine(QPointF(1, 2), QPointF(), QPoint(3, -7), QPoint(5, -9), Qt::NoButton, {}, Qt::ScrollUpdate,
                     false);
    event = heard(fine);
    EXPECT_EQ(event.scroll, (CGPoint{3, -7}));
    EXPECT_TRUE(event.isPreciseScroll);
}

TEST_F(QtInputTest, lettersGiveTheirTextAndTheKeysOwnLetter)
{
    InputEvent event = key(Qt::Key_A, "a");
    EXPECT_EQ(event.kind, InputKind::keyPressed);
    EXPECT_EQ(event.characters, "a");
    EXPECT_EQ(event.charactersIgnoringModifiers, "a");
    EXPECT_EQ(event.keyCode, 38);
    event = key(Qt::Key_A, "A", Qt::ShiftModifier);
    EXPECT_EQ(event.characters, "A");
    EXPECT_EQ(event.charactersIgnoringModifiers, "A");
    event = key(Qt::Key_S, "\x13", Qt::ControlModifier);
    EXPECT_EQ(event.charactersIgnoringModifiers, "s");
    EXPECT_EQ(event.modifiers, InputModifier::command);
    EXPECT_EQ(key(Qt::Key_Adiaeresis, "ä").characters, "ä");
    EXPECT_EQ(key(Qt::Key_A, "a", {}, QEvent::KeyRelease).kind, InputKind::keyReleased);
}

TEST_F(QtInputTest, keysWithoutATextGiveTheirSign)
{
    const std::pair<int, const char*> signs[] = {
        {Qt::Key_Up, NSKey::up},         {Qt::Key_Down, NSKey::down},
        {Qt::Key_Left, NSKey::left},     {Qt::Key_Right, NSKey::right},
        {Qt::Key_Home, NSKey::home},     {Qt::Key_End, NSKey::end},
        {Qt::Key_PageUp, NSKey::pageUp}, {Qt::Key_PageDown, NSKey::pageDown},
        {Qt::Key_F1, NSKey::f1},         {Qt::Key_Delete, NSKey::deleteForward},
        {Qt::Key_Menu, NSKey::menu},     {Qt::Key_Insert, NSKey::insert},
        {Qt::Key_F2, "\xef\x9c\x85"},
    };
    for (const auto& [qtKey, sign] : signs) {
        const InputEvent event = key(qtKey);
        EXPECT_EQ(event.characters, sign) << qtKey;
        EXPECT_EQ(event.charactersIgnoringModifiers, sign) << qtKey;
        EXPECT_EQ(event.modifiers, InputModifier::function) << qtKey;
    }
}

TEST_F(QtInputTest, keysThatControlATextGiveTheirSignToo)
{
    const std::pair<int, const char*> signs[] = {
        {Qt::Key_Return, NSKey::carriageReturn},
        {Qt::Key_Enter, NSKey::enter},
        {Qt::Key_Tab, NSKey::tab},
        {Qt::Key_Backtab, NSKey::backTab},
        {Qt::Key_Escape, NSKey::escape},
        {Qt::Key_Backspace, NSKey::backspace},
    };
    for (const auto& [qtKey, sign] : signs)
        EXPECT_EQ(key(qtKey).characters, sign) << qtKey;
    EXPECT_EQ(key(Qt::Key_Space, " ").characters, NSKey::space);
}

TEST_F(QtInputTest, aModifierKeyChangesTheModifiers)
{
    InputEvent event = key(Qt::Key_Shift, {}, {});
    EXPECT_EQ(event.kind, InputKind::modifiersChanged);
    EXPECT_EQ(event.modifiers, InputModifier::shift);
    event = key(Qt::Key_Shift, {}, Qt::ShiftModifier, QEvent::KeyRelease);
    EXPECT_EQ(event.modifiers, 0U);
}

TEST_F(QtInputTest, aKeyThatIsHeldIsReleasedOnce)
{
    for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease, QEvent::KeyPress}) {
        QKeyEvent event(type, Qt::Key_A, {}, 38, 0, 0, "a", type == QEvent::KeyRelease, 1);
        QCoreApplication::sendEvent(&surface(), &event);
    }
    ASSERT_EQ(m_client.inputs.size(), 2U) << "a release that only stands for a repeat is none";
    EXPECT_EQ(m_client.inputs.back().kind, InputKind::keyPressed);
    EXPECT_EQ(key(Qt::Key_A, "a", {}, QEvent::KeyRelease).kind, InputKind::keyReleased);
}

TEST_F(QtInputTest, everyShapeOfThePointerIsTheDesktops)
{
    m_window->setCursor(CursorShape::iBeam);
    EXPECT_EQ(surface().cursor().shape(), Qt::IBeamCursor);
    m_window->setCursor(CursorShape::arrow);
    EXPECT_EQ(surface().cursor().shape(), Qt::ArrowCursor);
    std::vector<Qt::CursorShape> shapes;
    for (int shape = 0; shape <= static_cast<int>(CursorShape::operationNotAllowed); ++shape)
        shapes.push_back(toQCursorShape(static_cast<CursorShape>(shape)));
    EXPECT_THAT(shapes, ElementsAre(Qt::ArrowCursor, Qt::IBeamCursor, Qt::CrossCursor, Qt::PointingHandCursor,
                                    Qt::OpenHandCursor, Qt::ClosedHandCursor, Qt::SizeHorCursor, Qt::SizeVerCursor,
                                    Qt::ForbiddenCursor));
}

} // namespace
} // namespace RVCore::QtInputTests
