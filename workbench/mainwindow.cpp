#include "mainwindow.h"

#include "eventpanel.h"
#include "host_error.h"
#include "logpanel.h"
#include "logtap.h"
#include "meetingpanel.h"
#include "participantpanel.h"
#include "scenariopanel.h"
#include "screencapture.h"
#include "screenview.h"
#include "statisticspanel.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDockWidget>
#include <QFileDialog>
#include <QInputDialog>
#include <QMenuBar>
#include <QMessageBox>
#include <QScreen>
#include <QScrollArea>
#include <QStatusBar>
#include <QStyle>

namespace zrworkbench {

namespace {

const char* const kScenarioFiles = QT_TRANSLATE_NOOP(
    "MainWindow", "Scenarios and traces (*.scenario *.txt *.trace);;All files (*)");

/// A recorded picture may be larger than the window. The native picture is cut by native windows
/// around it alone.
QScrollArea* inScrollArea(QWidget* picture)
{
    auto* const area = new QScrollArea;
    area->setFrameShape(QFrame::NoFrame);
    area->setWidgetResizable(true);
    area->viewport()->setAttribute(Qt::WA_DontCreateNativeAncestors);
    area->viewport()->setAttribute(Qt::WA_NativeWindow);
    area->setWidget(picture);
    return area;
}

/// On a small screen, or with a large font, a panel scrolls.
QScrollArea* scrolling(QWidget* panel)
{
    auto* const area = new QScrollArea;
    area->setFrameShape(QFrame::NoFrame);
    area->setWidgetResizable(true);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->setWidget(panel);
    area->setMinimumWidth(panel->minimumSizeHint().width()
                          + area->style()->pixelMetric(QStyle::PM_ScrollBarExtent));
    return area;
}

} // namespace

MainWindow::MainWindow(LogTap& log, const QString& library)
    : m_second(std::make_unique<ScreenView>())
    , m_main(new ScreenView(this))
    , m_meeting(std::make_unique<Meeting>(*m_main, *m_second, library))
{
    setWindowTitle(tr("ZRScreenMod Workbench"));
    resize(QSize(1280, 800).boundedTo(screen()->availableSize()));
    m_second->setWindowTitle(tr("ZRScreenMod Workbench: second window"));
    m_second->resize(480, 270);
    setCentralWidget(inScrollArea(m_main));
    makeActions();
    makeDocks(log);
    makeMenus();
    connect(m_meeting.get(), &Meeting::changed, this, &MainWindow::showPlaying);
    connect(m_meeting.get(), &Meeting::happened, this, &MainWindow::showFailure);
    statusBar()->showMessage(
        tr("Switches on the right, messages below; all that you switch becomes a scenario."));
}

MainWindow::~MainWindow()
{
    m_meeting.reset(); // before the windows that it shows itself in
}

void MainWindow::beginMeeting(int participants)
{
    m_meeting->begin();
    if (participants > 0)
        m_meeting->perform({QStringLiteral("meeting"), QString::number(participants)});
}

void MainWindow::openFile(const QString& file)
{
    m_meeting->open(file);
    m_scenarioDock->raise();
    statusBar()->showMessage(
        m_meeting->scenario().isReplay()
            ? tr("A trace: its own calls make the meeting. Step through it, or play it.")
            : tr("A scenario: step through it, or play it."));
}

void MainWindow::tryFile(const QString& file)
{
    attempt([&] { openFile(file); });
}

void MainWindow::closeEvent(QCloseEvent* event)
{
    event->accept();
    QApplication::quit(); // the module's windows would count as open ones
}

QAction* MainWindow::makeAction(const QString& text, const QString& toolTip,
                                const QKeySequence& keys, std::function<void()> run)
{
    auto* const action = new QAction(text, this);
    action->setToolTip(keys.isEmpty() ? toolTip
                                      : QStringLiteral("%1 (%2)").arg(
                                          toolTip, keys.toString(QKeySequence::NativeText)));
    action->setShortcut(keys);
    connect(action, &QAction::triggered, this, std::move(run));
    return action;
}

void MainWindow::makeActions()
{
    m_new =
        makeAction(tr("&New meeting..."), tr("Begin a simulated meeting of so many participants"),
                   QKeySequence::New, [this] { askForMeeting(); });
    m_open =
        makeAction(tr("&Open..."), tr("Open a scenario or a trace, to step through or to play"),
                   QKeySequence::Open, [this] { askForFile(); });
    m_save = makeAction(tr("&Save scenario..."), tr("Save what was done as a scenario"),
                        QKeySequence::Save, [this] { askWhereToSave(); });
    m_photograph = makeAction(tr("Save &picture..."), tr("Save what the module shows as a picture"),
                              Qt::CTRL + Qt::Key_P, [this] { askWhereToPhotograph(); });
    m_rewind =
        makeAction(tr("&Rewind"), tr("Begin the meeting anew, with the first step as the next one"),
                   Qt::Key_F5, [this] { attempt([this] { m_meeting->rewind(); }); });
    m_step = makeAction(tr("&Step"), tr("Run the next step"), Qt::Key_F10,
                        [this] { m_meeting->step(); });
    m_stepToChange = makeAction(
        tr("Step to &change"),
        tr("Run on through pictures and volumes, and the next step that changes something"),
        Qt::Key_F11, [this] { m_meeting->stepToChange(); });
    m_play = makeAction(tr("&Play"), tr("Run the steps at their times"), Qt::Key_F8,
                        [this] { togglePlaying(Meeting::Speed::Real); });
    m_playFast = makeAction(tr("Play &fast"), tr("Run one step after the other"), Qt::Key_F9,
                            [this] { togglePlaying(Meeting::Speed::Fast); });
    const auto icon = [this](QAction* action, QStyle::StandardPixmap pixmap, const char* name) {
        action->setIcon(style()->standardIcon(pixmap));
        action->setObjectName(QLatin1String(name));
    };
    m_new->setObjectName(QStringLiteral("new"));
    icon(m_open, QStyle::SP_DialogOpenButton, "open");
    icon(m_save, QStyle::SP_DialogSaveButton, "save");
    icon(m_rewind, QStyle::SP_MediaSkipBackward, "rewind");
    icon(m_step, QStyle::SP_ArrowRight, "step");
    icon(m_stepToChange, QStyle::SP_MediaSkipForward, "stepToChange");
    icon(m_play, QStyle::SP_MediaPlay, "play");
    icon(m_playFast, QStyle::SP_MediaSeekForward, "playFast");
}

QDockWidget* MainWindow::addPanel(Qt::DockWidgetArea area, const QString& title, QWidget* panel)
{
    auto* const dock = new QDockWidget(title, this);
    dock->setObjectName(title);
    dock->setWidget(panel);
    addDockWidget(area, dock);
    return dock;
}

void MainWindow::makeDocks(LogTap& log)
{
    setCorner(Qt::BottomRightCorner, Qt::RightDockWidgetArea);
    setTabPosition(Qt::BottomDockWidgetArea, QTabWidget::North);
    auto* const participants = new ParticipantPanel(*m_meeting);
    QDockWidget* const people =
        addPanel(Qt::RightDockWidgetArea, tr("Participants"), scrolling(participants));
    m_switches =
        new MeetingPanel(*m_meeting, [participants] { return participants->selectedId(); });
    QDockWidget* const controls =
        addPanel(Qt::RightDockWidgetArea, tr("Meeting"), scrolling(m_switches));
    QDockWidget* const messages =
        addPanel(Qt::BottomDockWidgetArea, tr("Messages"), new EventPanel(*m_meeting));
    auto* const steps =
        new ScenarioPanel(*m_meeting, {m_rewind, m_step, m_stepToChange, m_play, m_playFast});
    m_scenarioDock = addPanel(Qt::BottomDockWidgetArea, tr("Scenario"), steps);
    auto* const figures = new StatisticsPanel;
    QDockWidget* const statistics = addPanel(Qt::BottomDockWidgetArea, tr("Statistics"), figures);
    auto* const lines = new LogPanel;
    QDockWidget* const logDock = addPanel(Qt::BottomDockWidgetArea, tr("Log"), lines);
    // Lines come on any thread, and from inside whatever logs.
    connect(&log, &LogTap::logged, figures, &StatisticsPanel::take, Qt::QueuedConnection);
    connect(&log, &LogTap::logged, lines, &LogPanel::take, Qt::QueuedConnection);
    tabifyDockWidget(messages, m_scenarioDock);
    tabifyDockWidget(m_scenarioDock, statistics);
    tabifyDockWidget(statistics, logDock);
    messages->raise();
    resizeDocks({people, controls}, {400, 300}, Qt::Vertical);
    resizeDocks({people}, {400}, Qt::Horizontal);
    resizeDocks({messages}, {210}, Qt::Vertical);
}

void MainWindow::makeMenus()
{
    QMenu* const file = menuBar()->addMenu(tr("&File"));
    file->addActions({m_new, m_open, m_save, m_photograph});
    file->addSeparator();
    file->addAction(
        makeAction(tr("&Quit"), tr("End the workbench"), QKeySequence::Quit, [this] { close(); }));
    menuBar()
        ->addMenu(tr("&Scenario"))
        ->addActions({m_rewind, m_step, m_stepToChange, m_play, m_playFast});
    QMenu* const view = menuBar()->addMenu(tr("&View"));
    for (QDockWidget* const dock : findChildren<QDockWidget*>())
        view->addAction(dock->toggleViewAction());
    menuBar()->addMenu(tr("&Help"))->addAction(makeAction(tr("&About"), {}, {}, [this] {
        showAbout();
    }));
}

void MainWindow::attempt(const std::function<void()>& action)
{
    try {
        action();
    } catch (const zrhost::HostError& error) {
        QMessageBox::warning(this, windowTitle(), QString::fromUtf8(error.what()));
    }
}

void MainWindow::askForMeeting()
{
    bool ok = false;
    const int count = QInputDialog::getInt(this, tr("New meeting"),
                                           tr("Participants, each with a drawn, moving picture:"),
                                           6, 0, 500, 1, &ok);
    if (ok)
        attempt([&] { beginMeeting(count); });
}

void MainWindow::askForFile()
{
    const QString file = QFileDialog::getOpenFileName(this, tr("Open a scenario or a trace"), {},
                                                      tr(kScenarioFiles));
    if (!file.isEmpty())
        tryFile(file);
}

void MainWindow::askWhereToSave()
{
    const QString file = QFileDialog::getSaveFileName(
        this, tr("Save the scenario"), QStringLiteral("meeting.scenario"), tr(kScenarioFiles));
    if (!file.isEmpty())
        attempt([&] { m_meeting->save(file); });
}

void MainWindow::askWhereToPhotograph()
{
    const QString file = QFileDialog::getSaveFileName(
        this, tr("Save the picture"), QStringLiteral("meeting.png"), tr("Pictures (*.png)"));
    if (!file.isEmpty()) // the dialog has to go first
        QTimer::singleShot(200, this,
                           [this, file] { attempt([&] { saveScreen(*m_main, file); }); });
}

void MainWindow::togglePlaying(Meeting::Speed speed)
{
    if (m_meeting->scenario().isPlaying())
        m_meeting->pause();
    else
        m_meeting->play(speed);
}

void MainWindow::showPlaying()
{
    const zrhost::ScenarioPlayer& scenario = m_meeting->scenario();
    const bool isPlaying = scenario.isPlaying();
    const bool isMore = scenario.next() < scenario.steps().size();
    m_play->setText(isPlaying ? tr("&Pause") : tr("&Play"));
    m_play->setIcon(
        style()->standardIcon(isPlaying ? QStyle::SP_MediaPause : QStyle::SP_MediaPlay));
    m_play->setEnabled(isPlaying || isMore);
    for (QAction* const action : {m_step, m_stepToChange, m_playFast})
        action->setEnabled(isMore && !isPlaying);
    m_rewind->setEnabled(scenario.next() > 0);
    m_switches->setEnabled(m_meeting->session().hasScreen());
    m_save->setEnabled(!scenario.steps().empty());
}

void MainWindow::showFailure(const Event& event)
{
    if (event.kind == Event::Kind::Failure)
        statusBar()->showMessage(event.text, 10000);
}

void MainWindow::showAbout()
{
    QMessageBox::about(
        this, windowTitle(),
        tr("<p>A host of the module ZRScreenMod %1 that shows what goes on between both.</p>"
           "<p>Every switch is a command of a scenario. Save the scenario and play it here, or "
           "with "
           "<tt>zrhost --scenario FILE</tt>; open a trace in the same way.</p>")
            .arg(QStringLiteral("%1.%2.%3")
                     .arg(ZRSCREENMOD_VERSION_MAJOR)
                     .arg(ZRSCREENMOD_VERSION_MINOR)
                     .arg(ZRSCREENMOD_VERSION_PATCH)));
}

} // namespace zrworkbench
