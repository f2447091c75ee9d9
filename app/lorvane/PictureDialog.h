#pragma once

#include <QDialog>
#include <QImage>
#include <QString>

class QPushButton;

namespace lorvane::desktop {

// One saved picture, large: it fills the window at its own proportions. It can be saved as a
// PNG file.
class PictureDialog : public QDialog {
    Q_OBJECT
public:
    explicit PictureDialog(const QString& file, QWidget* parent = nullptr);

    const QImage& image() const { return image_; }
    // Writes the picture as a PNG file; false when it cannot be written.
    bool saveAsPng(const QString& target) const;

    QPushButton* saveButton() const { return save_; }

private:
    void chooseAndSave();

    QString file_;
    QImage image_;
    QPushButton* save_;
};

} // namespace lorvane::desktop
