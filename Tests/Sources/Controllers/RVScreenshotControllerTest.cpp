#include <Platform/AppKit/WindowTesting.h>
#include <Platform/ConstraintLibrary/ConstraintText.h>
#include <Platform/Foundation/Raised.h>
#include <RVCore.h>

#include <gmock/gmock.h>

namespace RVCore::RVScreenshotControllerTests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// Writes down what is drawn of it.
class WordView : public NSView {
public:
    using NSView::init;
    void draw(Canvas&, const CGRect&) override
    {
        if (word.empty())
            raiseInvalidArgument("draw", "no word");
        drawn.push_back(word);
    }
    std::string word = "first";
    std::vector<std::string> drawn;
};

class RVScreenshotControllerTest : public WindowTest {
protected:
    std::shared_ptr<WordView> source = make<WordView>(CGRect(7, 8, 300, 200));
};

TEST_F(RVScreenshotControllerTest, showsAPictureInTheSizeAndOnTheGroundOfTheView)
{
    setBackgroundColor(*source, makeColor(1, 0, 0));
    const auto controller = make<RVScreenshotController>(source);
    const auto view = controller->view();
    EXPECT_EQ(view->frame(), CGRect(0, 0, 300, 200));
    EXPECT_EQ(backgroundColor(*view)->cgColor(), (CGColor{1, 0, 0, 1}));
    EXPECT_THAT(view->subviews(), ElementsAre(controller->imageView()));
    const auto image = controller->imageView()->image();
    ASSERT_TRUE(image);
    EXPECT_EQ(image->size(), (CGSize{300, 200}));
    EXPECT_EQ(image->representations().size(), 1);
    view->layoutSubtreeIfNeeded();
    EXPECT_EQ(controller->imageView()->frame(), CGRect(0, 0, 300, 200));
}

TEST_F(RVScreenshotControllerTest, thePictureStaysAtTheTopLeftOfALargerView)
{
    const auto controller = make<RVScreenshotController>(source);
    const auto view = controller->view();
    EXPECT_EQ(view->constraints().size(), 2);
    view->setFrame({0, 0, 500, 400});
    view->layoutSubtreeIfNeeded();
    EXPECT_EQ(controller->imageView()->frame(), CGRect(0, 200, 300, 200));
}

TEST_F(RVScreenshotControllerTest, withoutABackgroundColourThereIsNone)
{
    const auto controller = make<RVScreenshotController>(source);
    EXPECT_EQ(backgroundColor(*controller->view()), nullptr);
    EXPECT_TRUE(controller->view()->wantsLayer());
    EXPECT_FALSE(source->wantsLayer());
}

TEST_F(RVScreenshotControllerTest, thePictureIsTakenOnceWhenTheViewIsLoaded)
{
    const auto controller = make<RVScreenshotController>(source);
    EXPECT_THAT(source->drawn, IsEmpty());
    EXPECT_FALSE(controller->isViewLoaded());
    source->word = "second";
    controller->view();
    EXPECT_THAT(source->drawn, ElementsAre("second"));
    source->word = "third";
    const auto image = controller->imageView()->image();
    controller->view();
    controller->setScreenShotView(make<NSView>(CGRect(0, 0, 1, 1)));
    EXPECT_THAT(source->drawn, ElementsAre("second"));
    EXPECT_EQ(controller->imageView()->image(), image);
    EXPECT_EQ(controller->view()->frame().size, (CGSize{300, 200}));
}

TEST_F(RVScreenshotControllerTest, aViewThatIsSetBeforeLoadingIsTheOneInThePicture)
{
    const auto controller = make<RVScreenshotController>(source);
    const auto other = make<WordView>(CGRect(0, 0, 40, 30));
    setBackgroundColor(*other, makeColor(0, 0, 1));
    controller->setScreenShotView(other);
    EXPECT_EQ(controller->view()->frame().size, (CGSize{40, 30}));
    EXPECT_EQ(backgroundColor(*controller->view())->cgColor(), (CGColor{0, 0, 1, 1}));
    EXPECT_THAT(source->drawn, IsEmpty());
    EXPECT_THAT(other->drawn, ElementsAre("first"));
}

