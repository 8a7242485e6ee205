// The texts that are made of a participant's name.
#pragma once

#include <QString>
#include <QStringList>

#include <functional>

namespace zr {

/// The initials shown in a participant's avatar: of a name with wide characters the last two; of
/// one with letters but no digits the first two, of one with digits but no letters the last two;
/// of a mixed name the first. Letters are shown in upper case. Empty for an empty name.
QString shortName(const QString& userName);

/// Pixels that a text takes in one line at a pixel size.
using TextWidth = std::function<int(const QString& text, int fontPx)>;

/// A name as it can be shown in one line: line breaks and control characters become spaces, and
/// white space around them goes; half a surrogate pair becomes the replacement character; marks
/// that would turn the direction of what follows the name go; no longer than 256 code units.
QString displayName(const QString& userName);

/// The start of a name that fits, marked as cut, and the suffix, which is never cut. A character
/// is never cut in half, nor parted from its accents.
/// @return the whole name where it fits; the suffix alone where not even one character fits, and
/// nothing where that does not fit either
QString cutName(const QString& name, const QString& suffix, int roomPx, int fontPx,
                const TextWidth& width);

/// At most the first `count` characters of a name, marked as cut where there are more.
QString firstCharacters(const QString& name, int count);

/// The last lines of a text that is broken to a width, as captions roll: the breaks stay where they
/// are while the text grows. Line breaks of the text's own are kept.
QStringList lastLines(const QString& text, int lines, int roomPx, int fontPx,
                      const TextWidth& width);

} // namespace zr
