#pragma once

#include <functional>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <QFont>
#include <QObject>
#include <QTemporaryDir>

#include "QtDialogs.h"
#include "QtPlatform.h"
#include "QtSurface.h"
#include "ScreenView.h"
#include "Wallpaper.h"
#include "frame/Module.h"
#include "platform/Headless.h"

namespace lorvane::guitest {

// Whether digits, the blank, the point and letters all take the same advance in this font: what
// the report columns rely on, whatever the font says of its own pitch.
bool EqualAdvances(const QFont& font);

// A screen made by a test: controls are added by the test, every event is recorded as a line
// ("Click Command1", "DoubleClick List1 2", "MouseMove Picture1 0.5 0.25") before the test's
// handler, if any, runs.
class TestScreen : public Screen {
public:
    using Handler = std::function<void(TestScreen&, Control&)>;

    TestScreen(Module& module, std::string name, double width, double height)
        : Screen(module, std::move(name), "", width, height) {}

    Control& add(ControlKind kind, std::string name, std::string caption, double left, double top,
                 double width, double height) {
        return Add(kind, std::move(name), std::move(caption), left, top, width, height);
    }
    Module& owner() { return module; }

    void Click(Control& c) override { Record("Click " + c.Name, c, onClick); }
    void DoubleClick(Control& c, int item) override {
        Record("DoubleClick " + c.Name + " " + std::to_string(item), c);
    }
    void Change(Control& c) override { Record("Change " + c.Name, c); }
    void MouseMove(Control& c, double x, double y) override;
    void PictureDoubleClick(Control& c) override { Record("PictureDoubleClick " + c.Name, c); }
    void Tick(Control& c) override { Record("Tick " + c.Name, c, onTick); }

    std::vector<std::string> events;
    Handler onClick;
    Handler onTick;

private:
    void Record(std::string event, Control& control, const Handler& handler = {}) {
        events.push_back(std::move(event));
        if (handler) {
            handler(*this, control);
        }
    }
};

// A module whose screen table holds the test's screens, on the headless platform except for
// what the views need from Qt: the screens of the desktop, the event pump that repaints, and,
// when asked for, the Qt boxes. The frame is shown on the offscreen platform.
class GuiFixture {
public:
    enum class BoxKind { Scripted, Qt };

    explicit GuiFixture(BoxKind boxes = BoxKind::Scripted);
    GuiFixture(const GuiFixture&) = delete;
    GuiFixture& operator=(const GuiFixture&) = delete;

    Module& module() { return *module_; }
    gui::Wallpaper& frame() { return *frame_; }
    ScriptedDialogs& scripted() { return scripted_; }

    // A screen of the table: build adds its controls and handlers.
    void define(const std::string& name, std::function<void(TestScreen&)> build,
                double width = 9600, double height = 7200);

    // Navigation as a user action, followed by the views.
    void go(const std::string& name);
    void pin(const std::string& name);

    TestScreen& screen(std::string_view name);
    gui::ScreenView* view(std::string_view name) { return frame_->view(name); }
    template <typename Widget>
    Widget* widget(std::string_view screenName, std::string_view controlName) {
        gui::ScreenView* screenView = view(screenName);
        return screenView == nullptr
                   ? nullptr
                   : qobject_cast<Widget*>(screenView->controlObject(controlName));
    }

    // Shows the frame and waits until it is on the (offscreen) screen.
    bool show();

private:
    struct Definition {
        std::string name;
        std::function<void(TestScreen&)> build;
        double width;
        double height;
    };

    QTemporaryDir folder_;
    ScriptedDialogs scripted_;
    gui::QtDialogs qtDialogs_;
    gui::QtEventPump events_{0};
    SystemClock clock_;
    ClassicRandom random_;
    HeadlessProcesses processes_;
    gui::QtScreens screens_;
    gui::QtSurfaceFactory surfaces_;
    std::map<std::string, Definition> definitions_;
    std::unique_ptr<Module> module_;
    // Declared last, so it goes first: it refers to the module.
    std::unique_ptr<gui::Wallpaper> frame_;
};

// The test classes register themselves; main runs them all, or the one named on its command line.
using SuiteMaker = std::function<std::unique_ptr<QObject>()>;
std::vector<std::pair<std::string, SuiteMaker>>& Suites();

struct SuiteRegistration {
    SuiteRegistration(const char* name, SuiteMaker maker);
};

#define LORVANE_GUI_SUITE(Class)                                                                   \
    static const ::lorvane::guitest::SuiteRegistration registered##Class(                          \
        #Class, [] { return std::make_unique<Class>(); })

} // namespace lorvane::guitest
