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
    bool isNeutral() const override { return true; }

protected:
    void applyTo(Bitmap&, CGFloat, FilterScratch&) const override {}
    CGFloat reachAt(CGFloat) const override { return 0; }

private:
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
