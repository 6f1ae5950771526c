#pragma once

#include <CoreGraphics/CGAffineTransform.h>
#include <CoreGraphics/CGColor.h>
#include <CoreGraphics/CGImage.h>
#include <CoreImage/Forward.h>
#include <Dispatch/DispatchTime.h>
#include <Foundation/NSObject.h>

#include <QuartzCore/Forward.h>

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace RVCore {

// A rectangle that is placed, transformed and painted as a whole: the look behind a layer-backed view.
//
//      position ─────┐        The anchor point of the layer's bounds, (0, 0) to (1, 1), lies at `position`
//   ┌────────────────┼──┐     in the superlayer's coordinates; the affine transform acts about it.
//   │       (½, ½) → ●  │     A view's backing layer is anchored at its centre, and the view keeps position
//   └───────────────────┘     and bounds in step with its frame.
//
// What is set here is the model. What is seen is the presentation (LayerPresentation.h): the same, except while an
// animation is under way, which setters start when a LayerMotion is in force. A value that is set while none is ends
// its property's animation.
//
// Lengths are in points. A value that is not finite raises NSInvalidArgumentException and changes nothing. Main
// thread only.
class CALayer : public NSObject {
    RVCORE_CLASS(CALayer)

public:
    using FilterList = std::vector<std::shared_ptr<CIFilter>>;

    CALayer();
    ~CALayer() override;

    CGPoint position() const { return m_position; }
    virtual void setPosition(CGPoint position);
    CGRect bounds() const { return m_bounds; }
    void setBounds(const CGRect& bounds);
    CGPoint anchorPoint() const { return m_anchorPoint; } // default (0.5, 0.5); does not animate
    void setAnchorPoint(CGPoint anchorPoint);
    CGAffineTransform affineTransform() const { return m_affineTransform; }
    virtual void setAffineTransform(const CGAffineTransform& transform);
    // Layers of a larger value are painted above their siblings; equal ones in order.
    CGFloat zPosition() const { return m_zPosition; }
    void setZPosition(CGFloat zPosition);

    // Of the layer and all that is in it, as one picture: from 0 to 1, clipped; default 1.
    CGFloat opacity() const { return m_opacity; }
    void setOpacity(CGFloat opacity);
    bool isHidden() const { return m_isHidden; } // neither it nor what is in it is painted; default no
    void setHidden(bool hidden);
    std::optional<CGColor> backgroundColor() const { return m_backgroundColor; }
    void setBackgroundColor(std::optional<CGColor> color);
    CGFloat cornerRadius() const { return m_cornerRadius; } // at least 0
    void setCornerRadius(CGFloat radius);
    CGFloat borderWidth() const { return m_borderWidth; } // inside the bounds; at least 0, 0 for none
    void setBorderWidth(CGFloat width);
    std::optional<CGColor> borderColor() const { return m_borderColor; } // black when absent
    void setBorderColor(std::optional<CGColor> color);
    // Whether what lies inside is cut along the (rounded) bounds. Default no.
    bool masksToBounds() const { return m_masksToBounds; }
    void setMasksToBounds(bool masks);
    CGImageRef contents() const; // a picture over the whole bounds; null (the default) for none
    void setContents(const CGImageRef& contents);
    // What changes the layer's own picture, and what changes what lies behind it, each in this order. Absent filters
    // raise NSInvalidArgumentException. An input that is set on the filter itself jumps; one that is set through the
    // layer, `setValue(8, "backgroundFilters.blur.inputRadius")`, moves when a motion is in force.
    const FilterList& filters() const;
    void setFilters(const FilterList& filters);
    const FilterList& backgroundFilters() const;
    void setBackgroundFilters(const FilterList& filters);

    // Tree. A layer holds its sublayers, the way back does not own. Adding one takes it out of the superlayer it had;
    // adding it to the one it is in moves it. Nothing, the layer itself and one that it is in raise
    // NSInvalidArgumentException.
    CALayer* superlayer() const { return m_superlayer; }
    const std::vector<std::shared_ptr<CALayer>>& sublayers() const;
    void addSublayer(const std::shared_ptr<CALayer>& layer);
    void insertSublayer(const std::shared_ptr<CALayer>& layer, std::size_t index); // index clipped to the count
    void removeFromSuperlayer();

    // Motion.
    // The property at the key path, filters' inputs included, as with setValueForKeyPath.
    void setValue(const Value& value, std::string_view keyPath);
    // When the last of what now moves in this layer and its sublayers is over; nothing when all stands still.
    std::optional<DispatchTime> animationEnd(DispatchTime now = DispatchTime::now()) const;
    // Before each frame of who shows the layer: lets go of animations that are over, its sublayers' as well, and
    // tells the change handler of those. Returns whether something goes on moving.
    bool prepareFrame(DispatchTime now);
    // The key paths of the properties that are on their way in this layer: "opacity".
    std::vector<std::string> animationKeys() const;
    void removeAllAnimations(); // the presentation jumps to the model
    // What moves this property now; null when it stands still.
    const LayerAnimation* animationOf(LayerProperty property, DispatchTime now, const CIFilter* filter = nullptr,
                                      std::string_view input = {}) const;

    // Whether what the layer shows has to be drawn anew; whoever draws it says so afterwards.
    bool needsDisplay() const { return m_needsDisplay; }
    void setNeedsDisplay();
    void didDisplay() { m_needsDisplay = false; }
    // Called once after every change that is visible, of the layer or of a sublayer without a handler, and when an
    // animation begins or is over. It may let go of layers.
    void setChangeHandler(std::function<void()> handler) { m_changeHandler = std::move(handler); }

private:
    struct Extras;
    struct FilterInputPath;

    Extras& extras();
    void changed();
    template <class T> void store(T& field, const T& value);
    template <class T>
    void storeMoving(LayerProperty property, T& field, T (LayerPresentation::*shown)() const, const T& value);
    bool move(LayerAnimation&& animation, LayerMotion& motion);
    bool stop(LayerProperty property, const CIFilter* filter = nullptr, std::string_view input = {});
    void storeFilters(FilterList Extras::*list, std::string_view operation, const FilterList& filters);
    void observeFilters();
    void filterChanged(const CIFilter* filter);
    void setFilterInput(const Value& value, const FilterInputPath& path);
    bool isDescendantOf(const CALayer& layer) const;
    void leaveSuperlayer();
    std::string keyPathOf(const LayerAnimation& animation) const;

    CGPoint m_position;
    CGRect m_bounds;
    CGPoint m_anchorPoint{0.5, 0.5};
    CGAffineTransform m_affineTransform;
    CGFloat m_zPosition = 0;
    CGFloat m_opacity = 1;
    CGFloat m_cornerRadius = 0;
    CGFloat m_borderWidth = 0;
    std::optional<CGColor> m_backgroundColor;
    std::optional<CGColor> m_borderColor;
    bool m_isHidden = false;
    bool m_masksToBounds = false;
    bool m_needsDisplay = true;
    CALayer* m_superlayer = nullptr;
    std::unique_ptr<Extras> m_extras; // what few layers have
    std::function<void()> m_changeHandler;
};

} // namespace RVCore
