#pragma once

#include <optional>
#include <string>

#include <QTimer>
#include <QWidget>

class QLabel;
class QPushButton;

namespace lorvane::desktop {

class LogView;
class PictureStrip;

// What Lorvane says of a work folder that a module is using.
QString InUseText(const std::optional<std::string>& moduleName);

// A work folder: whether a module is using it, its log and its saved pictures. While it is
// shown it follows what the module writes.
class WorkFolderPage : public QWidget {
    Q_OBJECT
public:
    explicit WorkFolderPage(QWidget* parent = nullptr);

    // How often the page looks for what the module wrote.
    static constexpr int LookInterval = 1000;

    void showFolder(const QString& workFolder);
    const QString& folder() const { return folder_; }
    // Takes up the log, the pictures and the state of the folder as they are now.
    void catchUp();

    LogView* log() const { return log_; }
    PictureStrip* pictures() const { return pictures_; }
    QLabel* notice() const { return notice_; }
    QPushButton* startButton() const { return start_; }

signals:
    void startRequested();
    void pictureOpened(const QString& file);

private:
    void updateState();

    QString folder_;
    QLabel* path_;
    QLabel* notice_;
    QPushButton* start_;
    LogView* log_;
    PictureStrip* pictures_;
    QTimer look_;
};

} // namespace lorvane::desktop
