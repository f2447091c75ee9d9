// lorvane, the main program's part: the work-folder files it shares with the module, the preview
// and import of a CSV file, the log and the pictures it shows, the whole road from a dropped CSV
// file through the module's views back to lorvane, and the installed package.

#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <QApplication>
#include <QClipboard>
#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QProcess>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QUrl>

#include "DataPreview.h"
#include "GuiFixture.h"
#include "HandBack.h"
#include "LogTail.h"
#include "LogView.h"
#include "MainWindow.h"
#include "ModuleStarter.h"
#include "PictureDialog.h"
#include "PictureStrip.h"
#include "PreviewPage.h"
#include "SavedPictures.h"
#include "ScriptRoad.h"
#include "WorkFolder.h"
#include "WorkFolderPage.h"
#include "data/CsvImport.h"
#include "frame/DateText.h"
#include "frame/DrivePaths.h"
#include "frame/NumberText.h"
#include "frame/Startup.h"
#include "frame/TextFile.h"
#include "platform/FileLock.h"

namespace lorvane::guitest {

namespace {

using desktop::MainWindow;

const std::filesystem::path ExampleCsv = SourceFolder() / "examples" / "e1.csv";

std::filesystem::path PathOf(const QTemporaryDir& dir, const char* name) {
    return std::filesystem::path(dir.filePath(QString::fromLatin1(name)).toStdString());
}

QString Text(const std::filesystem::path& path) {
    return QString::fromStdString(path.string());
}

std::string ReadAll(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

void Append(const std::filesystem::path& file, const std::string& text) {
    std::ofstream(file, std::ios::binary | std::ios::app) << text;
}

// The log as the viewer shows it: line feeds alone.
QString AsShown(const std::string& log) {
    QString text = QString::fromStdString(log);
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    return text;
}

void PrepareWorkFolder(const std::filesystem::path& work) {
    WriteDataFiles(ParseCsv(ReadAll(ExampleCsv), {}), work);
}

// A small picture saved as the module saves its plots.
void SavePicture(const std::filesystem::path& file, QColor colour) {
    QImage image(60, 26, QImage::Format_RGB32);
    image.fill(colour);
    QVERIFY(image.save(Text(file), "BMP"));
}

// Drops a file or folder from the desktop's file manager on a widget.
void Drop(QWidget* target, const QString& path) {
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(path)});
    const QPoint at = target->rect().center();
    QDragEnterEvent enter(at, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(target, &enter);
    QVERIFY(enter.isAccepted());
    QDropEvent drop(QPointF(at), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(target, &drop);
    QVERIFY(drop.isAccepted());
}

// A starter that only records what the window asks of it.
class RecordingStarter : public desktop::ModuleStarter {
public:
    bool start(const QString& workFolder) override {
        started << workFolder;
        return true;
    }
    bool running() const override { return busy; }
    QString problem() const override { return {}; }

    QStringList started;
    bool busy = false;
};

// Answers every message box that shows with its default button, and keeps its text.
class BoxAnswerer : public QObject {
public:
    BoxAnswerer() {
        connect(&look_, &QTimer::timeout, this, [this] {
            if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
                texts << box->text();
                box->accept();
            }
        });
        look_.start(20);
    }

    QStringList texts;

private:
    QTimer look_;
};

} // namespace

class LorvaneFilesTest : public QObject {
    Q_OBJECT

private slots:
    void theModuleReadsTheStartupFilesAsWritten() {
        QTemporaryDir root;
        const std::filesystem::path work = PathOf(root, "my work");
        desktop::WriteStartupFiles(work);

        // The module's own start-up finds the work folder as its data folder, and the options.
        ScriptedDialogs dialogs;
        HeadlessEventPump events;
        SystemClock clock;
        ClassicRandom random;
        HeadlessProcesses processes;
        HeadlessScreens screens;
        Module module(Platform{dialogs, events, clock, random, processes, screens, nullptr});
        module.WorkFolder = work;
        module.WorkFolderGiven = 1;
        ResolveDataFolder(module);
        QCOMPARE(std::filesystem::path(module.DataFolder), work / "");
        QCOMPARE(ReadAll(work / "STARTDIR.TMP"), ReadAll(work / "STARTDIR"));
        ReadGlobalOptions(module);
        QCOMPARE(static_cast<int>(module.GlobalOption[0]), 3);
        QCOMPARE(static_cast<int>(module.GlobalOption[1]), 0);
        QCOMPARE(static_cast<int>(module.GlobalOption[2]), 0);
        for (std::size_t i = 3; i < 23; ++i) {
            QCOMPARE(static_cast<int>(module.GlobalOption[i]), 1);
        }

        // The user's own options stay; STARTDIR names the work folder again.
        {
            TextOutput out(work / "STARTDIR", TextOutput::Mode::Output);
            out.WriteRecord(CommaRecord().Text("/nowhere"));
        }
        std::ofstream(work / "Global.var", std::ios::binary) << "7,7\r\n";
        desktop::WriteStartupFiles(work);
        QCOMPARE(ReadAll(work / "Global.var"), std::string("7,7\r\n"));
        QCOMPARE(ReadAll(work / "STARTDIR"), "\"" + work.string() + "\"\r\n");

        // Full size where the screen has room for half as much again as the design size.
        QVERIFY(desktop::FillsScreen(1920, 1080));
        QVERIFY(desktop::FillsScreen(960, 720));
        QVERIFY(!desktop::FillsScreen(959, 1080));
        QVERIFY(!desktop::FillsScreen(1920, 719));
        desktop::WriteFullSize(work, true);
        QCOMPARE(ReadAll(work / "fullsize.txt"), std::string("1\r\n"));
        desktop::WriteFullSize(work, false);
        QCOMPARE(ReadAll(work / "fullsize.txt"), std::string("0\r\n"));

        // A folder that cannot be made or written is an error, not a silent start.
        std::ofstream(PathOf(root, "file")) << "x";
        QVERIFY_THROWS_EXCEPTION(RuntimeError, desktop::WriteStartupFiles(PathOf(root, "file")));
    }

