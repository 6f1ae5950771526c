#include "ContactsDesktop.h"

#include <Dispatch/ManualDispatchClock.h>
#include <Sources/Views/BlockingTesting.h>

#include <chrono>
#include <fstream>
#include <thread>

namespace Contacts::SavingTests {
namespace {

using namespace RVCore;
using testing::EndsWith;
using testing::HasSubstr;

constexpr std::size_t largeSize = ContactsViewController::largeListSize;
constexpr auto patience = std::chrono::seconds(60); // far more than saving takes on any machine

// A saving is under way until the main queue is served, however quick the thread was: so a test has time for what is
// to come meanwhile, and decides itself when it is over.
class Saving : public ContactsDesktop {
protected:
    ~Saving() override
    {
        if (isSaving())
            endSaving();
        clock.advance(2); // whatever lies over the form is gone
    }

    void openLarge(std::size_t size = largeSize)
    {
        {
            std::ofstream file(path);
            file << R"({"contacts": [{"name": "Ada"})";
            for (std::size_t i = 1; i < size; ++i)
                file << ", {}";
            file << "]}";
        }
        openFile();
        click(view("Favourite")); // something to save
        form = shared(view("form"));
    }
    void save() { press("s", InputModifier::command); }
    void saveFromToolbar() { EXPECT_TRUE(window().toolbar()->items()[2]->sendAction()); }
    void close()
    {
        window().performClose();
        desktop->runPending();
    }
    std::shared_ptr<RVProgressBlockingView> cover() const { return progressBlockingView(*form); }
    bool isSaving() const { return form && cover(); }
    template <class Condition> static void waitUntil(const Condition& condition)
    {
        const auto end = std::chrono::steady_clock::now() + patience;
        while (!condition()) {
            ASSERT_LT(std::chrono::steady_clock::now(), end) << "it takes too long";
            std::this_thread::yield();
        }
    }
    void endSaving()
    {
        waitUntil([this] {
            desktop->runPending();
            return !isSaving();
        });
    }
    // So that no file can take its name.
    void spoilFile() const
    {
        std::filesystem::remove(path);
        std::filesystem::create_directory(path);
    }
    bool isFavouriteInFile() const { return readContacts(path).contacts.front().isFavourite; }
    // Whether to save before closing.
    bool isAsking() { return view("Discard").canBeSeen(); }
    std::string status() { return field("status").stringValue(); }

