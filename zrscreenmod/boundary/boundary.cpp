#include "boundary.h"

#include "platform.h"

#include <atomic>
#include <cstdint>
#include <cstring>
#include <limits>

namespace boundary {

namespace {

std::atomic<bool> s_closed{false};

/// Length of a text, 0 for null, -1 with a log line when its memory cannot be read.
qptrdiff textLength(const char* text)
{
    if (!text)
        return 0;
    const qptrdiff length = platform::readableStringLength(text);
    if (length < 0) {
        qDebug() << "unreadable or overlong text refused:" << static_cast<const void*>(text);
        return -1;
    }
    return length;
}

/// Positions and sides up to here can be added without leaving an int.
constexpr std::int64_t kMaxExtent = std::numeric_limits<std::int32_t>::max() / 2;

int position(std::int32_t at)
{
    return static_cast<int>(qBound(-kMaxExtent, std::int64_t(at), kMaxExtent));
}

int span(std::int32_t from, std::int32_t to)
{
    return static_cast<int>(qBound(-kMaxExtent, std::int64_t(to) - from, kMaxExtent));
}

} // namespace

void closeForGood()
{
    s_closed = true;
}

bool isClosed()
{
    return s_closed;
}

std::optional<QString> readUtf8(const char* text)
{
    return guarded(std::optional<QString>(), [text] {
        const qptrdiff length = textLength(text);
        return length < 0 ? std::nullopt
                          : std::optional(QString::fromUtf8(text, static_cast<int>(length)));
    });
}

std::optional<QString> readLocal8Bit(const char* text)
{
    return guarded(std::optional<QString>(), [text] {
        const qptrdiff length = textLength(text);
        return length < 0 ? std::nullopt
                          : std::optional(QString::fromLocal8Bit(text, static_cast<int>(length)));
    });
}

std::optional<QRect> readRect(const tagRECT* pRect)
{
    std::int32_t edges[4]; // left, top, right, bottom on every system
    if (!platform::isReadable(pRect, sizeof edges)) {
        qDebug() << "unreadable rectangle refused:" << static_cast<const void*>(pRect);
        return std::nullopt;
    }
    std::memcpy(edges, pRect, sizeof edges);
    return QRect(position(edges[0]), position(edges[1]), span(edges[0], edges[2]),
                 span(edges[1], edges[3]));
}

std::optional<VantrelRTCVideoFrameQT> copyFrame(const void* pFrame)
{
    if (!platform::isReadable(pFrame, sizeof(VantrelRTCVideoFrameQT)))
        return std::nullopt;
    VantrelRTCVideoFrameQT frame;
    std::memcpy(&frame, pFrame, sizeof frame); // which may lie anywhere
    return frame;
}

std::optional<VantrelRTCVideoFrameQT> readFrame(const void* pFrame)
{
    const auto frame = copyFrame(pFrame);
    if (!frame)
        qDebug() << "IsBadReadPtr(pWin32Frame, sizeof(VantrelRTCVideoFrameQT)) failed";
    return frame;
}

bool isCallable(ZRNotify notify)
{
    if (!notify || platform::isReadable(reinterpret_cast<const void*>(notify), 1))
        return true;
    qDebug() << "unreadable notification function refused";
    return false;
}

bool isReadableInfo(const __WTMark_Info* info)
{
    if (!platform::isReadable(info, sizeof *info))
        return false;
    for (const std::string* text : {&info->name, &info->phone, &info->email}) {
        if (text->size() > platform::kMaxTextBytes
            || !platform::isReadable(text->data(), text->size() + 1))
            return false;
    }
    return true;
}

PersonPin resolvePlay(const ScreenRef& screen, void* pPlay, const char* deletedText)
{
    if (!pPlay) {
        qDebug() << "hPlay == nullptr failed";
        return {};
    }
    const tagPersonInfo* known = nullptr;
    quint64 serial = 0;
    switch (screen->findPlay(pPlay, &known, &serial)) {
    case PlayHandleState::Valid:
        break;
    case PlayHandleState::Deleted:
        qDebug() << deletedText;
        return {};
    case PlayHandleState::Unreadable:
        qDebug() << "IsBadReadPtr(pPlay, sizeof(ST_ZRPlayHdl)) failed";
        return {};
    case PlayHandleState::Foreign:
        qDebug() << "hPlay is no play handle of this screen failed";
        return {};
    }
    PersonPin person = QZRScreenConfig::getInstance()->livePersons.pin(known);
    // Another participant may have been given the address of the one that is gone.
    if (!person || person->serial != serial) {
        qDebug() << "IsBadReadPtr(pPlay->pPlayData, sizeof(ST_PersonInfo)) failed";
        return {};
    }
    return person;
}

void logException(const char* what)
{
    qDebug() << "exception stopped at the boundary:" << what;
}

void refreshAllTiles()
{
    const auto refresh = [] { emit QZRScreenConfig::getInstance()->sigRefreshPlayDlg(); };
    if (GuiThread::isCurrent())
        refresh();
    else
        GuiThread::post(refresh);
}

} // namespace boundary
