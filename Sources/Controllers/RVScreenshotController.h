#pragma once

#include <AppKit/NSViewController.h>

namespace RVCore {

class NSImageView;

// Shows a still picture of another view, in its size and on its background colour: something to put in the place of a
// live view while that changes. The picture is taken once, when the controller's view is first asked for.
class RVScreenshotController : public NSViewController {
    RVCORE_CLASS(RVScreenshotController)

public:
    using NSViewController::init;
    // The only one that works. No view raises NSInvalidArgumentException.
    virtual void init(const std::shared_ptr<NSView>& viewToScreenshot);
    // Not offered; these stop the program.
    void init(const std::optional<std::string>& nibName, const ObjectRef& bundle) override;
    void init(NSCoder& coder) override;

    // What loadView uses; afterwards setting them changes nothing. Absent ones raise NSInvalidArgumentException.
    virtual const std::shared_ptr<NSImageView>& imageView() const { return m_imageView; }
    virtual void setImageView(const std::shared_ptr<NSImageView>& imageView);
    virtual const std::shared_ptr<NSView>& screenShotView() const { return m_screenShotView; }
    virtual void setScreenShotView(const std::shared_ptr<NSView>& view);

    // Stops the program for a view that there is no picture of, see screenshot.
    void loadView() override;

private:
    std::shared_ptr<NSImageView> m_imageView;
    std::shared_ptr<NSView> m_screenShotView; // held
};

} // namespace RVCore