    void theFolderTellsItsModuleAndItsData() {
        QTemporaryDir root;
        const std::filesystem::path work = PathOf(root, "work");
        QVERIFY(!desktop::ActiveModule(work));
        QVERIFY(!desktop::HoldsDataSet(work));
        PrepareWorkFolder(work);
        QVERIFY(desktop::HoldsDataSet(work));

        // A mark counts while a running module holds the folder's lock, and is stale without.
        std::ofstream(work / "ACTIVEMODULE.TXT") << "\"VAR\"\r\n";
        QVERIFY(!desktop::ActiveModule(work));
        {
            const FileLock running(work / WorkFolderLockName);
            QCOMPARE(desktop::ActiveModule(work).value_or("?"), std::string("VAR"));
            std::ofstream(work / "ACTIVEMODULE.TXT", std::ios::trunc).close();
            QCOMPARE(desktop::ActiveModule(work).value_or("?"), std::string());
            // The lock counts without a mark: a module starting, or one whose mark was removed.
            std::filesystem::remove(work / "ACTIVEMODULE.TXT");
            QCOMPARE(desktop::ActiveModule(work).value_or("?"), std::string());
        }

        std::filesystem::remove(work / "LORVANE.DAT" / "INPUT2.RAN");
        QVERIFY(!desktop::HoldsDataSet(work));
    }

    void savedPicturesAreTheModulesInTheOrderOfTheirNumbers() {
        QTemporaryDir root;
        const std::filesystem::path work = PathOf(root, "work");
        const std::filesystem::path data = work / "LORVANE.DAT";
        std::filesystem::create_directories(data / "IRP00005.BMP");
        for (const char* name : {"IRP00010.BMP", "irp00002.bmp", "IRP00001.BMP", "IRP0001.BMP",
                                 "IRP00003.PNG", "XIRP00004.BMP", "IRP0000A.BMP", "OUTPUT.TXT"}) {
            std::ofstream(data / name) << "x";
        }
        const std::vector<std::filesystem::path> pictures = desktop::SavedPictures(work);
        QCOMPARE(pictures,
                 (std::vector<std::filesystem::path>{data / "IRP00001.BMP", data / "irp00002.bmp",
                                                     data / "IRP00010.BMP"}));
        QVERIFY(desktop::SavedPictures(PathOf(root, "none")).empty());
    }

    void theLogIsReadInWholeLinesAsItGrows() {
        QTemporaryDir root;
        const std::filesystem::path file = PathOf(root, "OUTPUT.TXT");
        desktop::LogTail tail(file);
        QVERIFY(tail.ReadNew().Text.empty());

        Append(file, "first\r\nsecond, half");
        auto news = tail.ReadNew();
        QCOMPARE(news.Text, std::string("first\n"));
        QVERIFY(!news.Restarted);
        QVERIFY(tail.ReadNew().Text.empty());
        Append(file, " done\r\n\r\nthird\r\n");
        QCOMPARE(tail.ReadNew().Text, std::string("second, half done\n\nthird\n"));

        // A log that was replaced by a shorter one is read again from its start.
        std::ofstream(file, std::ios::binary | std::ios::trunc) << "new\r\n";
        news = tail.ReadNew();
        QVERIFY(news.Restarted);
        QCOMPARE(news.Text, std::string("new\n"));
        std::filesystem::remove(file);
        news = tail.ReadNew();
        QVERIFY(news.Restarted);
        QVERIFY(news.Text.empty());
    }

