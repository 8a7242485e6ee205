// What concerns the whole meeting: arrangement, overlays, further windows and controls.
#pragma once

#include <QTabWidget>

#include <functional>

class QCheckBox;
class QFormLayout;

namespace zrworkbench {

class Meeting;

class MeetingPanel : public QTabWidget
{
    Q_OBJECT

public:
    /// The meeting must outlive it. @param selectedId gives the participant that is selected
    MeetingPanel(Meeting& meeting, std::function<QString()> selectedId, QWidget* parent = nullptr);

private:
    QWidget* makeArrangement();
    QWidget* makeOverlays();
    QWidget* makeWindows();
    void addModes(QFormLayout& form);
    void addPages(QFormLayout& form);
    void addSubtitles(QFormLayout& form);
    void addWatermark(QFormLayout& form);
    /// A check box for the call of an export with a flag.
    QCheckBox* makeCallSwitch(const QString& text, const QString& name);
    /// A button that performs lines of commands, one after the other, up to one that fails.
    QWidget* makeButton(const QString& text, const QString& toolTip, const QStringList& lines);
    /// One after the other up to a failure, but for those that make what is there already.
    void performLines(const QStringList& lines);
    [[nodiscard]] bool makesAgain(const QString& line) const;

    Meeting& m_meeting;
    const std::function<QString()> m_selectedId;
};

} // namespace zrworkbench
