// The keyboard and the pointer: Enter and Escape press the default and cancel buttons, the focus
// goes where the screens send it, Tab follows the layout, and long work shows the hourglass and
// a working time that counts.

#include <QAbstractButton>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTest>

#include <fstream>
#include <map>
#include <set>

#include "ScriptRoad.h"
#include "estimate/EstimationView.h"
#include "frame/NumberText.h"
#include "frame/ScreenTable.h"
#include "platform/Clock.h"

namespace lorvane::guitest {

namespace {

// Enter, or Escape, where the focus is now.
void Press(Qt::Key key) {
    QWidget* focused = QApplication::focusWidget();
    QVERIFY(focused != nullptr);
    QTest::keyClick(focused, key);
}

// A control of the view that takes the focus and is not a button.
QWidget* NotAButton(QWidget* view) {
    for (QWidget* child : view->findChildren<QWidget*>()) {
        if (qobject_cast<QAbstractButton*>(child) == nullptr && child->isVisible() &&
            child->isEnabled() && (child->focusPolicy() & Qt::TabFocus) != 0 &&
            child->parentWidget() == view) {
            return child;
        }
    }
    return nullptr;
}

// Shows the frame and waits until it has the keys.
bool ShownActive(GuiFixture& fixture) {
    return fixture.show() && QTest::qWaitForWindowActive(&fixture.frame());
}

// Marks of the screens that are loaded now: default and cancel buttons by screen.
std::set<std::string> Marked(Module& module, bool Control::*mark) {
    std::set<std::string> marked;
    for (Screen* screen : module.LoadedScreens()) {
        for (const Control& control : screen->Controls()) {
            if (control.*mark) {
                marked.insert(UpperCase(screen->Name()) + "." + control.Name);
            }
        }
    }
    return marked;
}

} // namespace

class KeyboardTest : public QObject {
    Q_OBJECT

private slots:
    void enterAndEscapePressTheMarkedButtonsWhereverTheFocusIs() {
        GuiFixture fixture;
        fixture.define("Alpha", [](TestScreen& s) {
            s.add(ControlKind::TextBox, "Text1", "", 240, 480, 2000, 315);
            s.add(ControlKind::ListBox, "List1", "", 240, 1000, 2000, 1500).AddItem("a");
            s.add(ControlKind::Button, "Command1", "Start", 240, 6120, 1440, 420);
            s.add(ControlKind::Button, "Command2", "Other", 1800, 6120, 1440, 420);
            s.add(ControlKind::Button, "Command3", "Cancel", 3360, 6120, 1440, 420);
            s.SetDefault("Command1");
            s.SetCancel("Command3");
        });
        fixture.go("Alpha");
        QVERIFY(ShownActive(fixture));
        std::vector<std::string>& events = fixture.screen("Alpha").events;

        // From a text box and from a list, Enter presses the default button.
        for (const char* from : {"Text1", "List1"}) {
            fixture.widget<QWidget>("Alpha", from)->setFocus();
            Press(Qt::Key_Return);
        }
        Press(Qt::Key_Enter);
        QCOMPARE(events,
                 (std::vector<std::string>{"Click Command1", "Click Command1", "Click Command1"}));
        // A button with the focus takes Enter itself.
        events.clear();
        fixture.widget<QWidget>("Alpha", "Command2")->setFocus();
        Press(Qt::Key_Return);
        Press(Qt::Key_Escape);
        QCOMPARE(events, (std::vector<std::string>{"Click Command2", "Click Command3"}));

        // A disabled or hidden default button is not pressed; a new default takes the mark.
        events.clear();
        TestScreen& alpha = fixture.screen("Alpha");
        alpha("Command1").Enabled = false;
        alpha("Command3").Visible = false;
        fixture.frame().refresh();
        fixture.widget<QWidget>("Alpha", "Text1")->setFocus();
        Press(Qt::Key_Return);
        Press(Qt::Key_Escape);
        QVERIFY(events.empty());
        alpha.SetDefault("Command2");
        QVERIFY(!alpha("Command1").Default);
        Press(Qt::Key_Return);
        QCOMPARE(events, std::vector<std::string>{"Click Command2"});
    }

