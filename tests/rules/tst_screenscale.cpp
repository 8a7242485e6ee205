#include "screenscale.h"

#include <QtTest>

class tst_ScreenScale : public QObject
{
    Q_OBJECT

private slots:
    void onlyTheWidthAbove3500IsHighResolution();
    void scaling_data();
    void scaling();
};

void tst_ScreenScale::onlyTheWidthAbove3500IsHighResolution()
{
    QVERIFY(!zr::isHighResolutionScreen(0));
    QVERIFY(!zr::isHighResolutionScreen(3500));
    QVERIFY(zr::isHighResolutionScreen(3501));
    QVERIFY(zr::isHighResolutionScreen(3840));
}

void tst_ScreenScale::scaling_data()
{
    QTest::addColumn<int>("base");
    QTest::addColumn<float>("factor");
    QTest::addColumn<bool>("highResolution");
    QTest::addColumn<int>("expected");

    QTest::newRow("ordinary screen") << 24 << 2.0F << false << 24;
    QTest::newRow("twice") << 24 << 2.0F << true << 48;
    QTest::newRow("truncates") << 7 << 1.5F << true << 10;
    QTest::newRow("truncates toward zero") << -7 << 1.5F << true << -10;
    // The product rounds up to 7 in single precision and stays below it in double.
    QTest::newRow("single precision") << 10 << 0.7F << true << 7;
    QTest::newRow("nothing") << 0 << 2.0F << true << 0;
}

void tst_ScreenScale::scaling()
{
    QFETCH(const int, base);
    QFETCH(const float, factor);
    QFETCH(const bool, highResolution);
    QTEST(zr::scaledSize(base, factor, highResolution), "expected");
}

QTEST_APPLESS_MAIN(tst_ScreenScale)
#include "tst_screenscale.moc"
