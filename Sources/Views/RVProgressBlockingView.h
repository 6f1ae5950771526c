#pragma once

#include <AppKit/NSView.h>
#include <Views/Forward.h>

#include <functional>
#include <optional>
#include <string>

namespace RVCore {

struct BlockingViewContent {
    std::optional<std::string> title = std::nullopt;
    std::optional<std::string> message = std::nullopt;
    bool showProgress = true;
};

// Lies over a view, or over a window's content, while something takes long. It keeps the clicks, moves, scrolls and
// keys that reach it, makes what is behind it colourful and blurred, and shows in its middle:
//
//     ┌──────────────────────────────┐
//     │                              │   title     bold, 22 points; wraps 20 points before the message does
//     │            Title             │   message   15 points; wraps 40 points before the overlay ends
//     │       message of it          │   spinner   turns as long as showProgress is set
//     │              ✳               │
//     │                              │   What is absent takes no room; an empty text takes its line.
//     └──────────────────────────────┘
//
// A new one shows nothing and changes nothing of what is behind it, but blocks already; `animateAlpha` fades it in.
// To put it somewhere, showBlockingView (NSView+RVCoreBlocking.h, NSWindow+RVCoreBlocking.h) does all there is to do.
//
// While it is there, neither Tab and shortcuts nor assistive technology reach what it covers. Main thread only,
// except animateAlpha.
class RVProgressBlockingView : public NSView {
    RVCORE_CLASS(RVProgressBlockingView)

public:
    using NSView::init;
    // The only one that works.
    virtual void init(const BlockingViewContent& content);
    // Not offered; these stop the program.
    void init(const CGRect& frame) override;
    void init(NSCoder& coder) override;

    // Setting what is not set already runs updateUI.
    virtual const std::optional<std::string>& message() const { return m_message; } // default absent
    virtual void setMessage(const std::optional<std::string>& message);
    virtual const std::optional<std::string>& title() const { return m_title; } // default absent
    virtual void setTitle(const std::optional<std::string>& title);
    virtual bool showProgress() const { return m_showProgress; } // default yes
    virtual void setShowProgress(bool showProgress);
    // Points by which message and spinner are moved down, beside the spacing of 12 between all three. One that is not
    // finite, or above 1e15, is kept and counts as 0; NaN counts as another value than NaN.
    virtual double messageSpacing() const { return m_messageSpacing; } // default 4
    virtual void setMessageSpacing(double spacing);
    virtual double progressSpacing() const { return m_progressSpacing; } // default 12
    virtual void setProgressSpacing(double spacing);

    // Shows the present values of the properties.
    virtual void updateUI();

    // Fades the content to this alpha over `duration` seconds while what is behind it becomes blurred and more
    // colourful, or for an alpha of 0 as it is; the overlay's own alpha stays. Begins at the next turn of the main
    // queue, on which the completion comes, too; the overlay lives until then. An alpha is moved to between 0 and 1,
    // and NaN leaves the content's as it is. A duration that is negative or not finite raises
    // NSInvalidArgumentException. From any thread.
    virtual void animateAlpha(CGFloat alpha, CGFloat duration = 0.4, const std::function<void()>& completion = {});

    // Becomes the first responder if that is something that it covers; giveKeysBack makes that the first responder
    // again, unless something else has become it or it cannot be any more.
    void takeKeys();
    void giveKeysBack();

    void layout() override;
    bool acceptsFirstResponder() const override { return m_isTakingKeys; } // a click gives it none
    bool canBecomeKeyView() const override { return false; }
    // Shortcuts and Tab are offered to what a program has added to the overlay, a button that stops the operation
    // say.
    void keyDown(NSEvent& event) override;
    void rightMouseDown(NSEvent& event) override;
    void rightMouseUp(NSEvent& event) override;
    void rightMouseDragged(NSEvent& event) override;
    void otherMouseDown(NSEvent& event) override;
    void otherMouseUp(NSEvent& event) override;
    void otherMouseDragged(NSEvent& event) override;

private:
    void setUpLabels();
    void setUpProgressView();
    void setUpGroupView();
    void setUpBackgroundFilters();
    void fade(CGFloat alpha, CGFloat duration, const std::function<void()>& completion);
    bool useKeyWithin(NSEvent& event);
    void keepOrHandOn(NSEvent& event, void (*inherited)(NSView& view, NSEvent& event));
    void moveBackgroundFilter(std::string_view filterName, std::string_view input, const Value& value);
    template <class T> void store(T& field, const T& value);

    std::optional<std::string> m_message;
    std::optional<std::string> m_title;
    bool m_showProgress = true;
    bool m_isAnimatingProgress = false;
    bool m_isTakingKeys = false;
    double m_messageSpacing = 4.0;
    double m_progressSpacing = 12.0;
    std::shared_ptr<NSTextField> m_titleLabel;
    std::shared_ptr<NSTextField> m_messageLabel;
    std::shared_ptr<NSProgressIndicator> m_progressView;
    std::shared_ptr<RVGroupView> m_groupView;
    std::weak_ptr<NSResponder> m_keysBefore; // who had the keys before it took them
};

} // namespace RVCore
