#include "Screenshot.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QPixmap>

#include "Wallpaper.h"

namespace lorvane::gui {

QImage RenderFrame(Wallpaper& frame) {
    frame.refresh();
    return frame.grab().toImage();
}

bool SaveScreenshot(Wallpaper& frame, const std::string& file) {
    const QImage image = RenderFrame(frame);
    const QString name = QFile::decodeName(file.c_str());
    return !image.isNull() && QDir().mkpath(QFileInfo(name).absolutePath()) &&
           image.save(name, "PNG");
}

} // namespace lorvane::gui
