// Pictures of how a widget is to look. They lie in tests/widgets/golden and are compared with what
// the widget draws now.
//
//     zrtest::useGoldenFont();                          // in initTestCase()
//     ZR_COMPARE_GOLDEN(widget.grab(), "picker_today"); // in the test
//
// A picture that differs is left in the build folder as NAME.actual.png, NAME.expected.png and
// NAME.difference.png. With ZR_UPDATE_GOLDENS=1 in the environment, or --update as an argument of
// the test program, the goldens are written instead; look at them before committing.
#pragma once

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFont>
#include <QFontDatabase>
#include <QImage>
#include <QPainter>
#include <QPixmap>
#include <QStyleFactory>
#include <QtTest>

#include <algorithm>
#include <array>
#include <cstdlib>

namespace zrtest {

constexpr char kGoldenFont[] = "Noto Sans CJK SC";

/// Makes what is drawn independent of the machine: one style, one font (of the package
/// fonts-noto-cjk) also for the family names that the module asks for, no hinting, grey edges.
/// @return false where that font is missing
[[nodiscard]] inline bool useGoldenFont()
{
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    const QString family = QString::fromLatin1(kGoldenFont);
    for (const char* asked : {"微软雅黑", "Microsoft YaHei"})
        QFont::insertSubstitution(QString::fromUtf8(asked), family);
    QFont font(family);
    font.setPixelSize(14);
    font.setHintingPreference(QFont::PreferNoHinting);
    font.setStyleStrategy(
        static_cast<QFont::StyleStrategy>(QFont::PreferAntialias | QFont::NoSubpixelAntialias));
    QApplication::setFont(font);
    return QFontDatabase().families().contains(family);
}

inline bool isGoldenUpdate()
{
    return qEnvironmentVariableIntValue("ZR_UPDATE_GOLDENS") != 0
           || QCoreApplication::arguments().contains(QStringLiteral("--update"));
}

namespace golden_detail {

/// Each pixel becomes the mean of the nine around it: a glyph whose edges were smoothed another way
/// keeps its mean, one that moved by a pixel does not.
inline QImage blurred(const QImage& source)
{
    const int lastX = source.width() - 1;
    const int lastY = source.height() - 1;
    const auto row = [&source, lastY](int y) {
        return reinterpret_cast<const QRgb*>(source.constScanLine(std::clamp(y, 0, lastY)));
    };
    QImage result(source.size(), QImage::Format_RGB32);
    for (int y = 0; y <= lastY; ++y) {
        const std::array<const QRgb*, 3> rows{row(y - 1), row(y), row(y + 1)};
        auto* target = reinterpret_cast<QRgb*>(result.scanLine(y));
        for (int x = 0; x <= lastX; ++x) {
            int red = 0;
            int green = 0;
            int blue = 0;
            for (const int at : {std::max(0, x - 1), x, std::min(lastX, x + 1)}) {
                for (const QRgb* pixels : rows) {
                    red += qRed(pixels[at]);
                    green += qGreen(pixels[at]);
                    blue += qBlue(pixels[at]);
                }
            }
            target[x] = qRgb(red / 9, green / 9, blue / 9);
        }
    }
    return result;
}

/// @return how many pixels differ to the eye; `difference` gets them in red on a dim copy.
inline int countDifferences(const QImage& actual, const QImage& expected, QImage* difference)
{
    constexpr int kTolerance = 20; // of 255, in any channel, after blurring
    const QImage a = blurred(actual);
    const QImage b = blurred(expected);
    *difference = QImage(actual.size(), QImage::Format_RGB32);
    int count = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QRgb p = a.pixel(x, y);
            const QRgb q = b.pixel(x, y);
            const int distance =
                std::max({std::abs(qRed(p) - qRed(q)), std::abs(qGreen(p) - qGreen(q)),
                          std::abs(qBlue(p) - qBlue(q))});
            const bool differs = distance > kTolerance;
            count += differs ? 1 : 0;
            const int dim = qGray(expected.pixel(x, y)) / 3;
            difference->setPixel(x, y, differs ? qRgb(255, 0, 0) : qRgb(dim, dim, dim));
        }
    }
    return count;
}

} // namespace golden_detail

/// Whether two pictures look the same. `difference` may be null.
[[nodiscard]] inline bool looksLike(const QImage& actual, const QImage& expected,
                                    QImage* difference = nullptr)
{
    constexpr int kForgiven = 4; // pixels
    if (actual == expected)
        return true;
    QImage unused;
    return actual.size() == expected.size()
           && golden_detail::countDifferences(actual, expected, difference ? difference : &unused)
                  <= kForgiven;
}

/// Compares a picture with the golden of that name, or writes it. @param ignored what may look
/// otherwise @return what is wrong, empty when nothing is
[[nodiscard]] inline QString compareGolden(const QPixmap& pixmap, const QString& name,
                                           const QVector<QRect>& ignored = {})
{
    QImage actual = pixmap.toImage().convertToFormat(QImage::Format_RGB32);
    const QString file = QStringLiteral(ZR_GOLDEN_DIR "/%1.png").arg(name);
    if (isGoldenUpdate())
        return actual.save(file) ? QString() : QStringLiteral("%1 cannot be written").arg(file);
    QImage expected = QImage(file).convertToFormat(QImage::Format_RGB32);
    for (QImage* image : {&actual, &expected}) {
        QPainter painter(image);
        for (const QRect& rect : ignored)
            painter.fillRect(rect, Qt::black);
    }
    QImage difference;
    const QString left = QStringLiteral(ZR_GOLDEN_FAILURES "/%1.").arg(name);
    for (const char* kind : {"actual.png", "expected.png", "difference.png"})
        QFile::remove(left + QLatin1String(kind));
    if (looksLike(actual, expected, &difference))
        return {};
    QDir().mkpath(QStringLiteral(ZR_GOLDEN_FAILURES));
    actual.save(left + QStringLiteral("actual.png"));
    if (!expected.isNull())
        expected.save(left + QStringLiteral("expected.png"));
    if (!difference.isNull())
        difference.save(left + QStringLiteral("difference.png"));
    return QStringLiteral("differs from %1, see %2*.png").arg(file, left);
}

} // namespace zrtest

/// Fails the test when a picture does not look like its golden.
#define ZR_COMPARE_GOLDEN(pixmap, name)                                                            \
    do {                                                                                           \
        const QString wrong = zrtest::compareGolden((pixmap), QString::fromUtf8(name));            \
        QVERIFY2(wrong.isEmpty(), qPrintable(wrong));                                              \
    } while (false)
