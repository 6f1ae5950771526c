#include <Common/CommandLine.h>

#include <charconv>
#include <cstdio>
#include <filesystem>

namespace Examples {

namespace {

template <class Number>
Number parseNumber(const std::string& option, const std::string& text, Number smallest, Number largest)
{
    Number number{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size() || !(number >= smallest && number <= largest)) {
        const auto digits = [](Number limit) { return std::to_string(static_cast<long long>(limit)); };
        throw UsageError(option + " takes a number from " + digits(smallest) + " to " + digits(largest) + ", not \"" +
                         text + "\"");
    }
    return number;
}

} // namespace

bool CommandLine::next()
{
    ++m_index;
    if (m_hasOptions && m_index < m_arguments.size() && argument() == "--") {
        m_hasOptions = false;
        ++m_index;
    }
    return m_index < m_arguments.size();
}

void CommandLine::refuse() const
{
    throw UsageError("there is no option " + argument());
}

const std::string& CommandLine::value()
{
    if (m_index + 1 >= m_arguments.size() || m_arguments[m_index + 1].empty())
        throw UsageError(argument() + " needs a value");
    return m_arguments[++m_index];
}

double CommandLine::number(double smallest, double largest)
{
    const std::string option = argument();
    return parseNumber(option, value(), smallest, largest);
}

std::size_t CommandLine::count(std::size_t smallest, std::size_t largest)
{
    const std::string option = argument();
    return parseNumber(option, value(), smallest, largest);
}

RVCore::Appearance CommandLine::appearance()
{
    const std::string option = argument();
    const std::string& text = value();
    if (text != "light" && text != "dark")
        throw UsageError(option + " takes light or dark, not \"" + text + "\"");
    return text == "dark" ? RVCore::Appearance::dark : RVCore::Appearance::light;
}

int fail(const std::string& program, int status, const std::string& problem)
{
    std::fprintf(stderr, "%s: %s\n", program.c_str(), problem.c_str());
    return status;
}

int runProgram(const std::string& program, const std::string& usage, const std::function<int()>& run)
{
    try {
        return run();
    } catch (const UsageError& error) {
        return fail(program, statusUsage, std::string(error.what()) + "\n" + usage);
    } catch (const std::filesystem::filesystem_error& error) {
        return fail(program, statusUsage,
                    "cannot read \"" + error.path1().string() + "\": " + error.code().message());
    } catch (const std::exception& error) {
        return fail(program, statusFailure, error.what());
    }
}

} // namespace Examples