    void tabFollowsTheLayoutAndTheFocusGoesWhereTheScreenSendsIt() {
        GuiFixture fixture;
        fixture.define("Alpha", [](TestScreen& s) {
            // Made in another order than they lie.
            s.add(ControlKind::Button, "Command2", "Right", 5000, 6120, 1440, 420);
            s.add(ControlKind::Button, "Command1", "Left", 240, 6150, 1440, 420);
            s.add(ControlKind::TextBox, "Text1", "", 240, 480, 2000, 315);
            s.add(ControlKind::Label, "Label1", "Not a stop", 3000, 480, 2000, 315);
            s.onClick = [](TestScreen& screen, Control& c) {
                if (c.Name == "Command2") {
                    screen.SetFocus("Text1");
                }
            };
        });
        fixture.go("Alpha");
        QVERIFY(ShownActive(fixture));
        auto* text = fixture.widget<QWidget>("Alpha", "Text1");
        auto* left = fixture.widget<QWidget>("Alpha", "Command1");
        auto* right = fixture.widget<QWidget>("Alpha", "Command2");
        text->setFocus();
        QTest::keyClick(text, Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), left);
        QTest::keyClick(left, Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), right);

        // The screen sends the focus, and sends it again after the user moved it.
        QTest::keyClick(right, Qt::Key_Space);
        QCOMPARE(QApplication::focusWidget(), text);
        right->setFocus();
        QTest::keyClick(right, Qt::Key_Space);
        QCOMPARE(QApplication::focusWidget(), text);
    }

    // The keys on the module's own screens: along the demo and the structural road, each click on
    // a default button is an Enter instead, and the roads end as they do with the mouse; Escape
    // on the first screen leaves the module, and closes the saved text above the route screen.
    void theModulesScreensTakeEnterAndEscape() {
        std::set<std::string> defaults;
        std::set<std::string> entered;
        for (const char* example : {"demo", "structural"}) {
            GuiFixture fixture;
            QVERIFY(ShownActive(fixture));
            ScriptRoad road(fixture, example);
            Module& module = fixture.module();
            const bool walked = road.walk([&](const RoadLine& line, const RoadLine*) {
                const std::set<std::string> marked = Marked(module, &Control::Default);
                defaults.insert(marked.begin(), marked.end());
                const std::string target = UpperCase(line.screen()) + "." + line.control();
                if (line.words[0] != "click" || marked.count(target) == 0) {
                    return false;
                }
                road.settle();
                // The focus on the screen, but not on a button.
                QWidget* focus = NotAButton(fixture.view(line.screen()));
                if (focus == nullptr) {
                    return false;
                }
                focus->setFocus();
                QTest::keyClick(focus, Qt::Key_Return);
                entered.insert(target);
                return true;
            });
            QVERIFY2(walked, road.problems().c_str());
            QCOMPARE(road.log(), road.expectedLog());

            if (std::string(example) == "demo") {
                // The road ends on the first screen: Escape is its "Cancel".
                QCOMPARE(module.CurrentScreen, std::string("SelVar1"));
                QCOMPARE(Marked(module, &Control::Cancel),
                         std::set<std::string>{"SELVAR1.Command2"});
                road.settle();
                QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
                QVERIFY(module.Ended());
            }
        }
        QCOMPARE(entered, defaults);
        QVERIFY(entered.count("VARIR2.Command1") == 1);

        // The text of the route screen, saved and shown above it: Escape is its "Back".
        GuiFixture fixture;
        fixture.module().UseScreenTable(CreateScreen);
        std::ofstream(fixture.module().DataFile("VARTEXT.TMP")) << "\"Some text\"\r\n";
        fixture.pin("VARSTR2");
        QVERIFY(ShownActive(fixture));
        QCOMPARE(Marked(fixture.module(), &Control::Cancel),
                 std::set<std::string>{"VARSTR2.Command3"});
        fixture.widget<QWidget>("VARSTR2", "Text1")->setFocus();
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
        QVERIFY(fixture.module().LoadedScreen("VARSTR2") == nullptr);
    }

    // The keys alone, as a user presses them: along the demo and the restricted road, wherever
    // the road clicks the button that has the focus, Enter on the focused widget presses it
    // instead. The test never sets the focus. The estimation leads on by Enter (OLS, each SUR
    // round, FIML, Continue) and never back to the start; a fresh VARIR2 starts on Enter; after
    // "Done" of the plots, Escape on the first screen leaves the module.
    void enterLeadsOnWhereTheScreensSendTheFocus() {
        std::set<std::string> entered;
        std::set<std::string> focusOnEstimation;
        // The frame's title on each screen of the road, the last time the road was there.
        std::map<std::string, QString> titles;
        for (const char* example : {"demo", "restricted"}) {
            GuiFixture fixture;
            QVERIFY(ShownActive(fixture));
            ScriptRoad road(fixture, example);
            Module& module = fixture.module();
            const bool walked = road.walk([&](const RoadLine& line, const RoadLine*) {
                if (line.words[0] != "click") {
                    return false;
                }
                road.settle();
                QWidget* focused = QApplication::focusWidget();
                gui::ScreenView* view = fixture.view(line.screen());
                if (focused == nullptr || view == nullptr || !view->isAncestorOf(focused)) {
                    return false;
                }
                const std::string name = focused->objectName().toStdString();
                titles[UpperCase(line.screen())] = fixture.frame().windowTitle();
                if (UpperCase(line.screen()) == "VARSUR") {
                    focusOnEstimation.insert(name);
                }
                if (name != line.control()) {
                    return false;
                }
                QTest::keyClick(focused, Qt::Key_Return);
                entered.insert(std::string(example) + " " + line.text);
                return true;
            });
            QVERIFY2(walked, road.problems().c_str());
            QCOMPARE(road.log(), road.expectedLog());
            QCOMPARE(module.CurrentScreen, std::string("SelVar1"));
            road.settle();
            QWidget* focused = QApplication::focusWidget();
            QVERIFY(focused != nullptr);
            QTest::keyClick(focused, Qt::Key_Escape);
            QVERIFY(module.Ended());
        }
        for (const char* line :
             {"demo click VARSUR.Command3", "demo click VARSUR.Command5",
              "demo click VARSUR.Command1", "demo click VARIR2.Command1",
              "demo click VWaldT2.Command1", "demo click VWaldT2.Command2",
              "demo click VARDECOMP.Command1", "restricted click VARSUR.Command3",
              "restricted click VARSUR.Command4", "restricted click VARSUR.Command1"}) {
            QVERIFY2(entered.count(line) == 1, line);
        }
        QVERIFY(focusOnEstimation.count("Command2") == 0);
        // The title of the fork lasts as long as the fork.
        QVERIFY(titles["VARSTR1"].contains("Nonstructural VAR versus structural VAR"));
        for (const char* later : {"VARIR2", "VARDECOMP", "VIRPLOT2"}) {
            QVERIFY2(!titles[later].contains("versus"), qPrintable(titles[later]));
        }
    }

    // A handler that works for a few seconds and yields: meanwhile the frame shows the hourglass
    // and the status label counts the seconds; afterwards the pointer is normal again.
    void longWorkShowsTheHourglassAndCountsTheWorkingTime() {
        GuiFixture fixture;
        std::vector<QString> shown;
        std::vector<bool> waiting;
        fixture.define("Alpha", [&](TestScreen& s) {
            s.add(ControlKind::Label, "Label0", " Computing", 0, 0, 9600, 360);
            s.add(ControlKind::TextBox, "Text1", "", 240, 480, 9120, 5000).MultiLine = true;
            s.add(ControlKind::Button, "Command1", "Go", 240, 6120, 1440, 420);
            s.onClick = [&](TestScreen& screen, Control&) {
                EstimationView view(screen.owner(), screen("Label0"), screen("Text1"));
                view.Begin();
                view.Working();
                const Clock& clock = screen.owner().platform().clock;
                const double start = clock.secondsSinceMidnight();
                while (clock.secondsSinceMidnight() - start < 2.3) {
                    view.Pause();
                    shown.push_back(fixture.widget<QLabel>("Alpha", "Label0")->text());
                    waiting.push_back(fixture.frame().cursor().shape() == Qt::WaitCursor);
                    QTest::qWait(20);
                }
                screen("Label0").Caption = " Done";
            };
        });
        fixture.go("Alpha");
        QVERIFY(fixture.show());
        QTest::mouseClick(fixture.widget<QPushButton>("Alpha", "Command1"), Qt::LeftButton);
        QVERIFY(!shown.empty());
        QVERIFY(std::all_of(waiting.begin(), waiting.end(), [](bool on) { return on; }));
        const std::set<QString> seconds(shown.begin(), shown.end());
        QVERIFY(seconds.count(" Computing. Working time = 0") == 1);
        QVERIFY(seconds.count(" Computing. Working time = 1") == 1);
        QVERIFY(seconds.count(" Computing. Working time = 2") == 1);
        QCOMPARE(fixture.frame().cursor().shape(), Qt::ArrowCursor);

        // The module's own hourglass stays until the module takes it off.
        fixture.module().Pointer = MousePointer::Wait;
        fixture.frame().refresh();
        QCOMPARE(fixture.frame().cursor().shape(), Qt::WaitCursor);
        fixture.module().Pointer = MousePointer::Normal;
        fixture.frame().refresh();
        QCOMPARE(fixture.frame().cursor().shape(), Qt::ArrowCursor);
    }
};

LORVANE_GUI_SUITE(KeyboardTest);

} // namespace lorvane::guitest

#include "Keyboard_test.moc"
