// The compiled-in pictures: each is what its drawing gives, in both sizes.
#include "drawing.h"

#include <QDir>
#include <QtTest>

namespace {

/// Another version of the renderer may smooth an edge otherwise: a few pixels may differ a lot,
/// all of them together only a little. In levels of 255.
constexpr int kTolerancePixel = 64;
constexpr double kToleranceMean = 1.0;

QStringList baseNames(const QString& folder, const QString& filter)
{
    QStringList names;
    for (const QFileInfo& file : QDir(folder).entryInfoList({filter}, QDir::Files, QDir::Name))
        names << file.completeBaseName();
    return names;
}

} // namespace

class TestPictures : public QObject
{
    Q_OBJECT

private slots:
    void everyDrawingIsAPicture();
    void picturesAreWhatTheDrawingsGive();
};

void TestPictures::everyDrawingIsAPicture()
{
    const QStringList drawings = baseNames(QStringLiteral(ZR_DRAWINGS), QStringLiteral("*.svg"));
    QVERIFY(!drawings.isEmpty());
    for (const char* folder : {":/pic", ":/pic4k"})
        QCOMPARE(baseNames(QLatin1String(folder), QStringLiteral("*")), drawings);
}

void TestPictures::picturesAreWhatTheDrawingsGive()
{
    for (const QString& name : baseNames(QStringLiteral(ZR_DRAWINGS), QStringLiteral("*.svg"))) {
        for (const int scale : {1, 2}) {
            const QString picture =
                QString(scale == 1 ? ":/pic/%1.png" : ":/pic4k/%1.png").arg(name);
            // Premultiplied: the colour of a transparent pixel counts for nothing.
            constexpr auto kFormat = QImage::Format_ARGB32_Premultiplied;
            const QImage expected =
                renderDrawing(ZR_DRAWINGS "/" + name + ".svg", scale).convertToFormat(kFormat);
            const QImage actual = QImage(picture).convertToFormat(kFormat);
            QVERIFY(!expected.isNull());
            QCOMPARE(actual.size(), expected.size());
            qint64 sum = 0;
            int most = 0;
            for (int y = 0; y < expected.height(); ++y) {
                for (int i = 0; i < expected.width() * 4; ++i) {
                    const int difference =
                        qAbs(actual.constScanLine(y)[i] - expected.constScanLine(y)[i]);
                    most = std::max(most, difference);
                    sum += difference;
                }
            }
            const double mean =
                static_cast<double>(sum) / (expected.width() * expected.height() * 4);
            QVERIFY2(most <= kTolerancePixel && mean <= kToleranceMean, qPrintable(picture));
        }
    }
}

QTEST_APPLESS_MAIN(TestPictures)
#include "tst_pictures.moc"
