#include "Pictures.h"

#include <CoreImage/CIColorControls.h>
#include <CoreImage/CIGaussianBlur.h>
#include <CoreImage/FilterScratch.h>
#include <Foundation/KeyPath.h>
#include <Foundation/Message.h>
#include <Platform/Foundation/Raised.h>

#include <gtest/gtest.h>

#include <array>
#include <limits>

namespace RVCore::CIFilterTests {
namespace {

using testing::AllOf;
using testing::HasSubstr;

TEST(CIFilter, IsMadeByName)
{
    const auto blur = makeFilter("CIGaussianBlur");
    ASSERT_TRUE(blur);
    EXPECT_EQ(&blur->classObject(), &CIGaussianBlur::staticClass());
    EXPECT_EQ(blur->name(), "CIGaussianBlur");
    EXPECT_TRUE(std::dynamic_pointer_cast<CIColorControls>(makeFilter("CIColorControls")));
}

TEST(CIFilter, ThereIsNoneOfAnUnknownNameOrOneThatIsNoFilter)
{
    EXPECT_FALSE(makeFilter("CIUnknown"));
    EXPECT_FALSE(makeFilter(""));
    EXPECT_FALSE(makeFilter("NSObject"));
    EXPECT_FALSE(makeFilter("CIFilter")) << "which does nothing to a picture";
}

TEST(CIFilter, TheClassMakesOneByName)
{
    const Value made = send(CIFilter::staticClass(), "filterWithName:", "CIGaussianBlur");
    ASSERT_TRUE(made.object());
    EXPECT_EQ(&(*made.object())->classObject(), &CIGaussianBlur::staticClass());
    EXPECT_TRUE(send(CIFilter::staticClass(), "filterWithName:", "CIUnknown").isNothing());
}

TEST(CIFilter, InputsAreReadAndWrittenByKeyAndIntegersDo)
{
    const auto blur = makeFilter("CIGaussianBlur");
    EXPECT_EQ(blur->valueForKey("inputRadius"), Value(10.0));
    blur->setValueForKey(0, "inputRadius");
    EXPECT_EQ(blur->valueForKey("inputRadius"), Value(0.0));
    send(blur, "setValue:forKey:", 2.5, "inputRadius");
    EXPECT_EQ(send(blur, "valueForKey:", "inputRadius"), Value(2.5));
    send(blur, "setDefaults");
    EXPECT_EQ(valueForKeyPath(*blur, "inputRadius"), Value(10.0));
}

TEST(CIFilter, AnUnknownInputRaisesNamingFilterAndKey)
{
    const auto blur = makeFilter("CIGaussianBlur");
    const auto namesBoth =
        AllOf(HasSubstr("NSUnknownKeyException"), HasSubstr("CIGaussianBlur"), HasSubstr("\"inputSaturation\""));
    EXPECT_THAT(raised([&] { blur->setValueForKey(1.0, "inputSaturation"); }), namesBoth);
    EXPECT_THAT(raised([&] { blur->valueForKey("inputSaturation"); }), namesBoth);
}

TEST(CIFilter, AValueOfTheWrongKindRaises)
{
    const auto blur = makeFilter("CIGaussianBlur");
    EXPECT_THAT(raised([&] { blur->setValueForKey("wide", "inputRadius"); }),
                AllOf(HasSubstr("NSInvalidArgumentException"), HasSubstr("CIGaussianBlur"), HasSubstr("number")));
    EXPECT_THAT(raised([&] { blur->setValueForKey(nullptr, "inputRadius"); }), HasSubstr("number"));
    EXPECT_EQ(blur->valueForKey("inputRadius"), Value(10.0));
}

// What layers do: hold filters in a list and find them by name.
class FilterHolder : public NSObject {
    RVCORE_CLASS(FilterHolder)

public:
    const std::vector<std::shared_ptr<CIFilter>>& filters() const { return m_filters; }
    void setFilters(std::vector<std::shared_ptr<CIFilter>> filters) { m_filters = std::move(filters); }

private:
    std::vector<std::shared_ptr<CIFilter>> m_filters;
};

Class& FilterHolder::staticClass()
{
    static Class& theClass = defineClass<FilterHolder>("FilterHolder", NSObject::staticClass(), [](auto& publish) {
        publish.property("filters", &FilterHolder::filters, &FilterHolder::setFilters);
    });
    return theClass;
}

// With more inputs than there is room for.
class BoundlessFilter : public CIFilter {
    RVCORE_CLASS(BoundlessFilter)

public:
    void setDefaults() override {}
    std::span<const std::string_view> inputKeys() const override
    {
        static constexpr std::string_view keys[] = {"inputA", "inputB", "inputC", "inputD", "inputE"};
        return keys;
    }
    FilterInputs inputs() const override { return {}; }
    using CIFilter::isNeutral;
    bool isNeutral(const FilterInputs&) const override { return true; }

protected:
    void applyInputs(const FilterInputs&, const Bitmap&, Bitmap&, CGFloat, FilterScratch&) const override {}
    CGFloat reachOfInputs(const FilterInputs&, CGFloat) const override { return 0; }
};

Class& BoundlessFilter::staticClass()
{
    static Class& theClass = defineClass<BoundlessFilter>("BoundlessFilter", CIFilter::staticClass(), [](auto&) {});
    return theClass;
}

TEST(CIFilter, OfMoreInputsThanThereIsRoomForStopsTheProgramNamingIt)
{
    EXPECT_DEATH(make<BoundlessFilter>(), "Fatal error: BoundlessFilter has 5 input keys; there is room for 4");
}

TEST(CIFilter, IsFoundInAListByItsName)
{
    const auto color = makeFilter("CIColorControls");
    const auto blur = makeFilter("CIGaussianBlur");
    color->setName("saturation");
    send(blur, "setName:", "blur");
    const auto holder = make<FilterHolder>();
    holder->setFilters({color, blur});
    setValueForKeyPath(*holder, "filters.blur.inputRadius", 8);
    setValueForKeyPath(*holder, "filters.saturation.inputSaturation", 2.0);
    EXPECT_EQ(blur->valueForKey("inputRadius"), Value(8.0));
    EXPECT_EQ(color->valueForKey("inputSaturation"), Value(2.0));
    EXPECT_EQ(valueForKeyPath(*holder, "filters.blur.name"), Value("blur"));
    EXPECT_THAT(raised([&] { setValueForKeyPath(*holder, "filters.glow.inputRadius", 8); }), HasSubstr("\"glow\""));
}

TEST(CIFilter, ObserversLearnOfEveryChangeOnceAndOfNoEqualValue)
{
    const auto blur = make<CIGaussianBlur>();
    int first = 0;
    int second = 0;
    auto observation = blur->observe([&] { ++first; });
    const auto other = blur->observe([&] { ++second; });
    blur->setInputRadius(4);
    blur->setInputRadius(4);
    EXPECT_EQ(first, 1);
    observation.reset();
    blur->setDefaults();
    EXPECT_EQ(first, 1) << "let go of";
    EXPECT_EQ(second, 2);
}

TEST(CIFilter, AnObserverMayEndItsObservationAddOneOrLetGoOfTheFilter)
{
    auto blur = make<CIGaussianBlur>();
    int calls = 0;
    CIFilter::Observation own;
    std::vector<CIFilter::Observation> others;
    CIGaussianBlur& filter = *blur;
    own = blur->observe([&] {
        ++calls;
        own.reset();
        for (int i = 0; i < 20; i++)
            others.push_back(filter.observe([&] { ++calls; }));
        blur.reset();
    });
    filter.setInputRadius(1);
    EXPECT_EQ(calls, 21) << "those that were added are told of the same change";
    EXPECT_FALSE(blur);
}

TEST(CIFilter, AScaleThatIsNotFiniteAndAboveZeroRaises)
{
    const auto blur = makeFilter("CIGaussianBlur");
    FilterScratch scratch;
    Bitmap picture(4, 4);
    for (const CGFloat scale : {0.0, -1.0, std::numeric_limits<double>::quiet_NaN()}) {
        EXPECT_THAT(raised([&] { blur->apply(picture, scale, scratch); }), HasSubstr("CIFilter.apply: scale"));
        EXPECT_THAT(raised([&] { blur->reach(scale); }), HasSubstr("CIFilter.reach: scale"));
    }
}

TEST(CIFilter, HasNothingToDoInAnEmptyPictureOrWhenNeutral)
{
    FilterScratch scratch;
    Bitmap empty(3, 0);
    makeFilter("CIGaussianBlur")->apply(empty, 1, scratch);
    makeFilter("CIColorControls")->apply(empty, 1, scratch);
    Bitmap picture = std::move(makeTestPictures(9, 9).front().bitmap);
    const Bitmap before = copied(picture);
    makeFilter("CIColorControls")->apply(picture, 1, scratch);
    EXPECT_TRUE(isSame(picture, before));
    EXPECT_EQ(scratch.capacity(), 0U);
}

TEST(CIFilterDeathTest, AResultThatIsNotAsLargeStopsTheProgram)
{
    FilterScratch scratch;
    const Bitmap source(3, 2);
    for (const char* name : {"CIColorControls", "CIGaussianBlur"}) {
        const auto filter = makeFilter(name);
        for (Bitmap& result : std::array{Bitmap(2, 2), Bitmap(3, 3), Bitmap()})
            EXPECT_DEATH(filter->apply(filter->inputs(), source, result, 1, scratch),
                         "CIFilter.apply: the result is not as large as the source");
    }
}

TEST(CIFilter, LeavesASourceThatIsNotTheResultAsItIs)
{
    const auto color = make<CIColorControls>();
    color->setInputSaturation(2.5);
    const auto blur = make<CIGaussianBlur>();
    FilterScratch scratch;
    // As large as is done in bands, and smaller; the last radius is neutral in pixels, if not by its number.
    for (const auto& [width, height] : {std::pair(400, 260), std::pair(21, 17)}) {
        const Bitmap source = std::move(makeTestPictures(width, height)[1].bitmap);
        const auto expectSame = [&](const CIFilter& filter) {
            Bitmap inPlace = copied(source);
            filter.apply(inPlace, 1, scratch);
            const Bitmap before = copied(source);
            Bitmap result(width, height);
            filter.apply(filter.inputs(), source, result, 1, scratch);
            EXPECT_TRUE(isSame(result, inPlace)) << filter.name();
            EXPECT_TRUE(isSame(source, before)) << filter.name();
        };
        expectSame(*color);
        expectSame(*make<CIColorControls>());
        for (const CGFloat radius : {0.0, 2.0, 8.0, 30.0, 0.001}) {
            blur->setInputRadius(radius);
            expectSame(*blur);
        }
    }
}

} // namespace
} // namespace RVCore::CIFilterTests
