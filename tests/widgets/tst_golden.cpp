// What a comparison with a golden picture catches, and what it forgives.
#include "golden.h"
#include "testsupport.h"

#include <QPainter>

class TestGolden : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { m_bFont = zrtest::useGoldenFont(); }
    void catchesWhatAPersonSees_data();
    void catchesWhatAPersonSees();

private:
    static QImage draw(const QPointF& icon, const QColor& text);
    bool m_bFont = false;
};

/// An icon and a word on the module's dark ground.
QImage TestGolden::draw(const QPointF& icon, const QColor& text)
{
    QImage image(160, 60, QImage::Format_RGB32);
    image.fill(QColor(32, 36, 44));
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(QColor(189, 189, 189), 1));
    painter.drawPolyline(QPolygonF({icon + QPointF(6, 0), icon, icon + QPointF(6, 6)}));
    painter.drawRoundedRect(QRectF(icon + QPointF(12.5, -5.5), QSizeF(20, 18)), 3, 3);
    painter.setPen(text);
    painter.drawText(60, 40, QStringLiteral("确定 18:30"));
    return image;
}

void TestGolden::catchesWhatAPersonSees_data()
{
    QTest::addColumn<QPointF>("icon");
    QTest::addColumn<QColor>("text");
    QTest::addColumn<bool>("same");
    const QColor grey(179, 179, 180);
    QTest::newRow("the same") << QPointF(20, 20) << grey << true;
    QTest::newRow("a tenth of a pixel") << QPointF(20.1, 20) << grey << true;
    QTest::newRow("a slightly other grey") << QPointF(20, 20) << QColor(190, 190, 190) << true;
    QTest::newRow("an icon moved by a pixel") << QPointF(21, 20) << grey << false;
    QTest::newRow("an icon moved down") << QPointF(20, 21) << grey << false;
    QTest::newRow("a greyed text") << QPointF(20, 20) << QColor(95, 95, 100) << false;
}

void TestGolden::catchesWhatAPersonSees()
{
    QVERIFY2(m_bFont, "the package fonts-noto-cjk is not installed");
    QFETCH(QPointF, icon);
    QFETCH(QColor, text);
    QFETCH(bool, same);
    const QImage golden = draw({20, 20}, QColor(179, 179, 180));
    QCOMPARE(zrtest::looksLike(draw(icon, text), golden), same);
    QVERIFY(!zrtest::looksLike(golden.copy(0, 0, 160, 59), golden));
}

ZR_WIDGET_TEST_MAIN(TestGolden)
#include "tst_golden.moc"