    void thePreviewReadsAFileAsTheImportDoes() {
        const desktop::DataPreview example = desktop::PreviewCsv(ExampleCsv);
        QVERIFY2(example.Importable(), example.Problem.c_str());
        QCOMPARE(example.Data.Description, std::string("e1.csv"));
        QCOMPARE(desktop::CalendarText(example.Data),
                 std::string("Quarterly data, 1960.1 to 1982.4: 92 observations of 6 variables."));
        QCOMPARE(desktop::MissingText(example.Data),
                 std::string("3 missing values (empty cells, NA and .), kept in the data files as "
                             "-99999.99."));

        QTemporaryDir root;
        const std::filesystem::path plain = PathOf(root, "plain.csv");
        std::ofstream(plain) << "a,b\n1,2\n3,4\n";
        const desktop::DataPreview undated = desktop::PreviewCsv(plain);
        QCOMPARE(desktop::CalendarText(undated.Data),
                 std::string("Undated data, numbered 1 to 2: 2 observations of 2 variables."));
        QCOMPARE(desktop::MissingText(undated.Data), std::string("No missing values."));

        const std::filesystem::path ragged = PathOf(root, "ragged.csv");
        std::ofstream(ragged) << "a,b\n1,2\n3\n";
        const desktop::DataPreview refused = desktop::PreviewCsv(ragged);
        QVERIFY(!refused.Importable());
        QVERIFY2(refused.Problem.find("line 3") != std::string::npos, refused.Problem.c_str());
        QVERIFY(!desktop::PreviewCsv(PathOf(root, "missing.csv")).Importable());
        QVERIFY(!desktop::PreviewCsv(PathOf(root, "")).Importable());
    }
};

class LorvaneWindowTest : public QObject {
    Q_OBJECT

private slots:
    void aDroppedFileIsPreviewedImportedAndTheModuleStarted() {
        QTemporaryDir root;
        auto* starter = new RecordingStarter;
        MainWindow window(root.path(), starter);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));

        Drop(&window, Text(ExampleCsv));
        desktop::PreviewPage* preview = window.previewPage();
        QCOMPARE(window.currentPage(), preview);
        QCOMPARE(window.windowTitle(), QString("e1.csv - Lorvane"));
        QTableWidget* table = preview->table();
        QCOMPARE(table->columnCount(), 6);
        QCOMPARE(table->rowCount(), desktop::PreviewPage::ShownRows);
        QCOMPARE(table->horizontalHeaderItem(3)->text(), QString("dlinvest"));
        QCOMPARE(table->verticalHeaderItem(0)->text(), QString("1960.1"));
        QCOMPARE(table->item(0, 3)->text(), QString("missing"));
        QCOMPARE(table->item(1, 3)->text(), QString("-0.005571045"));
        QVERIFY(preview->calendarLabel()->text().startsWith("Quarterly data, 1960.1 to 1982.4"));
        QVERIFY(preview->missingLabel()->text().startsWith("3 missing values"));
        QVERIFY(preview->problemLabel()->isHidden());
        QVERIFY(preview->folderEdit()->text().endsWith(QDir::toNativeSeparators("Lorvane/e1")));

        // Into a folder of the user's choice: the data files and the main program's files are
        // written, the module starts on the folder, and the window waits minimised.
        const QString work = root.filePath("analysis");
        preview->folderEdit()->setText(work);
        QTest::mouseClick(preview->importButton(), Qt::LeftButton);
        QCOMPARE(starter->started, QStringList{work});
        QVERIFY(window.isMinimized());
        const std::filesystem::path folder = work.toStdString();
        QVERIFY(desktop::HoldsDataSet(folder));
        QVERIFY(std::filesystem::exists(folder / "STARTDIR"));
        QVERIFY(std::filesystem::exists(folder / "Global.var"));
        QCOMPARE(window.currentPage(), window.workFolderPage());
        QVERIFY(window.handBack().listening());

