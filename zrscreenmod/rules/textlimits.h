// What keeps the texts and patterns of a host from costing Qt more time, memory or stack than there
// is.
#pragma once

#include <QString>

namespace zr {

/// Whether QRegExp can build and match a pattern: it expands counted repetitions, those of groups
/// with all that is in them, and parses groups recursively. Groups up to 100 deep, 500 expanded
/// elements in a group that is repeated, and 2000 in all take a few seconds at worst, with texts
/// made for it.
[[nodiscard]] bool isAffordablePattern(const QString& pattern);

/// The text without halves of surrogate pairs, which a limit on the length leaves behind.
[[nodiscard]] QString withoutHalfCharacters(const QString& text);

/// Whether a text has more than 4000 characters on end that offer no place for a line break: Qt
/// looks for one from the start of each line to the end of the word.
[[nodiscard]] bool hasEndlessWord(const QString& text);

} // namespace zr
