#include "ClickHold.h"

#include <QApplication>
#include <QStyleHints>

namespace lorvane::gui {

ClickHold::ClickHold(QWidget* guarded) : QObject(guarded), guarded_(guarded) {
    timer_.setSingleShot(true);
    connect(&timer_, &QTimer::timeout, this, &ClickHold::release);
}

ClickHold::~ClickHold() {
    release();
}

void ClickHold::arm() {
    const int interval = QGuiApplication::styleHints()->mouseDoubleClickInterval();
    if (interval <= 0) {
        return;
    }
    // The buttons reach the widgets through their viewports and children: the application's
    // filter sees them all first.
    if (!filtering_) {
        qApp->installEventFilter(this);
        filtering_ = true;
    }
    timer_.start(interval);
}

void ClickHold::release() {
    timer_.stop();
    if (filtering_) {
        qApp->removeEventFilter(this);
        filtering_ = false;
    }
}

bool ClickHold::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick: {
        auto* widget = qobject_cast<QWidget*>(watched);
        if (widget != nullptr && guarded_ &&
            (widget == guarded_ || guarded_->isAncestorOf(widget))) {
            return true;
        }
        break;
    }
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

} // namespace lorvane::gui
