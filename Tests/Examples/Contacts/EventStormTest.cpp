#include "ContactsDesktop.h"

#include <Platform/AppKit/EventStorm.h>

namespace Contacts::EventStormTests {
namespace {

class ContactsStorm : public ContactsDesktop, public testing::WithParamInterface<unsigned> {};

TEST_P(ContactsStorm, leavesTheProgramInOrder)
{
    std::vector<Contact> contacts(25);
    for (Contact& contact : contacts)
        contact.name = "somebody";
    open(contacts);
    const std::weak_ptr<RVCore::NSWindow> last = controller->window();
    RVCore::EventStorm(*desktop, GetParam()).run(25'000);
    readContacts(path); // whatever has been saved can be read
    window().close();
    controller.reset();
    settle();
    EXPECT_TRUE(last.expired()) << "nothing holds the window when it is closed";
}

INSTANTIATE_TEST_SUITE_P(Seeds, ContactsStorm, testing::Values(1U, 2U, 3U, 4U));

} // namespace
} // namespace Contacts::EventStormTests
