#include "screenscale.h"

#include <QtTest>

class tst_ScreenScale : public QObject
{
    Q_OBJECT

private slots:
    void onlyTheWidthAbove3500IsHighResolution()
    {
        QVERIFY(!zr::isHighResolutionScreen(3500));
        QVERIFY(zr::isHighResolutionScreen(3501));
    }
    void scales()
    {
        QCOMPARE(zr::scaledSize(24, 2.0F, false), 24);
        QCOMPARE(zr::scaledSize(24, 2.0F, true), 48);
        QCOMPARE(zr::scaledSize(-7, 1.5F, true), -10); // truncates toward zero
        // The product rounds up to 7 in single precision and stays below it in double.
        QCOMPARE(zr::scaledSize(10, 0.7F, true), 7);
    }
};

QTEST_APPLESS_MAIN(tst_ScreenScale)
#include "tst_screenscale.moc"
