#pragma once

#include <functional>
#include <memory>

#include <QElapsedTimer>
#include <QLockFile>
#include <QPointer>
#include <QString>
#include <QWidget>

#include "platform/EventPump.h"
#include "platform/Processes.h"
#include "platform/Screens.h"

namespace lorvane::gui {

// Lets the views catch up during long work: pending repaints of the views happen, the frame's
// tick runs. Input from the user waits until the action is over, so that no handler is entered
// again by a click while it works.
class QtEventPump : public EventPump {
public:
    // At most one pump per interval; a long loop may yield after every value it reads.
    explicit QtEventPump(int intervalMilliseconds = 40) : interval_(intervalMilliseconds) {}

    // Run before the events are processed: it brings the views up to the state of the logic.
    void setRefresh(std::function<void()> refresh) { refresh_ = std::move(refresh); }
    void yield() override;

private:
    int interval_;
    QElapsedTimer last_;
    std::function<void()> refresh_;
};

// Programs, files and addresses through the desktop. The previous-instance test takes a lock
// file that is held until the process ends.
class QtProcesses : public Processes {
public:
    // The lock files live in lockFolder (the system's temporary folder unless given).
    explicit QtProcesses(QString lockFolder = {});
    ~QtProcesses() override;

    bool start(const std::string& program, const std::string& arguments,
               WindowStyle style) override;
    bool open(const std::string& fileOrAddress) override;
    bool previousInstanceRunning(const std::string& moduleName) override;

private:
    QString lockFolder_;
    std::unique_ptr<QLockFile> lock_;
};

// The screen under the frame in twips, and the frame's window state.
class QtScreens : public Screens {
public:
    void setFrame(QWidget* frame) { frame_ = frame; }

    double screenWidth() const override;
    double screenHeight() const override;
    bool frameMinimised() const override;
    bool frameMaximised() const override;

private:
    QSize screenSize() const;

    QPointer<QWidget> frame_;
};

} // namespace lorvane::gui
