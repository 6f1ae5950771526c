#pragma once

#include "ReadingGate.h"

#include <AppKit/NSAccessibility.h>
#include <Dispatch/ManualDispatchClock.h>
#include <FolderSizes/FolderWindowController.h>
#include <HeadlessBackend/HeadlessBackend.h>
#include <Sources/Views/BlockingTesting.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace FolderSizes {

inline FolderListing listingOf(const std::filesystem::path& path, std::size_t folderCount)
{
    FolderListing listing{.path = path};
    for (std::size_t i = 0; i < folderCount; ++i) {
        listing.entries.push_back(
            {.name = "folder " + std::to_string(i), .kind = EntryKind::folder, .size = 1000 - i});
        listing.totalSize += listing.entries.back().size;
    }
    listing.entries.push_back({.name = "file", .kind = EntryKind::file, .size = 1});
    ++listing.totalSize;
    return listing;
}

// The program on a headless desktop, with a user in front of it, and time and file system in the test's hand.
class FolderSizesDesktop : public testing::Test {
protected:
    FolderSizesDesktop()
    {
        auto owned = std::make_unique<RVCore::HeadlessBackend>();
        desktop = owned.get();
        RVCore::Backend::install(std::move(owned));
        controller = RVCore::make<FolderWindowController>(
            FolderWindowController::Settings{.folder = "/home/sample", .reader = gate.reader()});
    }
    ~FolderSizesDesktop() override
    {
        for (const auto& open : std::vector(RVCore::NSApplication::shared().windows()))
            open->close();
        controller.reset();
        RVCore::Backend::install(nullptr);
    }

    // The window with the folder's list in it, and nothing over that.
    void open(std::size_t folderCount = 3)
    {
        controller->showWindow(nullptr);
        finish(listingOf("/home/sample", folderCount));
        wait(2);
    }
    RVCore::NSWindow& window() { return *controller->window(); }
    RVCore::NSView& content() { return *window().contentView(); }
    RVCore::HeadlessWindow& screen() { return *desktop->visibleWindows().front(); }
    ListHost& host() { return dynamic_cast<ListHost&>(*content().subviews().at(0)); }
    EntryRow& row(std::size_t index) { return *controller->list()->rows().at(index); }
    RVCore::NSToolbarItem& item(std::size_t index) { return *window().toolbar()->items().at(index); }

    // Time goes by, and what is due by then happens and is painted.
    void wait(double seconds = 0)
    {
        clock.advance(seconds);
        desktop->flushFrames();
    }
    void report(const FolderProgress& progress)
    {
        gate.report(progress);
        wait(0.05);
    }
    void finish(const FolderListing& listing)
    {
        gate.finish(listing);
        awaitEnd();
    }
    void awaitEnd()
    {
        if (FolderScan* scan = controller->scan()) // it may have ended while the queue was served
            scan->wait();
        wait();
    }

    void type(const std::string& key, std::uint32_t modifiers = 0)
    {
        RVCore::InputEvent event{.kind = RVCore::InputKind::keyPressed, .modifiers = modifiers};
        event.characters = event.charactersIgnoringModifiers = key;
        screen().userInput(event);
        wait();
    }
    RVCore::CGPoint placeOf(RVCore::NSView& view)
    {
        const RVCore::CGRect bounds = view.bounds();
        const RVCore::CGPoint place = view.convertPointTo({bounds.midX(), bounds.midY()}, nullptr);
        return {place.x, window().areaSize().height - place.y};
    }
    void click(RVCore::CGPoint place, int count = 1)
    {
        for (int i = 0; i < count; ++i) {
            inputTime += count > 1 ? 0.1 : 10;
            screen().userInput({.kind = RVCore::InputKind::buttonPressed, .time = inputTime, .location = place});
            screen().userInput({.kind = RVCore::InputKind::buttonReleased, .time = inputTime, .location = place});
        }
        wait();
    }
    void scroll(RVCore::CGPoint place, RVCore::CGFloat amount)
    {
        screen().userInput({.kind = RVCore::InputKind::scrolled, .location = place, .scroll = {0, amount}});
        wait();
    }

    RVCore::ManualDispatchClock clock;
    ReadingGate gate;
    RVCore::HeadlessBackend* desktop = nullptr;
    std::shared_ptr<FolderWindowController> controller;
    double inputTime = 0; // seconds
};

} // namespace FolderSizes
