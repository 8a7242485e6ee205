// Shared by the host's tests.
#pragma once

#include "host_error.h"

#include <QtTest>

/// @return the message of the HostError that `action` throws, empty when it throws none
template<typename Action>
QString failureOf(Action action)
{
    try {
        action();
    } catch (const zrhost::HostError& error) {
        return QString::fromStdString(error.what());
    }
    return {};
}

/// What is given, and what `make` is to turn it into. "! text" stands for a HostError with this
/// text in it.
template<typename Make>
void compareRows(const std::vector<std::pair<std::string, std::string>>& rows, Make make)
{
    for (const auto& [given, expectedText] : rows) {
        const QString expected = QString::fromStdString(expectedText);
        QString got;
        const QString failure = failureOf([&, text = given] { got = make(text); });
        const bool right = expected.startsWith(QLatin1String("! "))
                               ? failure.contains(expected.mid(2))
                               : failure.isEmpty() && got == expected;
        QVERIFY2(right, qPrintable(QString::fromStdString(given) + " became '" + got + failure
                                   + "' and not '" + expected + "'"));
    }
}
