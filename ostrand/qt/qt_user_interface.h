#pragma once
// The editor's UserInterface: real message boxes, the system beep and a modal progress dialog.

#include "ostrand/core/user_interface.h"

#include <QPointer>

#include <memory>

class QProgressDialog;
class QWidget;

namespace ost {

class QtUserInterface : public UserInterface
{
public:
    /// Boxes and the progress dialog are centred on `parent` (may be null, or set later).
    explicit QtUserInterface(QWidget* parent = nullptr);
    ~QtUserInterface() override;
    QtUserInterface(const QtUserInterface&) = delete;
    QtUserInterface& operator=(const QtUserInterface&) = delete;

    void SetParentWidget(QWidget* parent) { m_parent = parent; }
    /// The "sound effects" option: Beep() is silent while it is off. On by default.
    void SetSoundEffects(bool on) { m_soundEffects = on; }
    bool SoundEffects() const { return m_soundEffects; }
    /// How long work may run before the progress dialog shows, in milliseconds.
    void SetProgressDelay(int milliseconds) { m_progressDelay = milliseconds; }

    int MessageBox(const MessageBoxRequest& request) override;
    void Beep() override;
    void BeginProgress(const std::string& text) override;
    bool UpdateProgress(double fraction) override;
    void EndProgress() override;

private:
    QPointer<QWidget> m_parent;
    std::unique_ptr<QProgressDialog> m_progress;
    int m_progressValue = -1;
    int m_progressDelay = 500;
    bool m_soundEffects = true;
};

} // namespace ost
