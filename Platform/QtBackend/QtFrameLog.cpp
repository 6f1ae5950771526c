#include <QtBackend/QtFrameLog.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <iomanip>
#include <memory>

namespace RVCore {

namespace {

using Clock = std::chrono::steady_clock;

const Clock::time_point programStart = Clock::now();

} // namespace

QtFrameLog* QtFrameLog::shared()
{
    static const std::unique_ptr<QtFrameLog> log = [] {
        const char* path = std::getenv("RVCORE_FRAME_LOG");
        return std::unique_ptr<QtFrameLog>(path && *path ? new QtFrameLog(path) : nullptr);
    }();
    return log.get();
}

double QtFrameLog::now()
{
    return std::chrono::duration<double>(Clock::now() - programStart).count();
}

QtFrameLog::QtFrameLog(const std::string& path) : m_file(path, std::ios::app)
{
    if (!m_file)
        std::fprintf(stderr, "RVCORE_FRAME_LOG: cannot write %s\n", path.c_str());
    m_file << std::fixed;
}

// Complete with every line, so that another program can follow it.
void QtFrameLog::add(double begin, double end, const std::string& title)
{
    m_file << std::setprecision(6) << begin << ' ' << std::setprecision(3) << (end - begin) * 1000 << ' ' << title
           << std::endl;
}

} // namespace RVCore
