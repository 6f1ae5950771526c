#include <Platform/Foundation/Raised.h>
#include <Sources/Views/TestViews.h>

#include <gtest/gtest.h>

#include <limits>

namespace RVCore::NSViewRVCoreTests {

namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

// A layer that counts what is written to it, in a view that has one.
class CountingLayer : public CALayer {
public:
    using ClassOwner = CALayer;
    void setPosition(CGPoint position) override
    {
        ++writes;
        CALayer::setPosition(position);
    }
    void setAffineTransform(const CGAffineTransform& transform) override
    {
        ++writes;
        CALayer::setAffineTransform(transform);
    }
    int writes = 0;
};
class CountingLayerView : public NSView {
public:
    using ClassOwner = NSView;
    std::shared_ptr<CALayer> makeBackingLayer() override { return make<CountingLayer>(); }
    int& writes() { return static_cast<CountingLayer&>(*layer()).writes; }
};
// What a broken platform would do.
class LayerlessView : public NSView {
public:
    using ClassOwner = NSView;
    std::shared_ptr<CALayer> makeBackingLayer() override { return nullptr; }
};

TEST(ViewGeometry, comesFromTheFrameInAnySuperview)
{
    for (const std::shared_ptr<NSView>& superview :
         {make<NSView>(CGRect(0, 0, 500, 500)), std::shared_ptr<NSView>(make<RVBaseView>(CGRect(0, 0, 500, 500)))}) {
        const auto view = makeView(*superview);
        view->setFrame({10, 20, 30, 40});
        view->setBoundsOrigin({7, 7});
        EXPECT_EQ(left(*view), 10);
        EXPECT_EQ(top(*view), 20);
        EXPECT_EQ(width(*view), 30);
        EXPECT_EQ(height(*view), 40);
        EXPECT_EQ(right(*view), 40);
        EXPECT_EQ(bottom(*view), 60);
    }
}

TEST(ViewGeometry, intrinsicMetricsComeFromTheContentSize)
{
    const auto view = sized(30, 40);
    EXPECT_EQ(intrinsicWidth(*view), 30);
    EXPECT_EQ(intrinsicHeight(*view), 40);
    EXPECT_TRUE(hasIntrinsicSize(*view));
    EXPECT_TRUE(hasIntrinsicSize(*sized(0, 0)));
}

TEST(ViewGeometry, aViewWithoutAnIntrinsicHeightHasNoIntrinsicSize)
{
    const auto view = sized(30, -1);
    EXPECT_FALSE(hasIntrinsicSize(*view));
    EXPECT_EQ(view->sizeQuestions, 2);
}

TEST(ViewGeometry, withoutAnIntrinsicWidthTheHeightIsNotAskedFor)
{
    const auto view = sized(-1, 30);
    EXPECT_FALSE(hasIntrinsicSize(*view));
    EXPECT_EQ(view->sizeQuestions, 1);
}

TEST(ViewConstruction, makesTheViewPlainlyAndAddsIt)
{
    const auto superview = make<NSView>();
    const std::shared_ptr<RVSpacerView> view = makeView<RVSpacerView>(*superview);
    EXPECT_EQ(superview->subviews(), (std::vector<std::shared_ptr<NSView>>{view}));
    EXPECT_EQ(view->frame(), CGRect());
    EXPECT_TRUE(view->translatesAutoresizingMaskIntoConstraints());
    EXPECT_TRUE(superview->constraints().empty());
    EXPECT_EQ(view->autoresizingMask(), NSAutoresizingMask::none);
}

TEST(ViewAppearance, readingTheBackgroundColourOfAFreshViewDoesNotMakeItLayerBacked)
{
    const auto view = make<NSView>();
    EXPECT_EQ(backgroundColor(*view), nullptr);
    EXPECT_FALSE(view->wantsLayer());
}

TEST(ViewAppearance, writingTheBackgroundColourMakesTheViewLayerBacked)
{
    const auto view = make<NSView>();
    setBackgroundColor(*view, makeColor(1, 0.5, 0.25, 0.75));
    EXPECT_TRUE(view->wantsLayer());
    EXPECT_EQ(view->layer()->backgroundColor(), (CGColor{1, 0.5, 0.25, 0.75}));
    ASSERT_TRUE(backgroundColor(*view));
    EXPECT_EQ(backgroundColor(*view)->cgColor(), (CGColor{1, 0.5, 0.25, 0.75}));
    EXPECT_NE(backgroundColor(*view), backgroundColor(*view)) << "a new colour each time";
}

TEST(ViewAppearance, writingNoBackgroundColourClearsTheLayers)
{
    const auto view = make<NSView>();
    setBackgroundColor(*view, makeColor(1, 0, 0));
    setBackgroundColor(*view, nullptr);
    EXPECT_EQ(view->layer()->backgroundColor(), std::nullopt);
    EXPECT_EQ(backgroundColor(*view), nullptr);
    const auto fresh = make<NSView>();
    setBackgroundColor(*fresh, nullptr);
    EXPECT_TRUE(fresh->wantsLayer());
}

TEST(ViewAppearance, everyOtherAccessorMakesTheViewLayerBacked)
{
    const std::pair<const char*, std::function<void(NSView&)>> accessors[] = {
        {"center", [](NSView& view) { center(view); }},
        {"setCenter", [](NSView& view) { setCenter(view, {}); }},
        {"transform", [](NSView& view) { transform(view); }},
        {"setTransform", [](NSView& view) { setTransform(view, {}); }},
        {"alpha", [](NSView& view) { alpha(view); }},
        {"setAlpha", [](NSView& view) { setAlpha(view, 1); }},
        {"wantsAnimations", [](NSView& view) { wantsAnimations(view); }},
    };
    for (const auto& [name, access] : accessors) {
        const auto view = make<NSView>();
        access(*view);
        EXPECT_TRUE(view->wantsLayer()) << name;
        const auto layer = view->layer();
        access(*view);
        EXPECT_EQ(view->layer(), layer) << name << " keeps the layer that there is";
    }
}

TEST(ViewAppearance, theCenterIsTheLayersPosition)
{
    const auto view = make<NSView>(CGRect(10, 20, 30, 40));
    EXPECT_EQ(center(*view), (CGPoint{25, 40}));
    setCenter(*view, {1, 2});
    EXPECT_EQ(view->layer()->position(), (CGPoint{1, 2}));
    EXPECT_EQ(center(*view), (CGPoint{1, 2}));
    EXPECT_EQ(view->frame(), CGRect(10, 20, 30, 40));
}

TEST(ViewAppearance, settingTheCenterThatItHasWritesNothing)
{
    const auto view = make<CountingLayerView>();
    setCenter(*view, {1, 2});
    view->writes() = 0;
    setCenter(*view, {1, 2});
    EXPECT_EQ(view->writes(), 0);
    setCenter(*view, {1, 3});
    EXPECT_EQ(view->writes(), 1);
    setCenter(*view, {2, 3});
    EXPECT_EQ(view->writes(), 2);
}

TEST(ViewAppearance, theTransformIsTheLayersAndLeavesTheAnchorAlone)
{
    const auto view = make<NSView>();
    EXPECT_TRUE(transform(*view).isIdentity());
    view->layer()->setAnchorPoint({0, 1});
    setTransform(*view, CGAffineTransform::scale(2, 3));
    EXPECT_EQ(view->layer()->affineTransform(), CGAffineTransform::scale(2, 3));
    EXPECT_EQ(transform(*view), CGAffineTransform::scale(2, 3));
    EXPECT_EQ(view->layer()->anchorPoint(), (CGPoint{0, 1}));
}

TEST(ViewAppearance, settingTheTransformThatItHasWritesNothing)
{
    const auto view = make<CountingLayerView>();
    setTransform(*view, {1, 2, 3, 4, 5, 6});
    view->writes() = 0;
    setTransform(*view, {1, 2, 3, 4, 5, 6});
    EXPECT_EQ(view->writes(), 0);
    const CGAffineTransform others[] = {{0, 2, 3, 4, 5, 6}, {1, 0, 3, 4, 5, 6}, {1, 2, 0, 4, 5, 6},
                                        {1, 2, 3, 0, 5, 6}, {1, 2, 3, 4, 0, 6}, {1, 2, 3, 4, 5, 0}};
    for (const CGAffineTransform& other : others) {
        setTransform(*view, {1, 2, 3, 4, 5, 6});
        view->writes() = 0;
        setTransform(*view, other);
        EXPECT_EQ(view->writes(), 1) << describe(other);
    }
}

TEST(ViewAppearance, alphaIsTheViewsAlphaValue)
{
    const auto view = make<NSView>();
    EXPECT_EQ(alpha(*view), 1);
    setAlpha(*view, 0.25);
    EXPECT_EQ(view->alphaValue(), 0.25);
    EXPECT_EQ(alpha(*view), 0.25);
}

TEST(ViewAppearance, wantingAnimationsRedrawsOnlyWhenAsked)
{
    const auto view = make<NSView>();
    wantsAnimations(*view);
    EXPECT_EQ(view->layerContentsRedrawPolicy(), NSViewLayerContentsRedrawPolicy::onSetNeedsDisplay);
    EXPECT_EQ(static_cast<int>(view->layerContentsRedrawPolicy()), 1);
}

TEST(ViewAppearance, numbersMustBeFiniteAndChangeNothingOtherwise)
{
    const auto view = make<NSView>();
    EXPECT_EQ(raised([&] {
                  setCenter(*view, {0, nan});
              }),
              "NSInvalidArgumentException: setCenter: center.y must be finite, got nan");
    EXPECT_EQ(raised([&] {
                  setTransform(*view, {nan, 0, 0, 0, 0, 0});
              }),
              "NSInvalidArgumentException: setTransform: transform must be finite, got nan");
    EXPECT_EQ(raised([&] { setAlpha(*view, nan); }),
              "NSInvalidArgumentException: setAlpha: alpha must be finite, got nan");
    EXPECT_FALSE(view->wantsLayer());
}

TEST(ViewAppearance, settersOfAViewWithoutALayerDoNothing)
{
    const auto view = make<LayerlessView>();
    setBackgroundColor(*view, makeColor(1, 0, 0));
    setCenter(*view, {1, 2});
    setTransform(*view, CGAffineTransform::scale(2, 2));
    EXPECT_EQ(view->layer(), nullptr);
    EXPECT_EQ(backgroundColor(*view), nullptr);
}

TEST(ViewAppearanceDeathTest, gettersOfAViewThatGetsNoLayerStopTheProgram)
{
    const auto view = make<LayerlessView>();
    EXPECT_DEATH(center(*view), "Fatal error: <NSView: 0x[0-9a-f]+> has no layer although it wants one");
    EXPECT_DEATH(transform(*view), "Fatal error: <NSView: 0x[0-9a-f]+> has no layer although it wants one");
}

TEST(ViewResponder, aViewInAWindowWithAnyFirstResponderSaysYes)
{
    class Control : public NSView {
    public:
        bool acceptsFirstResponder() const override { return true; }
    };
    const auto window = make<NSWindow>();
    const auto view = makeView(*window->contentView());
    const auto control = makeView<Control>(*window->contentView());
    ASSERT_TRUE(window->makeFirstResponder(control.get()));
    EXPECT_TRUE(isFirstResponder(*view));
    EXPECT_TRUE(isFirstResponder(*control));
}

TEST(ViewResponder, aViewOutsideAWindowSaysNo)
{
    EXPECT_FALSE(isFirstResponder(*make<NSView>()));
}

TEST(ViewMarks, setThePlatformsFlags)
{
    const auto view = make<NSView>();
    view->setNeedsLayout(false);
    view->setNeedsUpdateConstraints(false);
    setNeedsLayout(*view);
    EXPECT_TRUE(view->needsLayout());
    EXPECT_FALSE(view->needsUpdateConstraints());
    setNeedsUpdateConstraints(*view);
    EXPECT_TRUE(view->needsUpdateConstraints());
}

TEST(ViewSelectors, geometryIsReadOnly)
{
    const std::shared_ptr<NSView> view = sized(5, 6);
    view->setFrame({10, 20, 30, 40});
    const std::pair<const char*, double> values[] = {{"left", 10},          {"top", 20},           {"right", 40},
                                                     {"bottom", 60},        {"width", 30},         {"height", 40},
                                                     {"intrinsicWidth", 5}, {"intrinsicHeight", 6}};
    for (const auto& [name, value] : values) {
        EXPECT_EQ(send(view, name).as<double>(), value) << name;
        EXPECT_FALSE(view->respondsToSelector(Selector::setterFor(name))) << name;
        EXPECT_EQ(NSView::staticClass().method(name)->category, "RVCore") << name;
    }
    EXPECT_TRUE(send(view, "hasIntrinsicSize").as<bool>());
    EXPECT_FALSE(view->respondsToSelector("setHasIntrinsicSize:"));
}

TEST(ViewSelectors, appearanceIsReadAndWritten)
{
    const auto view = make<NSView>();
    send(view, "setBackgroundColor:", makeColor(0, 1, 0));
    EXPECT_EQ(send(view, "backgroundColor").as<std::shared_ptr<NSColor>>()->cgColor(), (CGColor{0, 1, 0, 1}));
    send(view, "setBackgroundColor:", nullptr);
    EXPECT_TRUE(send(view, "backgroundColor").isNothing());
    send(view, "setCenter:", CGPoint{3, 4});
    EXPECT_EQ(send(view, "center").as<CGPoint>(), (CGPoint{3, 4}));
    send(view, "setTransform:", CGAffineTransform::scale(2, 2));
    EXPECT_EQ(send(view, "transform").as<CGAffineTransform>(), CGAffineTransform::scale(2, 2));
    send(view, "setAlpha:", 0.5);
    EXPECT_EQ(send(view, "alpha").as<double>(), 0.5);
    EXPECT_EQ(valueForKeyPath(*view, "alpha").as<double>(), 0.5);
}

TEST(ViewSelectors, operationsAreCalled)
{
    const auto view = make<NSView>();
    send(view, "wantsAnimations");
    EXPECT_TRUE(view->wantsLayer());
    EXPECT_FALSE(send(view, "isFirstResponder").as<bool>());
    view->setNeedsLayout(false);
    view->setNeedsUpdateConstraints(false);
    send(view, "setNeedsLayout");
    send(view, "setNeedsUpdateConstraints");
    EXPECT_TRUE(view->needsLayout());
    EXPECT_TRUE(view->needsUpdateConstraints());
}

TEST(ViewSelectors, aViewIsMadeInASuperview)
{
    const auto superview = make<NSView>();
    const ObjectRef view = send(RVGroupView::staticClass(), "alloc").as<ObjectRef>();
    EXPECT_EQ(send(view, "initWithSuperview:", superview).as<ObjectRef>(), view);
    EXPECT_EQ(superview->subviews().at(0), view);
    EXPECT_EQ(static_cast<NSView&>(*view).layerContentsRedrawPolicy(),
              NSViewLayerContentsRedrawPolicy::onSetNeedsDisplay)
        << "the view's own plain initialiser ran";
}

} // namespace

} // namespace RVCore::NSViewRVCoreTests
