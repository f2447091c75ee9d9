#include "Screenshot.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QPainter>
#include <QPixmap>

#include "QtDialogs.h"
#include "Wallpaper.h"
#include "frame/Module.h"

namespace lorvane::gui {

namespace {

// A box as it stands over the frame: laid out at its natural size, centred, with a thin edge
// where the desktop would draw its window's border.
void PaintBox(QImage& image, Wallpaper& frame, const BoxRequest& box) {
    const std::unique_ptr<BoxDialog> dialog = MakeBoxDialog(box, BoxScale(&frame.module()), &frame);
    dialog->setAttribute(Qt::WA_DontShowOnScreen);
    dialog->show();
    // Its own size, not one cut down to the headless screen, which may be small.
    dialog->resize(dialog->sizeHint().expandedTo(dialog->minimumSize()));
    QCoreApplication::sendPostedEvents();
    const QPixmap shot = dialog->grab();
    dialog->hide();

    const QSize size = dialog->size();
    const QRect place(
        QPoint((frame.width() - size.width()) / 2, (frame.height() - size.height()) / 2), size);
    QPainter painter(&image);
    painter.drawPixmap(place.topLeft(), shot);
    painter.setPen(frame.palette().color(QPalette::Shadow));
    painter.drawRect(place.adjusted(0, 0, -1, -1));
}

} // namespace

void Follow(Wallpaper& frame) {
    // A frame that was never shown has not laid its views out: text boxes would have no scroll
    // positions and no scroll bars.
    if (!frame.isVisible()) {
        frame.setAttribute(Qt::WA_DontShowOnScreen);
        frame.show();
    }
    frame.refresh();
    QCoreApplication::sendPostedEvents();
}

QImage RenderFrame(Wallpaper& frame, const BoxRequest* box) {
    Follow(frame);
    QImage image = frame.grab().toImage();
    if (box != nullptr) {
        PaintBox(image, frame, *box);
    }
    return image;
}

bool SaveScreenshot(Wallpaper& frame, const std::string& file, const BoxRequest* box) {
    // A palette of 256 colours keeps the files small; the frame uses far fewer.
    const QImage image =
        RenderFrame(frame, box)
            .convertToFormat(QImage::Format_Indexed8, Qt::ThresholdDither | Qt::AvoidDither);
    const QString name = QFile::decodeName(file.c_str());
    return !image.isNull() && QDir().mkpath(QFileInfo(name).absolutePath()) &&
           image.save(name, "PNG");
}

} // namespace lorvane::gui
