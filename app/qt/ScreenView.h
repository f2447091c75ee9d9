#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <QFrame>
#include <QImage>
#include <QPointer>

#include "ClickHold.h"
#include "QtSurface.h"
#include "frame/Control.h"

class QTimer;

namespace lorvane {
class Module;
class Screen;
} // namespace lorvane

namespace lorvane::gui {

// Runs one user action against the module and brings the frame up to date afterwards.
using Dispatch = std::function<void(const std::function<void()>&)>;

// The surface drawn on a picture control, if there is one.
using PictureSource = std::function<const QtSurface*(const Screen&, const Control&)>;

// Shows the image of a picture's surface at its natural size and reports the pointer in the
// picture's logical units (twips while no surface is drawn).
class PictureWidget : public QWidget {
    Q_OBJECT
public:
    explicit PictureWidget(QWidget* parent = nullptr);

    void setPicture(const QtSurface* surface, double pixelsPerTwip);
    const QImage& image() const { return image_; }
    QPointF toLogical(QPointF pixels) const;

signals:
    void moved(double x, double y);
    void clicked();
    void doubleClicked();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;

private:
    QImage image_;
    std::optional<PictureScale> scale_;
    double pixelsPerTwip_ = 1 / 15.0;
};

// The view of one loaded screen: a widget for every control, named as the control, placed by
// the control's geometry. The logic owns all state: refresh() re-reads it, and what the user
// does is written into the control before the screen's handler runs.
class ScreenView : public QFrame {
    Q_OBJECT
public:
    ScreenView(Module& module, Screen& screen, Dispatch dispatch, QWidget* parent = nullptr);

    const std::string& name() const { return name_; }
    // The screen this view was made for; compared, never used, once the screen may be gone.
    // Whether the view shows that loading of a screen.
    bool Shows(const Screen& screen) const;

    // Re-reads the screen and every control; pixelsPerTwip maps the logic's geometry.
    void refresh(double pixelsPerTwip, const PictureSource& pictures = {});

    // The widget (or, for a timer, the QTimer) of a control.
    QObject* controlObject(std::string_view controlName) const;

    // Gives the focus to the control the screen last sent it to, or else to the first stop of
    // the tab order, unless the focus is on this view already.
    void takeFocus();

    // The view has just come up under the pointer: mouse buttons on it wait for the desktop's
    // double-click interval (from now).
    void holdClicks();
    bool holdsClicks() const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    // Enter presses the default button, Escape the cancel button, wherever the focus is on the
    // screen (a focused button takes Enter itself).
    void keyPressEvent(QKeyEvent* event) override;

private:
    struct Binding {
        ControlKind kind;
        QPointer<QWidget> widget;
        QPointer<QTimer> timer;
    };

    Screen* live() const;
    void build(const Control& control);
    void update(Binding& binding, const Control& control, double pixelsPerTwip,
                const PictureSource& pictures);
    void updateList(QWidget* widget, const Control& control);
    void act(const std::string& controlName, const std::function<void(Control&)>& change,
             const std::function<void()>& event);
    void click(const std::string& controlName, const std::function<void(Control&)>& change = {});
    void typed(const std::string& controlName, std::string text);
    void itemDoubleClicked(const std::string& controlName, int item);
    void chooseOption(const std::string& controlName);
    void listSelectionChanged(const std::string& controlName);
    // The focus goes where the screen last sent it.
    void followFocus(const Screen& screen);
    // Tab goes through the controls as they lie: row by row, left to right.
    void orderTabs(const Screen& screen);
    // Presses the shown, enabled button that has the mark; false when there is none.
    bool pressMarked(bool Control::*mark);

    Module& module_;
    Screen* screen_;
    long long serial_;
    std::string name_;
    Dispatch dispatch_;
    std::map<std::string, Binding, std::less<>> bindings_;
    double pixelsPerTwip_ = 1 / 15.0;
    ClickHold* hold_;
    long long focusRequests_ = 0;
    long long holdRequests_ = 0;
    std::vector<QWidget*> tabOrder_;
};

} // namespace lorvane::gui
