#include <CoreGraphics/Bitmap.h>
#include <CoreImage/CIColorControls.h>
#include <CoreImage/CIFilter.h>
#include <CoreImage/CIGaussianBlur.h>
#include <Foundation/KeyPath.h>
#include <Foundation/Stop.h>

namespace RVCore {

namespace {

void requireScale(std::string_view operation, CGFloat scale)
{
    requireFinite(operation, "scale", scale);
    if (scale <= 0)
        raiseInvalidArgument(operation, "scale must be above 0, got " + numberText(scale));
}

} // namespace

Class& CIFilter::staticClass()
{
    static Class& theClass = defineClass<CIFilter>("CIFilter", NSObject::staticClass(), [](auto& publish) {
        publish.property("name", &CIFilter::name, &CIFilter::setName);
        publish.method("valueForKey:", &CIFilter::valueForKey);
        publish.method("setValue:forKey:", &CIFilter::setValueForKey);
        publish.method("setDefaults", &CIFilter::setDefaults);
        publish.classMethod(
            "filterWithName:", [](const Class&, const std::string& name) -> std::shared_ptr<CIFilter> {
                return makeFilter(name);
            });
    });
    return theClass;
}

std::shared_ptr<CIFilter> makeFilter(std::string_view name)
{
    // Names alone would not make a linker take them out of the library.
    [[maybe_unused]] static const std::array known{&CIColorControls::staticClass(), &CIGaussianBlur::staticClass()};
    const Class* const theClass = Class::named(name);
    if (!theClass || theClass == &CIFilter::staticClass() || !theClass->isSubclassOf(CIFilter::staticClass()))
        return nullptr;
    auto filter = std::static_pointer_cast<CIFilter>(theClass->alloc());
    filter->init();
    return filter;
}

void CIFilter::init()
{
    m_name = classObject().name();
    if (inputKeys().size() > FilterInputs().size())
        fatalError(m_name + " has " + std::to_string(inputKeys().size()) + " input keys; there is room for " +
                   std::to_string(FilterInputs().size()));
}

Value CIFilter::valueForKey(std::string_view key)
{
    return valueForKeyPath(*this, key);
}

void CIFilter::setValueForKey(const Value& value, std::string_view key)
{
    setValueForKeyPath(*this, key, value);
}

void CIFilter::apply(const FilterInputs& inputs, const Bitmap& source, Bitmap& result, CGFloat scale,
                     FilterScratch& scratch) const
{
    requireScale("CIFilter.apply", scale);
    if (source.width() != result.width() || source.height() != result.height())
        fatalError("CIFilter.apply: the result is not as large as the source");
    if (isNeutral(inputs))
        copyPixels(source, result);
    else if (!source.isEmpty())
        applyInputs(inputs, source, result, scale, scratch);
}

CGFloat CIFilter::reach(const FilterInputs& inputs, CGFloat scale) const
{
    requireScale("CIFilter.reach", scale);
    return isNeutral(inputs) ? 0 : reachOfInputs(inputs, scale);
}

int CIFilter::grid(const FilterInputs& inputs, CGFloat scale) const
{
    requireScale("CIFilter.grid", scale);
    return isNeutral(inputs) ? 1 : gridOfInputs(inputs, scale);
}

CIFilter::Observation CIFilter::observe(std::function<void()> handler)
{
    std::erase_if(m_observers, [](const auto& observer) { return observer.expired(); });
    auto observation = std::make_shared<const std::function<void()>>(std::move(handler));
    m_observers.push_back(observation);
    return observation;
}

void CIFilter::store(CGFloat& input, CGFloat value)
{
    if (input == value)
        return;
    input = value;
    const auto kept = shared(*this); // a handler may let go of this filter
    // By index: a handler may add observers, who are told of this change as well.
    for (std::size_t i = 0; i < m_observers.size(); ++i) {
        if (const Observation observer = m_observers[i].lock())
            (*observer)();
    }
}

} // namespace RVCore
