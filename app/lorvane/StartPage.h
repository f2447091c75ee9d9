#pragma once

#include <QWidget>

class QPushButton;

namespace lorvane::desktop {

// What Lorvane shows before a data file or a work folder is open.
class StartPage : public QWidget {
    Q_OBJECT
public:
    explicit StartPage(QWidget* parent = nullptr);

    QPushButton* openDataButton() const { return openData_; }
    QPushButton* openFolderButton() const { return openFolder_; }

signals:
    void openDataRequested();
    void openFolderRequested();

private:
    QPushButton* openData_;
    QPushButton* openFolder_;
};

} // namespace lorvane::desktop
