#include "logfilerules.h"

#include <QtTest>

class tst_LogFileRules : public QObject
{
    Q_OBJECT

private slots:
    void names();
    void aFullDayKeepsItsFirstFileAndTheTwoLatest_data();
    void aFullDayKeepsItsFirstFileAndTheTwoLatest();
    void threeDaysAreKept_data();
    void threeDaysAreKept();
};

namespace {

const QDate kToday(2026, 3, 2);

} // namespace

void tst_LogFileRules::names()
{
    QCOMPARE(zr::logFileName(kToday, QString()), QStringLiteral("zrscreenLog20260302.txt"));
    QCOMPARE(zr::logFileName(kToday, zr::logFileSuffix(QTime(4, 5, 6, 999))),
             QStringLiteral("zrscreenLog20260302-040506.txt"));
    // Midnight is a suffix too: only the first file of the day has none.
    QCOMPARE(zr::logFileSuffix(QTime(0, 0)), QStringLiteral("000000"));
    QCOMPARE(zr::logFileSuffix(QTime(23, 59, 59)), QStringLiteral("235959"));
}

void tst_LogFileRules::aFullDayKeepsItsFirstFileAndTheTwoLatest_data()
{
    QTest::addColumn<QStringList>("names");
    QTest::addColumn<QStringList>("deleted");

    const QString first = QStringLiteral("zrscreenLog20260302.txt");
    const auto at = [](const char* time) {
        return QStringLiteral("zrscreenLog20260302-%1.txt").arg(QLatin1String(time));
    };
    QTest::newRow("none") << QStringList{} << QStringList{};
    QTest::newRow("three") << QStringList{at("090000"), first, at("080000")} << QStringList{};
    QTest::newRow("four") << QStringList{first, at("235959"), at("000000"), at("120000")}
                          << QStringList{at("000000")};
    QTest::newRow("six") << QStringList{at("110000"), at("090000"), first,
                                        at("130000"), at("100000"), at("120000")}
                         << QStringList{at("090000"), at("100000"), at("110000")};
    QTest::newRow("first file lost")
        << QStringList{at("110000"), at("090000"), at("130000"), at("120000")}
        << QStringList{at("090000")};
    QTest::newRow("others are not looked at")
        << QStringList{QStringLiteral("a.txt"),
                       QStringLiteral("zrscreenLog20260301.txt"),
                       QStringLiteral("zrscreenLog20260302.bak"),
                       QStringLiteral("ZRSCREENLOG20260302-1.TXT"),
                       first,
                       at("090000"),
                       at("100000")}
        << QStringList{};
}

void tst_LogFileRules::aFullDayKeepsItsFirstFileAndTheTwoLatest()
{
    QFETCH(const QStringList, names);
    QTEST(zr::fullDayLogsToDelete(names, kToday), "deleted");
}

void tst_LogFileRules::threeDaysAreKept_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("deleted");

    const auto row = [](const char* name, bool deleted) {
        QTest::newRow(name) << QString::fromLatin1(name) << deleted;
    };
    row("zrscreenLog20260302.txt", false);
    row("zrscreenLog20260228-235959.txt", false);
    // The day three days back: the end of February lies between.
    row("zrscreenLog20260227.txt", false);
    row("zrscreenLog20260227-000000.txt", true);
    row("zrscreenLog20260227-235959.txt", true);
    row("zrscreenLog20260226.txt", true);
    row("zrscreenLog20251231.txt", true);
    row("zrscreenLog20991231.txt", false); // a clock that was wrong
    row("zrscreenLog.txt", true);          // '.' sorts before digits
    row("zrscreenLogOld.txt", false);      // letters behind them
    row("zrscreenLog20200101.log", false);
    row("hostLog20200101.txt", false);
    row(".txt", false);
}

void tst_LogFileRules::threeDaysAreKept()
{
    QFETCH(const QString, name);
    QFETCH(const bool, deleted);
    QCOMPARE(zr::oldLogsToDelete({name}, kToday), deleted ? QStringList{name} : QStringList{});
    // Whatever lies beside it, and in ascending order.
    const QString old = QStringLiteral("zrscreenLog19991231.txt");
    const QString older = QStringLiteral("zrscreenLog19991231-235959.txt");
    const QStringList beside = zr::oldLogsToDelete({old, name, older}, kToday);
    QCOMPARE(beside.contains(name), deleted);
    QVERIFY(beside.indexOf(older) >= 0 && beside.indexOf(older) < beside.indexOf(old));
}

QTEST_APPLESS_MAIN(tst_LogFileRules)
#include "tst_logfilerules.moc"
