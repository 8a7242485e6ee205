#include "commandswitch.h"

#include "meeting.h"

namespace zrworkbench {

CommandSwitch::CommandSwitch(Meeting& meeting, const QString& text, QStringList on, QStringList off,
                             bool isOn)
    : QCheckBox(text)
    , m_meeting(meeting)
    , m_on(std::move(on))
    , m_off(std::move(off))
{
    setObjectName(m_on.join(QLatin1Char(' ')));
    setChecked(isOn);
    connect(this, &QCheckBox::clicked, this, &CommandSwitch::perform);
    connect(&meeting, &Meeting::performed, this, &CommandSwitch::follow);
    connect(&meeting, &Meeting::begun, this, [this, isOn] { setChecked(isOn); });
}

CommandSwitch::CommandSwitch(Meeting& meeting, const QString& text, const QString& word, bool isOn)
    : CommandSwitch(meeting, text, {word, QStringLiteral("on")}, {word, QStringLiteral("off")},
                    isOn)
{
}

void CommandSwitch::setArguments(std::function<QStringList()> arguments)
{
    m_arguments = std::move(arguments);
}

void CommandSwitch::performAgain()
{
    if (isChecked())
        perform();
}

void CommandSwitch::perform()
{
    QStringList words = isChecked() ? m_on : m_off;
    if (isChecked() && m_arguments)
        words += m_arguments();
    if (!m_meeting.perform(words))
        setChecked(!isChecked());
}

void CommandSwitch::follow(const QStringList& words)
{
    if (words.mid(0, m_on.size()) == m_on)
        setChecked(true);
    else if (words.mid(0, m_off.size()) == m_off)
        setChecked(false);
}

} // namespace zrworkbench
