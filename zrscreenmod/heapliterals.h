// QStringLiteral for this library, which every source of it includes first: the text is copied.
// Qt's own leaves it in the library's memory, and a host that uses Qt itself would go on reading it
// there when the library has been unloaded: Qt keeps the names of fonts, pictures and settings.
#pragma once

#include <QString>

#include <cstddef>

namespace zr {

template<std::size_t kSize>
QString heapString(const char16_t (&text)[kSize])
{
    return QString(reinterpret_cast<const QChar*>(text), static_cast<int>(kSize - 1));
}

} // namespace zr

#undef QStringLiteral
#define QStringLiteral(text) zr::heapString(u"" text)
