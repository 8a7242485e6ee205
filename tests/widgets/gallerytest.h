// A gallery with a host, as the tests of the gallery need it.
#pragma once

#include "testsupport.h"

#include "cplaywidget.h"
#include "qdlgscreen.h"
#include "qzrscreenconfig.h"
#include "speaktool.h"

#include <QtTest>

#include <algorithm>
#include <functional>
#include <memory>
#include <vector>

namespace zrtest {

/// Records what a host is told, and lets a test act like a host from inside a message.
class HostDouble : public CAbsUIMsgCallback
{
public:
    struct Message
    {
        unsigned long id;
        unsigned long long wParam;
        long long lParam;
    };

    bool UIMsgNotify(unsigned long id, unsigned long long wParam, long long lParam) override
    {
        messages.push_back({id, wParam, lParam});
        if (onMessage)
            onMessage(messages.back());
        return true;
    }
    int count(unsigned long id, const tagPersonInfo* person = nullptr) const
    {
        return static_cast<int>(
            std::count_if(messages.begin(), messages.end(), [&](const Message& m) {
                return m.id == id && (!person || m.wParam == reinterpret_cast<quintptr>(person));
            }));
    }

    std::vector<Message> messages;
    std::function<void(const Message&)> onMessage;
};

/// Counts what happens to widgets.
class EventCounter : public QObject
{
public:
    EventCounter() = default;
    explicit EventCounter(QObject* watched) { watch(watched); }
    void watch(QObject* watched) { watched->installEventFilter(this); }

    int changes = 0; ///< moved, resized, shown or hidden
    int paints = 0;

protected:
    bool eventFilter(QObject*, QEvent* event) override
    {
        const auto type = event->type();
        if (type == QEvent::Move || type == QEvent::Resize || type == QEvent::Show
            || type == QEvent::Hide)
            ++changes;
        paints += type == QEvent::Paint;
        return false;
    }
};

/// A tool that only remembers what the gallery did with it.
class ToolDouble : public SpeakTool
{
public:
    void bindPerson(tagPersonInfo* person) override { bound = person; }
    tagPersonInfo* boundPerson() const override { return bound; }
    void showTool() override { visible = true; }
    void hideTool() override { visible = false; }
    bool isToolVisible() const override { return visible; }
    bool showsPicture() const override { return visible; }
    void refreshTool() override { ++refreshes; }
    void setSpeaking(const QString& names) override { speaking = names; }
    int toolId() const override { return visible ? 1 : 0; }
    void moveTool(QPoint topLeft) override
    {
        position = topLeft;
        ++moves;
    }
    QSize toolSize() const override { return {272, 225}; }
    void playFrame(const void* person, const VantrelRTCVideoFrameQT&) override
    {
        frames += person == bound;
    }

    tagPersonInfo* bound = nullptr;
    bool visible = false;
    QPoint position;
    QString speaking;
    int moves = 0;
    int refreshes = 0;
    int frames = 0;
};

/// A shown gallery of 1280 x 720 that has joined, and its host.
class Meeting
{
public:
    Meeting()
    {
        hub().registerUICallback(&host);
        gallery = std::make_unique<QDlgScreen>(nullptr);
        gallery->resize(1280, 720);
        gallery->show();
        QVERIFY(QTest::qWaitForWindowExposed(gallery.get()));
        gallery->setJoinMeetingFinish(true);
    }
    ~Meeting()
    {
        gallery.reset();
        hub().unregisterUICallback(&host);
        QZRScreenConfig::destroyInstance();
    }
    Meeting(const Meeting&) = delete;
    Meeting& operator=(const Meeting&) = delete;

    QZRScreenConfig& hub() { return *QZRScreenConfig::getInstance(); }
    /// Runs what is queued, a scheduled arrangement included.
    void settle() { QCoreApplication::sendPostedEvents(); }
    tagPersonInfo* add(const QString& id, qint64 joinTime = 0, const QString& name = {})
    {
        return gallery->AddPerson(id, name.isEmpty() ? id : name, joinTime, 0, nullptr);
    }
    /// Adds u0, u1 and so on, in join order.
    std::vector<tagPersonInfo*> addMany(int count)
    {
        std::vector<tagPersonInfo*> persons;
        persons.reserve(static_cast<std::size_t>(count));
        for (int i = 0; i < count; ++i)
            persons.push_back(add(QStringLiteral("u%1").arg(i), 100 + i));
        settle();
        return persons;
    }
    bool play(tagPersonInfo* person, quint32 width = 64, quint32 height = 36)
    {
        VantrelRTCVideoFrameQT frame{};
        frame.pData = picture.data();
        frame.width = width;
        frame.height = height;
        return gallery->playFrame(person, &frame);
    }

    HostDouble host;
    std::unique_ptr<QDlgScreen> gallery;
    std::vector<uchar> picture = std::vector<uchar>(std::size_t(1280) * 720 * 2, 90);
};

} // namespace zrtest
