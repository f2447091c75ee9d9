#pragma once

#include <filesystem>
#include <vector>

#include <QListWidget>

namespace lorvane::desktop {

// The pictures the module saved in a work folder as a strip of thumbnails, in the order of
// their numbers. A double click (or Enter) on one opens it.
class PictureStrip : public QListWidget {
    Q_OBJECT
public:
    explicit PictureStrip(QWidget* parent = nullptr);

    // Shows the pictures of this work folder.
    void showFolder(const std::filesystem::path& workFolder);
    // Takes up pictures saved since, and lets go of removed ones.
    void catchUp();

    // The files shown, in their order.
    std::vector<std::filesystem::path> files() const { return files_; }

signals:
    void opened(const QString& file);

private:
    std::filesystem::path folder_;
    std::vector<std::filesystem::path> files_;
};

} // namespace lorvane::desktop
