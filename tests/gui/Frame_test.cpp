// The frame window: caption, size, the tick that keeps a pinned screen in place, the yields of
// long work, and the end of the module.

#include <fstream>

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

#include "GuiFixture.h"
#include "ScriptRoad.h"
#include "platform/EventPump.h"

namespace lorvane::guitest {

namespace {

void BuildFull(TestScreen& s) {
    s.add(ControlKind::Label, "Label0", " Full", 0, 0, 9600, 300);
    s.add(ControlKind::Button, "Command1", "Go", 1500, 3000, 1200, 450);
}

int StackIndex(QWidget* widget) {
    return widget->parentWidget()->children().indexOf(widget);
}

} // namespace

class FrameTest : public QObject {
    Q_OBJECT

private slots:
    void theFrameKeepsItsCaptionSizeAndTick() {
        GuiFixture fixture;
        fixture.define("Alpha", BuildFull);
        fixture.go("Alpha");
        gui::Wallpaper& frame = fixture.frame();
        QCOMPARE(frame.windowTitle(), QString("Lorvane International (Module VAR)"));
        QCOMPARE(frame.size(), QSize(640, 480));
        QCOMPARE(frame.minimumSize(), frame.maximumSize());
        QVERIFY(frame.frameTimer().isActive());
        QCOMPARE(frame.frameTimer().interval(), 2000);

        // Minimised, the frame shows the package's name and its tick rests; restored, both return.
        QVERIFY(fixture.show());
        frame.setWindowState(Qt::WindowMinimized);
        QCOMPARE(frame.windowTitle(), QString("LORVANE"));
        QVERIFY(!frame.frameTimer().isActive());
        frame.setWindowState(Qt::WindowNoState);
        QCOMPARE(frame.windowTitle(), QString("Lorvane International (Module VAR)"));
        QVERIFY(frame.frameTimer().isActive());
    }

    void aPinnedScreenStaysOnTopAndReturnsToItsPlace() {
        GuiFixture fixture;
        fixture.define("Alpha", BuildFull);
        // Half the design size, pinned above a full screen.
        fixture.define("Small", BuildFull, 4800, 3600);
        fixture.go("Alpha");
        fixture.pin("Small");
        QVERIFY(fixture.show());
        gui::ScreenView* alpha = fixture.view("Alpha");
        gui::ScreenView* small = fixture.view("Small");
        QVERIFY(small != nullptr);
        // Centred in the frame, above the current screen.
        QCOMPARE(small->geometry(), QRect(160, 120, 320, 240));
        QVERIFY(StackIndex(small) > StackIndex(alpha));

        // Dragged away and lost behind the other screen ...
        Screen& pinned = fixture.screen("Small");
        pinned.Left = 0;
        pinned.Top = 0;
        fixture.frame().refresh();
        alpha->raise();
        QCOMPARE(small->pos(), QPoint(0, 0));
        QVERIFY(StackIndex(small) < StackIndex(alpha));

        // ... the tick brings it back, on top, with the focus.
        fixture.frame().activateWindow();
        fixture.frame().tick();
        QCOMPARE(small->geometry(), QRect(160, 120, 320, 240));
        QVERIFY(StackIndex(small) > StackIndex(alpha));
        QVERIFY(QTest::qWaitForWindowActive(&fixture.frame()));
        QVERIFY(small->isAncestorOf(QApplication::focusWidget()));
    }

    void statusLabelsRepaintWhileLongWorkYields() {
        GuiFixture fixture;
        std::vector<QString> shown;
        int paints = 0;
        std::vector<int> paintsAtStage;
        struct PaintCounter : QObject {
            int* paints;
            explicit PaintCounter(int* counter) : paints(counter) {}
            bool eventFilter(QObject*, QEvent* event) override {
                if (event->type() == QEvent::Paint) {
                    ++*paints;
                }
                return false;
            }
        } counter(&paints);
        fixture.define("Alpha", [&](TestScreen& s) {
            BuildFull(s);
            s.onClick = [&](TestScreen& screen, Control&) {
                for (int stage = 1; stage <= 3; ++stage) {
                    screen("Label0").Caption = "Stage " + std::to_string(stage) + ". Working time";
                    screen.owner().platform().events.yield();
                    shown.push_back(fixture.widget<QLabel>("Alpha", "Label0")->text());
                    paintsAtStage.push_back(paints);
                }
            };
        });
        fixture.go("Alpha");
        QVERIFY(fixture.show());
        auto* label = fixture.widget<QLabel>("Alpha", "Label0");
        label->installEventFilter(&counter);
        QTest::qWait(20);
        QTest::mouseClick(fixture.widget<QPushButton>("Alpha", "Command1"), Qt::LeftButton);

        QCOMPARE(shown, (std::vector<QString>{"Stage 1. Working time", "Stage 2. Working time",
                                              "Stage 3. Working time"}));
        // Each stage was painted before the work went on.
        QCOMPARE(paintsAtStage.size(), std::size_t{3});
        QVERIFY(paintsAtStage[0] >= 1);
        QVERIFY(paintsAtStage[1] > paintsAtStage[0]);
        QVERIFY(paintsAtStage[2] > paintsAtStage[1]);
    }

