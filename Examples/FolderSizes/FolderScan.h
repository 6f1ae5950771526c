#pragma once

#include <Dispatch/DispatchTime.h>
#include <FolderSizes/FolderListing.h>

#include <functional>
#include <memory>
#include <thread>

namespace FolderSizes {

// What reads a folder: listFolder, or what a test puts in its place.
using FolderReader = std::function<FolderListing(const std::filesystem::path& folder, const FolderReading& reading)>;

// Reads a folder on a thread of its own, and tells on the main queue how far it has come and how it ended:
//
//     thread       reads ─┬─ reads ─┬─ reads ── reads ─┬─ ends
//                         ▼         ▼ latest counts    ▼
//     main queue       progress ····(0.05 s)··· progress  finished or failed
//
// There is never more than one progress call on its way, and at most twenty come in a second. After the end, and once
// the scan is gone, no call comes. Main thread only.
class FolderScan {
public:
    // A call may be the end of the scan.
    struct Handlers {
        std::function<void(const FolderProgress& progress)> progress;
        std::function<void(const FolderListing& listing)> finished; // also when it was stopped
        std::function<void(const std::string& problem)> failed;     // what was wrong with which path
    };

    // Begins at once.
    FolderScan(const std::filesystem::path& folder, Handlers handlers, const FolderReader& reader = &listFolder);
    // Stops, and waits for the thread.
    ~FolderScan();
    FolderScan(const FolderScan&) = delete;
    FolderScan& operator=(const FolderScan&) = delete;

    // What has been found until now comes as the listing.
    void stop() { m_thread.request_stop(); }
    // Until the thread has ended; what it has to tell is then in the main queue.
    void wait();

private:
    class Calls;

    std::shared_ptr<Calls> m_calls; // what waits in the main queue does not hold it
    std::jthread m_thread;
};

} // namespace FolderSizes
