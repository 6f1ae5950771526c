#include <AppKit/NSResponder.h>
#include <AppKit/NSTrackingArea.h>
#include <Foundation/NSException.h>

#include <bit>

namespace RVCore {

namespace {

constexpr std::uint32_t tellingOptions = 0x07;
constexpr std::uint32_t activeOptions = 0xf0;
constexpr std::uint32_t knownOptions = 0x6f7;

void requireOptions(NSTrackingAreaOptions options)
{
    const auto bits = static_cast<std::uint32_t>(options);
    const char* operation = "NSTrackingArea.initWithRect:options:owner:userInfo:";
    if ((bits & ~knownOptions) != 0)
        raiseInvalidArgument(operation, "there are no options " + std::to_string(bits & ~knownOptions));
    if ((bits & tellingOptions) == 0)
        raiseInvalidArgument(operation, "the options name nothing to tell the owner");
    if (std::popcount(bits & activeOptions) != 1)
        raiseInvalidArgument(operation, "the options say " + std::to_string(std::popcount(bits & activeOptions)) +
                                            " times when the area is active");
}

} // namespace

Class& NSTrackingArea::staticClass()
{
    static Class& theClass =
        defineClass<NSTrackingArea>("NSTrackingArea", NSObject::staticClass(), [](auto& publish) {
            publish.initializer("initWithRect:options:owner:userInfo:",
                                [](NSTrackingArea& self, const CGRect& rect, NSTrackingAreaOptions options,
                                   NSResponder& owner, const Value&) { self.init(rect, options, owner); });
            publish.readOnlyProperty("rect", &NSTrackingArea::rect);
            publish.readOnlyProperty("options", &NSTrackingArea::options);
            publish.readOnlyProperty("owner", &NSTrackingArea::owner);
        });
    return theClass;
}

void NSTrackingArea::init(const CGRect& rect, NSTrackingAreaOptions options, NSResponder& owner)
{
    requireFinite("NSTrackingArea.initWithRect:options:owner:userInfo:", "rect", rect);
    requireOptions(options);
    m_rect = rect;
    m_options = options;
    m_owner = shared(owner);
}

} // namespace RVCore
