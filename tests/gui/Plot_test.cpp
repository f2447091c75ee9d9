// The response plots on the desktop: the picture shows the surface the plot screen draws on,
// the pointer reads the horizon, saved pictures are real bitmaps of their responses, numbered
// without overwriting, and the demo leaves nine of them.

#include <QLabel>
#include <QListWidget>
#include <QMouseEvent>
#include <QPushButton>
#include <QTest>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>

#include "GuiFixture.h"
#include "Style.h"
#include "data/CsvImport.h"
#include "frame/NumberText.h"
#include "frame/ScreenTable.h"
#include "frame/ScriptDriver.h"
#include "frame/Startup.h"
#include "frame/TextFile.h"
#include "innovation/PlotDrawing.h"
#include "innovation/ResponsePlot.h"

namespace lorvane::guitest {

namespace {

const std::filesystem::path SourceFolder = LORVANE_SOURCE_DIR;

// Two variables, horizons 0..10: x dies out from 2, y swings around zero with a wide band.
void WriteResponses(const Workspace& workspace) {
    TextOutput out(workspace.DataFile("VARIR2.TMP"), TextOutput::Mode::Output);
    out.WriteRecord(CommaRecord().Whole(10).Whole(2));
    for (int block = 0; block < 4; ++block) {
        const int i = block / 2;
        const double largest = i == 0 ? 2.0 : 0.5;
        out.WriteRecord(CommaRecord().Text(std::string("Response of ") + (i == 0 ? "x" : "y") +
                                           " to a unit shock in " + (block % 2 == 0 ? "x" : "y")));
        out.WriteRecord(CommaRecord().Number(largest));
        for (int h = 0; h <= 10; ++h) {
            const double psi =
                largest * std::pow(i == 0 ? 0.7 : -0.6, h) / (block % 2 == 0 ? 1 : 2);
            out.WriteRecord(CommaRecord().Number(psi).Number(largest * (0.08 + 0.01 * h)));
        }
    }
    out.Close();
}

// The pixel of a position in the plot's units.
QPoint PixelOf(const QImage& image, double x, double y) {
    return {static_cast<int>(std::floor(x / PlotWidth * image.width())),
            static_cast<int>(std::floor(y / PlotHeight * image.height()))};
}

// Whether a pixel within one of the position has the quality asked for.
bool Near(const QImage& image, double x, double y, const std::function<bool(QColor)>& is) {
    const QPoint centre = PixelOf(image, x, y);
    for (int dy = -1; dy <= 1; ++dy) {
        for (int dx = -1; dx <= 1; ++dx) {
            const QPoint at = centre + QPoint(dx, dy);
            if (image.rect().contains(at) && is(image.pixelColor(at))) {
                return true;
            }
        }
    }
    return false;
}

bool Blue(QColor c) {
    return c.blue() > 140 && c.red() < 110 && c.green() < 140;
}
bool Orange(QColor c) {
    return c.red() > 200 && c.green() > 80 && c.green() < 160 && c.blue() < 80;
}
bool DarkGrey(QColor c) {
    return c.red() < 170 && std::abs(c.red() - c.blue()) < 20 && std::abs(c.red() - c.green()) < 20;
}

// What a picture must show of its response: the frame, the response at every horizon, and a
// dot at every band point inside the frame.
void CheckPicture(const QImage& image, const ResponsePlot& plot, const PlotFrame& frame) {
    const double height = frame.Bottom - frame.Top;
    const auto x = [&](int h) { return frame.Left + (frame.Right - frame.Left) * h / plot.H; };
    const auto y = [&](double v) {
        return frame.Top + height * (0.05 + 0.9 * (1.05 * plot.M - v) / (2.1 * plot.M));
    };
    for (const double along : {0.3, 0.6}) {
        const double across = frame.Left + along * (frame.Right - frame.Left);
        QVERIFY(Near(image, across, frame.Top, DarkGrey));
        QVERIFY(Near(image, across, frame.Bottom, DarkGrey));
    }
    // The sides, where no band dot at the first or the last horizon covers them.
    int sides = 0;
    for (int tenth = 1; tenth <= 9; ++tenth) {
        sides += Near(image, frame.Left, frame.Top + height * tenth / 10, DarkGrey) ? 1 : 0;
        sides += Near(image, frame.Right, frame.Top + height * tenth / 10, DarkGrey) ? 1 : 0;
    }
    QVERIFY(sides >= 14);
    // The response between every two horizons, where neither the zero line nor a tick covers it.
    for (int h = 0; h < plot.H; ++h) {
        const auto i = static_cast<std::size_t>(h);
        const double middle = (y(plot.Psi[i]) + y(plot.Psi[i + 1])) / 2;
        if (std::abs(middle - y(0)) > 0.015) {
            QVERIFY2(Near(image, (x(h) + x(h + 1)) / 2, middle, Blue),
                     qPrintable(QString::number(h)));
        }
    }
    // The two standard error dots at every horizon, where they lie inside the frame and off the
    // response line and the zero line.
    for (int h = 0; h <= plot.H; ++h) {
        const auto i = static_cast<std::size_t>(h);
        for (const double band : {plot.Psi[i] + 2 * plot.SE[i], plot.Psi[i] - 2 * plot.SE[i]}) {
            const double at = y(band);
            if (at > frame.Top + 0.02 && at < frame.Bottom - 0.02 &&
                std::abs(at - y(plot.Psi[i])) > 0.02 && std::abs(at - y(0)) > 0.02) {
                QVERIFY2(Near(image, x(h), at, Orange), qPrintable(QString::number(h)));
                // A dot is a disc that shows: a dozen pixels at least.
                const QPoint centre = PixelOf(image, x(h), at);
                int size = 0;
                for (int dy = -3; dy <= 3; ++dy) {
                    for (int dx = -3; dx <= 3; ++dx) {
                        const QPoint p = centre + QPoint(dx, dy);
                        size += image.rect().contains(p) && Orange(image.pixelColor(p)) ? 1 : 0;
                    }
                }
                QVERIFY2(size >= 12, qPrintable(QString::number(h)));
            }
        }
    }
}

QImage Rgb(const QImage& image) {
    return image.convertToFormat(QImage::Format_RGB32);
}

} // namespace

class PlotTest : public QObject {
    Q_OBJECT

private:
    // A frame with the module's own screens, on the plot screen with the made-up responses.
    static void OpenPlots(GuiFixture& fixture) {
        fixture.module().UseScreenTable(CreateScreen);
        WriteResponses(fixture.module());
        fixture.go("VIRPlot2");
        QVERIFY(fixture.show());
        QCOMPARE(fixture.module().CurrentScreen, std::string("VIRPlot2"));
    }
    static const gui::QtSurface* Surface(GuiFixture& fixture) {
        return dynamic_cast<const gui::QtSurface*>(
            (*fixture.module().LoadedScreen("VIRPlot2"))("Picture1").Drawing.get());
    }
    static void MoveTo(QWidget* widget, QPointF at) {
        QMouseEvent move(QEvent::MouseMove, at, widget->mapToGlobal(at), Qt::NoButton, Qt::NoButton,
                         Qt::NoModifier);
        QCoreApplication::sendEvent(widget, &move);
    }
    static void DoubleClickRow(GuiFixture& fixture, int row) {
        auto* list = fixture.widget<QListWidget>("VIRPlot2", "List1");
        QVERIFY(list != nullptr);
        const QRect rect = list->visualItemRect(list->item(row));
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, rect.center());
        QTest::mouseDClick(list->viewport(), Qt::LeftButton, {}, rect.center());
    }

private slots:
    void thePictureShowsThePlotAndThePointerReadsTheHorizon() {
        GuiFixture fixture;
        OpenPlots(fixture);
        const gui::QtSurface* surface = Surface(fixture);
        QVERIFY(surface != nullptr);
        auto* picture = fixture.widget<gui::PictureWidget>("VIRPlot2", "Picture1");
        QVERIFY(picture != nullptr);
        QCOMPARE(picture->size(), QSize(608, 260));
        QCOMPARE(surface->image().size(), QSize(608, 260));
        QCOMPARE(Rgb(picture->grab().toImage()), Rgb(surface->image()));
        // The picture is the plot of the first response, drawn as on any surface of its size.
        const ResponsePlot plot = ReadResponsePlot(fixture.module(), 1);
        gui::QtSurface fresh(608, 260);
        const PlotFrame frame = DrawResponsePlot(fresh, plot);
        QCOMPARE(Rgb(surface->image()), Rgb(fresh.image()));
        CheckPicture(surface->image(), plot, frame);

        // The pointer over horizon 4, then beyond the right end of the frame.
        const Control& aux = (*fixture.module().LoadedScreen("VIRPlot2"))("AuxList");
        const double left = Val(aux.Items[1]);
        const double right = Val(aux.Items[2]);
        const QPointF four((left + (right - left) * 0.41) / PlotWidth * 608, 130);
        MoveTo(picture, four);
        auto* state = fixture.widget<QLabel>("VIRPlot2", "Label0");
        QCOMPARE(state->text(), QString(" Mousepointer = horizon 4"));
        MoveTo(picture, QPointF(607, 40));
        QCOMPARE(state->text(), QString(" Mousepointer = horizon 10"));

        // A double click prints the horizon at the top of the frame, into the picture shown.
        MoveTo(picture, four);
        const QImage before = picture->grab().toImage();
        QTest::mouseDClick(picture, Qt::LeftButton, {}, four.toPoint());
        const QImage after = picture->grab().toImage();
        QVERIFY(before != after);
        QCOMPARE(Rgb(after), Rgb(Surface(fixture)->image()));
        int marked = 0;
        const int top = static_cast<int>(Val(aux.Items[3]) * 260);
        for (int y = top; y < top + 14; ++y) {
            for (int x = static_cast<int>(four.x()); x < four.x() + 16; ++x) {
                marked += before.pixelColor(x, y) != after.pixelColor(x, y) ? 1 : 0;
            }
        }
        QVERIFY(marked > 10);
    }

