#include "Benchmarks.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <cstdlib>

namespace RVCore {

namespace {

constexpr int rounds = 15;

void writeSample(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        std::fprintf(stderr, "cannot write %s\n", qPrintable(path));
        std::exit(1);
    }
    file.write(R"({"contacts": [)");
    for (int i = 0; i < 25; ++i)
        file.write(QString(R"(%1{"name": "Person %2"})").arg(i == 0 ? "" : ", ").arg(i).toUtf8());
    file.write("]}");
}

} // namespace

// The whole of a program's start as its user waits for it: a process of its own, from its beginning until its window
// has been painted (off screen) and it has ended again.
void benchmarkApplication()
{
    const QTemporaryDir folder;
    const QString file = folder.filePath("people.json");
    writeSample(file);
    const double taken = nanoseconds(rounds, [&] {
        QProcess program;
        program.start(CONTACTS, {"--quit-after-first-frame", file});
        if (!program.waitForFinished() || program.exitStatus() != QProcess::NormalExit || program.exitCode() != 0) {
            std::fprintf(stderr, "%s does not run\n", CONTACTS);
            std::exit(1);
        }
    });
    report("app.first_frame_ms", taken / 1e6);
}

} // namespace RVCore