        // A file that cannot be imported says where, and offers no import.
        const std::filesystem::path ragged = PathOf(root, "ragged.csv");
        std::ofstream(ragged) << "a,b\n1,2\n3\n";
        window.open(Text(ragged));
        QVERIFY(!preview->problemLabel()->isHidden());
        QVERIFY(preview->problemLabel()->text().contains("line 3"));
        QVERIFY(!preview->importButton()->isEnabled());
    }

    void aFolderInUseSaysSoAndItsLogAndPicturesFollow() {
        QTemporaryDir root;
        const std::filesystem::path work = PathOf(root, "work");
        PrepareWorkFolder(work);
        const std::filesystem::path log = work / "LORVANE.DAT" / "OUTPUT.TXT";
        std::string written;
        for (int line = 1; line <= 200; ++line) {
            written += "Line " + std::to_string(line) + " of the log\r\n";
        }
        Append(log, written);
        std::optional<FileLock> running(std::in_place, work / WorkFolderLockName);
        std::ofstream(work / "ACTIVEMODULE.TXT") << "\"VAR\"\r\n";

        MainWindow window(root.path(), new RecordingStarter);
        window.resize(900, 700);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        window.open(Text(work));
        desktop::WorkFolderPage* page = window.workFolderPage();
        QCOMPARE(window.currentPage(), page);
        QVERIFY(page->notice()->isVisible());
        QCOMPARE(page->notice()->text(), desktop::InUseText(std::string("VAR")));
        QVERIFY(page->notice()->text().startsWith("The module VAR is using this work folder."));
        QVERIFY(!page->startButton()->isEnabled());

        // The viewer shows the end of the log and follows it as the module writes ...
        QPlainTextEdit* text = page->log()->text();
        QVERIFY(text->isReadOnly());
        QVERIFY(EqualAdvances(text->font()));
        QCOMPARE(text->toPlainText(), AsShown(written));
        QScrollBar* bar = text->verticalScrollBar();
        QVERIFY(bar->maximum() > 0);
        QCOMPARE(bar->value(), bar->maximum());
        Append(log, "Insert picture file LORVANE.DAT/IRP00001.BMP\r\n");
        SavePicture(work / "LORVANE.DAT" / "IRP00001.BMP", Qt::red);
        QTRY_VERIFY_WITH_TIMEOUT(text->toPlainText().endsWith("IRP00001.BMP\n"), 5000);
        QCOMPARE(bar->value(), bar->maximum());
        QTRY_COMPARE_WITH_TIMEOUT(page->pictures()->count(), 1, 5000);

        // ... but leaves a reader where he is.
        bar->setValue(10);
        Append(log, "More\r\n");
        page->catchUp();
        QVERIFY(text->toPlainText().endsWith("More\n"));
        QCOMPARE(bar->value(), 10);

        // When the module is gone, the folder may start one.
        running.reset();
        std::filesystem::remove(work / "ACTIVEMODULE.TXT");
        page->catchUp();
        QVERIFY(!page->notice()->isVisible());
        QVERIFY(page->startButton()->isEnabled());
    }

    void aRunningModuleKeepsTheWindowOnItsFolder() {
        QTemporaryDir root;
        const std::filesystem::path first = PathOf(root, "first");
        const std::filesystem::path second = PathOf(root, "second");
        PrepareWorkFolder(first);
        PrepareWorkFolder(second);
        auto* starter = new RecordingStarter;
        MainWindow window(root.path(), starter);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        window.open(Text(first));
        QTest::mouseClick(window.workFolderPage()->startButton(), Qt::LeftButton);
        QCOMPARE(starter->started, QStringList{Text(first)});
        starter->busy = true;

        // Neither another folder nor the end of the window while the module runs: it hands this
        // folder back to this window.
        BoxAnswerer boxes;
        window.open(Text(second));
        QCOMPARE(window.workFolder(), Text(first));
        QVERIFY(window.handBack().listening());
        QVERIFY(!window.close());
        QCOMPARE(boxes.texts.size(), 2);
        QVERIFY(boxes.texts[0].startsWith("The VAR module is still running on " + Text(first)));
        QCOMPARE(boxes.texts[1], boxes.texts[0]);

        starter->busy = false;
        window.open(Text(second));
        QCOMPARE(window.workFolder(), Text(second));
        QVERIFY(window.close());
        QCOMPARE(boxes.texts.size(), 2);
    }

    void theLogFindsAndCopiesText() {
        QTemporaryDir root;
        const std::filesystem::path log = PathOf(root, "OUTPUT.TXT");
        Append(log, "Alpha one\r\nbeta\r\nalpha two\r\n");
        desktop::LogView view;
        view.follow(log);
        QVERIFY(!view.copyButton()->isEnabled());

        QVERIFY(view.find("alpha"));
        QCOMPARE(view.text()->textCursor().selectedText(), QString("Alpha"));
        QVERIFY(view.copyButton()->isEnabled());
        QTest::mouseClick(view.copyButton(), Qt::LeftButton);
        QCOMPARE(QApplication::clipboard()->text(), QString("Alpha"));
        QVERIFY(view.find("alpha"));
        QCOMPARE(view.text()->textCursor().blockNumber(), 2);
        // Round the end to the start again, and backwards round the start.
        QVERIFY(view.find("alpha"));
        QCOMPARE(view.text()->textCursor().blockNumber(), 0);
        QVERIFY(view.find("alpha", true));
        QCOMPARE(view.text()->textCursor().blockNumber(), 2);

        // A text that is not there leaves the selection as it was.
        QVERIFY(!view.find("gamma"));
        QCOMPARE(view.text()->textCursor().selectedText(), QString("alpha"));
        QCOMPARE(view.text()->textCursor().blockNumber(), 2);
        QVERIFY(!view.find(""));

        // The find box: Enter finds the next place.
        view.findText()->setText("beta");
        QTest::keyClick(view.findText(), Qt::Key_Return);
        QCOMPARE(view.text()->textCursor().selectedText(), QString("beta"));
    }

    void aPictureOpensLargeAndSavesAsPng() {
        QTemporaryDir root;
        const std::filesystem::path work = PathOf(root, "work");
        std::filesystem::create_directories(work / "LORVANE.DAT");
        SavePicture(work / "LORVANE.DAT" / "IRP00002.BMP", Qt::blue);
        SavePicture(work / "LORVANE.DAT" / "IRP00001.BMP", Qt::green);
        std::ofstream(work / "LORVANE.DAT" / "IRP00003.BMP") << "not a picture";

        desktop::PictureStrip strip;
        QSignalSpy opened(&strip, &desktop::PictureStrip::opened);
        strip.showFolder(work);
        // The newest file may still be being written: it waits.
        QCOMPARE(strip.count(), 2);
        QCOMPARE(strip.item(0)->text(), QString("IRP00001.BMP"));
        QVERIFY(!strip.item(0)->icon().isNull());
        SavePicture(work / "LORVANE.DAT" / "IRP00004.BMP", Qt::black);
        strip.catchUp();
        QCOMPARE(strip.count(), 4);
        QVERIFY(strip.item(2)->icon().isNull());
        QCOMPARE(strip.item(3)->text(), QString("IRP00004.BMP"));

        strip.show();
        QVERIFY(QTest::qWaitForWindowExposed(&strip));
        const QRect second = strip.visualItemRect(strip.item(1));
        QTest::mouseClick(strip.viewport(), Qt::LeftButton, {}, second.center());
        QTest::mouseDClick(strip.viewport(), Qt::LeftButton, {}, second.center());
        QVERIFY(opened.count() >= 1);
        const QString file = opened.back().front().toString();
        QVERIFY(file.endsWith("IRP00002.BMP"));

        desktop::PictureDialog dialog(file);
        QCOMPARE(dialog.windowTitle(), QString("IRP00002.BMP"));
        QCOMPARE(dialog.image().size(), QSize(60, 26));
        QVERIFY(dialog.width() > 60 && dialog.height() > 26);
        const QString png = root.filePath("picture.png");
        QVERIFY(dialog.saveAsPng(png));
        QCOMPARE(QImage(png).convertToFormat(QImage::Format_RGB32),
                 QImage(file).convertToFormat(QImage::Format_RGB32));
        QVERIFY(!dialog.saveAsPng(root.filePath("no/such/folder/picture.png")));
    }

    void theModuleIsStartedFromTheStartFolderWithTheWorkFolder() {
        QTemporaryDir start;
        // A stand-in for VAR that notes its command line.
        const QString program = start.filePath("VAR");
        {
            QFile file(program);
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(
                "#!/bin/sh\nprintf '%s\\n' \"$#\" \"$1\" > \"$(dirname \"$0\")/line.txt\"\n");
        }
        QFile::setPermissions(program, QFileDevice::ReadOwner | QFileDevice::ExeOwner);
        desktop::ModuleProcess module(start.path());
        QSignalSpy ended(&module, &desktop::ModuleStarter::ended);
        QVERIFY(module.start(start.filePath("my work")));
        QTRY_COMPARE_WITH_TIMEOUT(ended.count(), 1, 10000);
        QVERIFY(!module.running());
        QCOMPARE(ReadAll(start.filePath("line.txt").toStdString()),
                 "1\n" + start.filePath("my work").toStdString() + "\n");

        QTemporaryDir empty;
        desktop::ModuleProcess missing(empty.path());
        QVERIFY(!missing.start(empty.path()));
        QVERIFY(missing.problem().startsWith("Lorvane could not start the module " +
                                             empty.filePath("VAR")));
    }

    void noWindowTakesAFolderThatNoneShows() {
        QTemporaryDir root;
        QVERIFY(!desktop::HandToWindow(root.path(), 500));
        // The name does not depend on how the folder is written.
        QCOMPARE(desktop::HandBackName(root.path() + "/sub/.."),
                 desktop::HandBackName(root.path()));
        QVERIFY(desktop::HandBackName(root.filePath("a")) != desktop::HandBackName(root.path()));
    }
};

