#pragma once

#include <Foundation/NSObject.h>

#include <memory>
#include <string_view>
#include <vector>

namespace RVCore {

// One object's part of a keyed archive, either being written (`encode`) or read (`init(NSCoder&)`). Objects inside
// encoded values are archived too, each once however often it occurs, so that the graph comes back as it was.
class NSCoder : public NSObject {
    RVCORE_CLASS(NSCoder)

public:
    // Stores a value under a key that is new in this object. A callback raises NSInvalidArgumentException.
    void encode(const std::string& key, const Value& value);

    bool contains(const std::string& key) const;
    // The value under the key; nothing when there is none.
    Value decode(const std::string& key);
    // The value under the key as a T; raises NSInvalidArgumentException when it is missing or of another kind.
    template <class T> T decode(const std::string& key)
    {
        auto content = ValueConversion<T>::unwrap(decode(key));
        if (!content)
            raiseMissing(key, ValueConversion<T>::expected());
        return std::move(*content);
    }

private:
    friend class KeyedArchive;
    // Raises NSInvalidArgumentException for a coder that nobody is archiving or unarchiving with.
    class KeyedArchive& archive() const;
    [[noreturn]] void raiseMissing(const std::string& key, const std::string& expected) const;

    class KeyedArchive* m_archive = nullptr; // only while an object is being encoded or initialised with it
    std::string m_className;
    Value::Dictionary m_fields;
};

// The object and everything that it reaches, as a value of dictionaries, arrays and plain values. Raises
// NSInvalidArgumentException when one of them does not support archives.
Value archivedObject(NSObject& root);
// The object that an archive holds; raises NSInvalidArgumentException for a malformed archive or an unknown class.
ObjectRef unarchivedObject(const Value& archive);

} // namespace RVCore
