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
            return Value::Dictionary{{referenceKey, indexOf(*value.object())}};
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
        const auto fields = value.dictionary()->find(fieldsKey);
        if (fields == value.dictionary()->end())
            raiseMalformed("a dictionary has neither an object nor fields");
        Value::Dictionary result;
        for (const auto& [key, element] : fields->second.as<Value::Dictionary>())
            result[key] = unpacked(element);
        return result;
    }

    std::size_t indexOf(const ObjectRef& object)
    {
        const auto [entry, isNew] = m_indices.try_emplace(object, m_objects.size());
        const std::size_t index = entry->second; // encoding the object may add others
        if (isNew) {
            m_objects.emplace_back();
            Use use(*this, object->classObject().name());
            object->encode(*use.coder);
            m_objects[index] =
                Value::Dictionary{{classKey, use.coder->m_className}, {fieldsKey, use.coder->m_fields}};
        }
        return index;
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
        return m_decoded[index] = decoded(index);
    }

private:
    // A coder that is good for one object. Whoever keeps it longer finds that it belongs to no archive any more.
    struct Use {
        Use(KeyedArchive& archive, const std::string& className) : coder(make<NSCoder>())
        {
            coder->m_archive = &archive;
            coder->m_className = className;
        }
        ~Use() { coder->m_archive = nullptr; }
        Use(const Use&) = delete;
        Use& operator=(const Use&) = delete;

        std::shared_ptr<NSCoder> coder;
    };

    ObjectRef decoded(std::size_t index)
    {
        const auto* entry = m_objects[index].dictionary();
        if (!entry || !entry->contains(classKey) || !entry->contains(fieldsKey))
            raiseMalformed("object " + std::to_string(index) + " has no class or no fields");
        Use use(*this, entry->at(classKey).as<std::string>());
        use.coder->m_fields = entry->at(fieldsKey).as<Value::Dictionary>();
        const Class* objectClass = Class::named(use.coder->m_className);
        if (!objectClass)
            raiseMalformed("there is no class " + use.coder->m_className);
        ObjectRef object = objectClass->alloc();
        object->init(*use.coder);
        return object;
    }

    Value::Array m_objects;
    // Holds the objects: one that is made only to be encoded must not leave its address to another.
    std::unordered_map<ObjectRef, std::size_t> m_indices;
    std::vector<ObjectRef> m_decoded;
    std::vector<bool> m_inProgress;
};

Class& NSCoder::staticClass()
{
    static Class& theClass = defineClass<NSCoder>("NSCoder", NSObject::staticClass(), [](auto& publish) {
        publish.method("encodeObject:forKey:",
                       [](NSCoder& self, const Value& value, const std::string& key) { self.encode(key, value); });
        publish.method("decodeObjectForKey:", [](NSCoder& self, const std::string& key) { return self.decode(key); });
        publish.method("containsValueForKey:", &NSCoder::contains);
    });
    return theClass;
}

void NSCoder::encode(const std::string& key, const Value& value)
{
    if (m_fields.contains(key))
        raiseInvalidArgument("NSCoder.encode", "key \"" + key + "\" of " + m_className + " is used twice");
    m_fields[key] = archive().packed(value);
}

bool NSCoder::contains(const std::string& key) const
{
    return m_fields.contains(key);
}

Value NSCoder::decode(const std::string& key)
{
    const auto found = m_fields.find(key);
    return found == m_fields.end() ? Value() : archive().unpacked(found->second);
}

KeyedArchive& NSCoder::archive() const
{
    if (!m_archive)
        raiseInvalidArgument("NSCoder", "this coder belongs to no archive");
    return *m_archive;
}

void NSCoder::raiseMissing(const std::string& key, const std::string& expected) const
{
    raiseInvalidArgument("NSCoder.decode", "key \"" + key + "\" of " + m_className + " must be " + expected);
}

Value archivedObject(NSObject& root)
{
    KeyedArchive archive;
    archive.indexOf(shared(root));
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
