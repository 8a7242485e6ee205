#include "subtitlerules.h"

#include <algorithm>

namespace zr {

namespace {

constexpr int kMaxSentenceUnits = 300000;
/// As near as the end of the content has to be for the list to follow it.
constexpr int kFollowReachPx = 10;

} // namespace

QString shownSentence(const QString& sentence)
{
    QString shown = sentence.left(kMaxSentenceUnits);
    shown.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    for (QChar& c : shown) {
        if (c == QLatin1Char('\n') || c == QLatin1Char('\r') || c == QChar::ParagraphSeparator)
            c = QChar::LineSeparator;
        else if (c.category() == QChar::Other_Control)
            c = QLatin1Char(' ');
    }
    return shown;
}

int subtitleTextLeft(const SubtitleMetrics& metrics)
{
    return metrics.leftPx + metrics.avatarPx + metrics.gapPx;
}

double subtitleTextTop(const SubtitleMetrics& metrics)
{
    return (metrics.avatarPx - metrics.lineHeightPx) / 2.0;
}

int subtitleLines(int textWidthPx, int roomPx)
{
    if (roomPx <= 0)
        return 1;
    return std::max(1, textWidthPx / roomPx + (textWidthPx % roomPx > 0 ? 1 : 0));
}

int subtitleItemHeight(int lines, const SubtitleMetrics& metrics)
{
    const qint64 height = qint64(lines) * metrics.lineSpacingPx + metrics.lineHeightPx * 3 / 2;
    return static_cast<int>(
        std::clamp(height, qint64(metrics.avatarPx), qint64(kMaxSubtitleItemPx)));
}

int repeatedIndex(int index, int count)
{
    const int rest = index % count;
    return rest < 0 ? rest + count : rest;
}

FollowStep followStep(int listPx, int newBottomPx, double positionPx, int oldContentPx)
{
    if (listPx > newBottomPx)
        return FollowStep::Fits;
    return listPx >= positionPx + oldContentPx - kFollowReachPx ? FollowStep::ToEnd
                                                                : FollowStep::Reading;
}

int scrollRange(int contentPx, int listPx)
{
    return std::max(0, contentPx - listPx);
}

QPointF scrolledPosition(const QPointF& contentPosition, const QPointF& overshoot)
{
    return {0, -contentPosition.y() - overshoot.y()};
}

} // namespace zr
