// Random sequences of everything that can be done with overlays, beside a model of what has to be there. The seeds
// are fixed; a failure prints seed and step.

#include <Platform/AppKit/WindowTesting.h>
#include <Sources/Views/BlockingTesting.h>

#include <gmock/gmock.h>

#include <atomic>
#include <malloc.h>
#include <random>
#include <thread>

namespace RVCore::BlockingLawsTests {
namespace {

constexpr double fade = 0.3;
constexpr double shortest = 1.0;
constexpr double tolerance = 1e-6; // no two moments that matter are closer to each other

// Under a sanitizer each step takes many times as long.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr int stepCount = 1000;
#else
constexpr int stepCount = 10'000;
#endif

class Receiver : public NSObject {
    RVCORE_CLASS(Receiver)

public:
    void act() { ++count; }
    int count = 0;
};

Class& Receiver::staticClass()
{
    static Class& theClass = defineClass<Receiver>("BlockingLawsReceiver", NSObject::staticClass(),
                                                   [](auto& publish) { publish.method("act", &Receiver::act); });
    return theClass;
}

double now()
{
    return DispatchTime::now().seconds();
}

// A view that is covered and freed, and when the overlays that were over it have to be gone.
struct HostModel {
    std::shared_ptr<NSView> view = make<NSView>(CGRect(0, 0, 200, 100));
    bool isCovered = false;
    double start = 0;
    std::optional<std::string> title;
    std::vector<double> ends;

    std::size_t overlayCount() const
    {
        const double time = now() + tolerance;
        return static_cast<std::size_t>(std::ranges::count_if(ends, [&](double end) { return end > time; })) +
               (isCovered ? 1 : 0);
    }
    void show(const BlockingViewContent& content)
    {
        showBlockingView(*view, content);
        if (!isCovered)
            start = now();
        isCovered = true;
        title = content.title;
    }
    void hide()
    {
        hideBlockingView(*view);
        if (isCovered)
            ends.push_back(std::max(start + shortest, now()) + fade);
        isCovered = false;
    }
    void check() const
    {
        const auto overlay = progressBlockingView(*view);
        EXPECT_EQ(overlay != nullptr, isCovered);
        EXPECT_EQ(progressBlockingViewStartTime(*view).has_value(), isCovered);
        const auto overlays = overlaysIn(*view);
        EXPECT_EQ(overlays.size(), overlayCount());
        EXPECT_EQ(view->constraints().size(), 4 * overlays.size());
        if (!overlay)
            return;
        EXPECT_EQ(overlays.empty() ? nullptr : overlays.back(), overlay);
        EXPECT_EQ(overlay->title(), title);
    }
};

struct ItemModel {
    std::shared_ptr<NSToolbarItem> item;
    bool isComplete = false; // has target and action
    bool isSaved = false;
    bool isDisabled = false;
};

struct WindowModel {
    std::shared_ptr<NSWindow> window = make<NSWindow>(CGSize{300, 200});
    std::shared_ptr<Receiver> receiver = make<Receiver>();
    std::vector<ItemModel> items;
    bool isCovered = false;
    double end = std::numeric_limits<double>::infinity(); // of a cover that is on its way out
    std::optional<std::string> title;

    WindowModel() { window->setToolbar(make<NSToolbar>()); }

    bool isFree() const { return !isCovered || end <= now() + tolerance; }
    void settle()
    {
        if (!isCovered || !isFree())
            return;
        isCovered = false;
        end = std::numeric_limits<double>::infinity();
        for (ItemModel& item : items)
            item.isSaved = false;
    }
    void show(const BlockingViewContent& content)
    {
        settle();
        showBlockingView(*window, content);
        title = content.title;
        if (isCovered)
            return;
        isCovered = true;
        for (ItemModel& item : items)
            item.isSaved = item.isDisabled = item.isComplete;
    }
    void hide()
    {
        settle();
        hideBlockingView(*window);
        if (!isCovered)
            return;
        end = std::min(end, now() + fade);
        for (ItemModel& item : items)
            item.isDisabled = false;
    }
    void addItem(bool isComplete)
    {
        const auto item = make<NSToolbarItem>(std::string("item"));
        item->setAction("act");
        item->setTarget(isComplete ? receiver : nullptr);
        item->setEnabled(true);
        window->toolbar()->insertItem(item, window->toolbar()->items().size());
        items.push_back({.item = item, .isComplete = isComplete});
    }
    void removeItem(std::size_t index)
    {
        if (items.empty())
            return;
        index %= items.size();
        window->toolbar()->removeItem(index);
        items.erase(items.begin() + static_cast<std::ptrdiff_t>(index));
    }
    void check()
    {
        settle();
        const auto overlay = progressBlockingView(*window);
        EXPECT_EQ(overlay != nullptr, isCovered);
        const auto overlays = overlaysIn(*window->contentView());
        EXPECT_EQ(overlays.size(), isCovered ? 1 : 0);
        if (overlay) {
            EXPECT_EQ(overlays.empty() ? nullptr : overlays.front(), overlay);
            EXPECT_EQ(overlay->title(), title);
        }
        for (const ItemModel& item : items) {
            EXPECT_EQ(item.item->action().has_value(), !item.isDisabled);
            EXPECT_EQ(item.item->isEnabled(), !item.isDisabled);
            EXPECT_EQ(item.item->target() != nullptr, item.isComplete && !item.isDisabled);
        }
    }
};

class BlockingSequence {
public:
    BlockingSequence(unsigned seed, ManualDispatchClock& clock) : m_random(seed), m_clock(clock)
    {
        for (HostModel& host : m_hosts)
            m_window.window->contentView()->addSubview(host.view);
    }