TEST_F(RVScreenshotControllerTest, aPictureThatFailedIsTakenWhenTheViewIsAskedForAgain)
{
    source->word = "";
    const auto controller = make<RVScreenshotController>(source);
    EXPECT_THAT(raised([&] { controller->view(); }), testing::HasSubstr("no word"));
    EXPECT_FALSE(controller->isViewLoaded());
    source->word = "second";
    EXPECT_EQ(controller->view()->frame().size, (CGSize{300, 200}));
    EXPECT_THAT(source->drawn, ElementsAre("second"));
    EXPECT_THAT(controller->view()->subviews(), ElementsAre(controller->imageView()));
}

TEST_F(RVScreenshotControllerTest, theFieldsAreReadThroughTheirProperties)
{
    class Own : public RVScreenshotController {
    public:
        const std::shared_ptr<NSImageView>& imageView() const override { return ownImageView; }
        const std::shared_ptr<NSView>& screenShotView() const override { return ownView; }
        std::shared_ptr<NSImageView> ownImageView = make<NSImageView>();
        std::shared_ptr<NSView> ownView = make<NSView>(CGRect(0, 0, 40, 30));
    };
    const auto controller = make<Own>(source);
    EXPECT_THAT(controller->view()->subviews(), ElementsAre(controller->ownImageView));
    EXPECT_EQ(controller->ownImageView->image()->size(), (CGSize{40, 30}));
    EXPECT_EQ(controller->view()->frame().size, (CGSize{40, 30}));
}

TEST_F(RVScreenshotControllerTest, whatIsAbsentRaises)
{
    EXPECT_EQ(raised([] { make<RVScreenshotController>(std::shared_ptr<NSView>()); }),
              "NSInvalidArgumentException: RVScreenshotController.init: there is no view");
    const auto controller = make<RVScreenshotController>(source);
    EXPECT_EQ(raised([&] { controller->setScreenShotView(nullptr); }),
              "NSInvalidArgumentException: RVScreenshotController.setScreenShotView:: there is no view");
    EXPECT_EQ(raised([&] { controller->setImageView(nullptr); }),
              "NSInvalidArgumentException: RVScreenshotController.setImageView:: there is no image view");
    EXPECT_EQ(controller->screenShotView(), source);
}

TEST_F(RVScreenshotControllerTest, everyMemberIsReachedByName)
{
    const ObjectRef controller = send(RVScreenshotController::staticClass(), "alloc").as<ObjectRef>();
    EXPECT_EQ(send(controller, "initWithViewToScreenshot:", source).as<ObjectRef>(), controller);
    EXPECT_EQ(send(controller, "screenShotView").as<ObjectRef>(), source);
    EXPECT_FALSE(send(controller, "imageView").isNothing());
    const auto other = make<NSView>(CGRect(0, 0, 5, 5));
    const auto imageView = make<NSImageView>();
    send(controller, "setScreenShotView:", other);
    send(controller, "setImageView:", imageView);
    EXPECT_EQ(send(controller, "screenShotView").as<ObjectRef>(), other);
    EXPECT_EQ(send(controller, "imageView").as<ObjectRef>(), imageView);
    EXPECT_EQ(controller->classObject().name(), "RVCore.RVScreenshotController");
}

TEST(RVScreenshotControllerDeathTest, otherInitialisersStopTheProgram)
{
    constexpr const char* report =
        "Use of unimplemented initializer 'init\\(nibName:bundle:\\)' for class 'RVCore.RVScreenshotController'";
    EXPECT_DEATH(make<RVScreenshotController>(), report);
    EXPECT_DEATH(make<RVScreenshotController>(std::optional<std::string>("Name"), ObjectRef()), report);
    EXPECT_DEATH(
        {
            NSCoder coder;
            make<RVScreenshotController>(coder);
        },
        "Not Supported");
}

TEST(RVScreenshotControllerDeathTest, aViewWithoutASizeStopsTheProgramWhenItIsPictured)
{
    const auto controller = make<RVScreenshotController>(std::make_shared<NSView>());
    EXPECT_DEATH(controller->view(), "there is no picture of");
}

} // namespace
} // namespace RVCore::RVScreenshotControllerTests
