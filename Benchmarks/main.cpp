#include "Benchmarks.h"

#include <HeadlessBackend/HeadlessBackend.h>

#include <QApplication>

#include <cstring>
#include <limits>
#include <malloc.h>

// Benchmarks [part]: all parts, or the one that is named (messaging, engine, layout, samples,
// application, blur, overlay).
int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // The heap keeps what it has, as that of an application that has run for a while does: what is compared is
    // layout, not the kernel's handing out of fresh pages.
    mallopt(M_TRIM_THRESHOLD, std::numeric_limits<int>::max());
    mallopt(M_MMAP_THRESHOLD, std::numeric_limits<int>::max());
    const QApplication application(argc, argv);
    RVCore::Backend::install(std::make_unique<RVCore::HeadlessBackend>()); // layout costs the same without a desktop
    const auto isWanted = [&](const char* part) { return argc < 2 || std::strcmp(argv[1], part) == 0; };
    if (isWanted("messaging"))
        RVCore::benchmarkMessaging();
    if (isWanted("engine"))
        RVCore::benchmarkLayoutEngine();
    if (isWanted("layout"))
        RVCore::benchmarkGroupLayout();
    if (isWanted("samples"))
        RVCore::benchmarkLayoutSamples();
    if (isWanted("application"))
        RVCore::benchmarkApplication();
    if (isWanted("blur"))
        RVCore::benchmarkBlur();
    if (isWanted("overlay"))
        RVCore::benchmarkOverlay();
}
