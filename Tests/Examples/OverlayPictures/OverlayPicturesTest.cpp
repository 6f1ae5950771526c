// Overlays over the windows of the example programs, at five moments of their fade. The pictures are left in the
// folder PICTURES for somebody to look at; what a test can say about them, it does.

#include <Contacts/ContactFile.h>
#include <Contacts/ContactsWindowController.h>
#include <Dispatch/ManualDispatchClock.h>
#include <Examples/TemporaryFolder.h>
#include <FolderSizes/FolderView.h>
#include <Platform/QtBackend/Offscreen.h>
#include <Sources/Views/BlockingTesting.h>

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <numbers>

namespace RVCore::OverlayPicturesTests {
namespace {

constexpr std::array moments{0.0, 0.075, 0.15, 0.225, 0.3}; // seconds since an overlay was put up; then it is there

std::shared_ptr<Contacts::ContactsWindowController> contactsWindow(const std::filesystem::path& file)
{
    return make<Contacts::ContactsWindowController>(std::make_shared<Contacts::ContactDocument>(file));
}

void writePeople(const std::filesystem::path& file, std::size_t count)
{
    using Contacts::ContactKind;
    Contacts::ContactList list;
    list.contacts = {
        {.name = "Ada Lovelace", .email = "ada@example.org", .phone = "+44 20 7946 0018", .isFavourite = true},
        {.name = "Grace Hopper", .email = "grace@example.org", .colour = "#4aa564"},
        {.name = "Difference & Sons",
         .email = "engine@example.org",
         .kind = ContactKind::company,
         .colour = "#d94848"},
        {.name = "Emmy Noether", .email = "emmy@example.org", .isFavourite = true, .colour = "#3b82d0"},
        {.name = "Sofia Kovalevskaya", .email = "sofia@example.org", .colour = "#e0a030"},
        {.name = "Hypatia", .email = "hypatia@example.org", .colour = "#9b59b6"},
    };
    list.contacts.resize(count);
    writeContacts(file, list);
}

std::shared_ptr<NSWindow> folderWindow()
{
    using FolderSizes::EntryKind;
    FolderSizes::FolderListing listing;
    listing.path = "/home/sample";
    listing.entries = {{.name = "Photographs", .kind = EntryKind::folder, .size = 61'000'000'000},
                       {.name = "Music", .kind = EntryKind::folder, .size = 23'000'000'000},
                       {.name = "Letters", .kind = EntryKind::folder, .size = 9'000'000'000},
                       {.name = "backup.tar", .kind = EntryKind::file, .size = 5'400'000'000},
                       {.name = "Recipes", .kind = EntryKind::folder, .size = 700'000'000},
                       {.name = "notes.txt", .kind = EntryKind::file, .size = 12'000}};
    for (const FolderSizes::Entry& entry : listing.entries)
        listing.totalSize += entry.size;
    const auto view = make<FolderSizes::FolderView>(listing, 20U);
    view->setFrameSize({760, 1}); // as high as its content
    view->layoutSubtreeIfNeeded();
    auto window = make<NSWindow>(view->frame().size);
    window->setContentView(view);
    return window;
}

NSView* find(NSView& view, const std::string& identifier)
{
    if (view.identifier() == identifier)
        return &view;
    for (const auto& subview : view.subviews())
        if (NSView* found = find(*subview, identifier))
            return found;
    return nullptr;
}

using Parameters = std::tuple<Appearance, int>; // and pixels to a point

class OverlayPictures : public testing::TestWithParam<Parameters> {
protected:
    OverlayPictures() { NSApplication::shared().setAppearance(std::get<Appearance>(GetParam())); }
    ~OverlayPictures() override { NSApplication::shared().setAppearance(std::nullopt); }

    static int scale() { return std::get<int>(GetParam()); }
    static QImage picture(NSWindow& window, const std::string& name)
    {
        const bool isDark = std::get<Appearance>(GetParam()) == Appearance::dark;
        const std::string path =
            std::string(PICTURES) + "/" + name + (isDark ? "-dark-" : "-light-") + std::to_string(scale()) + "x.png";
        window.writePicture(path, scale());
        return QImage(QString::fromStdString(path)).convertToFormat(QImage::Format_RGB32);
    }
    // Where the view is in a picture of its window. The content is at the bottom, below the toolbar.
    static QRect placeOf(const NSView& view, const QImage& picture)
    {
        const CGRect rect = view.convertRectTo(view.bounds(), nullptr);
        return QRectF(rect.minX() * scale(), picture.height() - rect.maxY() * scale(), rect.size.width * scale(),
                      rect.size.height * scale())
            .toAlignedRect();
    }
    // Pixels that nothing shines through: of the middle of a letter's stem.
    static int countOfFullTextPixels(const QImage& picture)
    {
        constexpr int darkGray = 85; // a third of 255
        int count = 0;
        for (int y = 0; y < picture.height(); ++y)
            for (int x = 0; x < picture.width(); ++x)
                count += picture.pixel(x, y) == qRgb(darkGray, darkGray, darkGray);
        return count;
    }

    // The pictures of the moments; each differs from the one before.
    std::vector<QImage> fade(NSWindow& window, const std::string& name)
    {
        std::vector<QImage> pictures;
        for (const double moment : moments) {
            clock.advance(moment - (pictures.empty() ? 0 : moments[pictures.size() - 1]));
            pictures.push_back(picture(window, name + "-" + std::to_string(pictures.size())));
            if (pictures.size() > 1) {
                EXPECT_GT(largestDifference(pictures.back(), pictures[pictures.size() - 2]), 8) << moment;
            }
        }
        return pictures;
    }
    // At the end the title is crisp and the spinner can be seen.
    static void look(NSWindow& window, const std::string& name, const std::vector<QImage>& pictures,
                     const RVProgressBlockingView& overlay)
    {
        const OverlayParts parts(overlay);
        const QImage& last = pictures.back();
        const QRect title = placeOf(parts.title, last);
        EXPECT_GT(countOfFullTextPixels(last.copy(title)), 100 * scale() * scale());
        EXPECT_LT(countOfFullTextPixels(pictures.front().copy(title)), 10);
        const QRect spinner = placeOf(parts.spinner, last);
        parts.spinner.setHidden(true);
        const QImage without = picture(window, name + "-without-spinner");
        parts.spinner.setHidden(false);
        EXPECT_GT(largestDifference(last.copy(spinner), without.copy(spinner)), 32) << "of 255";
    }

    ManualDispatchClock clock;
    Examples::TemporaryFolder folder;
};

TEST_P(OverlayPictures, OverTheWindowOfContacts)
{
    const auto file = folder.path() / "people.json";
    writePeople(file, 6);
    const auto controller = contactsWindow(file);
    NSWindow& window = *controller->window();
    const QImage free = picture(window, "contacts-0-free");
    showBlockingView(window, {.title = "Importing", .message = "1,204 of 5,000 contacts"});
    const auto pictures = fade(window, "contacts");
    const QRect content = placeOf(*window.contentView(), free);
    EXPECT_EQ(largestDifference(pictures[0].copy(content), free.copy(content)), 0)
        << "at first nothing is to be seen";
    look(window, "contacts", pictures, *progressBlockingView(window));
}

TEST_P(OverlayPictures, OverTheWindowOfFolderSizes)
{
    const auto window = folderWindow();
    const QImage free = picture(*window, "folders-0-free");
    showBlockingView(*window, {.title = "Reading", .message = "/home/sample/Photographs/2019"});
    const auto pictures = fade(*window, "folders");
    EXPECT_EQ(largestDifference(pictures[0], free), 0) << "at first nothing is to be seen";
    look(*window, "folders", pictures, *progressBlockingView(*window));
}

TEST_P(OverlayPictures, OverTheFormOfContactsWhileItSaves)
{
    const auto file = folder.path() / "people.json";
    writePeople(file, Contacts::ContactsViewController::largeListSize);
    const auto controller = contactsWindow(file);
    NSWindow& window = *controller->window();
    const NSView& form = *find(*window.contentView(), "form");
    const QImage free = picture(window, "saving-0-free");
    controller->save();
    const auto overlay = progressBlockingView(form);
    ASSERT_TRUE(overlay);
    const auto pictures = fade(window, "saving");
    look(window, "saving", pictures, *overlay);
    const QRect list = placeOf(*find(*window.contentView(), "list"), free);
    EXPECT_EQ(largestDifference(pictures.back().copy(list), free.copy(list)), 0) << "the rest is as it was";
}

using Component = int (*)(QRgb);

double meanOf(const QImage& picture, const QRect& rect, Component component)
{
    double sum = 0;
    for (int y = rect.top(); y <= rect.bottom(); ++y)
        for (int x = rect.left(); x <= rect.right(); ++x)
            sum += component(picture.pixel(x, y));
    return sum / (rect.width() * rect.height());
}

// A blur that takes what lies beyond the edges for black, white or nothing has a rim there: the two outermost rows
// and columns are others than those ten pixels further in. Over one colour they are the same, but for the step of a
// component by which a filter may round.
TEST_P(OverlayPictures, OverOneColourHaveNoRim)
{
    constexpr int thickness = 2;
    constexpr int distance = 10;
    const auto window = make<NSWindow>(CGSize{200, 160});
    for (const auto& [name, color] :
         {std::pair("window", clearColor()), std::pair("orange", makeColor(0.8, 0.5, 0.2)),
          std::pair("black", blackColor()), std::pair("white", makeColor(1, 1, 1))}) {
        const auto content = make<RVBaseView>();
        setBackgroundColor(*content, color);
        window->setContentView(content);
        showBlockingView(*content, {.showProgress = false});
        clock.advance(moments.back());
        const QImage covered = picture(*window, std::string("plain-") + name);
        const int width = covered.width();
        const int height = covered.height();
        const std::pair<QRect, QPoint> edges[] = {{{0, 0, width, thickness}, {0, distance}},
                                                  {{0, height - thickness, width, thickness}, {0, -distance}},
                                                  {{0, 0, thickness, height}, {distance, 0}},
                                                  {{width - thickness, 0, thickness, height}, {-distance, 0}}};
        for (const auto& [outer, inward] : edges)
            for (const Component component : {Component(&qRed), Component(&qGreen), Component(&qBlue)})
                EXPECT_NEAR(meanOf(covered, outer, component), meanOf(covered, outer.translated(inward), component),
                            1)
                    << name << ", the edge at " << outer.x() << ", " << outer.y();
    }
}

// A button that is white on its left half and black on its right one.
class HalvedButton : public NSButton {
public:
    void draw(Canvas& canvas, const CGRect&) override
    {
        const CGSize size = bounds().size;
        canvas.fill({{0, 0, size.width / 2, size.height}, 0}, {1, 1, 1, 1});
        canvas.fill({{size.width / 2, 0, size.width / 2, size.height}, 0}, {0, 0, 0, 1});
    }
};

// What is to be seen is the edge between the halves as a Gaussian of 8 points makes it, and nothing but that.
TEST_P(OverlayPictures, WithNothingToShowBlurAndBlock)
{
    const auto window = make<NSWindow>(CGSize{200, 60});
    const auto button = make<HalvedButton>();
    int clicks = 0;
    button->setOnAction([&] { ++clicks; });
    window->contentView()->addSubview(button);
    autoPinEdgesToSuperviewEdges(*button);
    window->orderFront();
    const auto click = [&] {
        for (const NSEventType type : {NSEventType::leftMouseDown, NSEventType::leftMouseUp}) {
            NSEventContent content;
            content.type = type;
            content.locationInWindow = {50, 30};
            window->sendEvent(*make<NSEvent>(content));
        }
    };
    click();
    ASSERT_EQ(clicks, 1);

    showBlockingView(*window, {.showProgress = false});
    clock.advance(moments.back());
    click();
    EXPECT_EQ(clicks, 1);
    const QImage covered = picture(*window, "nothing");
    for (int y = 0; y < covered.height(); ++y) {
        for (int x = 0; x < covered.width(); ++x) {
            const double distance = (x + 0.5) / scale() - 100; // from the middle, in points
            const double expected = 255 * 0.5 * std::erfc(distance / (8 * std::numbers::sqrt2));
            ASSERT_NEAR(qGreen(covered.pixel(x, y)), expected, 3) << x << ", " << y;
        }
    }
    window->close();
}

std::string nameOf(const testing::TestParamInfo<Parameters>& info)
{
    return (std::get<Appearance>(info.param) == Appearance::dark ? "dark" : "light") +
           std::to_string(std::get<int>(info.param)) + "x";
}

INSTANTIATE_TEST_SUITE_P(Looks, OverlayPictures,
                         testing::Combine(testing::Values(Appearance::light, Appearance::dark),
                                          testing::Values(1, 2)),
                         &nameOf);

} // namespace
} // namespace RVCore::OverlayPicturesTests
