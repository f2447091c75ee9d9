#pragma once

#include <QWidget>

#include "DataPreview.h"

class QLabel;
class QLineEdit;
class QPushButton;
class QTableWidget;

namespace lorvane::desktop {

// A CSV file before it is imported: how the import reads its dates and missing values, its
// first rows, and the work folder it goes to.
class PreviewPage : public QWidget {
    Q_OBJECT
public:
    explicit PreviewPage(QWidget* parent = nullptr);

    // The rows of the data shown.
    static constexpr int ShownRows = 12;

    void showPreview(DataPreview preview, const QString& workFolder);
    const DataPreview& preview() const { return preview_; }
    QString workFolder() const;

    QLabel* calendarLabel() const { return calendar_; }
    QLabel* missingLabel() const { return missing_; }
    QLabel* problemLabel() const { return problem_; }
    QTableWidget* table() const { return table_; }
    QLineEdit* folderEdit() const { return folder_; }
    QPushButton* importButton() const { return import_; }

signals:
    void importRequested();
    void backRequested();

private:
    void fillTable();
    void chooseFolder();

    DataPreview preview_;
    QLabel* title_;
    QLabel* calendar_;
    QLabel* missing_;
    QLabel* problem_;
    QTableWidget* table_;
    QLineEdit* folder_;
    QPushButton* browse_;
    QPushButton* back_;
    QPushButton* import_;
};

} // namespace lorvane::desktop
