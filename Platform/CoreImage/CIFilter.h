#pragma once

#include <CoreGraphics/CGGeometry.h>
#include <CoreGraphics/Forward.h>
#include <CoreImage/Forward.h>
#include <Foundation/NSObject.h>

#include <array>
#include <functional>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

namespace RVCore {

// The numbers that a filter goes by, in the order of its inputKeys; what is behind them is 0.
using FilterInputs = std::array<CGFloat, 4>;

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

    // The keys of its numbers, at most as many as FilterInputs holds: a class that has more stops the program when
    // one is made.
    virtual std::span<const std::string_view> inputKeys() const = 0;
    virtual FilterInputs inputs() const = 0;

    // Applies the filter in place; `scale` is in pixels per point. Where it looks beyond the picture's edges, the
    // outermost pixels go on for ever. Allocates nothing once the scratch memory has served a picture as large.
    // Raises NSInvalidArgumentException for a scale that is not finite and above 0. The second form goes by other
    // inputs than the filter's own, such as those on the way from one value to another, which are finite; and it puts
    // what comes out into `result`, which may be the source; one that is not as large stops the program.
    void apply(Bitmap& image, CGFloat scale, FilterScratch& scratch) const
    {
        apply(inputs(), image, image, scale, scratch);
    }
    void apply(const FilterInputs& inputs, const Bitmap& source, Bitmap& result, CGFloat scale,
               FilterScratch& scratch) const;
    // How many pixels around an area have an influence on it: 0 when each pixel stands alone. Raises as above.
    CGFloat reach(CGFloat scale) const { return reach(inputs(), scale); }
    CGFloat reach(const FilterInputs& inputs, CGFloat scale) const;
    // A part of a picture, with its reach on each side, comes out as in the whole, to the bit, when its corner lies
    // at multiples of this many pixels from the picture's: a power of two, 1 where it may lie anywhere. Raises as
    // above.
    int grid(const FilterInputs& inputs, CGFloat scale) const;
    // Whether pictures stay as they are.
    bool isNeutral() const { return isNeutral(inputs()); }
    virtual bool isNeutral(const FilterInputs& inputs) const = 0;

    // Calls the handler after every change of an input, until what is handed back is let go. The handler may do that.
    using Observation = std::shared_ptr<const std::function<void()>>;
    [[nodiscard]] Observation observe(std::function<void()> handler);

protected:
    // Stores a new input and tells the observers; an equal one does nothing.
    void store(CGFloat& input, CGFloat value);

    // The work of the above, for inputs that are not neutral and a scale that is right.
    virtual void applyInputs(const FilterInputs& inputs, const Bitmap& source, Bitmap& result, CGFloat scale,
                             FilterScratch& scratch) const = 0;
    virtual CGFloat reachOfInputs(const FilterInputs& inputs, CGFloat scale) const = 0;
    virtual int gridOfInputs(const FilterInputs&, CGFloat) const { return 1; }

private:
    std::string m_name;
    std::vector<std::weak_ptr<const std::function<void()>>> m_observers;
};

// A new filter of the class of that name, such as "CIGaussianBlur"; null when there is no such filter.
std::shared_ptr<CIFilter> makeFilter(std::string_view name);

} // namespace RVCore
