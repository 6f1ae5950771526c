#include <AppKit/NSColor.h>
#include <AppKit/NSImageView.h>
#include <Common/Misc/GlobalFunctions.h>
#include <ConstraintLibrary/ConstraintLibrary.h>
#include <Controllers/RVScreenshotController.h>
#include <Extensions/NSView+RVCore.h>
#include <Extensions/NSView+RVCoreAnimation.h>
#include <Foundation/NSException.h>

namespace RVCore {

Class& RVScreenshotController::staticClass()
{
    static Class& theClass = defineClass<RVScreenshotController>(
        "RVCore.RVScreenshotController", NSViewController::staticClass(), [](auto& publish) {
            using Self = RVScreenshotController;
            publish.initializer("initWithViewToScreenshot:",
                                [](Self& self, const std::shared_ptr<NSView>& view) { self.init(view); });
            publish.property("imageView", &Self::imageView, &Self::setImageView);
            publish.property("screenShotView", &Self::screenShotView, &Self::setScreenShotView);
        });
    return theClass;
}

void RVScreenshotController::init(const std::shared_ptr<NSView>& viewToScreenshot)
{
    if (!viewToScreenshot)
        raiseInvalidArgument("RVScreenshotController.init", "there is no view");
    m_imageView = make<NSImageView>();
    m_screenShotView = viewToScreenshot;
    NSViewController::init(std::nullopt, nullptr);
}

void RVScreenshotController::init(const std::optional<std::string>&, const ObjectRef&)
{
    unimplementedInitializer("RVCore.RVScreenshotController", "init(nibName:bundle:)");
}

void RVScreenshotController::init(NSCoder&)
{
    notSupportedError();
}

void RVScreenshotController::setImageView(const std::shared_ptr<NSImageView>& imageView)
{
    if (!imageView)
        raiseInvalidArgument("RVScreenshotController.setImageView:", "there is no image view");
    m_imageView = imageView;
}

void RVScreenshotController::setScreenShotView(const std::shared_ptr<NSView>& view)
{
    if (!view)
        raiseInvalidArgument("RVScreenshotController.setScreenShotView:", "there is no view");
    m_screenShotView = view;
}

void RVScreenshotController::loadView()
{
    const auto plate = make<NSView>();
    setView(plate);
    plate->addSubview(imageView());
    autoPinEdgeToSuperviewEdge(*imageView(), LayoutEdge::top);
    autoPinEdgeToSuperviewEdge(*imageView(), LayoutEdge::left);
    imageView()->setImage(screenshot(*screenShotView()));
    setBackgroundColor(*plate, backgroundColor(*screenShotView()));
    plate->setFrame({plate->frame().origin, screenShotView()->frame().size});
}

} // namespace RVCore
