// Variables of the environment that are others for a moment.
#pragma once

#include <QByteArray>

#include <initializer_list>
#include <utility>
#include <vector>

/// Sets variables while it lives; a null value removes one. The environment is the process's: use
/// it where no other thread reads it.
class ScopedEnvironment
{
public:
    using Variables = std::vector<std::pair<const char*, QByteArray>>;

    explicit ScopedEnvironment(const Variables& variables)
    {
        for (const auto& [name, value] : variables) {
            m_before.emplace_back(name, qgetenv(name));
            set(name, value);
        }
    }
    ~ScopedEnvironment()
    {
        for (const auto& [name, value] : m_before)
            set(name, value);
    }
    Q_DISABLE_COPY(ScopedEnvironment)

private:
    static void set(const char* name, const QByteArray& value)
    {
        if (value.isNull())
            qunsetenv(name);
        else
            qputenv(name, value);
    }

    Variables m_before;
};

/// What takes away the variables that scale Qt programs, which people set for all of theirs. The
/// module's pixels are the host's, and those of the screen. Made anew each time: the library is
/// entered before its initialisers have run.
inline ScopedEnvironment::Variables withoutScaling()
{
    return {{"QT_SCALE_FACTOR", {}},
            {"QT_SCREEN_SCALE_FACTORS", {}},
            {"QT_AUTO_SCREEN_SCALE_FACTOR", {}},
            {"QT_ENABLE_HIGHDPI_SCALING", {}},
            {"QT_DEVICE_PIXEL_RATIO", {}}};
}
