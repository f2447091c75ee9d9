// A double click where a single one is meant: the second click of a double click on a button
// that opens the next screen must not press what that screen has at the same spot, and no
// button that throws work away sits where the screen before had its "Continue".

#include <QPushButton>
#include <QStyleHints>
#include <QTest>

#include "ScriptRoad.h"
#include "frame/NumberText.h"
#include "frame/ScreenTable.h"

namespace lorvane::guitest {

namespace {

// Whether the button lies where a press on the other one may land.
bool Overlap(const Control& a, const Control& b) {
    return a.Left < b.Left + b.Width && b.Left < a.Left + a.Width && a.Top < b.Top + b.Height &&
           b.Top < a.Top + a.Height;
}

// The desktop's double-click interval for the life of a test; the other tests run with none.
class DoubleClickInterval {
public:
    explicit DoubleClickInterval(int milliseconds)
        : kept_(QGuiApplication::styleHints()->mouseDoubleClickInterval()) {
        QGuiApplication::styleHints()->setMouseDoubleClickInterval(milliseconds);
    }
    ~DoubleClickInterval() { QGuiApplication::styleHints()->setMouseDoubleClickInterval(kept_); }
    DoubleClickInterval(const DoubleClickInterval&) = delete;
    DoubleClickInterval& operator=(const DoubleClickInterval&) = delete;

private:
    int kept_;
};

// Walks a road with a real double click on every button that leaves its screen: both clicks go
// to the frame's window at the button's centre, as the pointer would send them. Afterwards the
// screen of the next line is up, and the log is the log of the road clicked once.
void DoubleClickEveryWayOn(const std::string& example) {
    const DoubleClickInterval interval(300);
    GuiFixture fixture;
    QVERIFY(fixture.show());
    ScriptRoad road(fixture, example);
    int doubled = 0;
    const bool walked = road.walk([&](const RoadLine& line, const RoadLine* next) {
        if (line.words[0] != "click" || next == nullptr || next->screen().empty() ||
            next->screen() == line.screen()) {
            return false;
        }
        road.settle();
        auto* button = fixture.widget<QPushButton>(line.screen(), line.control());
        if (button == nullptr || !button->isVisible()) {
            return false;
        }
        const QPoint at = button->mapTo(&fixture.frame(), button->rect().center());
        QTest::mouseDClick(fixture.frame().windowHandle(), Qt::LeftButton, {}, at);
        Module& module = fixture.module();
        const std::string shown =
            module.PinnedScreen2.empty() ? module.CurrentScreen : module.PinnedScreen2;
        if (UpperCase(shown) != UpperCase(next->screen())) {
            const std::string failure =
                module.Failure() ? " after " + module.Failure()->MessageText() : std::string();
            QTest::qFail(
                ("after a double click on " + line.text + " the screen is " + shown + failure)
                    .c_str(),
                __FILE__, __LINE__);
        }
        ++doubled;
        return true;
    });
    QVERIFY2(walked, road.problems().c_str());
    QVERIFY(!QTest::currentTestFailed());
    QVERIFY(doubled >= 8);
    QCOMPARE(road.log(), road.expectedLog());
}

} // namespace

class DoubleClickTest : public QObject {
    Q_OBJECT

private slots:
    void theButtonsThatThrowWorkAwayAreNotWhereTheScreenBeforeHadItsContinue() {
        GuiFixture fixture;
        Module& module = fixture.module();
        // The screen before, its button that opens the next screen, the next screen and the
        // buttons there that go back to respecify or start again.
        const struct {
            const char* from;
            const char* onward;
            const char* to;
            std::vector<const char*> discarding;
        } steps[] = {
            {"VARSUR", "Command1", "VWaldT2", {"Command5", "Command3"}},
            {"VWaldT2", "Command2", "VARSTR1", {"Command4"}},
            {"VARDECOMP", "Command1", "VIRPlot2", {"Command2"}},
            {"VBernanke1", "Command1", "VBernanke2", {"Command2"}},
            {"VBernanke2", "Command4", "VBernanke3", {"Command3"}},
            {"VBernanke2", "Command1", "VWaldT3", {"Command5", "Command3"}},
        };
        for (const auto& step : steps) {
            const auto from = CreateScreen(module, step.from);
            const auto to = CreateScreen(module, step.to);
            for (const char* discarding : step.discarding) {
                QVERIFY2(!Overlap((*from)(step.onward), (*to)(discarding)),
                         (std::string(step.from) + " " + step.to + " " + discarding).c_str());
            }
        }
    }

    void aDoubleClickOnEveryContinueOfTheDemoMovesOneScreenOn() { DoubleClickEveryWayOn("demo"); }

    void aDoubleClickOnEveryContinueOfTheStructuralRoadMovesOneScreenOn() {
        DoubleClickEveryWayOn("structural");
    }

    // "Equation OK" stays where it is and asks for the next equation: a double click enters one
    // equation, not two.
    void aDoubleClickOnEquationOkEntersOneEquation() {
        const DoubleClickInterval interval(300);
        GuiFixture fixture;
        QVERIFY(fixture.show());
        ScriptRoad road(fixture, "structural");
        bool doubled = false;
        std::string equation;
        int rows = 0;
        const bool walked = road.walk([&](const RoadLine& line, const RoadLine*) {
            if (doubled || line.text != "click VBernanke1.Command1") {
                return false;
            }
            road.settle();
            auto* button = fixture.widget<QPushButton>("VBernanke1", "Command1");
            if (button == nullptr) {
                return false;
            }
            const QPoint at = button->mapTo(&fixture.frame(), button->rect().center());
            QTest::mouseDClick(fixture.frame().windowHandle(), Qt::LeftButton, {}, at);
            Screen& screen = *fixture.module().LoadedScreen("VBernanke1");
            equation = screen("Text1").Caption;
            rows = screen("List3").ListCount();
            doubled = true;
            return true;
        });
        QVERIFY2(walked, road.problems().c_str());
        QVERIFY(doubled);
        QCOMPARE(QString::fromStdString(equation), QStringLiteral(" 2"));
        QCOMPARE(rows, 3);
        QCOMPARE(road.log(), road.expectedLog());
    }
};

LORVANE_GUI_SUITE(DoubleClickTest);

} // namespace lorvane::guitest

#include "DoubleClick_test.moc"