namespace {

// Starts programs as the desktop does, but as children of the test, which ends those still
// running when it is over.
class ChildProcesses : public Processes {
public:
    ~ChildProcesses() override {
        for (const auto& child : children) {
            if (child->state() != QProcess::NotRunning) {
                child->kill();
                child->waitForFinished();
            }
        }
    }
    bool start(const std::string& program, const std::string& arguments, WindowStyle) override {
        children.push_back(std::make_unique<QProcess>());
        children.back()->start(QString::fromStdString(StripQuotes(program, 0)),
                               {QString::fromStdString(Trim(arguments))});
        return children.back()->waitForStarted();
    }
    bool open(const std::string&) override { return false; }
    bool previousInstanceRunning(const std::string&) override { return false; }

    std::vector<std::unique_ptr<QProcess>> children;
};

// The module inside this process, on the desktop's views and platform, as VAR runs it; only
// what it starts at its end is a real process.
class InProcessModule : public desktop::ModuleStarter {
public:
    explicit InProcessModule(std::filesystem::path startFolder)
        : startFolder_(std::move(startFolder)) {}

    bool start(const QString& workFolder) override {
        run_ = std::make_unique<Run>();
        Run& run = *run_;
        run.module =
            std::make_unique<Module>(Platform{run.dialogs, run.events, run.clock, run.random,
                                              run.processes, run.screens, &run.surfaces},
                                     "VAR");
        run.module->boxes().SetMeasure(gui::QtDialogs::measure());
        run.frame = std::make_unique<gui::Wallpaper>(*run.module);
        run.frame->setAutoShow(true);
        run.screens.setFrame(run.frame.get());
        run.dialogs.attach(run.frame.get(), run.module.get());
        run.dialogs.setBeforeShow([&run] { run.frame->refresh(); });
        run.events.setRefresh([&run] { run.frame->refresh(); });
        QObject::connect(
            run.frame.get(), &gui::Wallpaper::moduleEnded, this,
            [this] {
                run_->frame->hide();
                emit ended();
            },
            Qt::QueuedConnection);
        const std::string folder = workFolder.toStdString();
        Module& module = *run.module;
        run.frame->dispatch([&module, folder, this] {
            module.Run([&module, folder, this] { ModuleEntry(module, folder, startFolder_); });
        });
        return true;
    }
    bool running() const override { return run_ && !run_->module->Ended(); }
    QString problem() const override { return {}; }

