// Renders the drawings of this folder: DIR/drawings/NAME.svg to DIR/pic/NAME.png and, at twice the
// size, DIR/pic4k/NAME.png, and lists both in DIR/pictures.qrc.
#include "drawing.h"

#include <QDir>
#include <QFile>

#include <array>
#include <cstdio>

namespace {

struct Target
{
    const char* folder;
    int scale;
};

constexpr std::array<Target, 2> kTargets{{{"pic", 1}, {"pic4k", 2}}};
constexpr int kSmallestFile = 0; // as QImage::save takes it: the most compression

bool renderAll(const QDir& dir)
{
    QFile list(dir.filePath(QStringLiteral("pictures.qrc")));
    if (!list.open(QIODevice::WriteOnly))
        return false;
    list.write("<RCC>\n  <qresource prefix=\"/\">\n");
    const QDir drawings(dir.filePath(QStringLiteral("drawings")));
    for (const auto& [folder, scale] : kTargets) {
        dir.mkpath(QLatin1String(folder));
        for (const QFileInfo& drawing : drawings.entryInfoList({QStringLiteral("*.svg")})) {
            const QString picture =
                QStringLiteral("%1/%2.png").arg(QLatin1String(folder), drawing.completeBaseName());
            const QImage image = renderDrawing(drawing.filePath(), scale);
            if (!image.save(dir.filePath(picture), "PNG", kSmallestFile)) {
                std::fprintf(stderr, "%s cannot be rendered\n", qPrintable(drawing.filePath()));
                return false;
            }
            list.write(QStringLiteral("    <file>%1</file>\n").arg(picture).toUtf8());
        }
    }
    return list.write("  </qresource>\n</RCC>\n") > 0;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s DIR\n", argv[0]);
        return 2;
    }
    return renderAll(QDir(QString::fromLocal8Bit(argv[1]))) ? 0 : 1;
}
