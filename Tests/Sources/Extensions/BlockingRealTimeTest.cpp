// An overlay as a program has it: with the system's clock, a run loop, and a thread that works. The rules are tested
// with a clock in the test's hand; this is to see that they hold when time goes by itself. It takes as long as the
// overlay, and gives up only after a minute.

#include <Platform/AppKit/InputTesting.h>
#include <Sources/Views/BlockingTesting.h>

#include <gmock/gmock.h>

#include <thread>

namespace RVCore::BlockingRealTimeTests {
namespace {

using testing::Contains;
using testing::ElementsAre;

constexpr double patience = 60; // seconds

class BlockingRealTime : public WindowInputTest {
protected:
    BlockingRealTime()
    {
        list = listen({0, 0, 100, 100}, "list");
        field = listen({10, 10, 50, 20}, "field", list.get());
        for (const auto& view : {list, field})
            view->accepts = true;
    }

    // Runs the program, looking again and again, until the overlay has been taken out.
    static void runUntilGone(const NSView& overlay, const std::function<void()>& look)
    {
        const DispatchTime end = DispatchTime::now() + patience;
        const std::function<void()> watch = [&] {
            look();
            if (!overlay.superview() || DispatchTime::now() > end)
                NSApplication::shared().terminate();
            else
                DispatchQueue::main().asyncAfter(DispatchTime::now() + 0.005, watch);
        };
        DispatchQueue::main().async(watch);
        NSApplication::shared().run();
    }

    std::shared_ptr<ListeningView> list, field;
};

TEST_F(BlockingRealTime, aShortOperationIsCoveredForASecondAndThenAllIsAsItWas)
{
    ASSERT_TRUE(window->makeFirstResponder(field.get()));
    int completionCount = 0;
    const DispatchTime begin = DispatchTime::now();
    showBlockingView(*list, {.title = "Reading"});
    const auto overlay = progressBlockingView(*list);
    showAnimated(*overlay, [&] { ++completionCount; });
    std::jthread worker([this] {
        for (int i = 1; i <= 100; ++i)
            DispatchQueue::main().async([this, i] { showBlockingView(*list, {.message = std::to_string(i)}); });
        DispatchQueue::main().async([this] { hideBlockingView(*list); });
    });

    double largestAlpha = 0;
    double largestBlur = 0;
    std::optional<DispatchTime> fadeOut;
    runUntilGone(*overlay, [&] {
        largestAlpha = std::max(largestAlpha, shownAlpha(*overlay));
        largestBlur = std::max(largestBlur, shownBlurRadius(*overlay));
        if (largestBlur > 0 && blurRadius(*overlay) == 0 && !fadeOut)
            fadeOut = DispatchTime::now();
    });

    EXPECT_EQ(overlay->superview(), nullptr) << "it has not gone in a minute";
    EXPECT_EQ(overlay->message(), "100") << "what the thread has said last";
    ASSERT_TRUE(fadeOut);
    EXPECT_GE(*fadeOut - begin, 0.99); // the date, by which the second is counted, may be put right meanwhile
    EXPECT_EQ(largestAlpha, 1);
    EXPECT_EQ(largestBlur, 8);
    EXPECT_EQ(shownAlpha(*overlay), 0);
    EXPECT_EQ(shownBlurRadius(*overlay), 0);
    EXPECT_EQ(completionCount, 1);
    EXPECT_EQ(progressBlockingView(*list), nullptr);
    EXPECT_EQ(window->firstResponder(), field.get());
    type("a");
    EXPECT_THAT(takeLog(), Contains("field key down"));
    click(80, 20);
    EXPECT_THAT(takeLog(), ElementsAre("list down", "list up"));
}

} // namespace
} // namespace RVCore::BlockingRealTimeTests
