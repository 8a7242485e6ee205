// The participants, and what can be done with the selected one.
#pragma once

#include <QWidget>

class QComboBox;
class QLabel;
class QSlider;
class QTableView;

namespace zrworkbench {

class Meeting;
class ParticipantModel;

class ParticipantPanel : public QWidget
{
    Q_OBJECT

public:
    /// The meeting must outlive it.
    explicit ParticipantPanel(Meeting& meeting, QWidget* parent = nullptr);

    /// The selected participant's id; empty without one.
    [[nodiscard]] QString selectedId() const;

private:
    QWidget* makeDetails();
    QWidget* makeButtons();
    void selectSomebody();
    void showSelected();
    void performOnSelected(const QStringList& words);
    void rename();

    Meeting& m_meeting;
    ParticipantModel* m_model;
    QTableView* m_table;
    QWidget* m_details;
    QLabel* m_who = nullptr;
    QSlider* m_volume = nullptr;
    QComboBox* m_role = nullptr;
    QComboBox* m_network = nullptr;
};

} // namespace zrworkbench
