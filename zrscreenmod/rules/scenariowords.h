// Words of the scenario language of the demonstration host: what a line of it is made of.
#pragma once

#include <QByteArray>
#include <QByteArrayList>

namespace zr {

enum class TextEncoding
{
    Utf8,
    Local8Bit
};

/// Blanks, quotes and nothing at all stand in quotes. @param text UTF-8 without control characters
[[nodiscard]] QByteArray quotedWord(const QByteArray& text);

/// A host's text as one word, UTF-8 and without a line end: `quotedWord`; or "!text:" and the text,
/// or "!bytes:" and the bytes of what is no text in its encoding, with `%` encoding.
[[nodiscard]] QByteArray textWord(const QByteArray& bytes, TextEncoding encoding);

/// Parts with commas between them as one word, UTF-8: as they are, or each with `%` encoding behind
/// "!list:".
[[nodiscard]] QByteArray listWord(const QByteArrayList& parts);

} // namespace zr