    void step()
    {
        switch (pick(17)) {
        case 0:
        case 1:
        case 2:
        case 3:
            return advance();
        case 4:
        case 5:
            return anyHost().show(content());
        case 6:
        case 7:
            return anyHost().hide();
        case 8:
            return m_window.show(content());
        case 9:
            return m_window.hide();
        case 10:
            return resize();
        case 11:
            return moveHost();
        case 12:
            return pick(4) == 0 ? replaceHost() : changeOverlay();
        case 13:
            return pick(2) == 0 ? m_window.addItem(pick(2) == 0) : m_window.removeItem(pick(100));
        case 14:
            return fadeByHand();
        case 15:
            return work();
        default:
            return pick(8) == 0 ? replaceWindow() : m_window.window->layoutIfNeeded();
        }
    }

    void check()
    {
        for (const HostModel& host : m_hosts)
            host.check();
        m_window.check();
    }

    // Uncovers everything; nothing may be left.
    void finish()
    {
        for (HostModel& host : m_hosts)
            host.hide();
        m_window.hide();
        m_clock.advance(3);
        check();
        for (HostModel& host : m_hosts) {
            EXPECT_TRUE(host.view->subviews().empty());
            EXPECT_TRUE(host.view->constraints().empty());
        }
        for (const auto& overlay : m_seen)
            EXPECT_TRUE(overlay.expired());
        EXPECT_EQ(m_completionsCome, m_completionsDue);
        EXPECT_GT(m_completionsCome, 0);
        EXPECT_EQ(DispatchQueue::main().nextDeadline(), std::nullopt);
    }

private:
    unsigned pick(unsigned bound) { return std::uniform_int_distribution<unsigned>(0, bound - 1)(m_random); }
    HostModel& anyHost() { return m_hosts[pick(2)]; }
    BlockingViewContent content()
    {
        const auto text = [&]() -> std::optional<std::string> {
            return pick(3) == 0 ? std::nullopt : std::optional("text " + std::to_string(pick(5)));
        };
        return {.title = text(), .message = text(), .showProgress = pick(2) == 0};
    }

    // In parts of a second with which no end of a fade coincides.
    void advance()
    {
        constexpr std::array parts{0, 1, 3, 8, 19, 32, 64, 100};
        m_clock.advance(parts[pick(parts.size())] / 64.0);
    }
    void resize()
    {
        const CGSize size{100.0 + pick(300), 100.0 + pick(200)};
        if (pick(2) == 0)
            m_window.window->setContentSize(size);
        else
            anyHost().view->setFrameSize(size);
        m_window.window->layoutIfNeeded();
        for (const HostModel& host : m_hosts) {
            if (const auto overlay = progressBlockingView(*host.view); overlay && host.view->superview()) {
                EXPECT_EQ(overlay->frame(), host.view->bounds());
            }
        }
    }
    void moveHost()
    {
        const auto& view = anyHost().view;
        if (view->superview())
            view->removeFromSuperview();
        else
            m_window.window->contentView()->addSubview(view);
    }
    void replaceHost()
    {
        HostModel& host = anyHost();
        host.view->removeFromSuperview();
        host = HostModel();
        m_window.window->contentView()->addSubview(host.view);
    }
    void replaceWindow()
    {
        for (HostModel& host : m_hosts)
            host.view->removeFromSuperview();
        m_window = WindowModel();
        for (HostModel& host : m_hosts)
            m_window.window->contentView()->addSubview(host.view);
    }
    std::shared_ptr<RVProgressBlockingView> anyOverlay()
    {
        auto overlay = pick(3) == 0 ? progressBlockingView(*m_window.window) : progressBlockingView(*anyHost().view);
        if (overlay)
            m_seen.emplace_back(overlay);
        return overlay;
    }
    void changeOverlay()
    {
        if (const auto overlay = anyOverlay()) {
            overlay->setShowProgress(pick(2) == 0);
            overlay->setMessage(content().message);
            overlay->setMessageSpacing(pick(20));
        }
    }
    // A fade beside the others, at whose end something is shown or hidden.
    void fadeByHand()
    {
        const auto overlay = anyOverlay();
        if (!overlay)
            return;
        ++m_completionsDue;
        overlay->animateAlpha(pick(3) / 2.0, 0.1, [this, what = pick(4), which = pick(2), shown = content()] {
            ++m_completionsCome;
            HostModel& host = m_hosts[which];
            switch (what) {
            case 0:
                return host.show(shown);
            case 1:
                return host.hide();
            case 2:
                return m_window.show(shown);
            default:
                return m_window.hide();
            }
        });
    }

