#pragma once

#include <AppKit/NSAutoresizingMask.h>
#include <AppKit/NSLayoutConstraint.h>
#include <AppKit/ViewInput.h>
#include <CoreGraphics/CGAffineTransform.h>
#include <CoreImage/Forward.h>

#include <QuartzCore/Forward.h>

namespace RVCore {

class Canvas;

enum class NSViewLayerContentsRedrawPolicy : int { never = 0, onSetNeedsDisplay = 1, duringViewResize = 2 };

// The value of an absent intrinsic width or height.
inline constexpr CGFloat NSViewNoIntrinsicMetric = -1.0;

// A rectangle in a tree of rectangles: it has a place in its superview, draws itself, is laid out by constraints.
//
//   frame   place and size in the superview's coordinates      A view has its origin at the bottom left, y upward,
//   bounds  the view's own coordinates: size of the frame,     unless it is flipped: then at the top left, y down.
//           origin (0, 0) unless scrolled
//
// A superview holds its subviews; the way back does not own. Layout positions are frames: scrolling a view by its
// bounds' origin moves what is shown, not where constraints put it. What it does with events is in ViewInput.h. Main
// thread only. Lengths are in points; values that are not finite, and magnitudes above 1e15, raise
// NSInvalidArgumentException and change nothing.
class alignas(16) NSView : public ViewInput { // the alignment: see LayoutTag.h
    RVCORE_CLASS(NSView)

public:
    NSView();
    ~NSView() override;

    // A view with a zero frame, through init(frame).
    void init() override;
    virtual void init(const CGRect& frame);
    void init(NSCoder& coder) override;
    // Frame, flags, priorities, subviews and the constraints among them.
    void encode(NSCoder& coder) const override;

    // Geometry.
    const CGRect& frame() const { return m_frame; }
    void setFrame(const CGRect& frame);
    void setFrameOrigin(CGPoint origin) { setFrame({origin, m_frame.size}); }
    void setFrameSize(CGSize size) { setFrame({m_frame.origin, size}); }
    CGRect bounds() const { return {m_boundsOrigin, m_frame.size}; }
    void setBoundsOrigin(CGPoint origin);
    virtual bool isFlipped() const { return false; }
    // Between this view's coordinates and another view's; null stands for what the root's frame is in, the window's
    // coordinates: y upward. Points are where they are painted, layers' transforms included; of a rectangle that is
    // turned it is what encloses it. In a view that is squeezed to nothing its frame counts. Raises
    // NSInvalidArgumentException for a view of another tree.
    CGPoint convertPointTo(CGPoint point, const NSView* view) const;
    CGPoint convertPointFrom(CGPoint point, const NSView* view) const;
    CGRect convertRectTo(const CGRect& rect, const NSView* view) const;
    CGRect convertRectFrom(const CGRect& rect, const NSView* view) const;

    // Tree. Adding a view takes it out of the superview it had; adding it to the one it is in moves it to the end.
    // Adding a view to itself or to one of its descendants, or a window's content view, raises
    // NSInvalidArgumentException.
    NSView* superview() const { return m_superview; }
    const std::vector<std::shared_ptr<NSView>>& subviews() const { return m_subviews; }
    void addSubview(const std::shared_ptr<NSView>& view);
    void insertSubview(const std::shared_ptr<NSView>& view, std::size_t index); // index clipped to the count
    // Also takes out the constraints of views above that refer to this view or to anything in it.
    void removeFromSuperview();
    bool isDescendantOf(const NSView& view) const; // true for the view itself
    NSView& rootView();
    NSWindow* window() const;
    bool isContentView() const { return m_hostWindow != nullptr; } // of a window