    ManualDispatchClock clock;
    std::shared_ptr<NSView> form; // also when its window has died
};

TEST_F(Saving, ASmallListIsInTheFileAtOnceAndTheFormIsNotCovered)
{
    openLarge(largeSize - 1);
    save();
    EXPECT_FALSE(isSaving());
    EXPECT_THAT(status(), EndsWith(", saved"));
    EXPECT_TRUE(isFavouriteInFile());
}

TEST_F(Saving, ALargeListCoversTheFormForASecondAtLeast)
{
    openLarge();
    save();
    const auto overlay = cover();
    ASSERT_TRUE(overlay);
    EXPECT_EQ(overlay->title(), "Saving");
    EXPECT_EQ(overlay->message(), "people.json");
    EXPECT_TRUE(overlay->showProgress());
    EXPECT_TRUE(document->isModified()) << "until the file has it";
    endSaving();
    EXPECT_EQ(status(), std::to_string(largeSize) + " contacts, saved");
    EXPECT_FALSE(document->isModified());
    EXPECT_TRUE(isFavouriteInFile());
    EXPECT_EQ(readContacts(path).contacts.size(), largeSize);
    clock.advance(1.29);
    EXPECT_EQ(overlay->superview(), form.get());
    clock.advance(0.02);
    EXPECT_EQ(overlay->superview(), nullptr);
}

TEST_F(Saving, TheRestOfTheWindowAnswersMeanwhile)
{
    openLarge();
    save();
    button("row 1").performClick();
    EXPECT_EQ(document->selection(), 1U);
    saveFromToolbar();
    controller->newContact();
    EXPECT_EQ(document->contacts().size(), largeSize + 1);
    EXPECT_TRUE(isSaving());
    EXPECT_GT(desktop->flushFrames(), 0) << "it is drawn, too";
}

TEST_F(Saving, TheFormCannotBeChangedMeanwhile)
{
    openLarge();
    window().makeFirstResponder(&field("name"));
    save();
    press("z");
    EXPECT_FALSE(window().makeFirstResponder(&field("email")));
    EXPECT_EQ(document->contacts()[0].name, "Ada");
}

TEST_F(Saving, TheKeyboardFocusReturnsToWhereItWas)
{
    openLarge();
    window().makeFirstResponder(&field("name"));
    save();
    EXPECT_EQ(window().firstResponder(), cover().get());
    endSaving();
    clock.advance(1.31);
    EXPECT_EQ(window().firstResponder(), &field("name"));
    press("z");
    EXPECT_EQ(document->contacts()[0].name, "z");
}

TEST_F(Saving, ChangesThatAreMadeMeanwhileAreNotSavedAfterwards)
{
    openLarge();
    save();
    controller->deleteContact();
    endSaving();
    EXPECT_TRUE(document->isModified());
    EXPECT_EQ(status(), std::to_string(largeSize - 1) + " contacts, not saved");
    EXPECT_EQ(readContacts(path).contacts.size(), largeSize) << "as it was when Save was pressed";
}

TEST_F(Saving, AskedForAgainItFollowsWithWhatHasChangedSince)
{
    const std::function<void()> asks[] = {[this] { save(); }, [this] { saveFromToolbar(); }};
    openLarge();
    window().makeFirstResponder(&field("name")); // the cover has the keys then
    for (const auto& ask : asks) {
        save();
        controller->newContact();
        const std::size_t size = document->contacts().size();
        ask();
        ask();
        endSaving();
        EXPECT_FALSE(document->isModified());
        EXPECT_THAT(status(), EndsWith(", saved"));
        EXPECT_EQ(readContacts(path).contacts.size(), size);
    }
}

TEST_F(Saving, AskedForAgainWithoutAChangeItIsNotDoneTwice)
{
    openLarge();
    save();
    saveFromToolbar();
    waitUntil([this] { return std::filesystem::file_size(path) > largeSize * 20; }); // it has taken its place
    std::ofstream(path) << "{}";
    endSaving();
    controller->close();
    controller.reset(); // waits for whoever writes
    EXPECT_EQ(readContacts(path), ContactList());
}

TEST_F(Saving, AFailureIsShownAndLeavesTheListNotSaved)
{
    openLarge();
    spoilFile();
    save();
    endSaving();
    EXPECT_THAT(status(), HasSubstr("people.json\" cannot be saved: "));
    EXPECT_TRUE(document->isModified());
    clock.advance(1.31);
    EXPECT_TRUE(overlaysIn(*form).empty());

    std::filesystem::remove(path);
    save();
    endSaving();
    EXPECT_THAT(status(), EndsWith(", saved"));
    EXPECT_TRUE(isFavouriteInFile());
}

TEST_F(Saving, AskedForAgainItFollowsAFailureToo)
{
    openLarge();
    desktop->runPending();
    spoilFile();
    save();
    saveFromToolbar();
    // The first message is the fade of the cover, the second one is that it has failed.
    waitUntil([] { return DispatchQueue::main().dueCount() == 2; });
    std::filesystem::remove(path);
    endSaving();
    EXPECT_THAT(status(), EndsWith(", saved"));
    EXPECT_TRUE(isFavouriteInFile());
}

TEST_F(Saving, ClosingWaitsForIt)
{
    openLarge();
    save();
    close();
    EXPECT_TRUE(window().isVisible());
    EXPECT_FALSE(isAsking());
    endSaving();
    EXPECT_FALSE(window().isVisible());
    EXPECT_TRUE(isFavouriteInFile());
}

TEST_F(Saving, ClosingAsksForWhatHasChangedMeanwhile)
{
    openLarge();
    save();
    close();
    controller->newContact();
    endSaving();
    EXPECT_TRUE(window().isVisible());
    EXPECT_TRUE(isAsking());
}

TEST_F(Saving, TheWindowStaysOpenWhenItFails)
{
    openLarge();
    spoilFile();
    save();
    close();
    endSaving();
    EXPECT_TRUE(window().isVisible());
    EXPECT_THAT(status(), HasSubstr("cannot be saved"));

    std::filesystem::remove(path);
    save();
    endSaving();
    EXPECT_TRUE(window().isVisible()) << "closing was asked for once";
}

TEST_F(Saving, TheAnswerSaveClosesAfterSuccessOnly)
{
    openLarge();
    spoilFile();
    close();
    press(NSKey::carriageReturn); // Save
    EXPECT_TRUE(isSaving());
    endSaving();
    EXPECT_TRUE(window().isVisible());
    EXPECT_THAT(status(), HasSubstr("cannot be saved"));

    std::filesystem::remove(path);
    close();
    press(NSKey::carriageReturn);
    EXPECT_TRUE(window().isVisible());
    endSaving();
    EXPECT_FALSE(window().isVisible());
    EXPECT_TRUE(isFavouriteInFile());
}

TEST_F(Saving, AWindowThatGoesMeanwhileLeavesAWholeFile)
{
    openLarge();
    save();
    form = nullptr;
    const std::weak_ptr<NSWindow> last = controller->window();
    controller->close();
    controller.reset();
    document.reset();
    EXPECT_TRUE(isFavouriteInFile());
    EXPECT_EQ(readContacts(path).contacts.size(), largeSize);
    clock.advance(2);
    while (desktop->runPending()) {
    }
    EXPECT_TRUE(last.expired());
}

} // namespace
} // namespace Contacts::SavingTests
