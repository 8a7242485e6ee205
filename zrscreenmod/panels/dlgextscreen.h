// The extended screen: one participant in a window of the host's, on whichever monitor it is.
#pragma once

#include "embedding.h"
#include "framegate.h"
#include "locks.h"
#include "personinfo.h"

#include <QDialog>

#include <atomic>
#include <memory>

class CPlayWidget;
class QZRScreenConfig;

/// Shows a participant from a record of its own, so that it needs no gallery and nothing of a
/// gallery's changes it but the previews, which the hub relays. GUI thread, except where a function
/// says otherwise.
class QDlgExtScreen : public QDialog
{
    Q_OBJECT

public:
    QDlgExtScreen();
    ~QDlgExtScreen() override;

    /// Makes the dialog a child of a native window; 0 leaves it a window of its own. As long as the
    /// system has no such window, the dialog stays hidden.
    void embedInto(HWND hParent);
    /// Places the dialog in its parent's pixels, on top of its siblings, and shows it. The host may
    /// be called from inside, as from updatePersonInfo.
    void place(const QRect& rect);
    CPlayWidget* tile() const { return m_pTile; }

    /// Shows a participant; another id is another participant. Without user data nobody is on the
    /// extended screen as far as the gallery knows, and another id than the present one leaves the
    /// screen empty.
    /// @param iColor index of the avatar's colour @return whether anything has changed
    bool updatePersonInfo(void* pUserData, const QString& userID, bool bSelf, int iRole,
                          const QString& name, int iColor);
    /// The record; null before there is a participant.
    const tagPersonInfo* person() const { return m_pPerson.get(); }
    // What follows does nothing without a participant.
    void setAllLook(bool bAllLook);
    /// Leaves the mark for everybody as it is.
    void setLockLook(bool bLockLook);
    void setMute(bool bMute);
    /// @param iVolume 0 to 100; other values are clamped
    /// @return whether the microphone's level is another one now
    bool setVolume(const QString& userId, int iVolume);
    /// The participant's stream is open.
    void setPreview(bool bPreview);
    void UpdateUserNetStatus(const QString& userId, int iType, bool bBad, int iLevel);
    /// Where the picture is, in screen pixels; right and bottom are one past the last pixel. Empty
    /// before the first picture.
    QRect pictureRect() const;

    // --- Any thread ---
    [[nodiscard]] bool hasPerson() const { return m_gate.key() != nullptr; }
    [[nodiscard]] bool isPerson(const QString& userId) const;
    /// Takes one frame; the frame record is readable, its picture is probed here.
    /// @return false when the frame was refused.
    bool playFrame(const VantrelRTCVideoFrameQT& frame);

public slots:
    void onExtPlayWidgetLBtnClick(CPlayWidget* tile);
    void onExtPreview(QString qstrUserID, bool bPreview);
    void onUpdateDisplayInfo(int iWidth, int iHeight);

signals:
    void notifyUpdateDisplayInfo(int iWidth, int iHeight);

protected:
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    QZRScreenConfig& hub() const;
    void showPerson();
    void removePerson();
    /// Tells the hosts, once, that the participant has come to be seen here: last of all, since
    /// from inside anything may be done.
    void reportShown();
    void publishUserId(const QString& userId);

    Embedding m_embedding{*this, [this] { reportShown(); }};
    CPlayWidget* m_pTile; ///< child; set for the dialog's whole life
    std::unique_ptr<tagPersonInfo> m_pPerson;
    FrameGate m_gate; ///< open for the record

    mutable platform::Mutex m_idLock;
    QString m_qstrUserId; ///< the record's, for any thread; guarded by m_idLock
};
