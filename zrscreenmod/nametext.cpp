#include "nametext.h"

#include <QVector>

#include <algorithm>

namespace zr {

QString shortName(const QString& userName)
{
    // Code points, so that a character outside the basic plane is not cut in half.
    const QVector<uint> name = userName.simplified().toUcs4();
    bool wide = false;
    bool digits = false;
    bool letters = false;
    for (const uint c : name) {
        if (c >= 0xA0)
            wide = true;
        else if (c >= '0' && c <= '9')
            digits = true;
        else if (c > 0 && c < 0x7F)
            letters = true;
    }
    const auto part = [&name](int first, int count) {
        return QString::fromUcs4(name.constData() + first, std::min(count, name.size() - first));
    };
    const int lastTwo = std::max(0, name.size() - 2);
    if (wide || (digits && !letters))
        return part(lastTwo, 2);
    return part(0, letters && !digits ? 2 : 1).toUpper();
}

} // namespace zr
