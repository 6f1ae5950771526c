#include <Foundation/Class.h>
#include <Foundation/NSObject.h>
#include <Foundation/Stop.h>

#include <algorithm>
#include <atomic>
#include <map>
#include <mutex>
#include <shared_mutex>
#include <unordered_map>

namespace RVCore {

namespace {

// Guards every class's tables: publishing is rare, and a shared lock costs about as much as the call it leads to.
std::shared_mutex& runtimeMutex()
{
    static std::shared_mutex& mutex = *new std::shared_mutex;
    return mutex;
}

std::map<std::string, Class*, std::less<>>& classTable()
{
    static auto& table = *new std::map<std::string, Class*, std::less<>>;
    return table;
}

// Advances whenever anything is published, which makes every lookup cache stale.
std::uint64_t publishedCount = 0;

template <class M> struct MethodTable {
    std::unordered_map<Selector, const M*> own;
    std::vector<std::unique_ptr<const M>> kept; // also replaced methods: one may be running
    std::unordered_map<Selector, const M*> cache;
    std::uint64_t cacheStamp = 0;

    void add(M method)
    {
        kept.push_back(std::make_unique<const M>(std::move(method)));
        own[kept.back()->selector] = kept.back().get();
        ++publishedCount;
    }

    std::vector<Selector> selectors() const
    {
        std::vector<Selector> result;
        result.reserve(own.size());
        for (const auto& [selector, method] : own)
            result.push_back(selector);
        std::sort(result.begin(), result.end(),
                  [](Selector left, Selector right) { return left.name() < right.name(); });
        return result;
    }
};

// Looks in the class's cache first, then from the class upward; `table` gives a class's table, or null at the end.
template <class M, class TableOf> const M* lookUp(const Class& receiver, Selector selector, const TableOf& tableOf)
{
    MethodTable<M>& table = tableOf(receiver);
    {
        std::shared_lock lock(runtimeMutex());
        if (table.cacheStamp == publishedCount) {
            if (auto found = table.cache.find(selector); found != table.cache.end())
                return found->second;
        }
    }
    std::unique_lock lock(runtimeMutex());
    if (table.cacheStamp != publishedCount) {
        table.cache.clear();
        table.cacheStamp = publishedCount;
    }
    const M* result = nullptr;
    for (const Class* current = &receiver; current && !result; current = current->superclass()) {
        const auto& own = tableOf(*current).own;
        if (auto found = own.find(selector); found != own.end())
            result = found->second;
    }
    table.cache[selector] = result;
    return result;
}

// Those that may not have been defined yet, the newest first.
constinit std::atomic<ClassRegistration*> registrations = nullptr;

} // namespace

ClassRegistration::ClassRegistration(Class& (*define)()) : m_define(define), m_next(registrations.load())
{
    while (!registrations.compare_exchange_weak(m_next, this)) {
    }
}

void ClassRegistration::defineAll()
{
    static std::mutex& mutex = *new std::mutex;
    // The list is emptied after the definitions, so that a thread that finds it empty finds the classes complete.
    while (registrations.load()) {
        std::lock_guard lock(mutex);
        ClassRegistration* newest = registrations.load();
        for (const ClassRegistration* entry = newest; entry; entry = entry->m_next)
            entry->m_define();
        // Fails when a library was loaded meanwhile; defining a class again does nothing.
        registrations.compare_exchange_strong(newest, nullptr);
    }
}

struct Class::Data {
    std::string name;
    const Class* superclass;
    Allocator allocator;
    MethodTable<Method> methods;
    MethodTable<ClassMethod> classMethods;
};

Class::Class(std::unique_ptr<Data> data) : m_data(std::move(data)) {}

Class::~Class() = default;

Class& Class::define(std::string name, const Class* superclass, Allocator allocator)
{
    std::unique_lock lock(runtimeMutex());
    if (classTable().contains(name))
        fatalError("class " + name + " is defined twice");
    auto data = std::make_unique<Data>();
    data->name = name;
    data->superclass = superclass;
    data->allocator = allocator;
    return *(classTable()[std::move(name)] = new Class(std::move(data)));
}

const Class* Class::named(std::string_view name)
{
    ClassRegistration::defineAll();
    std::shared_lock lock(runtimeMutex());
    const auto found = classTable().find(name);
    return found == classTable().end() ? nullptr : found->second;
}

std::vector<const Class*> Class::all()
{
    ClassRegistration::defineAll();
    std::shared_lock lock(runtimeMutex());
    std::vector<const Class*> result;
    for (const auto& [name, entry] : classTable())
        result.push_back(entry);
    return result;
}

const std::string& Class::name() const
{
    return m_data->name;
}

const Class* Class::superclass() const
{
    return m_data->superclass;
}

bool Class::isSubclassOf(const Class& other) const
{
    for (const Class* current = this; current; current = current->superclass()) {
        if (current == &other)
            return true;
    }
    return false;
}

std::shared_ptr<NSObject> Class::alloc() const
{
    if (!m_data->allocator)
        raiseInvalidArgument("Class.alloc", name() + " has no instances of its own");
    return m_data->allocator();
}

void Class::addMethod(Method method)
{
    std::unique_lock lock(runtimeMutex());
    m_data->methods.add(std::move(method));
}

void Class::addClassMethod(ClassMethod method)
{
    std::unique_lock lock(runtimeMutex());
    m_data->classMethods.add(std::move(method));
}

const Method* Class::method(Selector selector) const
{
    return lookUp<Method>(*this, selector, [](const Class& c) -> MethodTable<Method>& { return c.m_data->methods; });
}

const ClassMethod* Class::classMethod(Selector selector) const
{
    return lookUp<ClassMethod>(*this, selector,
                               [](const Class& c) -> MethodTable<ClassMethod>& { return c.m_data->classMethods; });
}

std::vector<Selector> Class::selectors() const
{
    std::shared_lock lock(runtimeMutex());
    return m_data->methods.selectors();
}

std::vector<Selector> Class::classSelectors() const
{
    std::shared_lock lock(runtimeMutex());
    return m_data->classMethods.selectors();
}

} // namespace RVCore
