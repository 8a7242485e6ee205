// What a trace calls the handles and windows of a host.
#pragma once

#include "exports.h"

#include <QByteArray>

#include <map>
#include <utility>

/// "s1", "p1", "p2", ...: a letter for the kind, and a number for each that came. A name stays that
/// of its handle when the handle has ended, until its address is given out again. Used by one
/// thread at a time.
class TraceNames
{
public:
    /// A name for a handle that is about to be made.
    [[nodiscard]] QByteArray next(zr::Kind kind);
    void give(zr::Kind kind, const void* handle, const QByteArray& name);
    /// "!null", and "!unknown" for one that has no name.
    [[nodiscard]] QByteArray of(zr::Kind kind, const void* handle) const;
    /// The kind and the name of the record that a host's messages are for; a screen that is being
    /// made has none yet.
    [[nodiscard]] std::pair<zr::Kind, QByteArray> receiver(const void* record) const;

    /// "none" for null; else the window's name, which it gets here.
    [[nodiscard]] QByteArray ofWindow(const void* window);
    /// The window in which the handle's own is.
    void putInto(zr::Kind kind, const void* handle, const void* window);
    [[nodiscard]] const void* windowOf(zr::Kind kind, const void* handle) const;

private:
    struct Named
    {
        QByteArray name;
        const void* window = nullptr;
    };
    using Key = std::pair<zr::Kind, const void*>;

    std::map<Key, Named> m_named;
    std::map<zr::Kind, int> m_count;
};
