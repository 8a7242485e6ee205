#include "participantpanel.h"

#include "meeting.h"
#include "participantmodel.h"

#include <QComboBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QHeaderView>
#include <QInputDialog>
#include <QLabel>
#include <QPushButton>
#include <QRegularExpression>
#include <QSignalBlocker>
#include <QSlider>
#include <QStandardItemModel>
#include <QTableView>
#include <QVBoxLayout>

namespace zrworkbench {

namespace {

/// Chooses a value without telling that it was chosen.
void showValue(QComboBox& box, int index)
{
    const QSignalBlocker blocker(box);
    box.setCurrentIndex(index);
}

} // namespace

ParticipantPanel::ParticipantPanel(Meeting& meeting, QWidget* parent)
    : QWidget(parent)
    , m_meeting(meeting)
    , m_model(new ParticipantModel(meeting, this))
    , m_table(new QTableView)
{
    m_table->setObjectName(QStringLiteral("participants"));
    m_table->setModel(m_model);
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table->setSelectionMode(QAbstractItemView::SingleSelection);
    m_table->setShowGrid(false);
    m_table->verticalHeader()->hide();
    m_table->verticalHeader()->setDefaultSectionSize(m_table->fontMetrics().height() + 8);
    QHeaderView* const header = m_table->horizontalHeader();
    header->setHighlightSections(false);
    header->setSectionResizeMode(QHeaderView::ResizeToContents);
    header->setSectionResizeMode(ParticipantModel::Name, QHeaderView::Stretch);

    m_details = makeDetails();
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->addWidget(m_table, 1);
    layout->addWidget(m_details);

    connect(m_table->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &ParticipantPanel::showSelected);
    connect(m_model, &ParticipantModel::dataChanged, this, &ParticipantPanel::showSelected);
    connect(m_model, &ParticipantModel::rowsInserted, this, &ParticipantPanel::selectSomebody);
    connect(m_model, &ParticipantModel::rowsRemoved, this, &ParticipantPanel::selectSomebody);
    showSelected();
}

QWidget* ParticipantPanel::makeDetails()
{
    auto* const details = new QWidget;
    auto* const form = new QFormLayout(details);
    form->setContentsMargins(0, 0, 0, 0);

    m_who = new QLabel;
    form->addRow(m_who);

    m_volume = new QSlider(Qt::Horizontal);
    m_volume->setObjectName(QStringLiteral("volume"));
    m_volume->setRange(0, 100);
    m_volume->setTracking(false); // one command for each move
    m_volume->setToolTip(tr("How loud the microphone is, 0 to 100"));
    connect(m_volume, &QSlider::valueChanged, this, [this](int value) {
        performOnSelected({QStringLiteral("volume"), {}, QString::number(value)});
    });
    form->addRow(tr("&Volume"), m_volume);

    m_role = new QComboBox;
    m_role->setObjectName(QStringLiteral("role"));
    m_role->addItem(tr("None"), QStringLiteral("none"));
    m_role->addItem(tr("Host"), QStringLiteral("host"));
    m_role->addItem(tr("Administrator"), QStringLiteral("administrator"));
    connect(m_role, QOverload<int>::of(&QComboBox::activated), this, [this] {
        performOnSelected({QStringLiteral("role"), {}, m_role->currentData().toString()});
    });
    form->addRow(tr("&Role"), m_role);

    m_network = new QComboBox;
    m_network->setObjectName(QStringLiteral("network"));
    m_network->addItems({tr("Not reported"), tr("0: none, the picture freezes"),
                         tr("1: weak, the picture freezes"), QStringLiteral("2"),
                         QStringLiteral("3"), QStringLiteral("4"), tr("5: best")});
    // There is no way back to it.
    qobject_cast<QStandardItemModel*>(m_network->model())->item(0)->setEnabled(false);
    connect(m_network, QOverload<int>::of(&QComboBox::activated), this, [this](int index) {
        performOnSelected({QStringLiteral("network"), {}, QString::number(index - 1)});
    });
    form->addRow(tr("Net&work"), m_network);
    form->addRow(makeButtons());
    return details;
}

QWidget* ParticipantPanel::makeButtons()
{
    struct Button
    {
        QString text;
        QString toolTip;
        QStringList words; ///< an empty one stands for the participant
    };
    const Button rows[] = {
        {tr("Focus"), tr("Choose as the speaker of modes that have one"), {"focus", ""}},
        {tr("Pin for me"), tr("Pin for the local user"), {"pin", "", "me"}},
        {tr("Pin for all"), tr("Pin for everybody"), {"pin", "", "all"}},
        {tr("Unpin"), tr("Release the pin"), {"pin", "", "off"}},
        {tr("Share"),
         tr("Begin to share a screen; the share is a participant of its own, who can leave"),
         {"share", ""}},
        {tr("Extended"),
         tr("Show on the extended screen, in the second window"),
         {"ext", "show", ""}},
        {tr("Is me"), tr("Make this the local user"), {"self", "", "on"}},
        {tr("Leave"), tr("The participant leaves the meeting"), {"delete", ""}},
    };
    auto* const buttons = new QWidget;
    auto* const grid = new QGridLayout(buttons);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setSpacing(4);
    constexpr int kColumns = 4;
    int place = 0;
    const auto add = [&](QPushButton* button) {
        grid->addWidget(button, place / kColumns, place % kColumns);
        ++place;
    };
    for (const Button& row : rows) {
        auto* const button = new QPushButton(row.text);
        button->setObjectName(row.words.join(QLatin1Char('-')));
        button->setToolTip(row.toolTip);
        connect(button, &QPushButton::clicked, this,
                [this, words = row.words] { performOnSelected(words); });
        add(button);
    }
    auto* const renamed = new QPushButton(tr("Rename..."));
    connect(renamed, &QPushButton::clicked, this, &ParticipantPanel::rename);
    add(renamed);
    auto* const unfocus = new QPushButton(tr("No focus"));
    unfocus->setToolTip(tr("Nobody is chosen as the speaker"));
    connect(unfocus, &QPushButton::clicked, this,
            [this] { m_meeting.perform({QStringLiteral("focus")}); });
    add(unfocus);
    return buttons;
}

QString ParticipantPanel::selectedId() const
{
    const QModelIndexList rows = m_table->selectionModel()->selectedRows();
    return rows.isEmpty() ? QString() : m_model->row(rows.first().row()).id;
}

void ParticipantPanel::selectSomebody()
{
    if (selectedId().isEmpty() && m_model->rowCount() > 0)
        m_table->selectRow(0);
    showSelected();
}

void ParticipantPanel::showSelected()
{
    const QModelIndexList rows = m_table->selectionModel()->selectedRows();
    m_details->setEnabled(!rows.isEmpty() && m_meeting.session().hasScreen());
    if (rows.isEmpty()) {
        m_who->setText(tr("Nobody is selected."));
        return;
    }
    const ParticipantRow& row = m_model->row(rows.first().row());
    m_who->setText(
        QStringLiteral("<b>%1</b> %2").arg(row.id.toHtmlEscaped(), row.name.toHtmlEscaped()));
    const QSignalBlocker blocker(m_volume);
    m_volume->setValue(row.volume);
    showValue(*m_role, row.role);
    showValue(*m_network, row.network + 1);
}

/// @param words of the command; an empty one stands for the participant
void ParticipantPanel::performOnSelected(const QStringList& words)
{
    const QString id = selectedId();
    if (id.isEmpty())
        return;
    QStringList command = words;
    command.replaceInStrings(QRegularExpression(QStringLiteral("^$")), id);
    m_meeting.perform(command);
}

void ParticipantPanel::rename()
{
    bool ok = false;
    const QString name =
        QInputDialog::getText(this, tr("Rename"), tr("Name:"), QLineEdit::Normal, {}, &ok);
    if (ok && !name.isEmpty())
        performOnSelected({QStringLiteral("rename"), {}, name});
}

} // namespace zrworkbench
