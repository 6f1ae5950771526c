#pragma once

#include <CoreImage/CIFilter.h>

#include <algorithm>
#include <string>

namespace RVCore {

// A filter that changes nothing, with a number as its input (at least 0) and an input that is no number.
class TestFilter : public CIFilter {
    RVCORE_CLASS(TestFilter)

public:
    static std::shared_ptr<TestFilter> named(const std::string& name)
    {
        auto filter = make<TestFilter>();
        filter->setName(name);
        return filter;
    }
    double inputRadius() const { return m_radius; }
    void setInputRadius(double radius) { store(m_radius, std::max(radius, 0.0)); }
    const std::string& inputMode() const { return m_mode; }
    void setInputMode(const std::string& mode) { m_mode = mode; }

    void setDefaults() override { setInputRadius(0); }
    std::span<const std::string_view> inputKeys() const override { return keys; }
    FilterInputs inputs() const override { return {m_radius}; }
    using CIFilter::isNeutral;
    bool isNeutral(const FilterInputs&) const override { return true; }

protected:
    void applyInputs(const FilterInputs&, const Bitmap&, Bitmap&, CGFloat, FilterScratch&) const override {}
    CGFloat reachOfInputs(const FilterInputs&, CGFloat) const override { return 0; }

private:
    static constexpr std::string_view keys[] = {"inputRadius"};

    double m_radius = 0;
    std::string m_mode;
};

inline Class& TestFilter::staticClass()
{
    static Class& theClass = defineClass<TestFilter>("TestFilter", CIFilter::staticClass(), [](auto& publish) {
        publish.property("inputRadius", &TestFilter::inputRadius, &TestFilter::setInputRadius);
        publish.property("inputMode", &TestFilter::inputMode, &TestFilter::setInputMode);
    });
    return theClass;
}

} // namespace RVCore
