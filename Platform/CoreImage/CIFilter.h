#pragma once

#include <CoreGraphics/CGGeometry.h>
#include <CoreImage/Forward.h>
#include <Foundation/NSObject.h>

#include <functional>
#include <memory>
#include <vector>

namespace RVCore {

class Bitmap;

// Changes a picture. What a filter does is set by its inputs, published properties such as "inputRadius", which also
// end a key path through a list of filters: "backgroundFilters.blur.inputRadius" finds the one whose name is "blur".
// Inputs start at their defaults.
class CIFilter : public NSObject {
    RVCORE_CLASS(CIFilter)

public:
    void init() override;

    // By default the name of the class.
    const std::string& name() const { return m_name; }
    void setName(std::string name) { m_name = std::move(name); }

    // An input by its key. Integers do for numbers. A key that the filter does not have raises NSUnknownKeyException
    // naming filter and key; a value that it cannot have raises NSInvalidArgumentException. Nothing has changed then.
    Value valueForKey(std::string_view key);
    void setValueForKey(const Value& value, std::string_view key);
    // Every input as it was from the start; the name stays.
    virtual void setDefaults() = 0;

    // Applies the filter in place; `scale` is in pixels per point. Where it looks beyond the picture's edges, the
    // outermost pixels go on for ever. Allocates nothing once the scratch memory has served a picture as large.
    // Raises NSInvalidArgumentException for a scale that is not finite and above 0.
    void apply(Bitmap& image, CGFloat scale, FilterScratch& scratch) const;
    // How many pixels around an area have an influence on it: 0 when each pixel stands alone. Raises as above.
    CGFloat reach(CGFloat scale) const;
    // Whether pictures stay as they are.
    virtual bool isNeutral() const = 0;

    // Calls the handler after every change of an input, until what is handed back is let go. The handler may do that.
    using Observation = std::shared_ptr<const std::function<void()>>;
    [[nodiscard]] Observation observe(std::function<void()> handler);

protected:
    // Stores a new input and tells the observers; an equal one does nothing.
    void store(CGFloat& input, CGFloat value);

    // The work of the above, for a filter that is not neutral and a scale that is right.
    virtual void applyTo(Bitmap& image, CGFloat scale, FilterScratch& scratch) const = 0;
    virtual CGFloat reachAt(CGFloat scale) const = 0;

private:
    std::string m_name;
    std::vector<std::weak_ptr<const std::function<void()>>> m_observers;
};

// A new filter of the class of that name, such as "CIGaussianBlur"; null when there is no such filter.
std::shared_ptr<CIFilter> makeFilter(std::string_view name);

} // namespace RVCore