    void theEndOfTheModuleIsReportedOnce() {
        GuiFixture fixture;
        fixture.define("Alpha", [](TestScreen& s) {
            BuildFull(s);
            s.onClick = [](TestScreen& screen, Control&) { screen.owner().ModuleEnd(); };
        });
        fixture.go("Alpha");
        QVERIFY(fixture.show());
        QSignalSpy ended(&fixture.frame(), &gui::Wallpaper::moduleEnded);
        QTest::mouseClick(fixture.widget<QPushButton>("Alpha", "Command1"), Qt::LeftButton);
        QVERIFY(fixture.module().Ended());
        QCOMPARE(ended.count(), 1);
        QVERIFY(fixture.frame().views().empty());
        QVERIFY(!fixture.frame().frameTimer().isActive());
        fixture.frame().afterEvent();
        QCOMPARE(ended.count(), 1);
    }

    void aRunTimeErrorOrClosingTheFrameEndsTheModule() {
        GuiFixture failing;
        failing.define("Alpha", [](TestScreen& s) {
            BuildFull(s);
            s.onClick = [](TestScreen&, Control&) { throw RuntimeError::Of(DivisionByZero); };
        });
        failing.go("Alpha");
        QSignalSpy failed(&failing.frame(), &gui::Wallpaper::moduleEnded);
        QVERIFY(failing.show());
        QTest::mouseClick(failing.widget<QPushButton>("Alpha", "Command1"), Qt::LeftButton);
        QCOMPARE(failed.count(), 1);
        QCOMPARE(failing.module().Failure()->Number(), DivisionByZero);

        GuiFixture closing;
        closing.define("Alpha", BuildFull);
        closing.go("Alpha");
        QVERIFY(closing.show());
        const std::filesystem::path active = closing.module().WorkFolder / "ACTIVEMODULE.TXT";
        std::ofstream(active) << "\"VAR\"\r\n";
        QSignalSpy closed(&closing.frame(), &gui::Wallpaper::moduleEnded);
        QVERIFY(closing.frame().close());
        QCOMPARE(closed.count(), 1);
        QVERIFY(!closing.module().Failure());
        QVERIFY(!std::filesystem::exists(active));
    }

    // After OLS the estimates are on the screen and not in the log: the close box asks, "No"
    // keeps the screen and its report, "Yes" ends the module.
    void theCloseBoxAsksBeforeEstimatesGo() {
        GuiFixture fixture;
        QVERIFY(fixture.show());
        ScriptRoad road(fixture, "demo");
        Module& module = fixture.module();
        bool asked = false;
        bool closedOnNo = true;
        bool endedOnNo = true;
        std::string screenAfterNo;
        std::string reportAfterNo;
        bool closedOnYes = false;
        road.walk([&](const RoadLine& line, const RoadLine*) {
            if (asked || line.text != "click VARSUR.Command5") {
                return false;
            }
            asked = true;
            fixture.scripted().QueueAnswer("No");
            closedOnNo = fixture.frame().close();
            endedOnNo = module.Ended();
            screenAfterNo = module.CurrentScreen;
            reportAfterNo = (*module.LoadedScreen("VARSUR"))("Text1").Caption;
            fixture.scripted().QueueAnswer("Yes");
            closedOnYes = fixture.frame().close();
            return true;
        });
        QVERIFY(asked);
        QVERIFY(!closedOnNo);
        QVERIFY(!endedOnNo);
        QCOMPARE(screenAfterNo, std::string("VARSUR"));
        QVERIFY(reportAfterNo.find("OLS") != std::string::npos);
        QCOMPARE(fixture.scripted().Shown().size(), std::size_t(2));
        QVERIFY(fixture.scripted().Shown().front().find("Discard them? -> No") !=
                std::string::npos);
        QVERIFY(closedOnYes);
        QVERIFY(module.Ended());
    }
};

LORVANE_GUI_SUITE(FrameTest);

} // namespace lorvane::guitest

#include "Frame_test.moc"
