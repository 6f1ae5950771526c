#include <AppKit/CoveredViews.h>
#include <AppKit/KeyViewLoop.h>
#include <AppKit/NSAnimationContext.h>
#include <AppKit/NSColor.h>
#include <AppKit/NSEvent.h>
#include <AppKit/NSFont.h>
#include <AppKit/NSProgressIndicator.h>
#include <AppKit/NSViewAnimator.h>
#include <AppKit/NSWindow.h>
#include <Common/Misc/GlobalFunctions.h>
#include <ConstraintLibrary/ConstraintLibrary.h>
#include <CoreImage/CIFilter.h>
#include <Dispatch/DispatchQueue.h>
#include <Extensions/NSTextField+RVCore.h>
#include <Extensions/NSView+RVCore.h>
#include <Foundation/Message.h>
#include <Foundation/NSCoder.h>
#include <Foundation/NSException.h>
#include <Views/RVGroupView.h>
#include <Views/RVProgressBlockingView.h>

#include <QuartzCore/CALayer.h>

#include <algorithm>
#include <cmath>

namespace RVCore {

namespace {

constexpr CGFloat memberSpacing = 12.0;
constexpr CGFloat messageMargin = 40.0; // that the message keeps from the overlay's sides, both together
constexpr CGFloat titleMargin = 20.0;   // the same of the title, beside that
constexpr double spinnerBrightness = 0.6;
constexpr double coveredSaturation = 2.0;
constexpr double coveredBlurRadius = 8.0;

constexpr std::string_view saturationName = "saturation";
constexpr std::string_view blurName = "blur";

// Text, and how it is set.
void setUpLabel(NSTextField& label, const std::shared_ptr<NSFont>& font)
{
    label.setTextColor(darkGrayColor());
    label.setFont(font);
    label.setAlignment(NSTextAlignment::center);
    label.setLineBreakMode(NSLineBreakMode::wordWrapping); // at the width that layout gives it
}

CGFloat offsetOf(double spacing)
{
    return std::abs(spacing) <= 1e15 ? spacing : 0;
}

} // namespace

Class& RVProgressBlockingView::staticClass()
{
    static Class& theClass = defineClass<RVProgressBlockingView>(
        "RVCore.RVProgressBlockingView", NSView::staticClass(), [](auto& publish) {
            using Self = RVProgressBlockingView;
            using Text = std::optional<std::string>;
            publish.initializer("initWithTitle:message:showProgress:",
                                [](Self& self, const Text& title, const Text& message, bool showProgress) {
                                    self.init({.title = title, .message = message, .showProgress = showProgress});
                                });
            publish.initializer("initWithCoder:", [](Self& self, NSCoder& coder) { self.init(coder); });
            publish.property("message", &Self::message, &Self::setMessage);
            publish.property("title", &Self::title, &Self::setTitle);
            publish.property("showProgress", &Self::showProgress, &Self::setShowProgress);
            publish.property("messageSpacing", &Self::messageSpacing, &Self::setMessageSpacing);
            publish.property("progressSpacing", &Self::progressSpacing, &Self::setProgressSpacing);
            publish.method("animateAlphaWithAlpha:duration:completion:", &Self::animateAlpha);
            publish.method("layout", &Self::layout);
            publish.method("updateUI", &Self::updateUI);
        });
    return theClass;
}

void RVProgressBlockingView::init(const BlockingViewContent& content)
{
    m_titleLabel = makeLabel("");
    m_messageLabel = makeLabel("");
    m_progressView = make<NSProgressIndicator>();
    m_groupView = make<RVGroupView>();
    NSView::init(CGRect());
    m_message = content.message;
    m_title = content.title;
    m_showProgress = content.showProgress;
    setWantsLayer(true);
    setLayerContentsRedrawPolicy(NSViewLayerContentsRedrawPolicy::onSetNeedsDisplay);
    setDisableEventPropagation(*this, true);
    setAccessibilityModal(true);
    setUpLabels();
    setUpProgressView();
    setUpGroupView();
    setUpBackgroundFilters();
    updateUI();
}

void RVProgressBlockingView::init(const CGRect&)
{
    unimplementedInitializer("RVCore.RVProgressBlockingView", "init(frame:)");
}

void RVProgressBlockingView::init(NSCoder&)
{
    notSupportedError();
}

void RVProgressBlockingView::setUpLabels()
{
    setUpLabel(*m_messageLabel, systemFontOfSize(15.0));
    setUpLabel(*m_titleLabel, boldSystemFontOfSize(22.0));
}

void RVProgressBlockingView::setUpProgressView()
{
    m_progressView->setStyle(NSProgressIndicatorStyle::spinning);
    m_progressView->setWantsLayer(true);
    m_progressView->setControlSize(NSControlSize::regular);
    send(m_progressView, "setDisplayedWhenStopped:", false);
    m_progressView->setIndeterminate(true);
    send(m_progressView, "setUsesThreadedAnimation:", true);
    send(m_progressView, "setBezeled:", false);
    setBackgroundColor(*m_progressView, clearColor());
    // Lighter than elsewhere: it is there to be noticed, not to be read.
    if (const auto brightness = makeFilter("CIColorControls")) {
        brightness->setDefaults();
        brightness->setValueForKey(spinnerBrightness, "inputBrightness");
        m_progressView->setContentFilters({brightness});
    }
}

void RVProgressBlockingView::setUpGroupView()
{
    m_groupView = makeGroupView({m_titleLabel, m_messageLabel, m_progressView},
                                {.orientation = RVGroupView::Orientation::vertical, .spacing = memberSpacing});
    addSubview(m_groupView);
    autoCenterInSuperview(*m_groupView);
    setAlpha(*m_groupView, 0.0);
}

// Neutral at first. Both or none: colours without blur would look like a mistake.
void RVProgressBlockingView::setUpBackgroundFilters()
{
    const auto saturation = makeFilter("CIColorControls");
    const auto blur = saturation ? makeFilter("CIGaussianBlur") : nullptr;
    if (!blur)
        return;
    setLayerUsesCoreImageFilters(true);
    saturation->setDefaults();
    saturation->setValueForKey(1.0, "inputSaturation");
    saturation->setName(std::string(saturationName));
    blur->setDefaults();
    blur->setValueForKey(0, "inputRadius");
    blur->setName(std::string(blurName));
    setBackgroundFilters({saturation, blur});
    if (const auto& backing = layer())
        backing->setNeedsDisplay();
}

template <class T> void RVProgressBlockingView::store(T& field, const T& value)
{
    const bool isNew = field != value;
    field = value;
    if (isNew)
        updateUI();
}

void RVProgressBlockingView::setMessage(const std::optional<std::string>& message)
{
    store(m_message, message);
}

void RVProgressBlockingView::setTitle(const std::optional<std::string>& title)
{
    store(m_title, title);
}

void RVProgressBlockingView::setShowProgress(bool showProgress)
{
    store(m_showProgress, showProgress);
}

void RVProgressBlockingView::setMessageSpacing(double spacing)
{
    store(m_messageSpacing, spacing);
}

void RVProgressBlockingView::setProgressSpacing(double spacing)
{
    store(m_progressSpacing, spacing);
}

void RVProgressBlockingView::updateUI()
{
    m_titleLabel->setStringValue(title().value_or(""));
    m_messageLabel->setStringValue(message().value_or(""));
    m_groupView->setVisibility(m_titleLabel, title().has_value());
    m_groupView->setVisibility(m_messageLabel, message().has_value());
    m_groupView->setVisibility(m_progressView, showProgress());
    m_groupView->offsetViews([this] {
        return RVGroupView::PerView<RVGroupView::Offset>{{m_messageLabel, {.y = offsetOf(messageSpacing())}},
                                                         {m_progressView, {.y = offsetOf(progressSpacing())}}};
    });
    if (showProgress() == m_isAnimatingProgress)
        return;
    m_isAnimatingProgress = !m_isAnimatingProgress;
    send(m_progressView, m_isAnimatingProgress ? "startAnimation:" : "stopAnimation:", nullptr);
}

void RVProgressBlockingView::layout()
{
    NSView::layout();
    // The plate that the spokes lie on: the overlay is their ground.
    if (const auto& spinner = m_progressView->layer(); spinner && !spinner->sublayers().empty())
        spinner->sublayers().front()->setHidden(true);
    m_messageLabel->setPreferredMaxLayoutWidth(bounds().size.width - messageMargin);
    m_titleLabel->setPreferredMaxLayoutWidth(m_messageLabel->preferredMaxLayoutWidth() - titleMargin);
}

void RVProgressBlockingView::animateAlpha(CGFloat alpha, CGFloat duration, const std::function<void()>& completion)
{
    requireNotNegative("RVProgressBlockingView.animateAlpha", "duration", duration);
    DispatchQueue::main().async(
        [kept = shared(*this), alpha, duration, completion] { kept->fade(alpha, duration, completion); });
}

void RVProgressBlockingView::fade(CGFloat alpha, CGFloat duration, const std::function<void()>& completion)
{
    const bool covers = alpha != 0.0;
    NSAnimationContext::runAnimationGroup(
        [&](NSAnimationContext& context) {
            context.setDuration(duration);
            context.setAllowsImplicitAnimation(true);
            context.setTimingFunction(CAMediaTimingFunction::functionWithName(kCAMediaTimingFunctionEaseOut));
            const CGFloat target = std::isnan(alpha) ? m_groupView->alphaValue() : std::clamp(alpha, 0.0, 1.0);
            m_groupView->animator()->setAlphaValue(target);
            moveBackgroundFilter(saturationName, "inputSaturation", covers ? coveredSaturation : 1.0);
            moveBackgroundFilter(blurName, "inputRadius", covers ? Value(coveredBlurRadius) : Value(0));
        },
        [kept = shared(*this), completion] {
            if (completion)
                completion();
        });
}

// A filter that could not be made, or that somebody has taken out or replaced by another kind, has nothing to move.
void RVProgressBlockingView::moveBackgroundFilter(std::string_view filterName, std::string_view input,
                                                  const Value& value)
{
    const auto filters = backgroundFilters();
    const auto filter = std::ranges::find(filters, filterName, &CIFilter::name);
    if (filter == filters.end() || std::ranges::count((*filter)->inputKeys(), input) == 0)
        return;
    animator()->setValue(value, "backgroundFilters." + std::string(filterName) + "." + std::string(input));
}

void RVProgressBlockingView::takeKeys()
{
    NSWindow* host = window();
    const auto* covered = host ? dynamic_cast<const NSView*>(host->firstResponder()) : nullptr;
    if (!covered || covered == this || !superview() || !covered->isDescendantOf(*superview()))
        return;
    const auto before = shared(*host->firstResponder());
    // Of two overlays over the same view the second one takes the keys from the first, which is soon gone.
    const auto* other = dynamic_cast<const RVProgressBlockingView*>(before.get());
    m_keysBefore = other ? other->m_keysBefore : before;
    struct Taking { // also when who loses them raises
        explicit Taking(RVProgressBlockingView& view) : overlay(shared(view)) { view.m_isTakingKeys = true; }
        ~Taking() { overlay->m_isTakingKeys = false; }
        std::shared_ptr<RVProgressBlockingView> overlay;
    } const taking{*this};
    host->makeFirstResponder(this);
}

void RVProgressBlockingView::giveKeysBack()
{
    const auto before = std::dynamic_pointer_cast<NSView>(std::exchange(m_keysBefore, {}).lock());
    NSWindow* host = before ? before->window() : nullptr;
    const bool nobodyHasThem = host && (host->firstResponder() == host || host->firstResponder() == this);
    if (!nobodyHasThem || !before->canBeSeen())
        return;
    // Another overlay over the same thing gives them back when it goes.
    if (auto* other = dynamic_cast<RVProgressBlockingView*>(coverOf(*before)))
        other->m_keysBefore = before;
    else
        host->makeFirstResponder(before.get());
}

// What the window would do for the content if the key came as far.
bool RVProgressBlockingView::useKeyWithin(NSEvent& event)
{
    NSWindow* host = window();
    if (!host || isShortcut(event))
        return false; // of those the views have had their chance
    if (performKeyEquivalent(event))
        return true;
    const std::string& key = event.charactersIgnoringModifiers();
    const bool goesBack = key == NSKey::backTab || contains(event.modifierFlags(), NSEventModifierFlags::shift);
    if (key != NSKey::tab && key != NSKey::backTab)
        return false;
    auto* present = dynamic_cast<NSView*>(host->firstResponder());
    const auto self = std::static_pointer_cast<NSView>(shared(*this));
    NSView* next = goesBack ? keyViewBefore({self}, present) : keyViewAfter({self}, present);
    return next && host->makeFirstResponder(next);
}

void RVProgressBlockingView::keyDown(NSEvent& event)
{
    if (!useKeyWithin(event))
        NSView::keyDown(event);
}

// What the flag does for the left button, for the others.
void RVProgressBlockingView::keepOrHandOn(NSEvent& event, void (*inherited)(NSView& view, NSEvent& event))
{
    if (!disableEventPropagation(*this))
        inherited(*this, event);
}

void RVProgressBlockingView::rightMouseDown(NSEvent& event)
{
    keepOrHandOn(event, [](NSView& self, NSEvent& e) { self.NSView::rightMouseDown(e); });
}

void RVProgressBlockingView::rightMouseUp(NSEvent& event)
{
    keepOrHandOn(event, [](NSView& self, NSEvent& e) { self.NSView::rightMouseUp(e); });
}

void RVProgressBlockingView::rightMouseDragged(NSEvent& event)
{
    keepOrHandOn(event, [](NSView& self, NSEvent& e) { self.NSView::rightMouseDragged(e); });
}

void RVProgressBlockingView::otherMouseDown(NSEvent& event)
{
    keepOrHandOn(event, [](NSView& self, NSEvent& e) { self.NSView::otherMouseDown(e); });
}

void RVProgressBlockingView::otherMouseUp(NSEvent& event)
{
    keepOrHandOn(event, [](NSView& self, NSEvent& e) { self.NSView::otherMouseUp(e); });
}

void RVProgressBlockingView::otherMouseDragged(NSEvent& event)
{
    keepOrHandOn(event, [](NSView& self, NSEvent& e) { self.NSView::otherMouseDragged(e); });
}

} // namespace RVCore
