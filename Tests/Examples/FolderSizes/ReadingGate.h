#pragma once

#include <FolderSizes/FolderScan.h>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <variant>
#include <vector>

namespace FolderSizes {

// Stands for the file system, and has the reading thread do what the test says. Stopped, a reader answers with an
// empty listing that says so. Calls from the test return when the thread has done it; finish and fail let it end.
class ReadingGate {
public:
    FolderReader reader()
    {
        return [this](const std::filesystem::path& folder, const FolderReading& reading) {
            return read(folder, reading);
        };
    }

    void report(const FolderProgress& progress) { tell(progress); }
    void finish(FolderListing listing) { tell(std::move(listing)); }
    void fail(const std::filesystem::path& path, std::errc problem) { tell(Failure{path, problem}); }
    // How many readings there have been, the one under way included.
    std::size_t count()
    {
        const std::lock_guard lock(m_mutex);
        return m_folders.size();
    }
    // The one that is being read; waits for the thread to begin.
    std::filesystem::path folder()
    {
        std::unique_lock lock(m_mutex);
        if (!m_changed.wait_for(lock, patience, [this] { return m_isReading; }))
            throw std::logic_error("nothing is being read");
        return m_folders.back();
    }

private:
    // The thread makes the exception itself: copies share what the standard library lets go of unseen.
    struct Failure {
        std::filesystem::path path;
        std::errc problem;
    };
    using Order = std::variant<FolderProgress, FolderListing, Failure>;

    static constexpr std::chrono::seconds patience{20}; // until the test gives up

    // Under the lock.
    struct Reading {
        explicit Reading(ReadingGate& gate) : owner(gate) { owner.m_isReading = true; }
        ~Reading() { owner.m_isReading = false; }
        ReadingGate& owner;
    };

    FolderListing read(const std::filesystem::path& folder, const FolderReading& reading)
    {
        std::unique_lock lock(m_mutex);
        const Reading now(*this);
        m_folders.push_back(folder);
        m_changed.notify_all();
        for (;;) {
            m_changed.wait(lock, reading.stop, [this] { return m_order.has_value(); });
            if (!m_order)
                return {.path = folder, .isStopped = true};
            const Order order = *std::exchange(m_order, std::nullopt);
            if (const auto* progress = std::get_if<FolderProgress>(&order))
                reading.progress(*progress);
            m_changed.notify_all();
            if (const auto* listing = std::get_if<FolderListing>(&order))
                return *listing;
            if (const auto* failure = std::get_if<Failure>(&order))
                throw std::filesystem::filesystem_error("", failure->path, std::make_error_code(failure->problem));
        }
    }

    void tell(Order order)
    {
        std::unique_lock lock(m_mutex);
        m_order = std::move(order);
        m_changed.notify_all();
        if (!m_changed.wait_for(lock, patience, [this] { return !m_order; }))
            throw std::logic_error("nothing is being read");
    }

    std::mutex m_mutex;
    std::condition_variable_any m_changed;
    std::optional<Order> m_order; // that the thread has not carried out
    std::vector<std::filesystem::path> m_folders;
    bool m_isReading = false;
};

} // namespace FolderSizes
