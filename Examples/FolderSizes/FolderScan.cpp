#include <Dispatch/DispatchQueue.h>
#include <FolderSizes/FolderScan.h>
#include <FolderSizes/SizeText.h>

#include <algorithm>
#include <mutex>
#include <optional>
#include <variant>

namespace FolderSizes {

using namespace RVCore;

namespace {

constexpr double callInterval = 0.05; // seconds

using Problem = std::string;
using Result = std::variant<FolderListing, Problem>;

Result readFolder(const FolderReader& reader, const std::filesystem::path& folder, const FolderReading& reading)
{
    try {
        return reader(folder, reading);
    } catch (const std::filesystem::filesystem_error& error) {
        return "“" + displayName(error.path1().string()) + "” cannot be read: " + error.code().message();
    } catch (const std::exception& error) {
        return "“" + displayName(folder.string()) + "” cannot be read: " + error.what();
    }
}

} // namespace

// What goes from the thread to the main thread. The thread holds it, so that it is there for whatever the thread
// tells; the main queue does not, so that nothing is called once the scan is gone.
class FolderScan::Calls : public std::enable_shared_from_this<Calls> {
public:
    explicit Calls(Handlers handlers) : m_handlers(std::move(handlers)) {}

    // On the thread.
    void tell(const FolderProgress& progress)
    {
        DispatchTime time = DispatchTime::now();
        {
            const std::lock_guard lock(m_mutex);
            m_progress = progress;
            if (std::exchange(m_isOnItsWay, true))
                return;
            time = std::max(time, m_nextCall);
        }
        DispatchQueue::main().asyncAfter(time, [weak = weak_from_this()] {
            if (const auto self = weak.lock())
                self->callProgress();
        });
    }

    void end(Result result)
    {
        {
            const std::lock_guard lock(m_mutex);
            m_result = std::move(result);
        }
        DispatchQueue::main().async([weak = weak_from_this()] {
            if (const auto self = weak.lock())
                self->callEnd();
        });
    }

private:
    // On the main thread.
    void callProgress()
    {
        FolderProgress progress;
        {
            const std::lock_guard lock(m_mutex);
            m_isOnItsWay = false;
            m_nextCall = DispatchTime::now() + callInterval;
            if (m_result)
                return;
            progress = m_progress;
        }
        m_handlers.progress(progress);
    }

    void callEnd()
    {
        const Result& result = *m_result; // nobody changes it any more
        if (const auto* listing = std::get_if<FolderListing>(&result))
            m_handlers.finished(*listing);
        else
            m_handlers.failed(std::get<Problem>(result));
    }

    const Handlers m_handlers;
    std::mutex m_mutex; // for what follows
    FolderProgress m_progress;
    bool m_isOnItsWay = false; // the main queue holds a call
    DispatchTime m_nextCall = DispatchTime::now();
    std::optional<Result> m_result;
};

FolderScan::FolderScan(const std::filesystem::path& folder, Handlers handlers, const FolderReader& reader)
    : m_calls(std::make_shared<Calls>(std::move(handlers))),
      m_thread([calls = m_calls, folder, reader](const std::stop_token& stop) {
          const auto progress = [&](const FolderProgress& present) { calls->tell(present); };
          calls->end(readFolder(reader, folder, {.progress = progress, .stop = stop}));
      })
{
}

FolderScan::~FolderScan() = default;

void FolderScan::wait()
{
    if (m_thread.joinable())
        m_thread.join();
}

} // namespace FolderSizes