    // Appearance.
    // A hidden view is not drawn; it still takes part in layout. The first responder in it is asked to let go.
    bool isHidden() const { return m_isHidden; }
    void setHidden(bool hidden);
    bool isHiddenOrHasHiddenAncestor() const;
    // Hidden, or fully transparent. The pointer finds a transparent view all the same; keys and assistive technology
    // do not.
    bool isInvisible() const { return m_isHidden || alphaValue() <= 0; }
    bool canBeSeen() const;     // neither it nor a view around it is invisible
    CGFloat alphaValue() const; // from 0 to 1, clipped; default 1; of a layer-backed view its layer's opacity
    void setAlphaValue(CGFloat alpha);
    bool wantsLayer() const { return m_layer != nullptr; }
    void setWantsLayer(bool wantsLayer);
    const std::shared_ptr<CALayer>& layer() const { return m_layer; } // null unless layer-backed
    // For programs that say so; a view is drawn again after setNeedsDisplay and a new size either way.
    NSViewLayerContentsRedrawPolicy layerContentsRedrawPolicy() const { return m_redrawPolicy; }
    void setLayerContentsRedrawPolicy(NSViewLayerContentsRedrawPolicy policy) { m_redrawPolicy = policy; }
    // The layer's filters, for what the view shows and for what lies behind it. Setting some makes it layer-backed;
    // an absent one raises NSInvalidArgumentException.
    std::vector<std::shared_ptr<CIFilter>> contentFilters() const;
    void setContentFilters(const std::vector<std::shared_ptr<CIFilter>>& filters);
    std::vector<std::shared_ptr<CIFilter>> backgroundFilters() const;
    void setBackgroundFilters(const std::vector<std::shared_ptr<CIFilter>>& filters);
    // For programs that announce their filters; they work either way. Default no.
    bool layerUsesCoreImageFilters() const { return m_layerUsesCoreImageFilters; }
    void setLayerUsesCoreImageFilters(bool uses) { m_layerUsesCoreImageFilters = uses; }
    // Sets what it is given in a moving way, see NSViewAnimator.
    std::shared_ptr<NSViewAnimator> animator();
    // The property at the key path, filters' inputs included, as with setValueForKeyPath.
    void setValue(const Value& value, std::string_view keyPath);
    // What the view draws is no longer what it drew before. False does nothing.
    void setNeedsDisplay(bool needsDisplay);
    // Draws the view's own content, in its own coordinates; what lies outside the bounds is cut off. The default
    // draws nothing. May be called for one part of the view after the other.
    virtual void draw(Canvas& canvas, const CGRect& dirtyRect);
    // A picture of a part of the view, in its own coordinates, with everything in it: first the pixels, transparent,
    // at the backing scale of the view's window, or of the main screen where there is none; then what the view shows
    // at this moment as it is laid out. Null for a part without a size or of more pixels than bitmaps have. A
    // backend that has no pixels leaves them transparent.
    virtual std::shared_ptr<NSBitmapImageRep> bitmapImageRepForCachingDisplay(const CGRect& rect);
    virtual void cacheDisplay(const CGRect& rect, NSBitmapImageRep& representation);

    // Size from content. An absent metric is NSViewNoIntrinsicMetric. Whoever changes what intrinsicContentSize
    // would return calls invalidateIntrinsicContentSize.
    virtual CGSize intrinsicContentSize() const;
    virtual void invalidateIntrinsicContentSize();
    // Defaults: hugging 250, compression resistance 750. Priorities in (0, 1000].
    NSLayoutPriority contentHuggingPriority(NSLayoutConstraintOrientation orientation) const;
    void setContentHuggingPriority(NSLayoutPriority priority, NSLayoutConstraintOrientation orientation);
    NSLayoutPriority contentCompressionResistancePriority(NSLayoutConstraintOrientation orientation) const;
    void setContentCompressionResistancePriority(NSLayoutPriority priority,
                                                 NSLayoutConstraintOrientation orientation);
    // The smallest size that meets the constraints in this view's subtree stronger than priority 50.
    CGSize fittingSize();
    // The same with every constraint at or below `priority` giving way.
    CGSize fittingSize(NSLayoutPriority priority);

    // Constraints. A view whose mask is translated (the default) holds the frame that it was given.
    bool translatesAutoresizingMaskIntoConstraints() const { return m_translatesMask; }
    void setTranslatesAutoresizingMaskIntoConstraints(bool translates);
    NSAutoresizingMask autoresizingMask() const { return m_autoresizingMask; }
    void setAutoresizingMask(NSAutoresizingMask mask);
    // The active constraints that this view owns, in order of installation.
    std::vector<std::shared_ptr<NSLayoutConstraint>> constraints() const;
    // The constraints that hold this view where it is along one axis, and those that gave way.
    std::vector<std::shared_ptr<NSLayoutConstraint>>
    constraintsAffectingLayout(NSLayoutConstraintOrientation orientation);
    bool hasAmbiguousLayout();