    Module& module() { return *run_->module; }
    gui::Wallpaper& frame() { return *run_->frame; }
    const ChildProcesses& started() const { return run_->processes; }

private:
    struct Run {
        gui::QtDialogs dialogs;
        gui::QtEventPump events;
        SystemClock clock;
        ClassicRandom random;
        ChildProcesses processes;
        gui::QtScreens screens;
        gui::QtSurfaceFactory surfaces;
        std::unique_ptr<Module> module;
        std::unique_ptr<gui::Wallpaper> frame;
    };

    std::filesystem::path startFolder_;
    std::unique_ptr<Run> run_;
};

// An item's text without the marks screens put on items.
QString Unmarked(QString item) {
    if (item.startsWith("* ")) {
        item.remove(0, 2);
    }
    if (item.startsWith("(*)")) {
        item.remove(0, 3);
    }
    if (item.endsWith("(*)")) {
        item.chop(3);
    }
    return item.trimmed();
}

QString ShownText(QObject* widget) {
    if (auto* label = qobject_cast<QLabel*>(widget)) {
        return label->text();
    }
    if (auto* button = qobject_cast<QAbstractButton*>(widget)) {
        return button->text();
    }
    if (auto* line = qobject_cast<QLineEdit*>(widget)) {
        return line->text();
    }
    if (auto* text = qobject_cast<QPlainTextEdit*>(widget)) {
        return text->toPlainText();
    }
    return {};
}

// Performs the lines of a road script through the module's views, with the mouse, as a user
// does: clicks on buttons, double clicks on list items, clicks on check boxes. The expectations
// of the script are checked on what the views show.
class ViewRoad {
public:
    explicit ViewRoad(InProcessModule& module) : module_(module) {}

    void perform(const std::string& line) {
        const std::vector<std::string> words = Words(line);
        if (words.empty() || words[0][0] == '#') {
            return;
        }
        const std::string& verb = words[0];
        if (verb == "expect-screen") {
            QCOMPARE(UpperCase(module_.module().CurrentScreen), UpperCase(words.at(1)));
            return;
        }
        if (verb == "dump") {
            return;
        }
        QWidget* widget = find(words.at(1));
        QVERIFY2(widget != nullptr, line.c_str());
        if (verb == "click") {
            QVERIFY2(widget->isVisible() && widget->isEnabled(), line.c_str());
            QTest::mouseClick(widget, Qt::LeftButton);
        } else if (verb == "dblclick") {
            auto* list = qobject_cast<QListWidget*>(widget);
            QVERIFY2(list != nullptr, line.c_str());
            const int row = rowOf(*list, QString::fromStdString(words.at(2)));
            QVERIFY2(row >= 0, line.c_str());
            list->scrollToItem(list->item(row));
            const QPoint at = list->visualItemRect(list->item(row)).center();
            QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, at);
            QTest::mouseDClick(list->viewport(), Qt::LeftButton, {}, at);
        } else if (verb == "check") {
            auto* box = qobject_cast<QAbstractButton*>(widget);
            QVERIFY2(box != nullptr && box->isEnabled(), line.c_str());
            if (box->isChecked() != (words.at(2) == "1")) {
                box->click();
            }
            QCOMPARE(box->isChecked(), words.at(2) == "1");
        } else if (verb == "expect") {
            expect(widget, words, line);
        } else {
            QFAIL(("not a step of this road: " + line).c_str());
        }
    }

private:
    QWidget* find(const std::string& target) {
        const std::size_t point = target.find('.');
        gui::ScreenView* view = module_.frame().view(target.substr(0, point));
        return view == nullptr
                   ? nullptr
                   : qobject_cast<QWidget*>(view->controlObject(target.substr(point + 1)));
    }

    static int rowOf(const QListWidget& list, const QString& item) {
        bool number = false;
        const int index = item.toInt(&number);
        if (number) {
            return index < list.count() ? index : -1;
        }
        for (int row = 0; row < list.count(); ++row) {
            if (Unmarked(list.item(row)->text()) == item) {
                return row;
            }
        }
        return -1;
    }

