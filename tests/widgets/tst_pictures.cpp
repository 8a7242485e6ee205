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
    void picturesAreWhatTheDrawingsGive_data();
    void picturesAreWhatTheDrawingsGive();
};

void TestPictures::everyDrawingIsAPicture()
{
    const QStringList drawings = baseNames(QStringLiteral(ZR_DRAWINGS), QStringLiteral("*.svg"));
    QVERIFY(!drawings.isEmpty());
    for (const char* folder : {":/pic", ":/pic4k"})
        QCOMPARE(baseNames(QLatin1String(folder), QStringLiteral("*")), drawings);
}

void TestPictures::picturesAreWhatTheDrawingsGive_data()
{
    QTest::addColumn<QString>("picture");
    QTest::addColumn<int>("scale");
    for (const QString& name : baseNames(QStringLiteral(ZR_DRAWINGS), QStringLiteral("*.svg"))) {
        QTest::addRow("%s", qPrintable(name)) << QStringLiteral(":/pic/%1.png").arg(name) << 1;
        QTest::addRow("%s 4k", qPrintable(name)) << QStringLiteral(":/pic4k/%1.png").arg(name) << 2;
    }
}

void TestPictures::picturesAreWhatTheDrawingsGive()
{
    QFETCH(QString, picture);
    QFETCH(int, scale);
    const QString drawing =
        QStringLiteral(ZR_DRAWINGS "/%1.svg").arg(QFileInfo(picture).completeBaseName());
    // Premultiplied: the colour of a transparent pixel counts for nothing.
    const QImage expected =
        renderDrawing(drawing, scale).convertToFormat(QImage::Format_ARGB32_Premultiplied);
    const QImage actual = QImage(picture).convertToFormat(QImage::Format_ARGB32_Premultiplied);
    QVERIFY(!expected.isNull());
    QCOMPARE(actual.size(), expected.size());
    qint64 sum = 0;
    for (int y = 0; y < expected.height(); ++y) {
        const uchar* a = actual.constScanLine(y);
        const uchar* b = expected.constScanLine(y);
        for (int i = 0; i < expected.width() * 4; ++i) {
            const int difference = qAbs(a[i] - b[i]);
            QVERIFY2(difference <= kTolerancePixel, qPrintable(QString::number(y)));
            sum += difference;
        }
    }
    const double mean = static_cast<double>(sum) / (expected.width() * expected.height() * 4);
    QVERIFY2(mean <= kToleranceMean, qPrintable(QString::number(mean)));
}

QTEST_APPLESS_MAIN(TestPictures)
#include "tst_pictures.moc"
