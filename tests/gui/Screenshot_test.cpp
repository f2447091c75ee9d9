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
        fixture.define("Alpha", [](TestScreen& s) {
            Control& report = s.add(ControlKind::TextBox, "Text1", "", 240, 480, 5880, 3000);
            report.MultiLine = true;
            report.Locked = true;
            report.Font = FontFace::Fixed;
        });
        fixture.go("Alpha");
        Control& report = fixture.screen("Alpha")("Text1");
        std::string lines;
        for (int i = 1; i <= 80; ++i) {
            lines += "Line " + std::to_string(i) + " of the report\r\n";
        }
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

    void theScriptDriverTakesScreenshots() {
        GuiFixture fixture;
        DefineScreens(fixture);
        const QString file = OutputFile("screenshot-script.png");
        QFile::remove(file);
        std::ostringstream out;
        std::ostringstream errors;
        ScriptDriver driver(
            fixture.module(), fixture.scripted(), out, errors,
            [&fixture] { fixture.module().GoToScreen("Alpha"); },
            [&fixture](const std::string& name) {
                return gui::SaveScreenshot(fixture.frame(), name);
            });
        std::istringstream script("expect-screen Alpha\nscreenshot \"" + file.toStdString() +
                                  "\"\n");
        QCOMPARE(driver.Run(script), static_cast<int>(ScriptDriver::Done));
        QVERIFY2(errors.str().empty(), errors.str().c_str());
        QCOMPARE(QImage(file).size(), QSize(640, 480));
    }
};

LORVANE_GUI_SUITE(ScreenshotTest);

} // namespace lorvane::guitest

#include "Screenshot_test.moc"
