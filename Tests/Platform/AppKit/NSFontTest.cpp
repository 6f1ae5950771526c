#include <AppKit/NSFont.h>
#include <Foundation/Message.h>
#include <Platform/Foundation/Raised.h>

#include <cmath>

namespace RVCore::NSFontTests {
namespace {

using testing::HasSubstr;

TEST(NSFont, EqualsAFontOfTheSameDescription)
{
    EXPECT_TRUE(systemFontOfSize(13)->isEqual(*systemFontOfSize(13)));
    EXPECT_EQ(systemFontOfSize(13)->hash(), systemFontOfSize(13)->hash());
    EXPECT_FALSE(systemFontOfSize(13)->isEqual(*systemFontOfSize(14)));
    EXPECT_FALSE(systemFontOfSize(13)->isEqual(*boldSystemFontOfSize(13)));
    EXPECT_FALSE(systemFontOfSize(13)->isEqual(*monospacedDigitSystemFontOfSize(13)));
    EXPECT_FALSE(systemFontOfSize(13)->isEqual(*make<NSObject>()));
    EXPECT_EQ(boldSystemFontOfSize(9)->fontDescription(), (FontDescription{{}, 9, true, false}));
}

TEST(NSFont, SizesThatAreNoneRaise)
{
    EXPECT_THAT(raised([] { systemFontOfSize(0); }), HasSubstr("systemFontOfSize: size must be above 0, got 0"));
    EXPECT_THAT(raised([] { boldSystemFontOfSize(-1); }), HasSubstr("boldSystemFontOfSize"));
    EXPECT_THAT(raised([] { monospacedDigitSystemFontOfSize(std::nan("")); }), HasSubstr("size"));
    EXPECT_THAT(raised([] { make<NSFont>(FontDescription{{}, 0, false, false}); }), HasSubstr("NSFont.init: size"));
}

TEST(NSFont, IsMadeAndReadByName)
{
    for (const auto& [selector, font] :
         {std::pair{"systemFontOfSize:", systemFontOfSize(11)},
          std::pair{"boldSystemFontOfSize:", boldSystemFontOfSize(11)},
          std::pair{"monospacedDigitSystemFontOfSize:", monospacedDigitSystemFontOfSize(11)}}) {
        const auto made = send(NSFont::staticClass(), selector, 11).as<std::shared_ptr<NSFont>>();
        EXPECT_TRUE(made->isEqual(*font)) << selector;
        EXPECT_EQ(send(made, "pointSize").as<double>(), 11);
    }
}

} // namespace
} // namespace RVCore::NSFontTests
