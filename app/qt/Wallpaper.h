#pragma once

#include <string_view>
#include <vector>

#include <QPointer>
#include <QTimer>
#include <QWidget>

#include "ScreenView.h"

namespace lorvane {
class Module;
}

namespace lorvane::gui {

// The frame window: it carries the module's caption, keeps its design size (9600 x 7200 twips)
// unless the module runs in full size, and shows a view for every loaded screen, the current one
// filling it and a pinned one above. Every user action goes through dispatch(), after which the
// views re-read the logic.
class Wallpaper : public QWidget {
    Q_OBJECT
public:
    explicit Wallpaper(Module& module, QWidget* parent = nullptr);
    ~Wallpaper() override;

    Module& module() const { return module_; }

    // Shows the frame by itself as soon as the module has set its geometry (the desktop front end;
    // a headless run leaves it hidden).
    void setAutoShow(bool on) { autoShow_ = on; }
    // Where pictures find their surfaces: by default the surface of the picture control
    // (Control::Drawing) when it is one of the desktop's.
    void setPictureSource(PictureSource source) { pictures_ = std::move(source); }

    // One user action against the module, then afterEvent().
    void dispatch(const std::function<void()>& action);
    // The views follow the logic: new screens get views, unloaded ones lose them, every control is
    // re-read, the pinned screen goes on top.
    void refresh();
    // refresh(), then the caption, the tick and the window state follow the module; the end of
    // the module is reported once.
    void afterEvent();
    // The frame's tick: a pinned screen returns to its place, on top and with the focus.
    void tick();

    ScreenView* view(std::string_view screenName) const;
    std::vector<ScreenView*> views() const;
    // How the logic's twips map to pixels of the frame: 1/15 at design size.
    double pixelsPerTwip() const;
    const QTimer& frameTimer() const { return timer_; }
    // The module's caption and the caption of the screen in front.
    QString title() const;

signals:
    // The module has ended (by its own end or a run-time error); emitted once.
    void moduleEnded();

protected:
    void changeEvent(QEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void applyWindowState();
    void showPointer();
    // Gives the focus to the screen in front when no screen of the frame has it.
    void keepFocusOnTheFront();
    // Every view drops mouse buttons for the double-click interval from now.
    void holdClicks();
    QPoint screenOrigin() const;

    Module& module_;
    std::vector<QPointer<ScreenView>> views_;
    PictureSource pictures_;
    QTimer timer_;
    bool autoShow_ = false;
    bool shown_ = false;
    bool endReported_ = false;
    int busy_ = 0;
    // Counts the screens that came or went, so that an action can tell that it changed them.
    long long screenChanges_ = 0;
};

} // namespace lorvane::gui
