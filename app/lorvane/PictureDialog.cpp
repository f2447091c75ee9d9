#include "PictureDialog.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QGuiApplication>
#include <QMessageBox>
#include <QPainter>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>

namespace lorvane::desktop {

namespace {

// Draws an image as large as the widget allows, at its proportions, centred.
class ScaledImage : public QWidget {
public:
    ScaledImage(const QImage& image, QWidget* parent) : QWidget(parent), image_(image) {
        setMinimumSize(image.size() / 2);
        setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    }

    QSize sizeHint() const override { return image_.size() * 2; }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.fillRect(rect(), palette().window());
        if (image_.isNull()) {
            return;
        }
        QSize size = image_.size();
        size.scale(this->size(), Qt::KeepAspectRatio);
        QRect place(QPoint(0, 0), size);
        place.moveCenter(rect().center());
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawImage(place, image_);
    }

private:
    const QImage& image_;
};

} // namespace

PictureDialog::PictureDialog(const QString& file, QWidget* parent)
    : QDialog(parent), file_(file), image_(file) {
    setWindowTitle(QFileInfo(file).fileName());
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    save_ = buttons->addButton(tr("Save as PNG..."), QDialogButtonBox::ActionRole);
    save_->setEnabled(!image_.isNull());
    connect(save_, &QPushButton::clicked, this, &PictureDialog::chooseAndSave);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(new ScaledImage(image_, this), 1);
    layout->addWidget(buttons);

    // Twice the picture's size, as far as the screen has room for it.
    QSize size = sizeHint();
    if (const QScreen* screen = QGuiApplication::primaryScreen()) {
        size = size.boundedTo(screen->availableSize() * 9 / 10);
    }
    resize(size);
}

bool PictureDialog::saveAsPng(const QString& target) const {
    return !image_.isNull() && image_.save(target, "PNG");
}

void PictureDialog::chooseAndSave() {
    // Beside the work folder's other files, not among the module's own.
    const QFileInfo source(file_);
    QDir folder = source.dir();
    folder.cdUp();
    const QString proposed = folder.filePath(source.completeBaseName() + ".png");
    QString target = QFileDialog::getSaveFileName(this, tr("Save the picture as PNG"), proposed,
                                                  tr("PNG pictures (*.png)"));
    if (target.isEmpty()) {
        return;
    }
    if (QFileInfo(target).suffix().isEmpty()) {
        target += ".png";
    }
    if (!saveAsPng(target)) {
        QMessageBox::warning(
            this, tr("Lorvane"),
            tr("The picture could not be written to %1.").arg(QDir::toNativeSeparators(target)));
    }
}

} // namespace lorvane::desktop
