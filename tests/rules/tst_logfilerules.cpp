#include "logfilerules.h"

#include <QtTest>

class tst_LogFileRules : public QObject
{
    Q_OBJECT

private slots:
    void names()
    {
        QCOMPARE(zr::logFileName(kToday, QString()), logFile(""));
        QCOMPARE(zr::logFileName(kToday, zr::logFileSuffix(QTime(4, 5, 6, 999))),
                 logFile("-040506"));
        // Midnight is a suffix too: only the first file of the day has none.
        QCOMPARE(zr::logFileSuffix(QTime(0, 0)), QStringLiteral("000000"));
    }

    void aFullDayKeepsItsFirstFileAndTheTwoLatest()
    {
        QStringList names{"a.txt", "zrscreenLog20260301.txt", "zrscreenLog20260302.bak",
                          "ZRSCREENLOG20260302-1.TXT"};
        QStringList deleted;
        const char* const added[] = {"-110000", "", "-090000", "-130000", "-100000", "-120000"};
        const char* const gone[] = {nullptr, nullptr, nullptr, "-090000", "-100000", "-110000"};
        for (int i = 0; i < 6; ++i) {
            names += logFile(added[i]);
            if (gone[i])
                deleted += logFile(gone[i]);
            QCOMPARE(zr::fullDayLogsToDelete(names, kToday), deleted);
        }
    }

    void threeDaysAreKept()
    {
        const QStringList kept{"zrscreenLog20260302.txt",
                               "zrscreenLog20260228-235959.txt",
                               "zrscreenLog20260227.txt", // three days back, over a month's end
                               "zrscreenLog20991231.txt", // a clock that was wrong
                               "zrscreenLogOld.txt",      // letters sort behind digits
                               "zrscreenLog20200101.log",
                               "hostLog20200101.txt",
                               ".txt"};
        const QStringList deleted{"zrscreenLog.txt", // '.' sorts before them
                                  "zrscreenLog20251231-235959.txt", "zrscreenLog20251231.txt",
                                  "zrscreenLog20260227-000000.txt"};
        QCOMPARE(zr::oldLogsToDelete(kept + deleted, kToday), deleted);
        QCOMPARE(zr::oldLogsToDelete({}, kToday), QStringList());
    }

private:
    static QString logFile(const char* suffix)
    {
        return QStringLiteral("zrscreenLog20260302%1.txt").arg(QLatin1String(suffix));
    }

    const QDate kToday{2026, 3, 2};
};

QTEST_APPLESS_MAIN(tst_LogFileRules)
#include "tst_logfilerules.moc"
