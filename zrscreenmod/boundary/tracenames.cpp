#include "tracenames.h"

namespace {

char letterOf(zr::Kind kind)
{
    switch (kind) {
    case zr::Kind::Screen:
        return 's';
    case zr::Kind::Play:
        return 'p';
    case zr::Kind::Ext:
        return 'e';
    case zr::Kind::LineEdit:
        return 'l';
    case zr::Kind::TextBox:
        return 'b';
    case zr::Kind::DatePicker:
        return 'd';
    default:
        return 'w';
    }
}

} // namespace

QByteArray TraceNames::next(zr::Kind kind)
{
    return letterOf(kind) + QByteArray::number(++m_count[kind]);
}

void TraceNames::give(zr::Kind kind, const void* handle, const QByteArray& name)
{
    if (handle)
        m_named[{kind, handle}] = {name};
}

QByteArray TraceNames::of(zr::Kind kind, const void* handle) const
{
    if (!handle)
        return "!null";
    const auto found = m_named.find({kind, handle});
    return found == m_named.end() ? QByteArray("!unknown") : found->second.name;
}

std::pair<zr::Kind, QByteArray> TraceNames::receiver(const void* record) const
{
    for (const zr::Kind kind : {zr::Kind::Screen, zr::Kind::Ext, zr::Kind::DatePicker}) {
        if (m_named.count({kind, record}) != 0)
            return {kind, of(kind, record)};
    }
    return {zr::Kind::Screen, "!unknown"};
}

QByteArray TraceNames::ofWindow(const void* window)
{
    if (!window)
        return "none";
    if (m_named.count({zr::Kind::Window, window}) == 0)
        give(zr::Kind::Window, window, next(zr::Kind::Window));
    return of(zr::Kind::Window, window);
}

void TraceNames::putInto(zr::Kind kind, const void* handle, const void* window)
{
    const auto found = m_named.find({kind, handle});
    if (found != m_named.end())
        found->second.window = window;
}

const void* TraceNames::windowOf(zr::Kind kind, const void* handle) const
{
    const auto found = m_named.find({kind, handle});
    return found == m_named.end() ? nullptr : found->second.window;
}
