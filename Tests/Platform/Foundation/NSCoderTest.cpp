#include "Raised.h"
#include "SampleBox.h"

#include <Foundation/Message.h>
#include <Foundation/NSCoder.h>

#include <gtest/gtest.h>

namespace RVCore::NSCoderTests {

namespace {

// A vertex of a graph that can be archived.
class Vertex : public NSObject {
    RVCORE_CLASS(Vertex)

public:
    std::string name;
    Value::Array neighbours;
    Value extra;

    using NSObject::init;
    void init(NSCoder& coder) override
    {
        name = coder.decode<std::string>("name");
        neighbours = coder.decode<Value::Array>("neighbours");
        extra = coder.decode("extra");
    }
    void encode(NSCoder& coder) const override
    {
        coder.encode("name", name);
        coder.encode("neighbours", neighbours);
        if (!extra.isNothing())
            coder.encode("extra", extra);
    }
    std::shared_ptr<Vertex> neighbour(std::size_t index) const
    {
        return neighbours.at(index).as<std::shared_ptr<Vertex>>();
    }
};

Class& Vertex::staticClass()
{
    static Class& theClass = defineClass<Vertex>("Vertex", NSObject::staticClass(), [](auto&) {});
    return theClass;
}

// Encodes objects that nobody else holds, one after the other.
class Temporaries : public NSObject {
    RVCORE_CLASS(Temporaries)

public:
    using NSObject::init;
    void init(NSCoder& coder) override
    {
        for (int i = 0; i < 20; ++i)
            names += coder.decode<std::shared_ptr<Vertex>>(std::to_string(i))->name;
    }
    void encode(NSCoder& coder) const override
    {
        for (int i = 0; i < 20; ++i) {
            const auto vertex = make<Vertex>();
            vertex->name = static_cast<char>('a' + i);
            coder.encode(std::to_string(i), vertex);
        }
    }
    std::string names;
};

Class& Temporaries::staticClass()
{
    static Class& theClass = defineClass<Temporaries>("Temporaries", NSObject::staticClass(), [](auto&) {});
    return theClass;
}

// Keeps its coder, and can be told to use a key twice.
class BadManners : public NSObject {
    RVCORE_CLASS(BadManners)

public:
    void encode(NSCoder& coder) const override
    {
        coder.encode("key", 1);
        if (twice)
            coder.encode("key", 2);
        kept = shared(coder);
    }
    bool twice = false;
    mutable std::shared_ptr<NSCoder> kept;
};

Class& BadManners::staticClass()
{
    static Class& theClass = defineClass<BadManners>("BadManners", NSObject::staticClass(), [](auto&) {});
    return theClass;
}

// Does without the typed operations.
class ByName : public NSObject {
    RVCORE_CLASS(ByName)

public:
    using NSObject::init;
    void init(NSCoder& coder) override
    {
        read = {send(coder, "decodeObjectForKey:", "a"), send(coder, "containsValueForKey:", "a"),
                send(coder, "decodeObjectForKey:", "b"), send(coder, "containsValueForKey:", "b")};
    }
    void encode(NSCoder& coder) const override { send(coder, "encodeObject:forKey:", 1, "a"); }
    Value::Array read;
};

Class& ByName::staticClass()
{
    static Class& theClass = defineClass<ByName>("ByName", NSObject::staticClass(), [](auto&) {});
    return theClass;
}

std::shared_ptr<Vertex> makeVertex(std::string name, Value::Array neighbours = {})
{
    auto vertex = make<Vertex>();
    vertex->name = std::move(name);
    vertex->neighbours = std::move(neighbours);
    return vertex;
}

std::shared_ptr<Vertex> copied(Vertex& vertex)
{
    return std::dynamic_pointer_cast<Vertex>(unarchivedObject(archivedObject(vertex)));
}

// An archive of one object, put together by hand.
Value archiveOf(Value object)
{
    return Value::Dictionary{{"objects", Value::Array{std::move(object)}}};
}

std::string raisedByArchive(const Value& archive)
{
    return raised([&] { unarchivedObject(archive); });
}

} // namespace

TEST(NSCoderTest, AnObjectComesBackAsANewOneWithTheSameContent)
{
    const auto vertex = makeVertex("a");
    vertex->extra = Value::Dictionary{{"pair", SamplePair{1, 2}}, {"object", 3}, {"list", Value::Array{true, 2.5}}};
    const auto copy = copied(*vertex);
    ASSERT_NE(copy, nullptr);
    EXPECT_NE(copy, vertex);
    EXPECT_EQ(copy->name, "a");
    EXPECT_EQ(copy->extra, vertex->extra);
}

TEST(NSCoderTest, ASharedObjectComesBackShared)
{
    const auto leaf = makeVertex("leaf");
    const auto root = makeVertex("root", {makeVertex("left", {leaf}), makeVertex("right", {leaf}), Value(leaf)});
    const auto copy = copied(*root);
    EXPECT_EQ(copy->neighbour(0)->neighbour(0), copy->neighbour(1)->neighbour(0));
    EXPECT_EQ(copy->neighbour(2), copy->neighbour(0)->neighbour(0));
    EXPECT_NE(copy->neighbour(2), leaf);
    EXPECT_EQ(copy->neighbour(2)->name, "leaf");
}

TEST(NSCoderTest, TheSameObjectsMakeTheSameArchive)
{
    const auto root = makeVertex("root", {makeVertex("left"), makeVertex("right")});
    EXPECT_EQ(archivedObject(*root), archivedObject(*root));
    EXPECT_EQ(archivedObject(*root).description(), archivedObject(*copied(*root)).description());
}

TEST(NSCoderTest, ACycleRaisesWhenItIsUnarchived)
{
    const auto one = makeVertex("one"), other = makeVertex("other", {one});
    one->neighbours = {other};
    const Value archive = archivedObject(*one);
    one->neighbours.clear();
    EXPECT_EQ(raisedByArchive(archive), "NSInvalidArgumentException: unarchivedObject: object 0 contains itself");
}

TEST(NSCoderTest, ObjectsThatAreMadeOnlyToBeEncodedAreNotMistakenForEachOther)
{
    const auto copy = std::dynamic_pointer_cast<Temporaries>(unarchivedObject(archivedObject(*make<Temporaries>())));
    EXPECT_EQ(copy->names, "abcdefghijklmnopqrst");
}

TEST(NSCoderTest, AnUnknownClassRaises)
{
    EXPECT_EQ(raisedByArchive(archiveOf(Value::Dictionary{{"class", "Martian"}, {"fields", Value::Dictionary()}})),
              "NSInvalidArgumentException: unarchivedObject: there is no class Martian");
}

TEST(NSCoderTest, AMalformedArchiveRaises)
{
    EXPECT_EQ(raisedByArchive(3), "NSInvalidArgumentException: unarchivedObject: the value is not an archive");
    EXPECT_EQ(raisedByArchive(Value::Dictionary()),
              "NSInvalidArgumentException: unarchivedObject: the value is not an archive");
    EXPECT_EQ(raisedByArchive(Value::Dictionary{{"objects", 3}}),
              "NSInvalidArgumentException: Value.as: expected array, got integer");
    EXPECT_EQ(raisedByArchive(Value::Dictionary{{"objects", Value::Array()}}),
              "NSInvalidArgumentException: unarchivedObject: there is no object 0");
    EXPECT_EQ(raisedByArchive(archiveOf("text")),
              "NSInvalidArgumentException: unarchivedObject: object 0 has no class or no fields");
    EXPECT_EQ(raisedByArchive(archiveOf(Value::Dictionary{{"class", "Vertex"}})),
              "NSInvalidArgumentException: unarchivedObject: object 0 has no class or no fields");
}

TEST(NSCoderTest, MalformedFieldsRaise)
{
    const auto withExtra = [](Value extra) {
        return archiveOf(Value::Dictionary{
            {"class", "Vertex"},
            {"fields",
             Value::Dictionary{{"name", "x"}, {"neighbours", Value::Array()}, {"extra", std::move(extra)}}}});
    };
    EXPECT_EQ(raisedByArchive(withExtra(1)), "nothing");
    EXPECT_EQ(raisedByArchive(withExtra(Value::Dictionary{{"object", 7}})),
              "NSInvalidArgumentException: unarchivedObject: there is no object 7");
    EXPECT_EQ(raisedByArchive(withExtra(Value::Dictionary{{"other", 7}})),
              "NSInvalidArgumentException: unarchivedObject: a dictionary has neither an object nor fields");
    EXPECT_EQ(raisedByArchive(withExtra(Value::Dictionary{{"fields", 7}})),
              "NSInvalidArgumentException: Value.as: expected dictionary, got integer");
}

TEST(NSCoderTest, AMissingKeyAndOneOfTheWrongKindRaise)
{
    EXPECT_EQ(raisedByArchive(archiveOf(Value::Dictionary{{"class", "Vertex"}, {"fields", Value::Dictionary()}})),
              "NSInvalidArgumentException: NSCoder.decode: key \"name\" of Vertex must be text");
    EXPECT_EQ(raisedByArchive(archiveOf(Value::Dictionary{
                  {"class", "Vertex"}, {"fields", Value::Dictionary{{"name", "x"}, {"neighbours", 1}}}})),
              "NSInvalidArgumentException: NSCoder.decode: key \"neighbours\" of Vertex must be array");
}

TEST(NSCoderTest, ACallbackIsRefused)
{
    const auto vertex = makeVertex("a");
    vertex->extra = Value::Array{Value::Callback([](std::span<const Value>) { return Value(); })};
    EXPECT_EQ(raised([&] { archivedObject(*vertex); }),
              "NSInvalidArgumentException: NSCoder.encode: a callback cannot be archived");
}

TEST(NSCoderTest, AClassWithoutSupportRaisesBothWays)
{
    const auto vertex = makeVertex("a", {make<NSObject>()});
    EXPECT_EQ(raised([&] { archivedObject(*vertex); }),
              "NSInvalidArgumentException: NSObject.encodeWithCoder:: this class cannot be archived");
    EXPECT_EQ(raisedByArchive(archiveOf(Value::Dictionary{{"class", "NSObject"}, {"fields", Value::Dictionary()}})),
              "NSInvalidArgumentException: NSObject.initWithCoder:: this class cannot be unarchived");
}

TEST(NSCoderTest, AKeyIsUsedOnce)
{
    const auto object = make<BadManners>();
    object->twice = true;
    EXPECT_EQ(raised([&] { archivedObject(*object); }),
              "NSInvalidArgumentException: NSCoder.encode: key \"key\" of BadManners is used twice");
}

TEST(NSCoderTest, ACoderIsGoodForItsArchiveOnly)
{
    const auto object = make<BadManners>();
    archivedObject(*object);
    const std::string refusal = "NSInvalidArgumentException: NSCoder: this coder belongs to no archive";
    EXPECT_EQ(raised([&] { object->kept->encode("more", object); }), refusal);
    EXPECT_EQ(raised([&] { object->kept->decode("key"); }), refusal);
    EXPECT_EQ(raised([&] { send(make<NSCoder>(), "encodeObject:forKey:", 1, "key"); }), refusal);
}

TEST(NSCoderTest, IsReachedByName)
{
    const auto archived = archivedObject(*make<ByName>());
    EXPECT_EQ(std::dynamic_pointer_cast<ByName>(unarchivedObject(archived))->read,
              (Value::Array{1, true, nullptr, false}));
}

} // namespace RVCore::NSCoderTests