    // A thread says how far it is and lets the overlay fade, while the main thread goes on. The clock stands
    // meanwhile, so that what comes of it is the same in every run.
    void work()
    {
        std::vector<BlockingViewContent> messages(1 + pick(5));
        std::ranges::generate(messages, [this] { return content(); });
        const auto overlay = anyOverlay(); // held here: it must not end on the thread
        if (overlay)
            ++m_completionsDue;
        std::atomic isDone = false;
        std::jthread worker([&, which = pick(2), covers = pick(2) == 0] {
            for (const BlockingViewContent& message : messages)
                DispatchQueue::main().async([this, which, covers, message] {
                    return covers ? m_hosts[which].show(message) : m_window.show(message);
                });
            if (overlay)
                overlay->animateAlpha(1, 0.1, [this] { ++m_completionsCome; });
            isDone = true;
        });
        while (!isDone)
            m_clock.advance(0);
        m_clock.advance(0);
    }

    std::mt19937 m_random;
    ManualDispatchClock& m_clock;
    std::array<HostModel, 2> m_hosts;
    WindowModel m_window;
    std::vector<std::weak_ptr<NSView>> m_seen;
    int m_completionsDue = 0;
    int m_completionsCome = 0;
};

class BlockingLaws : public WindowTest, public testing::WithParamInterface<unsigned> {};

TEST_P(BlockingLaws, aHostIsFreeOrCoveredAndNothingIsLeftBehind)
{
    BlockingSequence sequence(GetParam(), clock);
    for (int step = 0; step < stepCount; ++step) {
        sequence.step();
        sequence.check();
        ASSERT_FALSE(testing::Test::HasFailure()) << "seed " << GetParam() << ", step " << step;
    }
    sequence.finish();
}

INSTANTIATE_TEST_SUITE_P(Seeds, BlockingLaws, testing::Values(1U, 2U, 3U));

using BlockingGrowth = WindowTest;

TEST_F(BlockingGrowth, showingAndHidingAgainAndAgainLeavesNothing)
{
    const auto window = make<NSWindow>(CGSize{300, 200});
    const auto host = make<NSView>(CGRect(0, 0, 100, 100));
    window->contentView()->addSubview(host);
    window->setToolbar(make<NSToolbar>());
    const auto item = make<NSToolbarItem>(std::string("item"));
    const auto receiver = make<Receiver>();
    item->setAction("act");
    item->setTarget(receiver);
    window->toolbar()->insertItem(item, 0);
    const auto round = [&] {
        showBlockingView(*host, {.title = "Title"});
        showBlockingView(*window, {.title = "Title", .message = "message"});
        std::weak_ptr<NSView> overlay = progressBlockingView(*host);
        window->layoutIfNeeded();
        clock.advance(0.5);
        hideBlockingView(*host);
        hideBlockingView(*window);
        clock.advance(1);
        desktop->runPending(); // wake-ups, which a clock that stands still needs nobody to serve
        return overlay;
    };
    // The most bytes that are in use at the end of a round: tables of the layout engine grow and shrink in steps.
    const auto peakOfRounds = [&](int count) {
        std::size_t peak = 0;
        for (int i = 0; i < count; ++i) {
            EXPECT_TRUE(round().expired());
            peak = std::max<std::size_t>(peak, mallinfo2().uordblks);
        }
        return peak;
    };
    const std::size_t before = peakOfRounds(stepCount / 2);
    EXPECT_LT(peakOfRounds(stepCount / 2), before + 16'384);
    EXPECT_TRUE(host->subviews().empty());
    EXPECT_TRUE(host->constraints().empty());
    EXPECT_TRUE(host->layer()->sublayers().empty());
    EXPECT_EQ(window->contentView()->subviews().size(), 1);
    EXPECT_TRUE(window->contentView()->constraints().empty());
    EXPECT_EQ(progressBlockingView(*host), nullptr);
    EXPECT_EQ(progressBlockingView(*window), nullptr);
    EXPECT_EQ(DispatchQueue::main().nextDeadline(), std::nullopt);
    EXPECT_TRUE(item->isEnabled());
}

} // namespace
} // namespace RVCore::BlockingLawsTests
