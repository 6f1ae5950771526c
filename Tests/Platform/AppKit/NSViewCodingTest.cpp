#include "ViewTesting.h"

#include <AppKit/ViewDump.h>
#include <Foundation/NSCoder.h>
#include <Platform/Foundation/Raised.h>

namespace RVCore::NSViewCodingTests {
namespace {

using testing::HasSubstr;

std::shared_ptr<NSView> copyOf(NSView& view)
{
    return std::dynamic_pointer_cast<NSView>(unarchivedObject(archivedObject(view)));
}

// A host with a box and a view in the box, held by constraints of three views.
std::shared_ptr<NSView> sample()
{
    const auto host = make<NSView>(CGRect(1, 2, 100, 80));
    host->setIdentifier("host");
    host->setBoundsOrigin({3, 4});
    const auto unused = make<NSView>(CGRect(5, 5, 10, 10));
    unused->setHidden(true);
    unused->setAlphaValue(0.5);
    unused->setWantsLayer(true);
    unused->setAutoresizingMask(NSAutoresizingMask::width | NSAutoresizingMask::minYMargin);
    host->addSubview(unused);
    const auto box = addTo(*host, "box");
    place(*box, {10, 10, 50, 50});
    const auto inner = addTo(*box, "inner");
    inner->setContentHuggingPriority(11, Orientation::vertical);
    inner->setContentCompressionResistancePriority(12, Orientation::horizontal);
    hold(*inner, Attribute::width, *host, Attribute::width,
         {.constant = -4, .multiplier = 0.5, .priority = 700, .relation = Relation::lessThanOrEqual})
        ->setIdentifier("role");
    hold(*inner, Attribute::right, *box, Attribute::centerX, {.constant = -1});
    hold(*inner, Attribute::height, *inner, Attribute::width);
    return host;
}

TEST(NSViewCoding, ATreeComesBackWithItsConstraints)
{
    const auto original = sample();
    const auto copy = copyOf(*original);
    EXPECT_EQ(describeViewTree(*copy), describeViewTree(*original));
    EXPECT_EQ(copy->bounds(), original->bounds());
    const auto unused = copy->subviews()[0], inner = copy->subviews()[1]->subviews()[0];
    EXPECT_TRUE(unused->wantsLayer());
    EXPECT_TRUE(unused->translatesAutoresizingMaskIntoConstraints());
    EXPECT_EQ(unused->autoresizingMask(), NSAutoresizingMask::width | NSAutoresizingMask::minYMargin);
    EXPECT_FALSE(inner->translatesAutoresizingMaskIntoConstraints());
    EXPECT_EQ(inner->contentHuggingPriority(Orientation::vertical), 11);
    EXPECT_EQ(inner->contentCompressionResistancePriority(Orientation::horizontal), 12);
    copy->layoutSubtreeIfNeeded();
    original->layoutSubtreeIfNeeded();
    EXPECT_EQ(describeViewTree(*copy), describeViewTree(*original));
}

TEST(NSViewCoding, ASubtreeLeavesTheConstraintsOfViewsAboveBehind)
{
    const auto original = sample();
    const auto copy = copyOf(*original->subviews()[1]);
    EXPECT_EQ(copy->constraints().size(), 3u); // its size, and what it holds of the view inside
    EXPECT_EQ(copy->subviews().size(), 1u);
    EXPECT_EQ(copy->superview(), nullptr);
}

// The archive of the sample with one field of the host's replaced, or taken away by nothing.
Value damaged(const std::string& key, const Value& replacement)
{
    const auto original = sample();
    auto archive = archivedObject(*original).as<Value::Dictionary>();
    auto objects = archive.at("objects").as<Value::Array>();
    auto host = objects[0].as<Value::Dictionary>();
    auto fields = host.at("fields").as<Value::Dictionary>();
    EXPECT_TRUE(fields.contains(key)) << key;
    if (replacement.isNothing())
        fields.erase(key);
    else
        fields[key] = replacement;
    host["fields"] = fields;
    objects[0] = host;
    archive["objects"] = objects;
    return archive;
}

TEST(NSViewCoding, AMalformedArchiveRaises)
{
    const auto reason = [](const std::string& key, const Value& replacement) {
        return raised([&] { unarchivedObject(damaged(key, replacement)); });
    };
    for (const char* key : {"frame", "boundsOrigin", "hidden", "alphaValue", "wantsLayer", "autoresizingMask",
                            "translatesAutoresizingMask", "huggingPriorities", "compressionResistancePriorities",
                            "identifier", "subviews", "constraints"}) {
        EXPECT_THAT(reason(key, Value()), HasSubstr(key));
        EXPECT_THAT(reason(key, Value::Array{"x", "y"}), HasSubstr("NSInvalidArgumentException"));
    }
    EXPECT_THAT(reason("huggingPriorities", Value::Array{1.0}), HasSubstr("two priorities of each kind"));
    EXPECT_THAT(reason("huggingPriorities", Value::Array{1.0, 0.0}), HasSubstr("priority must be above 0"));
    EXPECT_THAT(reason("subviews", Value::Array{Value()}), HasSubstr("there is no view"));
}

TEST(NSViewCoding, AMalformedConstraintRaises)
{
    const auto reason = [](const std::string& key, const Value& replacement) {
        Value::Dictionary fields{{"first", Value::Array{1}}, {"firstAttribute", 7}, {"relation", 0},
                                 {"secondAttribute", 0},     {"multiplier", 1},     {"constant", 5},
                                 {"priority", 1000},         {"identifier", ""}};
        if (replacement.isNothing())
            fields.erase(key);
        else
            fields[key] = replacement;
        const Value constraints = Value::Array{Value(Value::Dictionary{{"fields", fields}})};
        return raised([&] { unarchivedObject(damaged("constraints", constraints)); });
    };
    EXPECT_EQ(reason("identifier", "name"), "nothing");
    for (const char* key : {"first", "firstAttribute", "relation", "secondAttribute", "multiplier", "constant",
                            "priority", "identifier"})
        EXPECT_THAT(reason(key, Value()), HasSubstr(std::string("a constraint has no ") + key));
    EXPECT_THAT(reason("first", Value::Array{0, 5}), HasSubstr("a subview that is not there"));
    EXPECT_THAT(reason("second", Value::Array{9}), HasSubstr("a subview that is not there"));
    EXPECT_THAT(reason("firstAttribute", 1000), HasSubstr("expected integer from -128 to 127"));
    EXPECT_THAT(reason("priority", 0), HasSubstr("priority must be above 0"));
    EXPECT_THAT(reason("secondAttribute", 7), HasSubstr("go together"));
}

} // namespace
} // namespace RVCore::NSViewCodingTests
