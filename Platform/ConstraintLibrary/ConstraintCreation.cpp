#include <AppKit/NSView.h>
#include <ConstraintLibrary/ConstraintCreation.h>

#include <iterator>

namespace RVCore {

namespace {

// One list serves all nested blocks: what a block created is the list's end from the place where the block began,
// so a constraint is in the result of every block around it.
struct OpenBlocks {
    LayoutConstraints created;
    std::size_t count = 0;
    std::size_t countWithoutInstalling = 0;
    std::optional<NSLayoutPriority> priority;
    std::optional<ShortName> identifier;
};

OpenBlocks& openBlocks()
{
    thread_local OpenBlocks blocks;
    return blocks;
}

// Opens a block and closes it again on every way out.
class BlockScope {
public:
    explicit BlockScope(const ConstraintBlockOptions& options)
        : m_blocks(openBlocks()), m_start(m_blocks.created.size()), m_outerPriority(m_blocks.priority),
          m_outerIdentifier(m_blocks.identifier), m_withoutInstalling(options.withoutInstalling)
    {
        ++m_blocks.count;
        m_blocks.countWithoutInstalling += m_withoutInstalling ? 1 : 0;
        if (options.priority)
            m_blocks.priority = options.priority;
        if (options.identifier)
            m_blocks.identifier = options.identifier;
    }

    ~BlockScope()
    {
        m_blocks.priority = m_outerPriority;
        m_blocks.identifier = m_outerIdentifier;
        m_blocks.countWithoutInstalling -= m_withoutInstalling ? 1 : 0;
        if (--m_blocks.count == 0)
            LayoutConstraints().swap(m_blocks.created); // which may have been a large one
    }

    BlockScope(const BlockScope&) = delete;
    BlockScope& operator=(const BlockScope&) = delete;

    LayoutConstraints created() const { return {start(), m_blocks.created.end()}; }

    // Taken out in the opposite order, so that the views' lists are as before at every step.
    void takeBack()
    {
        while (m_blocks.created.size() > m_start) {
            m_blocks.created.back()->setActive(false);
            m_blocks.created.pop_back();
        }
    }

private:
    LayoutConstraints::iterator start() const
    {
        return std::next(m_blocks.created.begin(), static_cast<std::ptrdiff_t>(m_start));
    }

    OpenBlocks& m_blocks;
    std::size_t m_start;
    std::optional<NSLayoutPriority> m_outerPriority;
    std::optional<ShortName> m_outerIdentifier;
    bool m_withoutInstalling;
};

} // namespace

void runConstraintBlock(const char* operation, const ConstraintBlockOptions& options,
                        const std::function<void()>& closure, LayoutConstraints* created)
{
    if (!closure)
        raiseInvalidArgument(operation, "there is no closure to run");
    BlockScope scope(options);
    try {
        closure();
    } catch (...) {
        scope.takeBack();
        throw;
    }
    if (created)
        *created = scope.created();
}

std::optional<NSLayoutPriority> constraintBlockPriority()
{
    return openBlocks().priority;
}

std::shared_ptr<NSLayoutConstraint> createConstraint(NSView& view, ShortName role, const ConstraintParts& parts)
{
    OpenBlocks& blocks = openBlocks();
    auto constraint = make<NSLayoutConstraint>(view, parts.attribute, parts.relation, parts.otherView,
                                               parts.otherAttribute, 1.0, parts.constant);
    constraint->setPriority(blocks.priority.value_or(NSLayoutPriorityRequired));
    constraint->setIdentifier(blocks.identifier.value_or(role));
    if (blocks.countWithoutInstalling == 0)
        constraint->setActive(true);
    view.setTranslatesAutoresizingMaskIntoConstraints(false);
    if (blocks.count > 0)
        blocks.created.push_back(constraint);
    return constraint;
}

} // namespace RVCore
