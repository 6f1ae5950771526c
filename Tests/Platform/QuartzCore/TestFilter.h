#pragma once

#include <Foundation/NSObject.h>

#include <algorithm>
#include <string>

namespace RVCore {

// What layers know of a filter: a name, a number as its input (at least 0) and an input that is no number.
class TestFilter : public NSObject {
    RVCORE_CLASS(TestFilter)

public:
    static std::shared_ptr<TestFilter> named(const std::string& name)
    {
        auto filter = make<TestFilter>();
        filter->m_name = name;
        return filter;
    }
    const std::string& name() const { return m_name; }
    double inputRadius() const { return m_radius; }
    void setInputRadius(double radius) { m_radius = std::max(radius, 0.0); }
    const std::string& inputMode() const { return m_mode; }
    void setInputMode(const std::string& mode) { m_mode = mode; }

private:
    std::string m_name;
    double m_radius = 0;
    std::string m_mode;
};

inline Class& TestFilter::staticClass()
{
    static Class& theClass = defineClass<TestFilter>("TestFilter", NSObject::staticClass(), [](auto& publish) {
        publish.readOnlyProperty("name", &TestFilter::name);
        publish.property("inputRadius", &TestFilter::inputRadius, &TestFilter::setInputRadius);
        publish.property("inputMode", &TestFilter::inputMode, &TestFilter::setInputMode);
    });
    return theClass;
}

} // namespace RVCore
