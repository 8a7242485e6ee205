// A user at the workbench: switches, the scenario that comes of them, and the way back.
#include "logtap.h"
#include "mainwindow.h"
#include "screencapture.h"
#include "screenview.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QDockWidget>
#include <QPushButton>
#include <QTableView>
#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>
#include <iterator>

using namespace zrworkbench;

class TestWorkbench : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { qputenv("ZRSCREEN_LOG_DIR", QFile::encodeName(m_folder.path())); }

    void switchesBecomeAScenario()
    {
        LogTap log;
        MainWindow window(log, QStringLiteral(ZR_LIBRARY));
        QStringList failures;
        QStringList answers;
        QStringList messages;
        connect(&window.meeting(), &Meeting::happened, [&](const Event& event) {
            if (event.kind == Event::Kind::Failure)
                failures << event.text;
            else if (event.kind == Event::Kind::Answer)
                answers << event.text;
            else if (event.kind == Event::Kind::Message)
                messages << event.text;
        });
        window.show();
        window.beginMeeting(6);
        auto* const people = window.findChild<QTableView*>("participants");
        QTRY_COMPARE(people->model()->rowCount(), 6);
        auto* const figures = window.findChild<QTableView*>("statistics");
        QTRY_COMPARE(figures->model()->rowCount(), 6); // a second block has come

        // The picture keeps to its place when the window and its panels change.
        window.resize(1100, 700);
        QVERIFY(isFilled(window));
        window.findChild<QDockWidget*>("Participants")->hide();
        window.findChild<QDockWidget*>("Meeting")->hide();
        QVERIFY(isFilled(window));

        // Everything that can be switched is, and once back.
        for (int column = 1; column <= 4; ++column)
            QVERIFY(people->model()->setData(people->model()->index(2, column), Qt::Checked,
                                             Qt::CheckStateRole));
        for (int times = 0; times < 2; ++times) {
            for (QCheckBox* const box : window.findChildren<QCheckBox*>())
                box->click();
        }
        for (const char* const name : {"mode", "role", "network"}) {
            auto* const box = window.findChild<QComboBox*>(name);
            for (int i = box->count() - 1; i >= 0; --i) {
                if (!(box->model()->flags(box->model()->index(i, 0)) & Qt::ItemIsEnabled))
                    continue;
                box->setCurrentIndex(i);
                emit box->activated(i);
                QTest::qWait(20);
            }
        }
        for (QPushButton* const button : window.findChildren<QPushButton*>()) {
            if (!button->objectName().isEmpty())
                button->click(); // in the order of their making: who leaves is the last
            if (button->objectName().contains("ZRScreenDate_Init"))
                button->click(); // it opens again
        }
        QTRY_COMPARE(people->model()->rowCount(), 6); // one shares, one has left
        QCOMPARE(failures, QStringList());

        // What was done is a file, whose steps come to the same meeting.
        const QString file = m_folder.filePath("done.scenario");
        window.meeting().save(file);
        const std::size_t count = window.meeting().scenario().steps().size();
        window.openFile(file);
        QCOMPARE(window.meeting().scenario().steps().size(), count);
        QCOMPARE(window.meeting().session().people().size(), std::size_t(0));
        window.findChild<QAction*>("step")->trigger();
        QTRY_COMPARE(people->model()->rowCount(), 6);
        QCOMPARE(window.meeting().scenario().next(), std::size_t(1));
        window.findChild<QAction*>("playFast")->trigger();
        QTRY_VERIFY(!window.meeting().scenario().isPlaying());
        QCOMPARE(failures, QStringList());
        QCOMPARE(window.meeting().scenario().next(), count);
        QCOMPARE(window.meeting().session().people().size(), std::size_t(6));

        // A trace of two screens, in which a host value comes again in the next meeting.
        QFile trace(m_folder.filePath("two.trace"));
        QVERIFY(trace.open(QIODevice::WriteOnly) && trace.write(R"(trace
call s1=ZRScreen_Init w1 notify
call ZRScreen_MoveWindow s1 0,0,640,360 0
call p1=ZRScreen_AddPerson s1 ann Ann 0 0 7
expect s1 ZRMSG_PERSON_INFO_UPDATED p1 7
call s2=ZRScreen_Init w1 notify
call p2=ZRScreen_AddPerson s2 carl Carl 0 0 8
expect s1 ZRMSG_PERSON_INFO_UPDATED p2 8
expect s2 ZRMSG_PERSON_INFO_UPDATED p2 8
call ZRScreen_ExitMeeting s1
call ZRScreen_JoinMeetingFinish s1 on
call p3=ZRScreen_AddPerson s1 bob Bob 0 0 7
expect s1 ZRMSG_PERSON_INFO_UPDATED p3 7
expect s2 ZRMSG_PERSON_INFO_UPDATED p3 7
call ZRScreen_Release s2
expect s1 ZRMSG_VIDEO_SHOWN person 7
)") > 0);
        trace.close();
        window.openFile(trace.fileName());
        auto* const step = window.findChild<QAction*>("stepToChange");
        QTRY_VERIFY(step->isEnabled());
        answers.clear();
        const auto& scenario = window.meeting().scenario();
        while (scenario.next() < scenario.steps().size())
            step->trigger();
        QCOMPARE(window.meeting().session().people().size(), std::size_t(1));
        QTRY_VERIFY(!answers.isEmpty());
        QCOMPARE(answers.join('\n'), QStringLiteral("The messages are those of the trace."));
        QVERIFY2(messages.last().endsWith("hostValue=bob"), qPrintable(messages.join('\n')));
        QCOMPARE(failures, QStringList());
    }

private:
    /// Whether the module's picture reaches all corners of its view, which is black.
    bool isFilled(const QWidget& window) const
    {
        const auto* const view = window.findChild<ScreenView*>();
        const QString file = m_folder.filePath("view.png");
        return QTest::qWaitFor([&] {
            saveScreen(*view, file);
            const QImage seen(file);
            const QRect all = seen.rect();
            const QPoint corners[] = {all.topLeft(), all.topRight(), all.bottomLeft(),
                                      all.bottomRight()};
            return seen.size() == view->size()
                   && std::none_of(std::begin(corners), std::end(corners), [&](QPoint corner) {
                          return seen.pixelColor(corner) == Qt::black;
                      });
        });
    }

    QTemporaryDir m_folder;
};

QTEST_MAIN(TestWorkbench)
#include "tst_workbench.moc"
