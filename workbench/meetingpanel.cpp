#include "meetingpanel.h"

#include "commandswitch.h"
#include "meeting.h"

#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QSignalBlocker>
#include <QSpinBox>

namespace zrworkbench {

namespace {

const char* const kModes[] = {
    QT_TRANSLATE_NOOP("MeetingPanel", "1  Gallery"),
    QT_TRANSLATE_NOOP("MeetingPanel", "2  One large, five small"),
    QT_TRANSLATE_NOOP("MeetingPanel", "3  One large, seven small"),
    QT_TRANSLATE_NOOP("MeetingPanel", "4  Speaker, the next one floats"),
    QT_TRANSLATE_NOOP("MeetingPanel", "5  As 4"),
    QT_TRANSLATE_NOOP("MeetingPanel", "6  Speaker, strip on the right"),
    QT_TRANSLATE_NOOP("MeetingPanel", "7  Speaker, strip below"),
    QT_TRANSLATE_NOOP("MeetingPanel", "8  Speaker, strip on top"),
    QT_TRANSLATE_NOOP("MeetingPanel", "9  Two speakers, strip below"),
    QT_TRANSLATE_NOOP("MeetingPanel", "10  Shared screen"),
    QT_TRANSLATE_NOOP("MeetingPanel", "11  Grid 2 x 2"),
    QT_TRANSLATE_NOOP("MeetingPanel", "12  Grid 3 x 3"),
    QT_TRANSLATE_NOOP("MeetingPanel", "13  Grid 4 x 4"),
    QT_TRANSLATE_NOOP("MeetingPanel", "14  The first alone"),
};

QWidget* inRow(std::initializer_list<QWidget*> widgets)
{
    auto* const row = new QWidget;
    auto* const layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(4);
    for (QWidget* const widget : widgets)
        layout->addWidget(widget);
    layout->addStretch();
    return row;
}

} // namespace

MeetingPanel::MeetingPanel(Meeting& meeting, std::function<QString()> selectedId, QWidget* parent)
    : QTabWidget(parent)
    , m_meeting(meeting)
    , m_selectedId(std::move(selectedId))
{
    setDocumentMode(true);
    addTab(makeArrangement(), tr("Arrangement"));
    addTab(makeOverlays(), tr("Overlays"));
    addTab(makeWindows(), tr("Windows and controls"));
}

QWidget* MeetingPanel::makeArrangement()
{
    auto* const page = new QWidget;
    auto* const form = new QFormLayout(page);
    addModes(*form);
    addPages(*form);

    auto* const nine =
        makeCallSwitch(tr("Nine tiles a page in mode 1"), "ZRScreen_SetSupport9EqualCut");
    connect(nine, &QCheckBox::clicked, this,
            [this] { performLines({"call ZRScreen_ReOrder off"}); });
    form->addRow(nine);
    form->addRow(makeCallSwitch(tr("The focus follows the voices"), "ZRScreen_SetVoiceActivate"));
    auto* const tool = new CommandSwitch(
        m_meeting, tr("Speaker tool, or strip beside the speakers"), QStringLiteral("tool"), true);
    tool->setToolTip(tr("The small window of modes 4 and 5; in modes 6 to 9 the strip"));
    form->addRow(tool);
    auto* const streams =
        new CommandSwitch(m_meeting, tr("Deliver only the streams that the module asks for"),
                          {"streams", "follow"}, {"streams", "always"});
    streams->setToolTip(tr("As a media engine does; else all streams are open all the time"));
    form->addRow(streams);
    return page;
}

void MeetingPanel::addModes(QFormLayout& form)
{
    auto* const modes = new QComboBox;
    modes->setObjectName(QStringLiteral("mode"));
    for (const char* const mode : kModes)
        modes->addItem(tr(mode));
    connect(modes, QOverload<int>::of(&QComboBox::activated), this, [this](int index) {
        m_meeting.perform({QStringLiteral("mode"), QString::number(index + 1)});
    });
    connect(&m_meeting, &Meeting::changed, modes, [this, modes] {
        const QSignalBlocker blocker(modes);
        modes->setCurrentIndex(m_meeting.session().mode() - 1);
    });
    form.addRow(tr("&Mode"), modes);
}

void MeetingPanel::addPages(QFormLayout& form)
{
    form.addRow(
        tr("Pages"),
        inRow({makeButton(tr("Previous"), tr("Turn the page back, with the wheel over the picture"),
                          {"page previous"}),
               makeButton(tr("Next"), tr("Turn the page, with the wheel over the picture"),
                          {"page next"})}));
    auto* const seconds = new QSpinBox;
    seconds->setRange(1, 3600);
    seconds->setValue(5);
    seconds->setSuffix(tr(" s"));
    auto* const polling =
        new CommandSwitch(m_meeting, tr("Turn by themselves every"), QStringLiteral("polling"));
    polling->setArguments([seconds] { return QStringList(QString::number(seconds->value())); });
    connect(seconds, &QSpinBox::editingFinished, polling, &CommandSwitch::performAgain);
    form.addRow(inRow({polling, seconds}));
}

QWidget* MeetingPanel::makeOverlays()
{
    auto* const page = new QWidget;
    auto* const form = new QFormLayout(page);
    addSubtitles(*form);
    addWatermark(*form);
    return page;
}

void MeetingPanel::addSubtitles(QFormLayout& form)
{
    form.addRow(new CommandSwitch(m_meeting, tr("Subtitles"), QStringLiteral("subtitles")));
    auto* const sentence = new QLineEdit(tr("Good morning, everybody."));
    sentence->setToolTip(tr("What the selected participant says, for the subtitles"));
    auto* const say = new QPushButton(tr("Say"));
    const auto speak = [this, sentence] {
        if (!sentence->text().isEmpty())
            m_meeting.perform({QStringLiteral("say"), m_selectedId(), sentence->text()});
    };
    connect(say, &QPushButton::clicked, this, speak);
    connect(sentence, &QLineEdit::returnPressed, this, speak);
    auto* const row = new QHBoxLayout;
    row->addWidget(sentence);
    row->addWidget(say);
    auto* const label = new QLabel(tr("&Sentence"));
    label->setBuddy(sentence);
    form.addRow(label, row);
}

void MeetingPanel::addWatermark(QFormLayout& form)
{
    auto* const watermark = new CommandSwitch(m_meeting, tr("Watermark over shared screens"),
                                              QStringLiteral("watermark"));
    auto* const name = new QLineEdit(QStringLiteral("Ann"));
    auto* const phone = new QLineEdit(QStringLiteral("13812345678"));
    watermark->setArguments([name, phone] { return QStringList{name->text(), phone->text()}; });
    for (QLineEdit* const edit : {name, phone})
        connect(edit, &QLineEdit::returnPressed, watermark, &CommandSwitch::performAgain);
    form.addRow(watermark);
    form.addRow(tr("&Name"), name);
    form.addRow(tr("&Phone"), phone);
}

QWidget* MeetingPanel::makeWindows()
{
    auto* const page = new QWidget;
    auto* const form = new QFormLayout(page);
    form->addRow(
        tr("Extended screen"),
        inRow({new CommandSwitch(m_meeting, tr("Is on"),
                                 {"call", "ZRScreen_SetExtendScreen", "on", "off"},
                                 {"call", "ZRScreen_SetExtendScreen", "off", "off"}),
               makeButton(tr("Close"), tr("Close the extended screen in the second window"),
                          {"ext close"})}));
    form->addRow(tr("Date picker"),
                 inRow({makeButton(tr("Open"), tr("Make a date picker over the picture"),
                                   {"call when=ZRScreenDate_Init main",
                                    "call ZRScreenDate_Move when 600,20 -1 -1 -1 -1 -1 -1"}),
                        makeButton(tr("Release"), {}, {"call ZRScreenDate_Release when"})}));
    form->addRow(tr("Line edit"),
                 inRow({makeButton(tr("Make"), tr("In the second window"),
                                   {"call edit=ZRCtrl_QLineEdit_Init second 24,24,420x36 Subject"}),
                        makeButton(tr("Read"), tr("The text is an answer among the messages"),
                                   {"call ZRCtrl_QLineEdit_GetText edit"}),
                        makeButton(tr("Release"), {}, {"call ZRCtrl_QLineEdit_Release edit"})}));
    form->addRow(
        tr("Text box"),
        inRow({makeButton(tr("Make"), tr("In the second window"),
                          {"call box=ZRCtrl_QTextEdit_Init second 24,84,420x160 32 36 44",
                           "call ZRCtrl_QTextEdit_SetText box \"1. Last week<br>2. Next week\""}),
               makeButton(tr("Release"), {}, {"call ZRCtrl_QTextEdit_Release box"})}));
    return page;
}

QCheckBox* MeetingPanel::makeCallSwitch(const QString& text, const QString& name)
{
    return new CommandSwitch(m_meeting, text, {QStringLiteral("call"), name, QStringLiteral("on")},
                             {QStringLiteral("call"), name, QStringLiteral("off")});
}

QWidget* MeetingPanel::makeButton(const QString& text, const QString& toolTip,
                                  const QStringList& lines)
{
    auto* const button = new QPushButton(text);
    button->setObjectName(lines.first());
    button->setToolTip(toolTip);
    connect(button, &QPushButton::clicked, this, [this, lines] { performLines(lines); });
    return button;
}

void MeetingPanel::performLines(const QStringList& lines)
{
    for (const QString& line : lines) {
        if (!makesAgain(line) && !m_meeting.performLine(line))
            return;
    }
}

bool MeetingPanel::makesAgain(const QString& line) const
{
    static const QRegularExpression making(QStringLiteral("^call (\\w+)="));
    const QString name = making.match(line).captured(1);
    return m_meeting.session().calls().has(name.toStdString());
}

} // namespace zrworkbench
