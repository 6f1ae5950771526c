#pragma once

#include <Foundation/NSObject.h>

#include <iterator>
#include <vector>

namespace RVCore {

// An immutable list as an object, so that operations can be published on lists and reached by name:
// send(makeArray(constraints), "autoInstallConstraints").
class NSArray : public NSObject {
    RVCORE_CLASS(NSArray)

public:
    using NSObject::init;
    void init(Value::Array elements) { m_elements = std::move(elements); }
    void init(NSCoder& coder) override;
    void encode(NSCoder& coder) const override;

    std::size_t count() const { return m_elements.size(); }
    const Value::Array& elements() const { return m_elements; }

    bool isEqual(const NSObject& other) const override;
    std::size_t hash() const override { return m_elements.size(); }

private:
    Value::Array m_elements;
};

// A list of objects as an NSArray.
template <class T> std::shared_ptr<NSArray> makeArray(std::vector<T> elements)
{
    return make<NSArray>(
        Value::Array(std::make_move_iterator(elements.begin()), std::make_move_iterator(elements.end())));
}

} // namespace RVCore
