#include <Contacts/ColorText.h>

#include <array>
#include <cmath>
#include <cstdio>

namespace Contacts {

namespace {

constexpr double largestByte = 255;

int toByte(double component)
{
    return static_cast<int>(std::lround(component * largestByte));
}

} // namespace

RVCore::CGColor colorFromText(const std::string& text)
{
    const auto component = [&](std::size_t place) {
        return static_cast<double>(std::stoi(text.substr(place, 2), nullptr, 16)) / largestByte;
    };
    return {component(1), component(3), component(5), 1};
}

std::string textFromColor(const RVCore::CGColor& color)
{
    std::array<char, 8> text{};
    std::snprintf(text.data(), text.size(), "#%02x%02x%02x", static_cast<unsigned>(toByte(color.red)) & 0xffU,
                  static_cast<unsigned>(toByte(color.green)) & 0xffU,
                  static_cast<unsigned>(toByte(color.blue)) & 0xffU);
    return text.data();
}

} // namespace Contacts
