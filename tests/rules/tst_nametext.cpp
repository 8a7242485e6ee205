#include "nametext.h"

#include <QtTest>

class TestNameText : public QObject
{
    Q_OBJECT

private slots:
    void initials_data();
    void initials();
};

void TestNameText::initials_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char* what, const QString& name, const QString& expected) {
        QTest::newRow(what) << name << expected;
    };
    row("wide", QStringLiteral("欧阳小明"), QStringLiteral("小明"));
    row("one wide character", QStringLiteral("明"), QStringLiteral("明"));
    row("wide wins over letters", QStringLiteral("小明ab"), QStringLiteral("ab"));
    row("the first wide character is U+00A0's neighbour", QStringLiteral("ab\u00A1"),
        QStringLiteral("b\u00A1"));
    row("letters", QStringLiteral("alice"), QStringLiteral("AL"));
    row("one letter", QStringLiteral("a"), QStringLiteral("A"));
    row("digits", QStringLiteral("12345"), QStringLiteral("45"));
    row("letters and digits", QStringLiteral("bob7"), QStringLiteral("B"));
    row("a digit first", QStringLiteral("7bob"), QStringLiteral("7"));
    row("white space around and inside", QStringLiteral("  a  b "), QStringLiteral("A "));
    row("empty", QString(), QString());
    row("only white space", QStringLiteral(" \t "), QString());
    row("no character is cut in half", QStringLiteral("\U0001F600张"),
        QStringLiteral("\U0001F600张"));
    row("neither letter nor digit nor wide", QStringLiteral("\u0081x"), QStringLiteral("\u0081X"));
}

void TestNameText::initials()
{
    QFETCH(QString, name);
    QFETCH(QString, expected);
    QCOMPARE(zr::shortName(name), expected);
}

QTEST_APPLESS_MAIN(TestNameText)
#include "tst_nametext.moc"
