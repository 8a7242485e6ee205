// The texts that are made of a participant's name.
#pragma once

#include <QString>

namespace zr {

/// The initials shown in a participant's avatar: of a name with wide characters the last two; of
/// one with letters but no digits the first two, of one with digits but no letters the last two;
/// of a mixed name the first. Letters are shown in upper case. Empty for an empty name.
QString shortName(const QString& userName);

} // namespace zr
