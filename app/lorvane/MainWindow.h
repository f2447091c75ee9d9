#pragma once

#include <QMainWindow>
#include <QString>

#include "HandBack.h"

class QAction;
class QStackedWidget;

namespace lorvane::desktop {

class ModuleStarter;
class PreviewPage;
class StartPage;
class WorkFolderPage;

// Lorvane's window, the main program's part of the package: it opens a CSV file and imports it
// into a work folder, or opens a work folder; it starts the VAR module there and waits
// minimised; when the module hands the folder back it shows the log and the saved pictures.
class MainWindow : public QMainWindow {
    Q_OBJECT
public:
    // startFolder holds the package's programs and files; the window takes the starter.
    MainWindow(const QString& startFolder, ModuleStarter* starter, QWidget* parent = nullptr);

    // A file is a CSV file to preview; a folder is a work folder.
    void open(const QString& path);
    void openDataFile(const QString& file);
    void openWorkFolder(const QString& folder);
    // Imports the previewed data into the chosen work folder and starts the module there.
    bool importAndStart();
    // Starts the module on the work folder shown and waits minimised.
    bool startModule();
    // The module has handed the work folder back: the window returns and shows it.
    void takeBack(const QString& folder);

    const QString& workFolder() const { return workFolder_; }
    StartPage* startPage() const { return start_; }
    PreviewPage* previewPage() const { return preview_; }
    WorkFolderPage* workFolderPage() const { return work_; }
    QWidget* currentPage() const;
    HandBackListener& handBack() { return handBack_; }

signals:
    void handedBack(const QString& folder);

protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void buildMenus();
    void showPage(QWidget* page, const QString& title);
    void restore();
    void chooseDataFile();
    void chooseWorkFolder();
    void openPicture(const QString& file);
    void showHelp();
    void showAbout();
    QString stillRunning() const;
    bool refuse(const QString& text);

    QString startFolder_;
    ModuleStarter* starter_;
    HandBackListener handBack_;
    QString workFolder_;
    QString lastFolder_;
    QStackedWidget* pages_;
    StartPage* start_;
    PreviewPage* preview_;
    WorkFolderPage* work_;
    QAction* find_ = nullptr;
};

} // namespace lorvane::desktop