    static void expect(QWidget* widget, const std::vector<std::string>& words,
                       const std::string& line) {
        const std::string& property = words.at(2);
        const QString value = QString::fromStdString(words.at(3));
        if (property == "caption") {
            QCOMPARE(ShownText(widget), value);
        } else if (property == "contains") {
            QVERIFY2(ShownText(widget).contains(value), line.c_str());
        } else if (property == "enabled") {
            QCOMPARE(widget->isEnabled(), value == "1");
        } else if (property == "count") {
            auto* list = qobject_cast<QListWidget*>(widget);
            QVERIFY2(list != nullptr, line.c_str());
            QCOMPARE(QString::number(list->count()), value);
        } else {
            QFAIL(("not an expectation of this road: " + line).c_str());
        }
    }

    InProcessModule& module_;
};

// The window as the guide shows it, at the display's scale: docs/screens/take-screens.sh takes
// these pictures from the test's output folder.
void SaveForGuide(QWidget& window, const char* name) {
    const QString file = QStringLiteral(LORVANE_GUI_OUTPUT_DIR "/lorvane-%1@%2x.png")
                             .arg(QLatin1String(name))
                             .arg(qRound(window.devicePixelRatioF()));
    QVERIFY2(window.grab().save(file, "PNG"), qPrintable(file));
}

} // namespace

class LorvaneRoadTest : public QObject {
    Q_OBJECT

private slots:
    // The whole round: lorvane opens the example data, imports it and starts the module; the demo
    // road runs through the module's views; the module's end starts the real lorvane, which
    // hands the work folder back to the waiting window; the window shows the log and the nine
    // pictures.
    void theDemoRoadGoesFromADroppedFileBackToTheLogAndThePictures() {
        QTemporaryDir root;
        const QString work = root.filePath("demo work");
        auto* module = new InProcessModule(LORVANE_START_FOLDER);
        MainWindow window(LORVANE_START_FOLDER, module);
        QSignalSpy handedBack(&window, &MainWindow::handedBack);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        SaveForGuide(window, "01-start");

        Drop(&window, Text(ExampleCsv));
        window.previewPage()->folderEdit()->setText(work);
        SaveForGuide(window, "02-preview");
        QTest::mouseClick(window.previewPage()->importButton(), Qt::LeftButton);
        QVERIFY(module->running());
        QVERIFY(window.isMinimized());
        QCOMPARE(module->module().CurrentScreen, std::string("SelVar1"));
        QVERIFY(QTest::qWaitForWindowExposed(&module->frame()));
        // The module runs with the main program behind it.
        QCOMPARE(module->module().TestRun, 0);
        window.workFolderPage()->catchUp();
        QVERIFY(window.workFolderPage()->notice()->isVisible());

        ViewRoad road(*module);
        std::ifstream demo(SourceFolder() / "examples" / "demo.var");
        QVERIFY(demo.good());
        for (std::string line; std::getline(demo, line);) {
            road.perform(line);
            if (QTest::currentTestFailed()) {
                QFAIL(("at the line: " + line).c_str());
            }
        }
        // The user leaves the module from its first screen.
        road.perform("click SelVar1.Command2");
        QVERIFY(!module->running());

        // The module started lorvane with the work folder; it handed the folder to the window
        // and ended without a window of its own.
        QTRY_COMPARE_WITH_TIMEOUT(handedBack.count(), 1, 30000);
        QCOMPARE(handedBack.front().front().toString(), desktop::CanonicalFolder(work));
        QCOMPARE(module->started().children.size(), std::size_t{1});
        QProcess& lorvane = *module->started().children.front();
        QCOMPARE(QFileInfo(lorvane.program()).canonicalFilePath(),
                 QFileInfo(LORVANE_START_FOLDER "/lorvane").canonicalFilePath());
        QCOMPARE(lorvane.arguments(), QStringList{work});
        QTRY_COMPARE_WITH_TIMEOUT(lorvane.state(), QProcess::NotRunning, 30000);
        QCOMPARE(lorvane.exitCode(), 0);
        QVERIFY(!window.isMinimized());
        desktop::WorkFolderPage* page = window.workFolderPage();
        QCOMPARE(window.currentPage(), page);
        QVERIFY(!page->notice()->isVisible());
        QVERIFY(page->startButton()->isEnabled());

        const std::filesystem::path folder = work.toStdString();
        const std::string log = ReadAll(folder / "LORVANE.DAT" / "OUTPUT.TXT");
        QVERIFY(log.find("Forecast error variance decomposition of") != std::string::npos);
        QPlainTextEdit* text = page->log()->text();
        QCOMPARE(text->toPlainText(), AsShown(log));
        QVERIFY(text->toPlainText().endsWith("Insert picture file LORVANE.DAT/IRP00009.BMP\n"));
        SaveForGuide(window, "03-results");

        desktop::PictureStrip* pictures = page->pictures();
        QCOMPARE(pictures->count(), 9);
        for (int k = 1; k <= 9; ++k) {
            QCOMPARE(pictures->item(k - 1)->text(), QString("IRP0000%1.BMP").arg(k));
            QVERIFY(!pictures->item(k - 1)->icon().isNull());
        }
        const QString last = Text(pictures->files().back());
        desktop::PictureDialog large(last);
        QCOMPARE(large.image().size(), QSize(608, 260));
    }
};