    // On a display of two device pixels to a pixel the screen gets the plot at its resolution;
    // the bitmap is the same as on any other display.
    void aSharpDisplayGetsThePlotAtItsResolution() {
        GuiFixture fixture;
        OpenPlots(fixture);
        const ResponsePlot plot = ReadResponsePlot(fixture.module(), 1);
        gui::QtSurface plain(608, 260);
        gui::QtSurface sharp(608, 260, 2);
        DrawResponsePlot(plain, plot);
        const PlotFrame frame = DrawResponsePlot(sharp, plot);
        QCOMPARE(Rgb(sharp.image()), Rgb(plain.image()));
        QCOMPARE(plain.shownImage().size(), QSize(608, 260));
        QCOMPARE(sharp.shownImage().size(), QSize(1216, 520));
        QCOMPARE(sharp.shownImage().devicePixelRatio(), 2.0);
        // Scaled back, the sharp picture shows the same plot.
        const QImage halved =
            sharp.shownImage().scaled(608, 260, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        CheckPicture(halved, plot, frame);
    }

    void theResponseTheBandsAndTheFrameDifferInGrey() {
        const int response = qGray(gui::ToQColor(PlotResponseColour).rgb());
        const int band = qGray(gui::ToQColor(PlotBandColour).rgb());
        const int background = qGray(gui::ToQColor(PlotBackground).rgb());
        QVERIFY(std::abs(response - band) >= 40);
        QVERIFY(background - band >= 60);
        QVERIFY(background - response >= 60);
    }

    void savedPicturesAreNumberedBitmapsThatNeverOverwrite() {
        GuiFixture fixture;
        OpenPlots(fixture);
        const std::filesystem::path folder = fixture.module().DataSubfolder();
        auto save = [&fixture] {
            auto* button = fixture.widget<QPushButton>("VIRPlot2", "Command1");
            QVERIFY(button != nullptr && button->isEnabled());
            QTest::mouseClick(button, Qt::LeftButton);
        };

        save();
        const QImage first(QString::fromStdString((folder / "IRP00001.BMP").string()));
        QCOMPARE(first.size(), QSize(608, 260));
        QCOMPARE(Rgb(first), Rgb(Surface(fixture)->image()));
        QVERIFY(!fixture.widget<QPushButton>("VIRPlot2", "Command1")->isEnabled());

        DoubleClickRow(fixture, 3);
        QCOMPARE(fixture.widget<QListWidget>("VIRPlot2", "List1")->currentRow(), 3);
        save();
        const QImage second(QString::fromStdString((folder / "IRP00002.BMP").string()));
        QCOMPARE(Rgb(second), Rgb(Surface(fixture)->image()));
        QVERIFY(first != second);

        // A file of that name already there is passed by.
        { std::ofstream(folder / "IRP00003.BMP") << "not ours"; }
        DoubleClickRow(fixture, 1);
        save();
        QVERIFY(std::filesystem::exists(folder / "IRP00004.BMP"));
        std::ifstream kept(folder / "IRP00003.BMP");
        QCOMPARE(std::string(std::istreambuf_iterator<char>(kept), {}), std::string("not ours"));

        // A saved plot comes back marked, its button off.
        DoubleClickRow(fixture, 0);
        auto* list = fixture.widget<QListWidget>("VIRPlot2", "List1");
        QCOMPARE(list->item(0)->text(),
                 QString("Response of x to a unit shock in x (already saved)"));
        QCOMPARE(list->item(2)->text(),
                 QString("Response of y to a unit shock in x (not yet saved)"));
        QVERIFY(!fixture.widget<QPushButton>("VIRPlot2", "Command1")->isEnabled());
        DoubleClickRow(fixture, 2);
        QVERIFY(fixture.widget<QPushButton>("VIRPlot2", "Command1")->isEnabled());
    }

    void theDemoLeavesNinePicturesOfItsResponsesAndAFullLog() {
        QTemporaryDir root;
        const std::filesystem::path work = root.filePath("work").toStdString();
        std::ifstream csv(SourceFolder / "examples" / "e1.csv", std::ios::binary);
        QVERIFY(csv.good());
        std::stringstream data;
        data << csv.rdbuf();
        WriteDataFiles(ParseCsv(data.str(), {}), work);

        ScriptedDialogs dialogs;
        HeadlessEventPump events;
        SystemClock clock;
        ClassicRandom random;
        HeadlessProcesses processes;
        HeadlessScreens screens;
        gui::QtSurfaceFactory surfaces;
        Module module(Platform{dialogs, events, clock, random, processes, screens, &surfaces});
        std::ostringstream out;
        std::ostringstream errors;
        const std::filesystem::path start = root.filePath("start").toStdString();
        std::filesystem::create_directories(start);
        ScriptDriver driver(module, dialogs, out, errors,
                            [&] { ModuleEntry(module, work.string(), start); });
        // The demo up to its last step, Done, which wipes the responses.
        std::ifstream demo(SourceFolder / "examples" / "demo.var");
        std::string line;
        std::string road;
        while (std::getline(demo, line) && line != "click VIRPlot2.Command2") {
            road += line + "\n";
        }
        QVERIFY(!line.empty());
        std::istringstream script(road);
        QCOMPARE(driver.Run(script), 0);
        QVERIFY2(errors.str().empty(), errors.str().c_str());

        // Each picture is the plot of its response, and shows it.
        const std::filesystem::path folder = work / "LORVANE.DAT";
        for (int k = 1; k <= 9; ++k) {
            const QImage image(QString::fromStdString(
                (folder / ("IRP0000" + std::to_string(k) + ".BMP")).string()));
            QVERIFY2(!image.isNull(), qPrintable(QString::number(k)));
            QCOMPARE(image.size(), QSize(608, 260));
            const ResponsePlot plot = ReadResponsePlot(module, k);
            gui::QtSurface fresh(608, 260);
            const PlotFrame frame = DrawResponsePlot(fresh, plot);
            QCOMPARE(Rgb(image), Rgb(fresh.image()));
            CheckPicture(image, plot, frame);
        }
        QVERIFY(!std::filesystem::exists(folder / "IRP00010.BMP"));

        // Done: the work files go, the pictures and the log stay.
        module.Click("VIRPlot2", "Command2");
        QCOMPARE(module.CurrentScreen, std::string("SelVar1"));
        QVERIFY(!std::filesystem::exists(folder / "VARIR2.TMP"));
        QVERIFY(std::filesystem::exists(folder / "IRP00009.BMP"));

        // The log holds every section of the road, in order, the pictures last: the header,
        // the description and the estimation, then the header of the analysis.
        std::ifstream in(folder / "OUTPUT.TXT", std::ios::binary);
        const std::string log(std::istreambuf_iterator<char>(in), {});
        std::vector<std::string> sections = {"Session date: ",
                                             "Selected variables:",
                                             "Chosen VAR(p) order: p = 2",
                                             "Information criteria:",
                                             "FIML estimation of a nonstructural VAR model:",
                                             "Log-likelihood:",
                                             "Session date: ",
                                             "Non-structural VAR analysis",
                                             "The standard errors of the innovation responses",
                                             "Response of dlinvest to a unit shock in dlinvest",
                                             "Response of dlcons to a unit shock in dlcons",
                                             "Forecast error variance decomposition of\r\ndlinvest",
                                             "Forecast error variance decomposition of\r\ndlcons"};
        for (int k = 1; k <= 9; ++k) {
            sections.push_back(
                "\r\nInsert picture file " +
                (std::filesystem::path("LORVANE.DAT") / ("IRP0000" + std::to_string(k) + ".BMP"))
                    .string() +
                "\r\n");
        }
        std::size_t at = 0;
        for (const std::string& section : sections) {
            const std::size_t found = log.find(section, at);
            QVERIFY2(found != std::string::npos, section.c_str());
            at = found + section.size();
        }
        QCOMPARE(at, log.size());
    }
};

LORVANE_GUI_SUITE(PlotTest);

} // namespace lorvane::guitest

#include "Plot_test.moc"
