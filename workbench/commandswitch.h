// A check box that stands for two commands.
#pragma once

#include <QCheckBox>
#include <QStringList>

#include <functional>

namespace zrworkbench {

class Meeting;

/// It also follows the commands when a scenario gives them, and is what it was made as when the
/// meeting begins anew.
class CommandSwitch : public QCheckBox
{
    Q_OBJECT

public:
    /// The meeting must outlive it. @param on, off the words that both commands begin with
    CommandSwitch(Meeting& meeting, const QString& text, QStringList on, QStringList off,
                  bool isOn = false);
    /// "WORD on" and "WORD off".
    CommandSwitch(Meeting& meeting, const QString& text, const QString& word, bool isOn = false);

    /// What the command has behind the words that switch on.
    void setArguments(std::function<QStringList()> arguments);
    /// Gives the command again if it is on, with other arguments.
    void performAgain();

private:
    void perform();
    void follow(const QStringList& words);

    Meeting& m_meeting;
    const QStringList m_on;
    const QStringList m_off;
    std::function<QStringList()> m_arguments;
};

} // namespace zrworkbench
