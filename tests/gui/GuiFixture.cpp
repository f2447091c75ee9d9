#include "GuiFixture.h"

#include <QFontMetricsF>
#include <QTest>

#include "frame/NumberText.h"

namespace lorvane::guitest {

bool EqualAdvances(const QFont& font) {
    // A report line of ten of each character is as wide as ten zeros.
    const QFontMetricsF metrics(font);
    const double zeros = metrics.horizontalAdvance(QString(10, QLatin1Char('0')));
    for (const char c : std::string("123456789 .-+EeiIlmMW")) {
        if (metrics.horizontalAdvance(QString(10, QLatin1Char(c))) != zeros) {
            return false;
        }
    }
    return true;
}

void TestScreen::MouseMove(Control& control, double x, double y) {
    std::ostringstream event;
    event << "MouseMove " << control.Name << ' ' << x << ' ' << y;
    Record(event.str(), control);
}

GuiFixture::GuiFixture(BoxKind boxes) {
    Dialogs& dialogs = boxes == BoxKind::Qt ? static_cast<Dialogs&>(qtDialogs_) : scripted_;
    module_ = std::make_unique<Module>(
        Platform{dialogs, events_, clock_, random_, processes_, screens_, &surfaces_}, "VAR");
    Module& module = *module_;
    module.StartFolder = folder_.filePath("start").toStdString();
    module.WorkFolder = folder_.filePath("work").toStdString();
    module.DataFolder = folder_.filePath("data").toStdString();
    std::filesystem::create_directories(module.StartFolder);
    std::filesystem::create_directories(module.WorkFolder);
    std::filesystem::create_directories(module.DataSubfolder());
    module.TestRun = 1;
    module.FrameReady = 1;
    module.FrameCaption = "Lorvane International (Module VAR)";
    module.Caption = module.FrameCaption;
    module.UseScreenTable([this](Module& owner, std::string_view name) -> std::unique_ptr<Screen> {
        const auto found = definitions_.find(UpperCase(name));
        if (found == definitions_.end()) {
            return nullptr;
        }
        const Definition& definition = found->second;
        auto screen = std::make_unique<TestScreen>(owner, definition.name, definition.width,
                                                   definition.height);
        definition.build(*screen);
        return screen;
    });

    frame_ = std::make_unique<gui::Wallpaper>(module);
    screens_.setFrame(frame_.get());
    qtDialogs_.attach(frame_.get(), module_.get());
    qtDialogs_.setBeforeShow([this] { frame_->refresh(); });
    events_.setRefresh([this] { frame_->refresh(); });
}

void GuiFixture::define(const std::string& name, std::function<void(TestScreen&)> build,
                        double width, double height) {
    definitions_[UpperCase(name)] = Definition{name, std::move(build), width, height};
}

void GuiFixture::go(const std::string& name) {
    frame_->dispatch([this, name] { module_->Run([this, name] { module_->GoToScreen(name); }); });
}

void GuiFixture::pin(const std::string& name) {
    frame_->dispatch([this, name] { module_->Run([this, name] { module_->ShowOnTop(name); }); });
}

TestScreen& GuiFixture::screen(std::string_view name) {
    auto* screen = dynamic_cast<TestScreen*>(module_->LoadedScreen(name));
    if (screen == nullptr) {
        throw std::logic_error("the screen " + std::string(name) + " is not loaded");
    }
    return *screen;
}

bool GuiFixture::show() {
    frame_->show();
    return QTest::qWaitForWindowExposed(frame_.get());
}

std::vector<std::pair<std::string, SuiteMaker>>& Suites() {
    static std::vector<std::pair<std::string, SuiteMaker>> suites;
    return suites;
}

SuiteRegistration::SuiteRegistration(const char* name, SuiteMaker maker) {
    Suites().emplace_back(name, std::move(maker));
}

} // namespace lorvane::guitest
