#include <Foundation/NSCoder.h>

#include <unordered_map>

namespace RVCore {

namespace {

constexpr const char* classKey = "class";
constexpr const char* fieldsKey = "fields";
constexpr const char* objectsKey = "objects";
constexpr const char* referenceKey = "object"; // {"object": 3} stands for the fourth object of the archive

[[noreturn]] void raiseMalformed(const std::string& problem)
{
    raiseInvalidArgument("unarchivedObject", problem);
}

} // namespace

// The table of objects that an archive is made of; the first one is the root.
class KeyedArchive {
public:
    explicit KeyedArchive(Value::Array objects = {})
        : m_objects(std::move(objects)), m_decoded(m_objects.size()), m_inProgress(m_objects.size())
    {
    }

    const Value::Array& objects() const { return m_objects; }

    Value packed(const Value& value)
    {
        if (value.callback())
            raiseInvalidArgument("NSCoder.encode", "a callback cannot be archived");
        if (value.object())
            return Value::Dictionary{{referenceKey, Value(indexOf(**value.object()))}};
        if (value.array()) {
            Value::Array result;
            for (const Value& element : *value.array())
                result.push_back(packed(element));
            return result;
        }
        if (value.dictionary()) {
            Value::Dictionary result;
            for (const auto& [key, element] : *value.dictionary())
                result[key] = packed(element);
            return Value::Dictionary{{fieldsKey, result}};
        }
        return value;
    }

    Value unpacked(const Value& value)
    {
        if (value.array()) {
            Value::Array result;
            for (const Value& element : *value.array())
                result.push_back(unpacked(element));
            return result;
        }
        if (!value.dictionary())
            return value;
        if (const auto reference = value.dictionary()->find(referenceKey); reference != value.dictionary()->end())
            return objectAt(reference->second.as<std::size_t>());
        Value::Dictionary result;
        for (const auto& [key, element] : value.dictionary()->at(fieldsKey).as<Value::Dictionary>())
            result[key] = unpacked(element);
        return result;
    }

    std::size_t indexOf(NSObject& object)
    {
        const auto [entry, isNew] = m_indices.try_emplace(&object, m_objects.size());
        if (isNew) {
            const std::size_t index = entry->second;
            m_objects.emplace_back();
            auto coder = std::make_shared<NSCoder>();
            coder->m_archive = this;
            coder->m_className = object.classObject().name();
            object.encode(*coder);
            m_objects[index] = Value::Dictionary{{classKey, coder->m_className}, {fieldsKey, coder->m_fields}};
        }
        return m_indices.at(&object);
    }

    ObjectRef objectAt(std::size_t index)
    {
        if (index >= m_objects.size())
            raiseMalformed("there is no object " + std::to_string(index));
        if (m_decoded[index])
            return m_decoded[index];
        if (m_inProgress[index])
            raiseMalformed("object " + std::to_string(index) + " contains itself");
        m_inProgress[index] = true;
        const auto* entry = m_objects[index].dictionary();
        if (!entry || !entry->contains(classKey) || !entry->contains(fieldsKey))
            raiseMalformed("object " + std::to_string(index) + " has no class or no fields");
        auto coder = std::make_shared<NSCoder>();
        coder->m_archive = this;
        coder->m_className = entry->at(classKey).as<std::string>();
        coder->m_fields = entry->at(fieldsKey).as<Value::Dictionary>();
        const Class* objectClass = Class::named(coder->m_className);
        if (!objectClass)
            raiseMalformed("there is no class " + coder->m_className);
        ObjectRef object = objectClass->alloc();
        object->init(*coder);
        m_decoded[index] = object;
        return object;
    }

private:
    Value::Array m_objects;
    std::unordered_map<const NSObject*, std::size_t> m_indices;
    std::vector<ObjectRef> m_decoded;
    std::vector<bool> m_inProgress;
};

Class& NSCoder::staticClass()
{
    static Class& theClass = defineClass<NSCoder>("NSCoder", NSObject::staticClass(), [](auto& publish) {
        publish.method("encodeObject:forKey:", [](NSCoder& self, const Value& value, const std::string& key) {
            self.encode(key, value);
        });
        publish.method("decodeObjectForKey:", [](NSCoder& self, const std::string& key) {
            return self.decode(key);
        });
        publish.method("containsValueForKey:", &NSCoder::contains);
    });
    return theClass;
}

void NSCoder::encode(const std::string& key, const Value& value)
{
    if (m_fields.contains(key))
        raiseInvalidArgument("NSCoder.encode", "key \"" + key + "\" of " + m_className + " is used twice");
    m_fields[key] = m_archive->packed(value);
}

bool NSCoder::contains(const std::string& key) const
{
    return m_fields.contains(key);
}

Value NSCoder::decode(const std::string& key)
{
    const auto found = m_fields.find(key);
    return found == m_fields.end() ? Value() : m_archive->unpacked(found->second);
}

void NSCoder::raiseMissing(const std::string& key, const std::string& expected) const
{
    raiseInvalidArgument("NSCoder.decode", "key \"" + key + "\" of " + m_className + " must be " + expected);
}

Value archivedObject(NSObject& root)
{
    KeyedArchive archive;
    archive.indexOf(root);
    return Value::Dictionary{{objectsKey, archive.objects()}};
}

ObjectRef unarchivedObject(const Value& archive)
{
    if (!archive.dictionary() || !archive.dictionary()->contains(objectsKey))
        raiseMalformed("the value is not an archive");
    KeyedArchive table(archive.dictionary()->at(objectsKey).as<Value::Array>());
    return table.objectAt(0);
}

} // namespace RVCore
