#pragma once

#include <AppKit/NSResponder.h>
#include <CoreGraphics/CGGeometry.h>

#include <optional>
#include <string>

namespace RVCore {

// Makes a view when it is first asked for and looks after it. On the responder chain it stands between its view and
// what is around that. The controller holds its view; the way back does not own. Main thread only.
class NSViewController : public NSResponder {
    RVCORE_CLASS(NSViewController)

public:
    ~NSViewController() override;

    // Through the other initialiser, with nothing.
    void init() override { init(std::nullopt, nullptr); }
    // Views are made in code: a name of an interface file raises NSInvalidArgumentException.
    using NSObject::init;
    virtual void init(const std::optional<std::string>& nibName, const ObjectRef& bundle);

    // Loads it first if need be: loadView, then viewDidLoad. Never null; a loadView that sets no view, or that asks
    // for the view before it has set one, stops the program.
    const std::shared_ptr<NSView>& view();
    // A view that is absent or another controller's raises NSInvalidArgumentException.
    void setView(const std::shared_ptr<NSView>& view);
    bool isViewLoaded() const { return m_view != nullptr; }

    // Default empty.
    const std::string& title() const { return m_title; }
    void setTitle(const std::string& title) { m_title = title; }
    // The size that a window takes for its content when it is given this controller; 0 × 0 (the default) for the
    // view's own. Numbers that are negative or not finite raise NSInvalidArgumentException.
    CGSize preferredContentSize() const { return m_preferredContentSize; }
    void setPreferredContentSize(CGSize size);

    // The view's superview or window.
    NSResponder* nextResponder() const override;

    // For subclasses. The default of the first one makes a plain view.
    virtual void loadView();
    virtual void viewDidLoad() {}
    // Called by the window that has this for its content view controller, as it comes on the screen and leaves it;
    // also when the controller is set or taken out meanwhile.
    virtual void viewWillAppear() {}
    virtual void viewDidAppear() {}
    virtual void viewWillDisappear() {}
    virtual void viewDidDisappear() {}

private:
    void releaseView();

    std::shared_ptr<NSView> m_view;
    std::string m_title;
    CGSize m_preferredContentSize;
    bool m_isLoading = false;
};

} // namespace RVCore
