#include <AppKit/NSResponder.h>
#include <Foundation/Message.h>

namespace RVCore::NSResponderTests {
namespace {

TEST(NSResponder, AcceptsNoKeysUnlessASubclassSaysSo)
{
    const auto responder = make<NSResponder>();
    EXPECT_FALSE(responder->acceptsFirstResponder());
    EXPECT_FALSE(send(responder, "acceptsFirstResponder").as<bool>());
}

} // namespace
} // namespace RVCore::NSResponderTests
