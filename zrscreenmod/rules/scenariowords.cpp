#include "scenariowords.h"

#include <QString>

#include <algorithm>

namespace zr {

namespace {

/// What neither a line nor a reader can have; also what begins as one of the words that stand for
/// something else.
bool needsEncoding(const QByteArray& text)
{
    const auto isControl = [](char c) {
        return static_cast<unsigned char>(c) < 0x20 || static_cast<unsigned char>(c) == 0x7f;
    };
    return text.startsWith('!') || std::any_of(text.begin(), text.end(), isControl);
}

/// The text in UTF-8; null where the bytes are no text in their encoding.
QByteArray toUtf8(const QByteArray& bytes, TextEncoding encoding)
{
    const bool isUtf8 = encoding == TextEncoding::Utf8;
    const QString text = isUtf8 ? QString::fromUtf8(bytes) : QString::fromLocal8Bit(bytes);
    const QByteArray again = isUtf8 ? text.toUtf8() : text.toLocal8Bit();
    return again == bytes ? text.toUtf8() : QByteArray();
}

} // namespace

QByteArray quotedWord(const QByteArray& text)
{
    const auto isSpecial = [](char c) { return c == ' ' || c == '"'; };
    if (!text.isEmpty() && !text.startsWith('#')
        && std::none_of(text.begin(), text.end(), isSpecial))
        return text;
    QByteArray word = text;
    word.replace('\\', "\\\\").replace('"', "\\\"");
    return '"' + word + '"';
}

QByteArray textWord(const QByteArray& bytes, TextEncoding encoding)
{
    if (bytes.isEmpty())
        return quotedWord(bytes);
    const QByteArray text = toUtf8(bytes, encoding);
    if (text.isEmpty())
        return "!bytes:" + bytes.toPercentEncoding();
    return needsEncoding(text) ? "!text:" + text.toPercentEncoding() : quotedWord(text);
}

QByteArray listWord(const QByteArrayList& parts)
{
    const bool encoded = std::any_of(parts.begin(), parts.end(), [](const QByteArray& part) {
        return needsEncoding(part) || part.contains(',')
               || toUtf8(part, TextEncoding::Utf8) != part;
    });
    if (!encoded)
        return quotedWord(parts.join(','));
    QByteArray word;
    for (const QByteArray& part : parts)
        word += (word.isEmpty() ? "!list:" : ",") + part.toPercentEncoding("=");
    return word;
}

} // namespace zr