class LorvaneInstallTest : public QObject {
    Q_OBJECT

private:
    static int Run(const QString& program, const QStringList& arguments, QString* output = nullptr,
                   int timeout = 120000) {
        QProcess process;
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start(program, arguments);
        if (!process.waitForFinished(timeout)) {
            return -1;
        }
        if (output != nullptr) {
            *output = QString::fromLocal8Bit(process.readAll());
        }
        return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    }

private slots:
    void theInstalledPackageRunsFromItsStartFolder() {
        QTemporaryDir prefix;
        const QDir installed(prefix.path());
        QString output;
        QCOMPARE(Run(LORVANE_CMAKE_COMMAND,
                     {"--install", LORVANE_BUILD_FOLDER, "--prefix", prefix.path()}, &output),
                 0);

        // The programs start from bin; VAR and lorvane live together in the start folder.
        const QDir start(installed.filePath("libexec/lorvane"));
        for (const char* program : {"lorvane", "VAR"}) {
            const QFileInfo link(installed.filePath(QStringLiteral("bin/") + program));
            QVERIFY2(link.isSymLink(), program);
            QCOMPARE(link.canonicalFilePath(),
                     QFileInfo(start.filePath(program)).canonicalFilePath());
            QVERIFY(QFileInfo(start.filePath(program)).isExecutable());
        }
        QVERIFY(QFileInfo(installed.filePath("bin/lorvane-import")).isExecutable());
        QVERIFY(!start.exists("Lorvane.SYS"));
        QVERIFY(!CompileDateText(Workspace{start.path().toStdString(), {}, {}}).empty());
        for (const char* file : {"URLKMT.TXT", "TOURSLIST.TXT", "VAR.HTM", "LORVANE.HTM"}) {
            QVERIFY2(start.exists(file), file);
        }
        QVERIFY(installed.exists("share/lorvane/help/VAR.HTM"));
        QVERIFY(installed.exists("share/lorvane/examples/e1.csv"));
        QVERIFY(installed.exists("share/lorvane/examples/demo.var"));
        QVERIFY(installed.exists("share/icons/hicolor/scalable/apps/lorvane.svg"));

        // The desktop entry is valid and starts the installed program.
        const QString entry = installed.filePath("share/applications/lorvane.desktop");
        QCOMPARE(Run("desktop-file-validate", {entry}, &output), 0);
        QVERIFY2(output.trimmed().isEmpty(), qPrintable(output));
        QFile entryFile(entry);
        QVERIFY(entryFile.open(QIODevice::ReadOnly));
        QVERIFY(entryFile.readAll().contains("\nExec=lorvane %f\n"));

        QCOMPARE(Run(installed.filePath("bin/lorvane"), {"--help"}, &output), 0);
        QVERIFY(output.startsWith("Usage:"));

        // The installed import and module work on the installed example; the module finds its
        // tour page in the installed start folder.
        QTemporaryDir root;
        const QString work = root.filePath("work");
        QCOMPARE(Run(installed.filePath("bin/lorvane-import"),
                     {installed.filePath("share/lorvane/examples/e1.csv"), work}, &output),
                 0);
        const QString script = root.filePath("start.var");
        QFile scriptFile(script);
        QVERIFY(scriptFile.open(QIODevice::WriteOnly));
        scriptFile.write("expect-screen SelVar1\n"
                         "expect GuidedTour.Label0 caption \" Guided tour\"\n"
                         "expect SelVar1.List2 count 6\n");
        scriptFile.close();
        QCOMPARE(Run(installed.filePath("bin/VAR"), {"--script", script, work}, &output), 0);
        QVERIFY(!QFileInfo::exists(QDir(work).filePath("ACTIVEMODULE.TXT")));

        // The installed lorvane hands a work folder to the window that shows it.
        desktop::HandBackListener listener;
        QSignalSpy handedBack(&listener, &desktop::HandBackListener::handedBack);
        QVERIFY(listener.listen(work));
        QProcess lorvane;
        lorvane.start(installed.filePath("bin/lorvane"), {work});
        QTRY_COMPARE_WITH_TIMEOUT(handedBack.count(), 1, 30000);
        QCOMPARE(handedBack.front().front().toString(), desktop::CanonicalFolder(work));
        QTRY_COMPARE_WITH_TIMEOUT(lorvane.state(), QProcess::NotRunning, 30000);
        QCOMPARE(lorvane.exitCode(), 0);
    }
};

LORVANE_GUI_SUITE(LorvaneFilesTest);
LORVANE_GUI_SUITE(LorvaneWindowTest);
LORVANE_GUI_SUITE(LorvaneRoadTest);
LORVANE_GUI_SUITE(LorvaneInstallTest);

} // namespace lorvane::guitest

#include "Lorvane_test.moc"
