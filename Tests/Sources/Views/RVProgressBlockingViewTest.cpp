#include <AppKit/NSEvent.h>
#include <CoreImage/CIFilter.h>
#include <Platform/AppKit/WindowTesting.h>
#include <Platform/Foundation/Raised.h>
#include <Sources/Views/BlockingTesting.h>

#include <gmock/gmock.h>

#include <limits>

namespace RVCore::RVProgressBlockingViewTests {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

// Of the test that is under way; null while there is none.
std::vector<std::string>* currentIndicatorLog = nullptr;

// Lets an operation of every indicator be written down before it runs.
void listenTo(const char* selector, const char* word)
{
    const Method* own = NSProgressIndicator::staticClass().method(selector);
    const auto call = own ? own->call : nullptr;
    addCategory<NSProgressIndicator>("Test", [&](auto& publish) {
        publish.method(selector, [call, word](NSProgressIndicator& self, const Value& argument) {
            if (currentIndicatorLog)
                currentIndicatorLog->push_back(word +
                                               (argument.isNothing() ? std::string() : " " + argument.description()));
            if (call)
                call(self, std::array{argument});
        });
    });
}

const bool isListening = [] {
    listenTo("startAnimation:", "start");
    listenTo("stopAnimation:", "stop");
    listenTo("setDisplayedWhenStopped:", "displayed when stopped");
    listenTo("setUsesThreadedAnimation:", "threaded");
    listenTo("setBezeled:", "bezeled");
    return true;
}();

class RVProgressBlockingViewTest : public testing::Test {
protected:
    RVProgressBlockingViewTest() { currentIndicatorLog = &indicatorLog; }
    ~RVProgressBlockingViewTest() override { currentIndicatorLog = nullptr; }

    static std::shared_ptr<RVProgressBlockingView> overlayOf(const BlockingViewContent& content = {})
    {
        return make<RVProgressBlockingView>(content);
    }
    std::function<void()> note(const std::string& text)
    {
        return [this, text] { log.push_back(text); };
    }

