// Screenshots of the frame as PNG files, shown or not, and through the script driver.

#include <sstream>

#include <QDir>
#include <QFile>
#include <QImageReader>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTest>

#include "GuiFixture.h"
#include "Screenshot.h"
#include "Style.h"
#include "frame/ScriptDriver.h"

namespace lorvane::guitest {

namespace {

QString OutputFile(const char* name) {
    return QStringLiteral(LORVANE_GUI_OUTPUT_DIR "/") + name;
}

void DefineScreens(GuiFixture& fixture) {
    fixture.define("Alpha", [](TestScreen& s) {
        s.add(ControlKind::Label, "Label0", " Select the variables in your VAR model", 0, 0, 9600,
              300)
            .Heading = true;
        s.add(ControlKind::Button, "Command1", "Cancel", 7800, 6300, 1500, 450);
    });
    fixture.define(
        "Small",
        [](TestScreen& s) { s.add(ControlKind::Button, "Command1", "OK", 1500, 2400, 1200, 450); },
        4800, 3600);
}

// A results box of the report's kind: many lines, locked, in the fixed-pitch font.
void AddReport(TestScreen& s) {
    Control& report = s.add(ControlKind::TextBox, "Text1", "", 240, 480, 5880, 3000);
    report.MultiLine = true;
    report.Locked = true;
    report.Font = FontFace::Fixed;
}

// Lines 1 to count of a report, each with its line end.
std::string ReportLines(int count) {
    std::string lines;
    for (int i = 1; i <= count; ++i) {
        lines += "Line " + std::to_string(i) + " of the report\r\n";
    }
    return lines;
}

bool IsHeadingBlue(QColor colour) {
    return colour.blue() > 120 && colour.red() < 80 && colour.green() < 100;
}

} // namespace

class ScreenshotTest : public QObject {
    Q_OBJECT

private slots:
    void aScreenshotIsAPngOfTheFrameAndItsScreens() {
        GuiFixture fixture;
        DefineScreens(fixture);
        fixture.go("Alpha");
        // The frame need not be shown: a headless run never shows it.
        QVERIFY(!fixture.frame().isVisible());
        const QString file = OutputFile("screenshot-alpha.png");
        QFile::remove(file);
        QVERIFY(gui::SaveScreenshot(fixture.frame(), file.toStdString()));
        QVERIFY(QFile(file).size() > 0);
        QImageReader reader(file);
        QCOMPARE(reader.format(), QByteArray("png"));
        const QImage image = reader.read();
        QCOMPARE(image.size(), QSize(640, 480));
        QVERIFY(IsHeadingBlue(image.pixelColor(300, 10)));

        // A pinned screen shows above the current one.
        const QColor beforePin = image.pixelColor(320, 240);
        fixture.pin("Small");
        const QImage pinned = gui::RenderFrame(fixture.frame());
        QVERIFY(pinned.pixelColor(161, 121) != beforePin ||
                pinned.pixelColor(479, 359) != beforePin);
        QVERIFY(IsHeadingBlue(pinned.pixelColor(300, 10)));

        // A missing folder is made; a place that cannot be a folder fails.
        QDir(OutputFile("made")).removeRecursively();
        QVERIFY(
            gui::SaveScreenshot(fixture.frame(), OutputFile("made/screenshot.png").toStdString()));
        QFile blocker(OutputFile("blocker"));
        QVERIFY(blocker.open(QIODevice::WriteOnly));
        blocker.close();
        QVERIFY(!gui::SaveScreenshot(fixture.frame(),
                                     OutputFile("blocker/screenshot.png").toStdString()));
    }

