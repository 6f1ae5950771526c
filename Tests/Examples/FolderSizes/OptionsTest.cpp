#include <Examples/Common/UsageProblem.h>
#include <FolderSizes/Options.h>

namespace FolderSizes::OptionsTests {
namespace {

std::string problemOf(const std::vector<std::string>& arguments)
{
    return Examples::usageProblem([&] { parseOptions(arguments); });
}

TEST(Options, defaultsToTheCurrentFolderAndNoFiles)
{
    const Options options = parseOptions({});
    EXPECT_EQ(options.path, ".");
    EXPECT_EQ(options.snapshot, "");
    EXPECT_EQ(options.dump, "");
    EXPECT_EQ(options.diagram, "");
    EXPECT_EQ(options.rows, 20U);
    EXPECT_EQ(options.width, 760);
    EXPECT_EQ(options.scale, 2);
    EXPECT_FALSE(options.appearance);
    EXPECT_FALSE(options.hiddenRow);
}

TEST(Options, readsEverything)
{
    const Options options =
        parseOptions({"--snapshot", "a.png", "--dump", "b.txt", "--explain", "c.png", "--rows", "7", "--width",
                      "700.5", "--scale", "1.5", "--appearance", "dark", "--hide-and-show", "2", "folder"});
    EXPECT_EQ(options.path, "folder");
    EXPECT_EQ(options.snapshot, "a.png");
    EXPECT_EQ(options.dump, "b.txt");
    EXPECT_EQ(options.diagram, "c.png");
    EXPECT_EQ(options.rows, 7U);
    EXPECT_EQ(options.width, 700.5);
    EXPECT_EQ(options.scale, 1.5);
    EXPECT_EQ(options.appearance, RVCore::Appearance::dark);
    EXPECT_EQ(options.hiddenRow, 2U);
    EXPECT_TRUE(options.showsHiddenRowAgain);
    EXPECT_FALSE(parseOptions({"--hide", "2"}).showsHiddenRowAgain);
}

TEST(Options, everythingAfterTwoDashesIsAPath)
{
    EXPECT_EQ(parseOptions({"--", "--rows"}).path, "--rows");
}

TEST(Options, sayWhatIsWrong)
{
    EXPECT_EQ(problemOf({"--colour"}), "there is no option --colour");
    EXPECT_EQ(problemOf({"--dump"}), "--dump needs a value");
    EXPECT_EQ(problemOf({"one", "two"}), "one folder at a time, not also \"two\"");
    EXPECT_EQ(problemOf({""}), "the folder's name is empty");
    EXPECT_EQ(problemOf({"--rows", "0"}), "--rows takes a number from 1 to 200, not \"0\"");
    EXPECT_EQ(problemOf({"--rows", "ten"}), "--rows takes a number from 1 to 200, not \"ten\"");
    EXPECT_EQ(problemOf({"--width", "nan"}), "--width takes a number from 640 to 4000, not \"nan\"");
    EXPECT_EQ(problemOf({"--appearance", "grey"}), "--appearance takes light or dark, not \"grey\"");
    EXPECT_EQ(problemOf({"--scale", "9"}), "--scale takes a number from 1 to 4, not \"9\"");
}

} // namespace
} // namespace FolderSizes::OptionsTests
