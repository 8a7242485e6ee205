#include "commandswitch.h"

#include "meeting.h"

namespace zrworkbench {

CommandSwitch::CommandSwitch(Meeting& meeting, const QString& text, QStringList words, bool isOn)
    : QCheckBox(text)
    , m_words(std::move(words))
{
    setObjectName(m_words.join(QLatin1Char('-')));
    setChecked(isOn);
    connect(this, &QCheckBox::clicked, &meeting, [this, &meeting](bool on) {
        if (!meeting.perform(m_words
                             + QStringList(on ? QStringLiteral("on") : QStringLiteral("off"))))
            setChecked(!on);
    });
    connect(&meeting, &Meeting::performed, this, &CommandSwitch::follow);
    connect(&meeting, &Meeting::begun, this, [this, isOn] { setChecked(isOn); });
}

void CommandSwitch::follow(const QStringList& words)
{
    const int at = m_words.size();
    if (words.size() > at && words.mid(0, at) == m_words)
        setChecked(words[at] == QLatin1String("on") || words[at] == QLatin1String("1"));
}

} // namespace zrworkbench