    // A report that grows is shown at its end, on the screen and in a screenshot of a frame that
    // was never shown; a report that is replaced keeps the place the user scrolled to.
    void aGrowingReportIsFollowedToItsEnd() {
        GuiFixture fixture;
        fixture.define("Alpha", AddReport);
        fixture.go("Alpha");
        Control& report = fixture.screen("Alpha")("Text1");
        const std::string lines = ReportLines(80);
        report.Caption = lines;
        const QImage first = gui::RenderFrame(fixture.frame());
        report.Caption += "The closing note\r\n";
        const QImage second = gui::RenderFrame(fixture.frame());
        auto* text = fixture.widget<QPlainTextEdit>("Alpha", "Text1");
        QScrollBar* down = text->verticalScrollBar();
        QVERIFY(down->maximum() > 0);
        QCOMPARE(down->value(), down->maximum());
        QVERIFY(first != second);

        down->setValue(10);
        report.Caption = lines;
        fixture.frame().refresh();
        QCOMPARE(down->value(), 10);

        // The report's lines fit the box at the report size: no scrolling across.
        report.Caption = std::string(gui::ReportColumns, '0') + "\r\n";
        fixture.frame().refresh();
        gui::RenderFrame(fixture.frame());
        QCOMPARE(text->horizontalScrollBar()->maximum(), 0);
    }

    // A script's screenshots: the frame follows the module between the lines, so that a report
    // that grew shows its end; a box is taken over the frame when it comes, before its answer.
    void theScriptDriverTakesScreenshotsOfTheFrameAndOfBoxes() {
        GuiFixture fixture;
        fixture.define("Alpha", [](TestScreen& s) {
            AddReport(s);
            s.add(ControlKind::Button, "Command1", "Ask", 7800, 5700, 1500, 450);
            s.add(ControlKind::Button, "Command2", "More", 7800, 6300, 1500, 450);
            s.onClick = [](TestScreen& screen, Control& control) {
                if (control.Name == "Command1") {
                    screen.owner().boxes().MessageBoxFull("Are you sure?", 4, "Alpha");
                    return;
                }
                screen("Text1").Caption += ReportLines(40);
            };
        });
        const QString frameFile = OutputFile("screenshot-script.png");
        const QString boxFile = OutputFile("screenshot-box.png");
        QFile::remove(frameFile);
        QFile::remove(boxFile);
        std::ostringstream out;
        std::ostringstream errors;
        auto driver = [&] {
            return std::make_unique<ScriptDriver>(
                fixture.module(), fixture.scripted(), out, errors,
                [&fixture] { fixture.module().GoToScreen("Alpha"); },
                ScriptCamera{[&fixture] { gui::Follow(fixture.frame()); },
                             [&fixture](const std::string& name, const BoxRequest* box) {
                                 return gui::SaveScreenshot(fixture.frame(), name, box);
                             }});
        };
        std::istringstream script("expect-screen Alpha\n"
                                  "click Alpha.Command2\n"
                                  "click Alpha.Command2\n"
                                  "screenshot \"" +
                                  frameFile.toStdString() +
                                  "\"\n"
                                  "screenshot-box \"" +
                                  boxFile.toStdString() +
                                  "\"\n"
                                  "answer No\n"
                                  "click Alpha.Command1\n");
        QCOMPARE(driver()->Run(script), static_cast<int>(ScriptDriver::Done));
        QVERIFY2(errors.str().empty(), errors.str().c_str());

        QScrollBar* down = fixture.widget<QPlainTextEdit>("Alpha", "Text1")->verticalScrollBar();
        QVERIFY(down->maximum() > 0);
        QCOMPARE(down->value(), down->maximum());
        const QImage frame(frameFile);
        const QImage box(boxFile);
        QCOMPARE(frame.size(), QSize(640, 480));
        QCOMPARE(box.size(), frame.size());
        // The box lies in the middle, its heading above its text.
        QVERIFY(box.pixelColor(320, 240) != frame.pixelColor(320, 240) ||
                box.pixelColor(320, 200) != frame.pixelColor(320, 200));
        bool heading = false;
        for (int y = 120; y < 240 && !heading; ++y) {
            heading = IsHeadingBlue(box.pixelColor(320, y));
        }
        QVERIFY(heading);

        // A box that never comes fails the script at the line that waited for it.
        errors.str("");
        std::istringstream waiting("screenshot-box \"" + boxFile.toStdString() + "\"\n" +
                                   "click Alpha.Command2\n");
        QCOMPARE(driver()->Run(waiting), static_cast<int>(ScriptDriver::ExpectFailed));
        QCOMPARE(errors.str(), std::string("line 1: no box was shown after this line\n"));
    }
};

LORVANE_GUI_SUITE(ScreenshotTest);

} // namespace lorvane::guitest

#include "Screenshot_test.moc"
