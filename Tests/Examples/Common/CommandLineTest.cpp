#include <Examples/Common/UsageProblem.h>

#include <gtest/gtest.h>

#include <filesystem>

namespace Examples::CommandLineTests {
namespace {

// The first argument is an option; what reading its value complains about.
template <class Read> std::string problemWith(const std::vector<std::string>& arguments, const Read& read)
{
    CommandLine line(arguments);
    EXPECT_TRUE(line.next());
    return usageProblem([&] { read(line); });
}

TEST(CommandLine, goesThroughTheArguments)
{
    CommandLine line({"--scale", "1.5", "file", "--", "--help", "--"});
    ASSERT_TRUE(line.next());
    EXPECT_TRUE(line.isOption());
    EXPECT_TRUE(line.is("--scale"));
    EXPECT_EQ(line.number(1, 4), 1.5);
    ASSERT_TRUE(line.next());
    EXPECT_FALSE(line.isOption());
    EXPECT_EQ(line.argument(), "file");
    ASSERT_TRUE(line.next());
    EXPECT_FALSE(line.isOption()) << "after two dashes there are none";
    EXPECT_EQ(line.argument(), "--help");
    ASSERT_TRUE(line.next());
    EXPECT_EQ(line.argument(), "--");
    EXPECT_FALSE(line.next());
}

TEST(CommandLine, withoutArgumentsIsAtItsEnd)
{
    EXPECT_FALSE(CommandLine({}).next());
    EXPECT_FALSE(CommandLine({"--"}).next());
}

TEST(CommandLine, anEmptyArgumentIsNoOption)
{
    CommandLine line({""});
    ASSERT_TRUE(line.next());
    EXPECT_FALSE(line.isOption());
}

TEST(CommandLine, readsValues)
{
    CommandLine line({"--rows", "200", "--appearance", "dark"});
    ASSERT_TRUE(line.next());
    EXPECT_EQ(line.count(1, 200), 200U);
    ASSERT_TRUE(line.next());
    EXPECT_EQ(line.appearance(), RVCore::Appearance::dark);
}

TEST(CommandLine, namesWhatIsWrongWithAValue)
{
    const auto text = [](CommandLine& line) { line.value(); };
    const auto number = [](CommandLine& line) { line.number(1, 4); };
    const auto count = [](CommandLine& line) { line.count(1, 200); };
    const auto appearance = [](CommandLine& line) { line.appearance(); };
    EXPECT_EQ(problemWith({"--dump"}, text), "--dump needs a value");
    EXPECT_EQ(problemWith({"--dump", ""}, text), "--dump needs a value");
    for (const char* wrong : {"0.5", "5", "2x", "nan", "-1", "1e400", "x"})
        EXPECT_EQ(problemWith({"--scale", wrong}, number),
                  "--scale takes a number from 1 to 4, not \"" + std::string(wrong) + "\"");
    for (const char* wrong : {"0", "201", "1.5", "-1", "99999999999999999999"})
        EXPECT_EQ(problemWith({"--rows", wrong}, count),
                  "--rows takes a number from 1 to 200, not \"" + std::string(wrong) + "\"");
    EXPECT_EQ(problemWith({"--appearance", "grey"}, appearance), "--appearance takes light or dark, not \"grey\"");
    EXPECT_EQ(problemWith({"--colour"}, [](CommandLine& line) { line.refuse(); }), "there is no option --colour");
}

TEST(RunProgram, turnsWhatIsThrownIntoAMessageAndAStatus)
{
    const auto statusAndText = [](const std::function<int()>& run) {
        testing::internal::CaptureStderr();
        const int status = runProgram("Program", "Usage: …\n", run);
        return std::pair(status, testing::internal::GetCapturedStderr());
    };
    using Result = std::pair<int, std::string>;
    EXPECT_EQ(statusAndText([] { return 7; }), Result(7, ""));
    EXPECT_EQ(statusAndText([]() -> int { throw UsageError("no"); }), Result(2, "Program: no\nUsage: …\n\n"));
    EXPECT_EQ(statusAndText([]() -> int { throw std::runtime_error("broken"); }), Result(1, "Program: broken\n"));
    const auto error = std::filesystem::filesystem_error("", "a file", std::make_error_code(std::errc::io_error));
    EXPECT_EQ(statusAndText([&]() -> int { throw error; }),
              Result(2, "Program: cannot read \"a file\": " + error.code().message() + "\n"));
}

} // namespace
} // namespace Examples::CommandLineTests