    // The layout pass. `layout` puts the subviews where the constraints say; overrides call it first. The setter is
    // called by the platform, too: with true for a view whose size or whose subviews' places changed, with false
    // before `layout`.
    virtual bool needsLayout() const { return m_marks.layout; }
    virtual void setNeedsLayout(bool needsLayout);
    bool needsUpdateConstraints() const { return m_marks.updateConstraints; }
    virtual void setNeedsUpdateConstraints(bool needsUpdate);
    virtual void layout();
    virtual void updateConstraints();
    void updateConstraintsForSubtreeIfNeeded();
    // Updates constraints from the leaves up, solves, and lays out this subtree from the top down, until nothing is
    // marked. A tree that never settles is reported once on standard error and left as it is. What an override raises
    // passes through; its view stays marked.
    void layoutSubtreeIfNeeded();

    // For AppKit's own classes.
    struct LayoutMarks {
        bool layout = true;
        bool updateConstraints = true;
        bool descendantLayout = false;
        bool descendantUpdateConstraints = false;
    };
    LayoutMarks& layoutMarks(AppKitKey) { return m_marks; }
    const std::unique_ptr<ViewLayoutState>& layoutState(AppKitKey) const { return m_layoutState; }
    std::unique_ptr<ViewLayoutState>& layoutState(AppKitKey) { return m_layoutState; }
    void takeSolvedFrame(const CGRect& frame, AppKitKey) { storeFrame(frame); }
    void setHostWindow(NSWindow* window, AppKitKey);
    // Of what the view draws: a number that nothing else that was ever drawn has.
    std::uint64_t drawingRevision(AppKitKey) const { return m_drawingRevision; }
    void drawingChanged(AppKitKey); // without asking for a frame

protected:
    // Makes the layer of a view that becomes layer-backed.
    virtual std::shared_ptr<CALayer> makeBackingLayer();
    // After the size changed, by layout or by the host.
    virtual void frameSizeDidChange() {}
    // Once per change, when it is complete; a move tells of the new superview only.
    virtual void didMoveToSuperview() {}

private:
    void attach(const std::shared_ptr<NSView>& view, std::size_t index);
    void leaveSuperview();
    void takeOutCrossingConstraints();
    void storeFrame(const CGRect& frame);
    void frameChanged(const CGRect& oldFrame);
    void resizeSubviews(CGSize oldSize);
    void syncLayerGeometry();
    void layerChanged();
    void markAncestors(bool LayoutMarks::*mark);
    void requestFrame();
    void setContentPriority(NSLayoutPriority& field, NSLayoutPriority priority,
                            NSLayoutConstraintOrientation orientation);
    void frameRowsChanged();
    std::optional<CGAffineTransform> ownPlacement() const;
    bool isTransformedInRoot() const;
    CGPoint pointInSuperview(CGPoint point) const;
    CGPoint pointFromSuperview(CGPoint point) const;
    CGPoint convertToRoot(CGPoint point) const;
    CGPoint convertFromRoot(CGPoint point) const;

    // What constraints touch comes first, side by side.
    NSView* m_superview = nullptr;
    std::unique_ptr<ViewLayoutState> m_layoutState; // only for views that constraints know
    NSAutoresizingMask m_autoresizingMask = NSAutoresizingMask::none;
    bool m_translatesMask = true;
    bool m_isHidden = false;
    LayoutMarks m_marks;
    NSLayoutPriority m_huggingPriorities[2] = {250, 250};
    NSLayoutPriority m_compressionResistancePriorities[2] = {750, 750};
    CGRect m_frame;
    CGPoint m_boundsOrigin;
    NSWindow* m_hostWindow = nullptr; // of a content view
    std::vector<std::shared_ptr<NSView>> m_subviews;
    std::uint64_t m_drawingRevision;
    std::shared_ptr<CALayer> m_layer;
    CGFloat m_alphaValue = 1; // while there is no layer
    NSViewLayerContentsRedrawPolicy m_redrawPolicy = NSViewLayerContentsRedrawPolicy::duringViewResize;
    bool m_layerUsesCoreImageFilters = false;
};

} // namespace RVCore
