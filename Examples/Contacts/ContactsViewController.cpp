#include <Contacts/ContactFile.h>
#include <Contacts/ContactsViewController.h>

#include <utility>

namespace Contacts {

using namespace RVCore;

namespace {

constexpr CGFloat margin = 16;
constexpr CGFloat smallestFormWidth = 372;
constexpr CGFloat spacing = 8;

std::shared_ptr<NSView> makeLine(LayoutDimension thickness)
{
    auto line = make<RVSpacerView>(CGSize{1, 1});
    line->setContentHuggingPriority(RVLayoutPriorityDefaultLow, thickness == LayoutDimension::width
                                                                    ? NSLayoutConstraintOrientation::vertical
                                                                    : NSLayoutConstraintOrientation::horizontal);
    setBackgroundColor(*line, makeColor(0.5, 0.5, 0.5, 0.4));
    return line;
}

// What is wrong; empty when the file is written.
std::string problemOfWriting(const std::filesystem::path& path, const ContactList& list)
{
    try {
        writeContacts(path, list);
    } catch (const ContactFileError& error) {
        return error.what();
    }
    return {};
}

} // namespace

Class& ContactsViewController::staticClass()
{
    static Class& theClass = defineClass<ContactsViewController>("Contacts.ContactsViewController",
                                                                 NSViewController::staticClass(), [](auto&) {});
    return theClass;
}

void ContactsViewController::init(const std::shared_ptr<ContactDocument>& document)
{
    NSViewController::init();
    m_document = document;
}

void ContactsViewController::loadView()
{
    m_list = make<ContactListView>();
    m_list->setOnSelect([this](std::size_t contact) {
        m_document->select(contact);
        showDocument();
    });
    m_form = make<ContactForm>();
    m_form->setOnChange([this](const Contact& contact) {
        m_document->changeSelected(contact);
        showDocument();
    });
    m_form->setOnEditingEnd([this] {
        m_document->sort();
        showDocument();
    });
    makeStatus();
    makeQuestion();

    auto root = make<RVBaseView>();
    root->setTranslatesAutoresizingMaskIntoConstraints(false);
    const auto upright = makeLine(LayoutDimension::width);
    const auto level = makeLine(LayoutDimension::height);
    for (const std::shared_ptr<NSView>& part : RVGroupView::Views{m_list, upright, m_form, level, m_footer})
        root->addSubview(part);
    autoPinEdgeToSuperviewEdge(*m_list, LayoutEdge::left, margin);
    autoPinEdge(*upright, LayoutEdge::left, LayoutEdge::right, *m_list, margin);
    autoPinEdge(*m_form, LayoutEdge::left, LayoutEdge::right, *upright);
    autoPinEdgeToSuperviewEdge(*m_form, LayoutEdge::right);
    autoSetDimension(*m_form, LayoutDimension::width, smallestFormWidth, NSLayoutRelation::greaterThanOrEqual);
    autoPinEdgeToSuperviewEdge(*upright, LayoutEdge::top);
    autoPinEdge(*upright, LayoutEdge::bottom, LayoutEdge::top, *level);
    autoPinEdgeToSuperviewEdge(*m_list, LayoutEdge::top, margin);
    autoPinEdgeToSuperviewEdge(*m_form, LayoutEdge::top);
    autoPinEdge(*m_list, LayoutEdge::bottom, LayoutEdge::top, *level, -margin);
    autoPinEdge(*m_form, LayoutEdge::bottom, LayoutEdge::top, *level);
    for (const LayoutEdge edge : {LayoutEdge::left, LayoutEdge::right}) {
        autoPinEdgeToSuperviewEdge(*level, edge);
        autoPinEdgeToSuperviewEdge(*m_footer, edge, margin);
    }
    autoPinEdge(*m_footer, LayoutEdge::top, LayoutEdge::bottom, *level, spacing);
    autoPinEdgeToSuperviewEdge(*m_footer, LayoutEdge::bottom, spacing);
    setView(root);
    showDocument();
}

void ContactsViewController::makeStatus()
{
    m_status = makeLabel("");
    m_status->setIdentifier("status");
    m_status->setLineBreakMode(NSLineBreakMode::truncatingMiddle);
    m_status->setContentCompressionResistancePriority(RVLayoutPriorityDefaultLow,
                                                      NSLayoutConstraintOrientation::horizontal);
}

void ContactsViewController::makeQuestion()
{
    auto text = makeLabel("Save the changes before closing?");
    const auto makeAnswer = [](const std::string& title, const std::string& key, std::function<void()> closure) {
        auto button = makeButton({.title = title});
        button->setKeyEquivalent(key);
        button->setOnAction(std::move(closure));
        return button;
    };
    const auto close = [this] { view()->window()->close(); };
    const auto discard = makeAnswer("Discard", "", close);
    const auto cancel = makeAnswer("Cancel", NSKey::escape, [this] { endQuestion(); });
    m_saveAnswer = makeAnswer("Save", NSKey::carriageReturn, [this] {
        endQuestion();
        closeAfterSaving();
        save();
    });
    m_question = makeGroupView({text, discard, cancel, m_saveAnswer},
                               {.spacing = spacing, .resizePolicy = RVGroupView::ResizePolicy::leadingView});
    m_footer = makeGroupView({m_status, m_question}, {.orientation = RVGroupView::Orientation::vertical,
                                                      .spacing = spacing,
                                                      .alignment = RVGroupView::Edge::fillParent()});
    m_footer->setVisibility(m_question, false);
}

void ContactsViewController::askBeforeClosing()
{
    m_footer->setVisibility(m_question, true);
    NSWindow& window = *view()->window();
    if (window.firstResponder() != m_saveAnswer.get())
        m_interrupted = std::static_pointer_cast<NSResponder>(shared(*window.firstResponder()));
    window.makeFirstResponder(m_saveAnswer.get());
}

void ContactsViewController::endQuestion()
{
    view()->window()->makeFirstResponder(m_interrupted.lock().get());
    m_footer->setVisibility(m_question, false);
}

void ContactsViewController::addContact()
{
    m_document->add();
    showDocument();
    m_form->beginEditing();
}

void ContactsViewController::removeContact()
{
    m_document->removeSelected();
    showDocument();
}

void ContactsViewController::save()
{
    if (m_isSaving) {
        m_savesAgain = true;
        return;
    }
    m_isSaving = true;
    const auto list = m_document->copy();
    if (list->contacts.size() < largeListSize)
        return endSaving(list, problemOfWriting(m_document->path(), *list));
    coverForm();
    const std::weak_ptr self = std::static_pointer_cast<ContactsViewController>(shared(*this));
    m_writer = std::jthread([self, list, path = m_document->path()] {
        const std::string problem = problemOfWriting(path, *list);
        DispatchQueue::main().async([self, list, problem] {
            if (const auto kept = self.lock())
                kept->endSaving(list, problem);
        });
    });
}

void ContactsViewController::coverForm()
{
    showBlockingView(*m_form, {.title = "Saving", .message = m_document->path().filename().string()});
    // Keys that it takes from the form go on to the window, for its shortcuts.
    if (const auto cover = progressBlockingView(*m_form)) // who loses the keys may have taken it away
        setDisableEventPropagation(*cover, false);
}

void ContactsViewController::endSaving(const std::shared_ptr<const ContactList>& written, const std::string& problem)
{
    m_isSaving = false;
    const bool succeeded = problem.empty();
    if (succeeded)
        m_document->setSaved(written);
    if (std::exchange(m_savesAgain, false) && m_document->isModified())
        return save();
    hideBlockingView(*m_form);
    showDocument();
    if (!succeeded)
        showStatus(problem, true);
    else if (!m_document->isModified())
        showStatus(summary() + ", saved");
    if (std::exchange(m_closesAfterSaving, false) && succeeded)
        view()->window()->performClose();
}

void ContactsViewController::setPreferences(const Preferences& preferences)
{
    m_document->setPreferences(preferences);
    showDocument();
}

void ContactsViewController::showDocument()
{
    const auto selection = m_document->selection();
    m_list->show(*m_document);
    m_form->show(selection ? &m_document->contacts()[*selection] : nullptr);
    showStatus(summary() + (m_document->isModified() ? ", not saved" : ""));
    if (m_onChange)
        m_onChange();
}

void ContactsViewController::showStatus(const std::string& text, bool isProblem)
{
    m_status->setStringValue(text);
    m_status->setTextColor(isProblem ? makeColor(0.85, 0.2, 0.2) : grayColor());
}

std::string ContactsViewController::summary() const
{
    const std::size_t count = m_document->contacts().size();
    return std::to_string(count) + (count == 1 ? " contact" : " contacts");
}

} // namespace Contacts
