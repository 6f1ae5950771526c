#pragma once

#include <Contacts/ContactFile.h>
#include <Contacts/ContactsWindowController.h>
#include <Examples/TemporaryFolder.h>
#include <HeadlessBackend/HeadlessBackend.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Contacts {

// The program on a headless desktop, and a user in front of it.
class ContactsDesktop : public testing::Test {
protected:
    ContactsDesktop()
    {
        auto owned = std::make_unique<RVCore::HeadlessBackend>();
        desktop = owned.get();
        RVCore::Backend::install(std::move(owned));
    }
    ~ContactsDesktop() override
    {
        for (const auto& open : std::vector(RVCore::NSApplication::shared().windows()))
            open->close();
        controller.reset();
        RVCore::Backend::install(nullptr);
    }

    void open(const std::vector<Contact>& contacts = {})
    {
        if (!contacts.empty())
            writeContacts(path, {.contacts = contacts});
        openFile();
    }
    void openFile()
    {
        document = std::make_shared<ContactDocument>(path);
        controller = RVCore::make<ContactsWindowController>(document);
        controller->showWindow(nullptr);
        settle();
    }
    RVCore::NSWindow& window() { return *controller->window(); }
    // The window that the user turned to last.
    RVCore::HeadlessWindow& front() { return *desktop->visibleWindows().front(); }
    void settle()
    {
        while (desktop->runPending() || desktop->flushFrames() > 0) {
        }
    }

    void type(const std::string& keys, std::uint32_t modifiers = 0)
    {
        press(keys, modifiers);
        settle();
    }
    // Without letting time go by for what follows from it.
    void press(const std::string& keys, std::uint32_t modifiers = 0)
    {
        RVCore::InputEvent event{.kind = RVCore::InputKind::keyPressed, .modifiers = modifiers};
        event.characters = keys;
        event.charactersIgnoringModifiers = keys;
        front().userInput(event);
    }
    void typeLetters(const std::string& text)
    {
        for (const char letter : text)
            type(std::string(1, letter));
    }
    void shortcut(const std::string& key) { type(key, RVCore::InputModifier::command); }

    // The first view with this name for assistive technology or this identifier, in the whole of a window.
    static RVCore::NSView* find(RVCore::NSView& view, const std::string& name)
    {
        if (view.identifier() == name || view.accessibilityLabel() == name)
            return &view;
        for (const auto& subview : view.subviews())
            if (RVCore::NSView* found = find(*subview, name))
                return found;
        return nullptr;
    }
    RVCore::NSView& view(const std::string& name)
    {
        RVCore::NSView* found = find(*RVCore::NSApplication::shared().keyWindow()->contentView(), name);
        if (!found)
            throw std::runtime_error("there is no view " + name);
        return *found;
    }
    RVCore::NSTextField& field(const std::string& name) { return dynamic_cast<RVCore::NSTextField&>(view(name)); }
    RVCore::NSButton& button(const std::string& name) { return dynamic_cast<RVCore::NSButton&>(view(name)); }
    void click(RVCore::NSView& target)
    {
        const RVCore::CGRect bounds = target.bounds();
        RVCore::CGPoint place = target.convertPointTo({bounds.midX(), bounds.midY()}, nullptr);
        RVCore::HeadlessWindow& screen = screenOf(*target.window());
        place.y = screen.contentSize().height - place.y;
        screen.userInput({.kind = RVCore::InputKind::pointerMoved, .location = place});
        screen.userInput({.kind = RVCore::InputKind::buttonPressed, .location = place});
        screen.userInput({.kind = RVCore::InputKind::buttonReleased, .location = place});
        settle();
    }

    Examples::TemporaryFolder folder;
    std::filesystem::path path = folder.path() / "people.json";
    RVCore::HeadlessBackend* desktop = nullptr;
    std::shared_ptr<ContactDocument> document;
    std::shared_ptr<ContactsWindowController> controller;

private:
    RVCore::HeadlessWindow& screenOf(const RVCore::NSWindow& target)
    {
        for (RVCore::HeadlessWindow* screen : desktop->windows())
            if (screen->title() == target.title() && screen->isVisible())
                return *screen;
        throw std::runtime_error("the window is not on the screen");
    }
};

} // namespace Contacts
