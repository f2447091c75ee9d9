#include "Wallpaper.h"

#include <algorithm>

#include <QApplication>
#include <QCloseEvent>
#include <QScreen>

#include "Style.h"
#include "frame/Module.h"
#include "frame/Startup.h"
#include "platform/Screens.h"

namespace lorvane::gui {

Wallpaper::Wallpaper(Module& module, QWidget* parent) : QWidget(parent), module_(module) {
    setObjectName(QStringLiteral("Wallpaper"));
    setFont(SansFont(TextPoints));
    setAutoFillBackground(true);
    setFixedSize(static_cast<int>(module_.FrameWidth / TwipsPerPixel),
                 static_cast<int>(module_.FrameHeight / TwipsPerPixel));
    timer_.setInterval(2000);
    connect(&timer_, &QTimer::timeout, this, &Wallpaper::tick);
    // A picture shows the surface its screen draws on.
    pictures_ = [](const Screen&, const Control& control) {
        return dynamic_cast<const QtSurface*>(control.Drawing.get());
    };
}

Wallpaper::~Wallpaper() = default;

void Wallpaper::dispatch(const std::function<void()>& action) {
    const long long changes = screenChanges_;
    ++busy_;
    action();
    --busy_;
    afterEvent();
    // Screens that came up during a long action hold the clicks from its end on.
    if (screenChanges_ != changes) {
        holdClicks();
    }
}

void Wallpaper::holdClicks() {
    for (const QPointer<ScreenView>& view : views_) {
        if (view) {
            view->holdClicks();
        }
    }
}

double Wallpaper::pixelsPerTwip() const {
    if (module_.FullSize != 1) {
        return 1 / TwipsPerPixel;
    }
    // In full size the logic has scaled the screens to the whole screen; the frame's inner area
    // is a little smaller (the caption bar, the panels), so the screens shrink to fit it.
    const Screens& screens = module_.platform().screens;
    const double inner =
        std::min(width() / screens.screenWidth(), height() / screens.screenHeight());
    return inner > 0 ? inner : 1 / TwipsPerPixel;
}

ScreenView* Wallpaper::view(std::string_view screenName) const {
    for (const QPointer<ScreenView>& view : views_) {
        if (view &&
            QString::compare(view->objectName(), ToQt(screenName), Qt::CaseInsensitive) == 0) {
            return view;
        }
    }
    return nullptr;
}

std::vector<ScreenView*> Wallpaper::views() const {
    std::vector<ScreenView*> all;
    for (const QPointer<ScreenView>& view : views_) {
        if (view) {
            all.push_back(view);
        }
    }
    return all;
}

void Wallpaper::refresh() {
    if (autoShow_ && !shown_ && module_.FrameReady == 1) {
        shown_ = true;
        applyWindowState();
        if (module_.FullSize == 1) {
            showMaximized();
        } else {
            move(screenOrigin() + QPoint(static_cast<int>(module_.FrameLeft / TwipsPerPixel),
                                         static_cast<int>(module_.FrameTop / TwipsPerPixel)));
            show();
        }
    }

    const std::vector<Screen*> loaded =
        module_.Ended() ? std::vector<Screen*>() : module_.LoadedScreens();
    // Views of screens that are gone. One of them may hold the widget whose signal is running
    // now, so it goes when control is back in the event loop.
    bool changed = false;
    std::erase_if(views_, [&loaded, &changed](const QPointer<ScreenView>& view) {
        if (view && std::any_of(loaded.begin(), loaded.end(),
                                [&view](const Screen* screen) { return view->Shows(*screen); })) {
            return false;
        }
        if (view) {
            changed = changed || view->isVisible();
            view->hide();
            view->deleteLater();
        }
        return true;
    });

    const double scale = pixelsPerTwip();
    Dispatch dispatcher = [this](const std::function<void()>& action) { dispatch(action); };
    for (Screen* screen : loaded) {
        const auto found =
            std::find_if(views_.begin(), views_.end(), [screen](const QPointer<ScreenView>& view) {
                return view->Shows(*screen);
            });
        ScreenView* view = found != views_.end() ? found->data() : nullptr;
        if (view == nullptr) {
            view = new ScreenView(module_, *screen, dispatcher, this);
            views_.emplace_back(view);
            changed = true;
        }
        view->refresh(scale, pictures_);
        // Later screens lie above earlier ones.
        view->raise();
    }
    if (ScreenView* pinned =
            module_.PinnedScreen2.empty() ? nullptr : view(module_.PinnedScreen2)) {
        pinned->raise();
    }
    keepFocusOnTheFront();
    // A screen that opens or closes changes what lies under the pointer, on it and around it:
    // every screen waits out the second click of a double click.
    if (changed) {
        ++screenChanges_;
        holdClicks();
    }
    showPointer();
}

void Wallpaper::keepFocusOnTheFront() {
    // A box of the module holds the keys while it is open.
    if (QApplication::activeModalWidget() != nullptr) {
        return;
    }
    // The keys go on to the screen in front when the focus went with a screen that closed: Enter
    // and Escape work on a screen as soon as it opens.
    const QWidget* focused = QApplication::focusWidget();
    if (focused != nullptr && focused != this && isAncestorOf(focused)) {
        return;
    }
    const std::string& front =
        module_.PinnedScreen2.empty() ? module_.CurrentScreen : module_.PinnedScreen2;
    if (ScreenView* shown = front.empty() ? nullptr : view(front)) {
        shown->takeFocus();
    }
}

void Wallpaper::showPointer() {
    // An action that lets the views repaint is long work: the hourglass shows until it is over,
    // and afterwards while the module asks for it.
    const bool wait = busy_ > 0 || module_.Pointer == MousePointer::Wait;
    if (wait && (!testAttribute(Qt::WA_SetCursor) || cursor().shape() != Qt::WaitCursor)) {
        setCursor(Qt::WaitCursor);
    } else if (!wait && testAttribute(Qt::WA_SetCursor)) {
        unsetCursor();
    }
}

QString Wallpaper::title() const {
    QString title = ToQt(module_.Caption).trimmed();
    const std::string& shown =
        module_.PinnedScreen2.empty() ? module_.CurrentScreen : module_.PinnedScreen2;
    Screen* screen = shown.empty() || module_.Ended() ? nullptr : module_.LoadedScreen(shown);
    const QString caption = screen == nullptr ? QString() : ToQt(screen->Caption).trimmed();
    if (!caption.isEmpty() && caption != title) {
        title += (title.isEmpty() ? QString() : QStringLiteral(" - ")) + caption;
    }
    return title;
}

void Wallpaper::afterEvent() {
    refresh();
    setWindowTitle(title());
    if (module_.Ended()) {
        timer_.stop();
        if (!endReported_) {
            endReported_ = true;
            emit moduleEnded();
        }
        return;
    }
    if (module_.TimerInterval > 0) {
        if (!timer_.isActive() || timer_.interval() != module_.TimerInterval) {
            timer_.start(module_.TimerInterval);
        }
    } else {
        timer_.stop();
    }
    // A change of the window state from inside a state change waits for the event loop.
    QTimer::singleShot(0, this, &Wallpaper::applyWindowState);
}

void Wallpaper::tick() {
    module_.Run([this] { module_.FrameTick(); });
    afterEvent();
    if (ScreenView* pinned =
            module_.PinnedScreen2.empty() ? nullptr : view(module_.PinnedScreen2)) {
        pinned->raise();
        pinned->takeFocus();
    }
}

void Wallpaper::applyWindowState() {
    if (isMinimized()) {
        return;
    }
    if (module_.FullSize == 1) {
        setMinimumSize(0, 0);
        setMaximumSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
        if (isVisible() && !isMaximized()) {
            setWindowState(windowState() | Qt::WindowMaximized);
        }
        return;
    }
    // The user cannot resize the frame: it keeps its design size.
    setFixedSize(static_cast<int>(module_.FrameWidth / TwipsPerPixel),
                 static_cast<int>(module_.FrameHeight / TwipsPerPixel));
}

QPoint Wallpaper::screenOrigin() const {
    const QScreen* where = screen();
    return where != nullptr ? where->availableGeometry().topLeft() : QPoint();
}

void Wallpaper::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::WindowStateChange) {
        dispatch([this] { module_.Run([this] { FrameResize(module_); }); });
    }
}

void Wallpaper::moveEvent(QMoveEvent* event) {
    QWidget::moveEvent(event);
    if (isVisible() && windowState() == Qt::WindowNoState) {
        const QPoint at = pos() - screenOrigin();
        module_.FrameLeft = at.x() * TwipsPerPixel;
        module_.FrameTop = at.y() * TwipsPerPixel;
    }
}

void Wallpaper::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    if (module_.FullSize == 1) {
        refresh();
    }
}

void Wallpaper::closeEvent(QCloseEvent* event) {
    // Closing the frame ends the module, but not in the middle of an action.
    if (busy_ > 0) {
        event->ignore();
        return;
    }
    if (!module_.Ended()) {
        // Results that the log does not hold yet are not lost by a click on the close box: the
        // module asks first.
        bool kept = false;
        dispatch([this, &kept] {
            module_.Run([this, &kept] {
                kept = !module_.ConfirmDiscard();
                if (!kept) {
                    module_.ModuleEnd();
                }
            });
        });
        if (kept) {
            event->ignore();
            return;
        }
    }
    event->accept();
}

} // namespace lorvane::gui
