#pragma once

#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QWidget>

namespace lorvane::gui {

// Drops the mouse buttons on a widget and everything inside it for the desktop's double-click
// interval after it is armed. A screen that has just appeared under the pointer must not take
// the second click of the double click that opened it: "Continue" on one screen would press
// whatever the next screen has at that spot.
class ClickHold : public QObject {
    Q_OBJECT
public:
    explicit ClickHold(QWidget* guarded);
    ~ClickHold() override;

    // Starts the hold, or starts it anew from now; no hold when the desktop has no interval.
    void arm();
    bool holding() const { return timer_.isActive(); }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void release();

    QPointer<QWidget> guarded_;
    QTimer timer_;
    bool filtering_ = false;
};

} // namespace lorvane::gui
