// Figures of a meeting, where the environment asks for them.
#include "gallerytest.h"

#include "qdlgplayinfo.h"
#include "statistics.h"

using zrtest::hub;

namespace {

QStringList g_lines;

void collect(QtMsgType, const QMessageLogContext&, const QString& line)
{
    g_lines.append(line);
}

} // namespace

class TestStatistics : public QObject
{
    Q_OBJECT

private slots:
    void areLoggedAndShown()
    {
        qputenv("ZRSCREEN_STATS", "1");
        qputenv("ZRSCREEN_DEBUG_OVERLAY", "1");
        QZRScreenConfig::destroyInstance();
        zrtest::Meeting m(true);
        QVERIFY(Statistics::active());
        tagPersonInfo* ann = m.add("ann");
        m->setPreview(ann, true);
        const QSignalSpy sampled(Statistics::active(), &Statistics::sampled);
        const QtMessageHandler before = qInstallMessageHandler(collect);
        VantrelRTCVideoFrameQT bad{};
        QVERIFY(m.play(ann) && m.play(ann) && !m->playFrame(ann, &bad));
        QTRY_VERIFY(!g_lines.filter("stats: 1 participants").isEmpty());
        qInstallMessageHandler(before);
        QCOMPARE(g_lines.filter("stats ann: in 2.0/s, refused 1, painted").size(), 1);
        QCOMPARE(ann->iFramesPerS, 2);
        QVERIFY(ann->pWidget->playInfo()->state().resolution.endsWith("2 fps, grade 4, open"));
        qunsetenv("ZRSCREEN_STATS");
        qunsetenv("ZRSCREEN_DEBUG_OVERLAY");
    }

    void nobodyAsks()
    {
        QZRScreenConfig::destroyInstance();
        (void)hub();
        QVERIFY(!Statistics::active());
    }
};

ZR_WIDGET_TEST_MAIN(TestStatistics)
#include "tst_statistics.moc"
