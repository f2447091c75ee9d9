#include "MainWindow.h"

#include <QAction>
#include <QCloseEvent>
#include <QDesktopServices>
#include <QDir>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QMenuBar>
#include <QMessageBox>
#include <QMimeData>
#include <QScreen>
#include <QStackedWidget>
#include <QStandardPaths>
#include <QStatusBar>
#include <QUrl>

#include "LogView.h"
#include "ModuleStarter.h"
#include "PictureDialog.h"
#include "PreviewPage.h"
#include "StartPage.h"
#include "WorkFolder.h"
#include "WorkFolderPage.h"
#include "data/CsvImport.h"
#include "frame/RuntimeError.h"

#ifndef LORVANE_VERSION
#define LORVANE_VERSION ""
#endif

namespace lorvane::desktop {

namespace {

const QString ProgramName = QStringLiteral("Lorvane");
// How Lorvane is used, among the package's files.
const QString HelpPage = QStringLiteral("LORVANE.HTM");

std::filesystem::path Path(const QString& text) {
    return std::filesystem::path(text.toStdString());
}

QString Shown(const QString& path) {
    return QDir::toNativeSeparators(path);
}

// Where the data of a CSV file go unless the user says otherwise: a folder named after the
// file among the user's documents.
QString ProposedWorkFolder(const QString& csvFile) {
    QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    if (documents.isEmpty()) {
        documents = QDir::homePath();
    }
    return QDir(documents).filePath(QStringLiteral("Lorvane/") +
                                    QFileInfo(csvFile).completeBaseName());
}

// The one local file or folder that a drag carries, or nothing.
QString DraggedPath(const QMimeData* data) {
    if (data == nullptr || !data->hasUrls() || data->urls().size() != 1 ||
        !data->urls().front().isLocalFile()) {
        return {};
    }
    return data->urls().front().toLocalFile();
}

} // namespace

MainWindow::MainWindow(const QString& startFolder, ModuleStarter* starter, QWidget* parent)
    : QMainWindow(parent), startFolder_(startFolder), starter_(starter),
      lastFolder_(QDir::homePath()), pages_(new QStackedWidget(this)), start_(new StartPage(this)),
      preview_(new PreviewPage(this)), work_(new WorkFolderPage(this)) {
    starter_->setParent(this);
    pages_->addWidget(start_);
    pages_->addWidget(preview_);
    pages_->addWidget(work_);
    setCentralWidget(pages_);
    setAcceptDrops(true);
    buildMenus();
    statusBar();
    resize(1000, 720);
    showPage(start_, {});

    connect(start_, &StartPage::openDataRequested, this, &MainWindow::chooseDataFile);
    connect(start_, &StartPage::openFolderRequested, this, &MainWindow::chooseWorkFolder);
    connect(preview_, &PreviewPage::importRequested, this, &MainWindow::importAndStart);
    connect(preview_, &PreviewPage::backRequested, this,
            [this] { workFolder_.isEmpty() ? showPage(start_, {}) : openWorkFolder(workFolder_); });
    connect(work_, &WorkFolderPage::startRequested, this, &MainWindow::startModule);
    connect(work_, &WorkFolderPage::pictureOpened, this, &MainWindow::openPicture);
    connect(&handBack_, &HandBackListener::handedBack, this, &MainWindow::takeBack);
    // A module that ended without handing the folder back (it failed, or was stopped) leaves
    // the window waiting no longer.
    connect(starter_, &ModuleStarter::ended, this, [this] {
        restore();
        work_->catchUp();
        statusBar()->showMessage(tr("The module has ended."));
    });
}

void MainWindow::buildMenus() {
    QMenu* file = menuBar()->addMenu(tr("&File"));
    QAction* openData =
        file->addAction(tr("&Open a CSV file..."), this, &MainWindow::chooseDataFile);
    openData->setShortcut(QKeySequence::Open);
    file->addAction(tr("Open a &work folder..."), this, &MainWindow::chooseWorkFolder)
        ->setShortcut(QKeySequence(tr("Ctrl+Shift+O")));
    file->addSeparator();
    file->addAction(tr("&Quit"), this, &QWidget::close)->setShortcut(QKeySequence::Quit);

    QMenu* edit = menuBar()->addMenu(tr("&Edit"));
    find_ = edit->addAction(tr("&Find in the log"), this, [this] { work_->log()->focusFind(); });
    find_->setShortcut(QKeySequence::Find);
    find_->setEnabled(false);

    QMenu* help = menuBar()->addMenu(tr("&Help"));
    QAction* howTo = help->addAction(tr("&How to use Lorvane"), this, &MainWindow::showHelp);
    howTo->setShortcut(QKeySequence::HelpContents);
    howTo->setEnabled(QFileInfo::exists(QDir(startFolder_).filePath(HelpPage)));
    help->addAction(tr("&About Lorvane"), this, &MainWindow::showAbout);
}

QWidget* MainWindow::currentPage() const {
    return pages_->currentWidget();
}

void MainWindow::showPage(QWidget* page, const QString& title) {
    pages_->setCurrentWidget(page);
    find_->setEnabled(page == work_);
    setWindowTitle(title.isEmpty() ? ProgramName : title + QStringLiteral(" - ") + ProgramName);
}

void MainWindow::open(const QString& path) {
    if (QFileInfo(path).isFile()) {
        openDataFile(path);
    } else {
        openWorkFolder(path);
    }
}

void MainWindow::openDataFile(const QString& file) {
    const QFileInfo info(file);
    lastFolder_ = info.absolutePath();
    preview_->showPreview(PreviewCsv(Path(info.absoluteFilePath())),
                          ProposedWorkFolder(info.absoluteFilePath()));
    showPage(preview_, info.fileName());
    statusBar()->clearMessage();
}

void MainWindow::openWorkFolder(const QString& folder) {
    const QString absolute = QDir::cleanPath(QFileInfo(folder).absoluteFilePath());
    const std::filesystem::path path = Path(absolute);
    // The window waits for the running module's folder; it takes up no other until then.
    if (starter_->running() && CanonicalFolder(absolute) != CanonicalFolder(workFolder_)) {
        refuse(stillRunning());
        return;
    }
    if (!QFileInfo(absolute).isDir() ||
        (!HoldsDataSet(path) && !ActiveModule(path) &&
         !QFileInfo::exists(QString::fromStdString(LogFile(path).string())))) {
        statusBar()->showMessage(tr("%1 is no work folder of Lorvane: open a CSV file to make one.")
                                     .arg(Shown(absolute)));
        if (workFolder_.isEmpty()) {
            showPage(start_, {});
        }
        return;
    }
    workFolder_ = absolute;
    lastFolder_ = absolute;
    work_->showFolder(absolute);
    showPage(work_, Shown(absolute));
    statusBar()->clearMessage();
    if (!handBack_.listen(absolute)) {
        statusBar()->showMessage(tr("Lorvane cannot wait for the module on this folder: when the "
                                    "module ends, a new Lorvane window opens."));
    }
}

QString MainWindow::stillRunning() const {
    return tr("The VAR module is still running on %1. Finish it first: when it ends, it hands the "
              "work folder back to Lorvane.")
        .arg(Shown(workFolder_));
}

bool MainWindow::refuse(const QString& text) {
    QMessageBox::warning(this, ProgramName, text);
    return false;
}

bool MainWindow::importAndStart() {
    const DataPreview& preview = preview_->preview();
    if (!preview.Importable()) {
        return false;
    }
    if (starter_->running()) {
        return refuse(stillRunning());
    }
    const QString chosen = preview_->workFolder();
    if (chosen.isEmpty()) {
        return refuse(tr("Choose a work folder for the data."));
    }
    const QString folder = QDir::cleanPath(QFileInfo(chosen).absoluteFilePath());
    const std::filesystem::path path = Path(folder);
    if (const auto problem = WorkFolderNameProblem(path.string())) {
        return refuse(
            tr("Lorvane cannot use this work folder: %1.").arg(QString::fromStdString(*problem)));
    }
    if (const auto active = ActiveModule(path)) {
        return refuse(InUseText(active));
    }
    if (HoldsDataSet(path) &&
        QMessageBox::question(
            this, ProgramName,
            tr("The work folder %1 holds a data set already. Replace it by the "
               "data of %2? The log and the saved pictures stay.")
                .arg(Shown(folder), QString::fromStdString(preview.File.filename().string()))) !=
            QMessageBox::Yes) {
        return false;
    }
    try {
        WriteDataFiles(preview.Data, path);
    } catch (const WorkFolderInUse&) {
        // A module started on the folder since the question.
        return refuse(InUseText(ActiveModule(path)));
    } catch (const RuntimeError& failed) {
        return refuse(tr("The data files could not be written in %1 (%2). Nothing was changed.")
                          .arg(Shown(folder), QString::fromStdString(failed.Description())));
    }
    openWorkFolder(folder);
    return startModule();
}

bool MainWindow::startModule() {
    if (workFolder_.isEmpty()) {
        return false;
    }
    const std::filesystem::path path = Path(workFolder_);
    if (const auto active = ActiveModule(path)) {
        return refuse(InUseText(active));
    }
    if (!HoldsDataSet(path)) {
        return refuse(tr("The work folder %1 holds no data set.").arg(Shown(workFolder_)));
    }
    try {
        WriteStartupFiles(path);
        const QScreen* where = screen();
        const QSize room = where != nullptr ? where->availableGeometry().size() : QSize();
        WriteFullSize(path, FillsScreen(room.width(), room.height()));
    } catch (const RuntimeError& failed) {
        return refuse(tr("The work folder %1 cannot be written (%2).")
                          .arg(Shown(workFolder_), QString::fromStdString(failed.Description())));
    }
    if (!starter_->start(workFolder_)) {
        return refuse(starter_->problem());
    }
    statusBar()->showMessage(tr("The VAR module runs on %1.").arg(Shown(workFolder_)));
    showMinimized();
    return true;
}

void MainWindow::takeBack(const QString& folder) {
    restore();
    openWorkFolder(folder);
    emit handedBack(folder);
}

void MainWindow::restore() {
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    raise();
    activateWindow();
}

void MainWindow::chooseDataFile() {
    const QString file = QFileDialog::getOpenFileName(this, tr("Open a CSV file"), lastFolder_,
                                                      tr("CSV files (*.csv *.CSV);;All files (*)"));
    if (!file.isEmpty()) {
        openDataFile(file);
    }
}

void MainWindow::chooseWorkFolder() {
    const QString folder =
        QFileDialog::getExistingDirectory(this, tr("Open a work folder"), lastFolder_);
    if (!folder.isEmpty()) {
        openWorkFolder(folder);
    }
}

void MainWindow::openPicture(const QString& file) {
    auto* dialog = new PictureDialog(file, this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->show();
}

void MainWindow::showHelp() {
    QDesktopServices::openUrl(QUrl::fromLocalFile(QDir(startFolder_).filePath(HelpPage)));
}

void MainWindow::showAbout() {
    QMessageBox::about(
        this, tr("About Lorvane"),
        tr("<p><b>Lorvane VAR</b> %1</p><p>Vector autoregression analysis: Lorvane prepares the "
           "data in a work folder, the VAR module leads through the analysis, and Lorvane shows "
           "its log and pictures.</p>")
            .arg(QStringLiteral(LORVANE_VERSION)));
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
    if (!DraggedPath(event->mimeData()).isEmpty()) {
        event->acceptProposedAction();
    }
}

void MainWindow::dropEvent(QDropEvent* event) {
    const QString path = DraggedPath(event->mimeData());
    if (path.isEmpty()) {
        return;
    }
    event->acceptProposedAction();
    open(path);
}

void MainWindow::closeEvent(QCloseEvent* event) {
    if (starter_->running()) {
        QMessageBox::information(this, ProgramName, stillRunning());
        event->ignore();
        return;
    }
    event->accept();
}

} // namespace lorvane::desktop
