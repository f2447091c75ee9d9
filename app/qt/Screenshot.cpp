#include "Screenshot.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QPixmap>

#include "Wallpaper.h"

namespace lorvane::gui {

QImage RenderFrame(Wallpaper& frame) {
    // A frame that was never shown has not laid its views out: text boxes would have no scroll
    // positions and no scroll bars. It is shown where nobody sees it.
    if (!frame.isVisible()) {
        frame.setAttribute(Qt::WA_DontShowOnScreen);
        frame.show();
    }
    frame.refresh();
    QCoreApplication::sendPostedEvents();
    return frame.grab().toImage();
}

bool SaveScreenshot(Wallpaper& frame, const std::string& file) {
    // A palette of 256 colours keeps the files small; the frame uses far fewer.
    const QImage image = RenderFrame(frame).convertToFormat(QImage::Format_Indexed8,
                                                            Qt::ThresholdDither | Qt::AvoidDither);
    const QString name = QFile::decodeName(file.c_str());
    return !image.isNull() && QDir().mkpath(QFileInfo(name).absolutePath()) &&
           image.save(name, "PNG");
}

} // namespace lorvane::gui
