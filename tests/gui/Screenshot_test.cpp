// Screenshots of the frame as PNG files, shown or not, and through the script driver.

#include <sstream>

#include <QDir>
#include <QFile>
#include <QImageReader>
#include <QTest>

#include "GuiFixture.h"
#include "Screenshot.h"
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
