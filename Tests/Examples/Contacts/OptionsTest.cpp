#include <Contacts/Options.h>
#include <Examples/Common/UsageProblem.h>

#include <gtest/gtest.h>

namespace Contacts::OptionsTests {
namespace {

std::string problemOf(const std::vector<std::string>& arguments)
{
    return Examples::usageProblem([&] { parseOptions(arguments); });
}

TEST(ContactsOptions, takesAFileAndDefaultsToAWindow)
{
    const Options options = parseOptions({"people.json"});
    EXPECT_EQ(options.file, "people.json");
    EXPECT_EQ(options.snapshot, "");
    EXPECT_EQ(options.scale, 2);
    EXPECT_EQ(options.appearance, std::nullopt);
    EXPECT_FALSE(options.showsPreferences);
    EXPECT_FALSE(options.quitsAfterFirstFrame);
}

TEST(ContactsOptions, readsEverything)
{
    const Options options = parseOptions({"--snapshot", "a.png", "--scale", "1.5", "--appearance", "dark",
                                          "--preferences", "--quit-after-first-frame", "--", "--people"});
    EXPECT_EQ(options.file, "--people");
    EXPECT_EQ(options.snapshot, "a.png");
    EXPECT_EQ(options.scale, 1.5);
    EXPECT_EQ(options.appearance, RVCore::Appearance::dark);
    EXPECT_TRUE(options.showsPreferences);
    EXPECT_TRUE(options.quitsAfterFirstFrame);
    EXPECT_EQ(parseOptions({"--appearance", "light", "a"}).appearance, RVCore::Appearance::light);
}

TEST(ContactsOptions, nameWhatIsWrong)
{
    EXPECT_EQ(problemOf({}), "no file was named");
    EXPECT_EQ(problemOf({""}), "the file's name is empty");
    EXPECT_EQ(problemOf({"a", "b"}), "one file at a time, not also \"b\"");
    EXPECT_EQ(problemOf({"--colour", "a"}), "there is no option --colour");
    EXPECT_EQ(problemOf({"a", "--snapshot"}), "--snapshot needs a value");
    EXPECT_EQ(problemOf({"a", "--appearance", "grey"}), "--appearance takes light or dark, not \"grey\"");
    for (const char* scale : {"0.5", "5", "2x", "nan", "-1", "1e400"})
        EXPECT_EQ(problemOf({"a", "--scale", scale}),
                  "--scale takes a number from 1 to 4, not \"" + std::string(scale) + "\"");
}

TEST(ContactsOptions, helpNeedsNoFile)
{
    EXPECT_TRUE(parseOptions({"--help"}).wantsHelp);
}

} // namespace
} // namespace Contacts::OptionsTests
