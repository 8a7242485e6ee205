// The compiled-in pictures: each is what its drawing gives, in both sizes.
#include "drawing.h"

#include <QDir>
#include <QtTest>

namespace {

/// Another version of the renderer may smooth an edge otherwise: a few pixels may differ a lot,
/// all of them together only a little. In levels of 255.
constexpr int kTolerancePixel = 64;
constexpr double kToleranceMean = 1.0;

QStringList baseNames(const QString& folder)
{
    QStringList names;
    for (const QFileInfo& file : QDir(folder).entryInfoList(QDir::Files, QDir::Name))
        names << file.completeBaseName();
    return names;
}

/// Premultiplied: the colour of a transparent pixel counts for nothing.
QImage comparable(const QImage& image)
{
    return image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

} // namespace

class TestPictures : public QObject
{
    Q_OBJECT

private slots:
    void picturesAreWhatTheDrawingsGive()
    {
        const QStringList drawings = baseNames(QStringLiteral(ZR_DRAWINGS));
        QVERIFY(!drawings.isEmpty());
        for (const int scale : {1, 2}) {
            const QString folder = scale == 1 ? ":/pic" : ":/pic4k";
            QCOMPARE(baseNames(folder), drawings);
            for (const QString& name : drawings) {
                const QImage expected =
                    comparable(renderDrawing(ZR_DRAWINGS "/" + name + ".svg", scale));
                const QImage actual = comparable(QImage(folder + "/" + name + ".png"));
                QVERIFY(!expected.isNull());
                QCOMPARE(actual.size(), expected.size());
                qint64 sum = 0;
                int most = 0;
                for (qsizetype i = 0; i < expected.sizeInBytes(); ++i) {
                    const int off = qAbs(actual.constBits()[i] - expected.constBits()[i]);
                    most = std::max(most, off);
                    sum += off;
                }
                const double mean = double(sum) / double(expected.sizeInBytes());
                QVERIFY2(most <= kTolerancePixel && mean <= kToleranceMean, qPrintable(name));
            }
        }
    }
};

QTEST_APPLESS_MAIN(TestPictures)
#include "tst_pictures.moc"