    ManualDispatchClock clock;
    std::vector<std::string> log;
    std::vector<std::string> indicatorLog;
};

TEST_F(RVProgressBlockingViewTest, isMadeWithItsDefaults)
{
    const auto overlay = overlayOf();
    EXPECT_EQ(overlay->title(), std::nullopt);
    EXPECT_EQ(overlay->message(), std::nullopt);
    EXPECT_TRUE(overlay->showProgress());
    EXPECT_EQ(overlay->messageSpacing(), 4.0);
    EXPECT_EQ(overlay->progressSpacing(), 12.0);
    EXPECT_EQ(overlay->frame(), CGRect());
    EXPECT_TRUE(overlay->wantsLayer());
    EXPECT_EQ(overlay->layerContentsRedrawPolicy(), NSViewLayerContentsRedrawPolicy::onSetNeedsDisplay);
    EXPECT_TRUE(disableEventPropagation(*overlay));
    EXPECT_EQ(overlay->alphaValue(), 1);
    EXPECT_FALSE(overlay->isFlipped());
}

TEST_F(RVProgressBlockingViewTest, stacksTitleMessageAndSpinnerInItsMiddle)
{
    const auto overlay = overlayOf({.title = "Saving", .message = "contacts.json"});
    const OverlayParts parts(*overlay);
    EXPECT_EQ(parts.group.views().size(), 3);
    EXPECT_EQ(parts.group.orientation(), RVGroupView::Orientation::vertical);
    EXPECT_EQ(parts.group.spacing(), 12.0);
    EXPECT_EQ(parts.group.alignment().edgeCase(), RVGroupView::Edge::Case::center);
    EXPECT_EQ(parts.group.alignment().view(), nullptr);
    EXPECT_EQ(parts.group.resizePolicy(), RVGroupView::ResizePolicy::trailingView);
    EXPECT_EQ(parts.group.alphaValue(), 0.0) << "it is faded in";
    EXPECT_EQ(parts.title.stringValue(), "Saving");
    EXPECT_EQ(parts.message.stringValue(), "contacts.json");
    EXPECT_EQ(overlay->constraints().size(), 2);
    overlay->setFrame({0, 0, 400, 300});
    overlay->layoutSubtreeIfNeeded();
    EXPECT_NEAR(parts.group.frame().midX(), 200, 0.5);
    EXPECT_NEAR(parts.group.frame().midY(), 150, 0.5);
    EXPECT_LT(parts.title.frame().maxY(), parts.message.frame().minY()) << "a group runs down";
    EXPECT_LT(parts.message.frame().maxY(), parts.spinner.frame().minY());
}

TEST_F(RVProgressBlockingViewTest, theLabelsAreDarkGreyAndCentred)
{
    const auto overlay = overlayOf();
    const OverlayParts parts(*overlay);
    for (const NSTextField* label : {&parts.title, &parts.message}) {
        EXPECT_EQ(label->textColor()->cgColor(), darkGrayColor()->cgColor());
        EXPECT_EQ(label->alignment(), NSTextAlignment::center);
        EXPECT_FALSE(label->isEditable());
        EXPECT_FALSE(label->isSelectable());
        EXPECT_FALSE(label->isBordered());
        EXPECT_FALSE(label->isBezeled());
        EXPECT_EQ(label->stringValue(), "");
    }
    EXPECT_TRUE(parts.message.font()->isEqual(*systemFontOfSize(15.0)));
    EXPECT_TRUE(parts.title.font()->isEqual(*boldSystemFontOfSize(22.0)));
    EXPECT_EQ(static_cast<int>(NSTextAlignment::center), 2);
}

TEST_F(RVProgressBlockingViewTest, theSpinnerIsSetUpBeforeItIsStarted)
{
    const auto overlay = overlayOf();
    EXPECT_THAT(indicatorLog, ElementsAre("displayed when stopped false", "threaded true", "bezeled false", "start"));
    const OverlayParts parts(*overlay);
    EXPECT_EQ(parts.spinner.style(), NSProgressIndicatorStyle::spinning);
    EXPECT_EQ(parts.spinner.controlSize(), NSControlSize::regular);
    EXPECT_TRUE(parts.spinner.isIndeterminate());
    EXPECT_TRUE(parts.spinner.wantsLayer());
    EXPECT_EQ(parts.spinner.layer()->backgroundColor(), clearColor()->cgColor());
    const auto filters = parts.spinner.contentFilters();
    ASSERT_EQ(filters.size(), 1);
    EXPECT_EQ(filters[0]->classObject().name(), "CIColorControls");
    EXPECT_EQ(filters[0]->valueForKey("inputBrightness").as<double>(), 0.6);
    EXPECT_EQ(filters[0]->valueForKey("inputSaturation").as<double>(), 1);
    EXPECT_EQ(filters[0]->valueForKey("inputContrast").as<double>(), 1);
}

TEST_F(RVProgressBlockingViewTest, aNewOneDoesNotAlterWhatIsBehindIt)
{
    const auto overlay = overlayOf();
    EXPECT_TRUE(overlay->layerUsesCoreImageFilters());
    const auto filters = overlay->backgroundFilters();
    ASSERT_EQ(filters.size(), 2);
    EXPECT_EQ(filters[0]->name(), "saturation");
    EXPECT_EQ(filters[0]->classObject().name(), "CIColorControls");
    EXPECT_EQ(filters[1]->name(), "blur");
    EXPECT_EQ(filters[1]->classObject().name(), "CIGaussianBlur");
    EXPECT_TRUE(filters[0]->isNeutral());
    EXPECT_TRUE(filters[1]->isNeutral());
    EXPECT_TRUE(overlay->layer()->needsDisplay());
}

TEST_F(RVProgressBlockingViewTest, withNothingToShowItStillBlocksAndBlurs)
{
    const auto overlay = overlayOf({.showProgress = false});
    const OverlayParts parts(*overlay);
    for (const NSView* member : {static_cast<NSView*>(&parts.title), static_cast<NSView*>(&parts.message),
                                 static_cast<NSView*>(&parts.spinner)})
        EXPECT_EQ(member->alphaValue(), 0);
    EXPECT_TRUE(disableEventPropagation(*overlay));
    EXPECT_THAT(indicatorLog, testing::Not(testing::Contains("start")));
    showAnimated(*overlay);
    clock.advance(0.3);
    EXPECT_EQ(shownBlurRadius(*overlay), 8.0);
    EXPECT_EQ(saturation(*overlay), 2.0);
    EXPECT_TRUE(disableEventPropagation(*overlay));
}

// Counts its updates.
class CountingOverlay : public RVProgressBlockingView {
public:
    void updateUI() override
    {
        ++updates;
        RVProgressBlockingView::updateUI();
    }
    int updates = 0;
};

TEST_F(RVProgressBlockingViewTest, theInitialiserAndChangesCallAnOverrideOfUpdateUI)
{
    const auto overlay = make<CountingOverlay>(BlockingViewContent{.title = "A"});
    EXPECT_EQ(overlay->updates, 1) << "arguments are stored without updates of their own";
    overlay->setTitle("B");
    overlay->setMessage("m");
    overlay->setShowProgress(false);
    overlay->setMessageSpacing(1);
    overlay->setProgressSpacing(2);
    EXPECT_EQ(overlay->updates, 6);
}

TEST_F(RVProgressBlockingViewTest, settingTheValueThatItHasUpdatesNothing)
{
    const auto overlay = make<CountingOverlay>(BlockingViewContent{.title = "A"});
    overlay->setTitle("A");
    overlay->setMessage(std::nullopt);
    overlay->setShowProgress(true);
    overlay->setMessageSpacing(4.0);
    overlay->setProgressSpacing(12.0);
    EXPECT_EQ(overlay->updates, 1);
}

TEST_F(RVProgressBlockingViewTest, anEmptyTextIsAnotherThanNoneAndTakesItsPlace)
{
    const auto overlay = make<CountingOverlay>(BlockingViewContent{});
    const OverlayParts parts(*overlay);
    const CGFloat before = parts.group.intrinsicContentSize().height;
    EXPECT_EQ(parts.title.alphaValue(), 0);
    overlay->setTitle("");
    EXPECT_EQ(overlay->updates, 2);
    EXPECT_EQ(parts.title.alphaValue(), 1);
    EXPECT_GT(parts.group.intrinsicContentSize().height, before);
    overlay->setTitle(std::nullopt);
    EXPECT_EQ(overlay->updates, 3);
    EXPECT_EQ(parts.title.alphaValue(), 0);
    EXPECT_EQ(parts.group.intrinsicContentSize().height, before);
}

TEST_F(RVProgressBlockingViewTest, aSpacingThatIsNoNumberAlwaysCountsAsAChangeAndTakesNoRoom)
{
    const auto overlay = make<CountingOverlay>(BlockingViewContent{.title = "A", .message = "m"});
    const OverlayParts parts(*overlay);
    overlay->setMessageSpacing(0);
    const CGFloat height = parts.group.intrinsicContentSize().height;
    for (const double spacing : {nan, nan, infinity, -infinity, 1e300})
        overlay->setMessageSpacing(spacing);
    EXPECT_EQ(overlay->updates, 7);
    EXPECT_EQ(parts.group.intrinsicContentSize().height, height);
    overlay->setMessageSpacing(1e300);
    EXPECT_EQ(overlay->updates, 7);
    overlay->setProgressSpacing(nan);
    overlay->setProgressSpacing(nan);
    EXPECT_EQ(overlay->updates, 9);
    overlay->setFrame({0, 0, 400, 300});
    overlay->layoutSubtreeIfNeeded();
    EXPECT_FALSE(overlay->hasAmbiguousLayout());
}

TEST_F(RVProgressBlockingViewTest, theSpacingsMoveMessageAndSpinnerDown)
{
    const auto overlay = overlayOf({.title = "A", .message = "m"});
    overlay->setFrame({0, 0, 400, 300});
    const OverlayParts parts(*overlay);
    const auto gaps = [&] {
        overlay->layoutSubtreeIfNeeded();
        return std::pair(parts.message.frame().minY() - parts.title.frame().maxY(),
                         parts.spinner.frame().minY() - parts.message.frame().maxY());
    };
    const auto [messageGap, spinnerGap] = gaps();
    overlay->setMessageSpacing(10);
    overlay->setProgressSpacing(30);
    const auto [messageGapAfter, spinnerGapAfter] = gaps();
    EXPECT_EQ(messageGapAfter - messageGap, 6);
    EXPECT_EQ(spinnerGapAfter - spinnerGap, 18 - 6 + (messageGapAfter - messageGap));
}

TEST_F(RVProgressBlockingViewTest, theSpinnerIsStartedAndStoppedInTurn)
{
    const auto overlay = overlayOf();
    indicatorLog.clear();
    overlay->setShowProgress(true);
    overlay->updateUI();
    EXPECT_THAT(indicatorLog, IsEmpty());
    overlay->setShowProgress(false);
    overlay->updateUI();
    EXPECT_THAT(indicatorLog, ElementsAre("stop"));
    overlay->setShowProgress(true);
    overlay->setShowProgress(true);
    overlay->updateUI();
    EXPECT_THAT(indicatorLog, ElementsAre("stop", "start"));
}

TEST_F(RVProgressBlockingViewTest, propertiesAreReadThroughTheirGetters)
{
    class Stubborn : public RVProgressBlockingView {
    public:
        const std::optional<std::string>& title() const override { return own; }
        bool showProgress() const override { return false; }
        std::optional<std::string> own = "Own";
    };
    const auto overlay = make<Stubborn>(BlockingViewContent{.title = "A"});
    const OverlayParts parts(*overlay);
    EXPECT_EQ(parts.title.stringValue(), "Own");
    EXPECT_EQ(parts.spinner.alphaValue(), 0);
}

TEST_F(RVProgressBlockingViewTest, layoutSetsTheWidthsThatTheTextsWrapAt)
{
    const auto overlay = overlayOf({.title = "A long title that wraps", .message = "A longer message that wraps"});
    const OverlayParts parts(*overlay);
    overlay->setFrame({0, 0, 200, 300});
    overlay->layoutSubtreeIfNeeded();
    EXPECT_EQ(parts.message.preferredMaxLayoutWidth(), 160);
    EXPECT_EQ(parts.title.preferredMaxLayoutWidth(), 140);
    EXPECT_LE(parts.title.frame().size.width, 140);
    EXPECT_LE(parts.message.frame().size.width, 160);
    EXPECT_GT(parts.title.frame().size.height, 22 * 1.8) << "more than one line";
    EXPECT_FALSE(overlay->needsLayout());
}

TEST_F(RVProgressBlockingViewTest, withoutAWidthTheWrappingWidthsAreNotClamped)
{
    const auto overlay = overlayOf({.title = "Title", .message = "Message"});
    const OverlayParts parts(*overlay);
    overlay->layoutSubtreeIfNeeded();
    EXPECT_EQ(parts.message.preferredMaxLayoutWidth(), -40.0);
    EXPECT_EQ(parts.title.preferredMaxLayoutWidth(), -60.0);
}

TEST_F(RVProgressBlockingViewTest, layoutHidesTheFirstSublayerOfTheSpinner)
{
    const auto overlay = overlayOf();
    const OverlayParts parts(*overlay);
    const auto plate = make<CALayer>(), spokes = make<CALayer>();
    parts.spinner.layer()->insertSublayer(plate, 0);
    parts.spinner.layer()->insertSublayer(spokes, 1);
    overlay->layout();
    EXPECT_TRUE(plate->isHidden());
    EXPECT_FALSE(spokes->isHidden());
    parts.spinner.setWantsLayer(false);
    overlay->layout(); // nothing to hide
}

TEST_F(RVProgressBlockingViewTest, fadingBeginsAtTheNextTurnOfTheMainQueue)
{
    const auto overlay = overlayOf();
    const OverlayParts parts(*overlay);
    overlay->animateAlpha(0.5, 0.5, note("over"));
    EXPECT_EQ(parts.group.alphaValue(), 0);
    EXPECT_EQ(blurRadius(*overlay), 0);
    overlay->setTitle("set before the fade starts");
    clock.advance(0);
    EXPECT_EQ(parts.group.alphaValue(), 0.5);
    EXPECT_EQ(overlay->alphaValue(), 1) << "only the content fades";
    EXPECT_EQ(saturation(*overlay), 2.0);
    EXPECT_EQ(blurRadius(*overlay), 8.0);
    EXPECT_EQ(shownBlurRadius(*overlay), 0);
    clock.advance(0.49);
    EXPECT_THAT(log, IsEmpty());
    clock.advance(0.02);
    EXPECT_THAT(log, ElementsAre("over"));
    EXPECT_EQ(shownAlpha(*overlay), 0.5);
    EXPECT_EQ(shownBlurRadius(*overlay), 8.0);
}

TEST_F(RVProgressBlockingViewTest, contentAndFiltersMoveTogetherAndEndSlowly)
{
    const auto overlay = overlayOf();
    overlay->animateAlpha(1, 1);
    clock.advance(0);
    const auto curve = CAMediaTimingFunction::functionWithName(kCAMediaTimingFunctionEaseOut);
    for (const double time : {0.25, 0.5, 0.75}) {
        clock.advance(0.25);
        EXPECT_NEAR(shownAlpha(*overlay), curve->value(time), 1e-9);
        EXPECT_NEAR(shownBlurRadius(*overlay), 8 * curve->value(time), 1e-9);
        EXPECT_NEAR(shownBackgroundInput(*overlay, 0, "inputSaturation"), 1 + curve->value(time), 1e-9);
    }
}

TEST_F(RVProgressBlockingViewTest, anAlphaOfZeroMakesTheFiltersNeutral)
{
    const auto overlay = overlayOf();
    overlay->animateAlpha(1, 0.1);
    clock.advance(0.1);
    overlay->animateAlpha(0.0, 0.1);
    clock.advance(0.1);
    EXPECT_EQ(saturation(*overlay), 1.0);
    EXPECT_EQ(blurRadius(*overlay), 0);
    EXPECT_EQ(shownBlurRadius(*overlay), 0);
    EXPECT_EQ(shownAlpha(*overlay), 0);
}

TEST_F(RVProgressBlockingViewTest, everyOtherAlphaCountsAsShowing)
{
    for (const double alpha : {0.01, 1e-300, -1.0, 7.0, nan, infinity, -infinity}) {
        const auto overlay = overlayOf();
        overlay->animateAlpha(alpha, 0.1, note("over"));
        clock.advance(0.2);
        EXPECT_EQ(saturation(*overlay), 2.0) << alpha;
        EXPECT_EQ(blurRadius(*overlay), 8.0) << alpha;
        EXPECT_THAT(std::exchange(log, {}), ElementsAre("over")) << alpha;
        EXPECT_EQ(OverlayParts(*overlay).group.alphaValue(), alpha > 0 ? std::min(alpha, 1.0) : 0.0) << alpha;
    }
}

TEST_F(RVProgressBlockingViewTest, fadesOverFourTenthsOfASecondUnlessToldOtherwise)
{
    const auto overlay = overlayOf();
    overlay->animateAlpha(1);
    clock.advance(0.39);
    EXPECT_LT(shownBlurRadius(*overlay), 8);
    clock.advance(0.02);
    EXPECT_EQ(shownBlurRadius(*overlay), 8);
}

TEST_F(RVProgressBlockingViewTest, theViewsFadesFadeItThisWayInThreeTenths)
{
    const auto overlay = overlayOf();
    NSView& view = *overlay;
    showAnimated(view, note("shown"));
    clock.advance(0.29);
    EXPECT_THAT(log, IsEmpty());
    clock.advance(0.02);
    EXPECT_THAT(log, ElementsAre("shown"));
    EXPECT_EQ(overlay->alphaValue(), 1);
    EXPECT_EQ(shownBlurRadius(*overlay), 8);
    hideAnimated(view, note("hidden"));
    clock.advance(0.31);
    EXPECT_THAT(log, ElementsAre("shown", "hidden"));
    EXPECT_EQ(overlay->alphaValue(), 1);
    EXPECT_EQ(shownAlpha(*overlay), 0);
}

TEST_F(RVProgressBlockingViewTest, theViewsFadesCallAnOverrideOfASubclass)
{
    class Own : public RVProgressBlockingView {
    public:
        using RVProgressBlockingView::init;
        void animateAlpha(CGFloat alpha, CGFloat duration, const std::function<void()>&) override
        {
            fades.emplace_back(alpha, duration);
        }
        std::vector<std::pair<CGFloat, CGFloat>> fades;
    };
    const auto overlay = make<Own>(BlockingViewContent());
    showAnimated(*overlay);
    hideAnimated(*overlay);
    EXPECT_THAT(overlay->fades, ElementsAre(std::pair(1.0, 0.3), std::pair(0.0, 0.3)));
}

TEST_F(RVProgressBlockingViewTest, aFilterOfTheNameThatHasNoSuchInputStaysAsItIs)
{
    const auto overlay = overlayOf();
    const auto other = makeFilter("CIColorControls");
    other->setName("blur");
    overlay->setBackgroundFilters({other});
    overlay->animateAlpha(1, 0.1, note("shown"));
    clock.advance(1);
    EXPECT_THAT(log, ElementsAre("shown"));
    EXPECT_TRUE(other->isNeutral());
}

TEST_F(RVProgressBlockingViewTest, withoutACompletionNothingIsCalled)
{
    overlayOf({.showProgress = false})->animateAlpha(1, 0.1);
    clock.advance(0.2);
    EXPECT_EQ(DispatchQueue::main().nextDeadline(), std::nullopt);
}

TEST_F(RVProgressBlockingViewTest, livesUntilTheFadeIsOver)
{
    auto overlay = overlayOf({.showProgress = false});
    const std::weak_ptr<NSView> weak = overlay;
    overlay->animateAlpha(1, 0.1, note("over"));
    overlay.reset();
    EXPECT_FALSE(weak.expired());
    clock.advance(0.05);
    EXPECT_FALSE(weak.expired());
    clock.advance(0.1);
    EXPECT_THAT(log, ElementsAre("over"));
    EXPECT_TRUE(weak.expired());
}

TEST_F(RVProgressBlockingViewTest, aHostThatDiesInTheMiddleLosesNoCompletion)
{
    auto host = make<NSView>();
    auto overlay = overlayOf();
    host->addSubview(overlay);
    overlay->animateAlpha(1, 0.1, note("over"));
    clock.advance(0.05);
    host.reset();
    clock.advance(0.1);
    EXPECT_THAT(log, ElementsAre("over"));
    EXPECT_EQ(overlay->superview(), nullptr);
}

TEST_F(RVProgressBlockingViewTest, withoutItsFiltersItFadesAllTheSame)
{
    const auto overlay = overlayOf();
    overlay->setBackgroundFilters({});
    overlay->animateAlpha(1, 0.1, note("over"));
    clock.advance(0.2);
    EXPECT_THAT(log, ElementsAre("over"));
    EXPECT_EQ(shownAlpha(*overlay), 1);
}

TEST_F(RVProgressBlockingViewTest, aDurationThatMakesNoSenseRaisesAndSchedulesNothing)
{
    const auto overlay = overlayOf({.showProgress = false});
    for (const double duration : {nan, infinity, -infinity})
        EXPECT_THAT(raised([&] { overlay->animateAlpha(1, duration, note("over")); }),
                    HasSubstr("RVProgressBlockingView.animateAlpha: duration must be finite"));
    EXPECT_THAT(raised([&] { overlay->animateAlpha(1, -0.5, note("over")); }),
                HasSubstr("duration must not be negative, got -0.5"));
    EXPECT_EQ(DispatchQueue::main().nextDeadline(), std::nullopt);
    EXPECT_THAT(log, IsEmpty());
}

TEST_F(RVProgressBlockingViewTest, everyMemberIsReachedByName)
{
    const ObjectRef overlay = send(RVProgressBlockingView::staticClass(), "alloc").as<ObjectRef>();
    EXPECT_EQ(send(overlay, "initWithTitle:message:showProgress:", "T", nullptr, false).as<ObjectRef>(), overlay);
    EXPECT_EQ(send(overlay, "title").as<std::string>(), "T");
    EXPECT_TRUE(send(overlay, "message").isNothing());
    EXPECT_FALSE(send(overlay, "showProgress").as<bool>());
    send(overlay, "setMessage:", "m");
    send(overlay, "setTitle:", nullptr);
    send(overlay, "setShowProgress:", true);
    send(overlay, "setMessageSpacing:", 5.5);
    send(overlay, "setProgressSpacing:", 6);
    EXPECT_EQ(send(overlay, "message").as<std::string>(), "m");
    EXPECT_TRUE(send(overlay, "title").isNothing());
    EXPECT_TRUE(send(overlay, "showProgress").as<bool>());
    EXPECT_EQ(send(overlay, "messageSpacing").as<double>(), 5.5);
    EXPECT_EQ(send(overlay, "progressSpacing").as<double>(), 6);
    send(overlay, "updateUI");
    send(overlay, "layout");
    send(overlay, "animateAlphaWithAlpha:duration:completion:", 1.0, 0.1, note("over"));
    clock.advance(0.2);
    EXPECT_THAT(log, ElementsAre("over"));
    for (const char* selector :
         {"message", "setMessage:", "title", "setTitle:", "showProgress", "setShowProgress:", "messageSpacing",
          "setMessageSpacing:", "progressSpacing", "setProgressSpacing:", "initWithTitle:message:showProgress:",
          "initWithCoder:", "layout", "updateUI", "animateAlphaWithAlpha:duration:completion:"})
        EXPECT_TRUE(std::ranges::count(RVProgressBlockingView::staticClass().selectors(), Selector(selector)))
            << selector;
    EXPECT_EQ(overlay->classObject().name(), "RVCore.RVProgressBlockingView");
}

TEST(RVProgressBlockingViewDeathTest, otherInitialisersStopTheProgram)
{
    EXPECT_DEATH(make<RVProgressBlockingView>(CGRect()),
                 "Use of unimplemented initializer 'init\\(frame:\\)' for class 'RVCore.RVProgressBlockingView'");
    EXPECT_DEATH(make<RVProgressBlockingView>(), "'init\\(frame:\\)' for class 'RVCore.RVProgressBlockingView'");
    EXPECT_DEATH(
        {
            NSCoder coder;
            make<RVProgressBlockingView>(coder);
        },
        "Not Supported");
}

} // namespace
} // namespace RVCore::RVProgressBlockingViewTests
