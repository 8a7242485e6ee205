// A check box that stands for a command with "on" and "off".
#pragma once

#include <QCheckBox>
#include <QStringList>

namespace zrworkbench {

class Meeting;

/// It also follows the command when a scenario gives it, and is what it was made as when the
/// meeting begins anew.
class CommandSwitch : public QCheckBox
{
    Q_OBJECT

public:
    /// @param words of the command, without the last one: "on" or "off"
    CommandSwitch(Meeting& meeting, const QString& text, QStringList words, bool isOn = false);

private:
    void follow(const QStringList& words);

    const QStringList m_words;
};

} // namespace zrworkbench
