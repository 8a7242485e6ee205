// Comparing what is drawn with a golden picture: a file of tests/widgets/golden that shows how it
// is to look.
//
//     QVERIFY(zrtest::useGoldenFont());                 // in initTestCase()
//     ZR_COMPARE_GOLDEN(widget.grab(), "picker_today"); // in the test
//
// A picture that differs is left in the build folder as NAME.actual.png, NAME.expected.png and
// NAME.difference.png. With ZR_UPDATE_GOLDENS=1 in the environment the goldens are written instead;
// look at them before committing. Windows smooths text another way: what does not look like the
// common golden there has one of its own, in golden/windows.
#pragma once

#include <QApplication>
#include <QDir>
#include <QFont>
#include <QFontDatabase>
#include <QImage>
#include <QPainter>
#include <QPixmap>
#include <QStyleFactory>
#include <QtTest>

#include <algorithm>

namespace zrtest {

/// Makes what is drawn independent of the machine: one style, one font (of the package
/// fonts-noto-cjk) also for the family names that the module asks for, no hinting, grey edges.
/// @return false where that font is missing
[[nodiscard]] inline bool useGoldenFont()
{
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    const QString family = QStringLiteral("Noto Sans CJK SC");
    for (const char* asked : {"微软雅黑", "Microsoft YaHei"})
        QFont::insertSubstitution(QString::fromUtf8(asked), family);
    QFont font(family);
    font.setPixelSize(14);
    font.setHintingPreference(QFont::PreferNoHinting);
    font.setStyleStrategy(
        static_cast<QFont::StyleStrategy>(QFont::PreferAntialias | QFont::NoSubpixelAntialias));
    QApplication::setFont(font);
    const bool found = QFontDatabase().families().contains(family);
    if (!found)
        qWarning("the package fonts-noto-cjk is not installed");
    return found;
}

/// Each pixel becomes the mean of the nine around it: a glyph whose edges were smoothed another way
/// keeps its mean, one that moved by a pixel does not.
inline QImage blurred(const QImage& source)
{
    QImage result(source.size(), QImage::Format_RGB32);
    result.fill(Qt::black);
    QPainter painter(&result);
    painter.setCompositionMode(QPainter::CompositionMode_Plus);
    painter.setOpacity(1.0 / 9);
    for (int i = 0; i < 9; ++i)
        painter.drawImage(i % 3 - 1, i / 3 - 1, source);
    return result;
}

/// How far each blurred pixel is off; black is not at all.
inline QImage difference(const QImage& actual, const QImage& expected)
{
    QImage result = blurred(actual);
    QPainter painter(&result);
    painter.setCompositionMode(QPainter::CompositionMode_Difference);
    painter.drawImage(0, 0, blurred(expected));
    return result;
}

/// Whether two pictures look the same.
[[nodiscard]] inline bool looksLike(const QImage& actual, const QImage& expected)
{
    constexpr int kTolerance = 15; // of 255, in any channel
    constexpr int kForgiven = 4;   // pixels
    if (actual.size() != expected.size())
        return false;
    const QImage off = difference(actual, expected);
    int pixels = 0;
    for (int y = 0; y < off.height(); ++y) {
        for (int x = 0; x < off.width(); ++x) {
            const QRgb by = off.pixel(x, y);
            pixels += std::max({qRed(by), qGreen(by), qBlue(by)}) > kTolerance ? 1 : 0;
        }
    }
    return pixels <= kForgiven;
}

inline QImage readGolden(const QString& file)
{
    return QImage(file).convertToFormat(QImage::Format_RGB32);
}

/// Compares a picture with the golden of that name, or writes it. @return what is wrong, empty when
/// nothing is
[[nodiscard]] inline QString compareGolden(const QPixmap& pixmap, const QString& name)
{
    const QImage actual = pixmap.toImage().convertToFormat(QImage::Format_RGB32);
    const QString common = QStringLiteral(ZR_GOLDEN_DIR "/%1.png").arg(name);
    const QString own = QStringLiteral(ZR_GOLDEN_OWN_DIR "/%1.png").arg(name);
    if (qEnvironmentVariableIntValue("ZR_UPDATE_GOLDENS") != 0) {
        if (own != common && looksLike(actual, readGolden(common))) {
            QFile::remove(own);
            return {};
        }
        QDir().mkpath(QStringLiteral(ZR_GOLDEN_OWN_DIR));
        return actual.save(own) ? QString() : QStringLiteral("%1 cannot be written").arg(own);
    }
    const QString file = QFile::exists(own) ? own : common;
    const QImage expected = readGolden(file);
    const bool same = looksLike(actual, expected);
    QDir().mkpath(QStringLiteral(ZR_GOLDEN_FAILURES));
    for (const auto& [kind, image] : {std::pair("actual", actual),
                                      {"expected", expected},
                                      {"difference", difference(actual, expected)}}) {
        const QString path = QStringLiteral(ZR_GOLDEN_FAILURES "/%1.%2.png").arg(name, kind);
        QFile::remove(path);
        if (!same && !image.isNull())
            image.save(path);
    }
    return same ? QString() : QStringLiteral("differs from %1, see " ZR_GOLDEN_FAILURES).arg(file);
}

} // namespace zrtest

/// Fails the test when a picture does not look like its golden.
#define ZR_COMPARE_GOLDEN(pixmap, name)                                                            \
    do {                                                                                           \
        const QString wrong = zrtest::compareGolden((pixmap), QString::fromUtf8(name));            \
        QVERIFY2(wrong.isEmpty(), qPrintable(wrong));                                              \
    } while (false)
