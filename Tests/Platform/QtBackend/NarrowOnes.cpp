#include <Backend/Backend.h>
#include <Platform/QtBackend/NarrowOnes.h>

#include <QFile>
#include <QFontDatabase>
#include <QRawFont>

namespace RVCore {

namespace {

// DejaVu Sans under another name.
QByteArray fontWithNarrowOne(const QByteArray& original)
{
    QByteArray data = original;
    const auto number = [&](qsizetype offset, int bytes) {
        quint32 value = 0;
        for (int i = 0; i < bytes; ++i)
            value = value << 8 | static_cast<quint8>(data[offset + i]);
        return value;
    };
    const auto table = [&](const char* tag) {
        for (quint32 i = 0; i < number(4, 2); ++i) {
            if (data.mid(12 + 16 * i, 4) == tag)
                return static_cast<qsizetype>(number(12 + 16 * i + 8, 4));
        }
        return qsizetype(0);
    };
    const quint32 glyph = QRawFont(original, 16).glyphIndexesForString("1").first();
    const qsizetype advance = table("hmtx") + 4 * static_cast<qsizetype>(glyph);
    const quint32 half = number(advance, 2) / 2;
    data[advance] = static_cast<char>(half >> 8);
    data[advance + 1] = static_cast<char>(half & 0xFF);
    // Names are in two encodings: one byte to a letter, and two.
    data.replace("DejaVu Sans", "Narrow Ones").replace("DejaVuSans", "NarrowOnes");
    const auto wide = [](const char* name) {
        QByteArray result;
        for (const char* letter = name; *letter; ++letter)
            result.append('\0').append(*letter);
        return result;
    };
    return data.replace(wide("DejaVu Sans"), wide("Narrow Ones"));
}

} // namespace

bool addNarrowOnes()
{
    Backend::shared();
    QFile file("/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf");
    return file.open(QIODevice::ReadOnly) &&
           QFontDatabase::addApplicationFontFromData(fontWithNarrowOne(file.readAll())) >= 0;
}

} // namespace RVCore
