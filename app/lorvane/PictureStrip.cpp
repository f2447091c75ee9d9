#include "PictureStrip.h"

#include <algorithm>

#include <QDir>
#include <QImage>
#include <QPixmap>
#include <QScrollBar>

#include "SavedPictures.h"

namespace lorvane::desktop {

namespace {

constexpr int ThumbnailWidth = 200;
constexpr int ThumbnailHeight = 86;

QString Text(const std::filesystem::path& path) {
    return QString::fromStdString(path.string());
}

QPixmap Thumbnail(const QImage& image) {
    return QPixmap::fromImage(image.scaled(ThumbnailWidth, ThumbnailHeight, Qt::KeepAspectRatio,
                                           Qt::SmoothTransformation));
}

} // namespace

PictureStrip::PictureStrip(QWidget* parent) : QListWidget(parent) {
    setViewMode(QListView::IconMode);
    setFlow(QListView::LeftToRight);
    setWrapping(false);
    setMovement(QListView::Static);
    setResizeMode(QListView::Adjust);
    setIconSize(QSize(ThumbnailWidth, ThumbnailHeight));
    setSpacing(4);
    setUniformItemSizes(true);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFixedHeight(ThumbnailHeight + 3 * fontMetrics().height() +
                   horizontalScrollBar()->sizeHint().height());
    setToolTip(tr("Double click a picture to see it large"));
    connect(this, &QListWidget::itemActivated, this,
            [this](QListWidgetItem* item) { emit opened(item->data(Qt::UserRole).toString()); });
}

void PictureStrip::showFolder(const std::filesystem::path& workFolder) {
    folder_ = workFolder;
    files_.clear();
    clear();
    catchUp();
}

void PictureStrip::catchUp() {
    const std::vector<std::filesystem::path> now = SavedPictures(folder_);
    if (now == files_) {
        return;
    }
    // Pictures are only ever added behind the others; anything else is shown anew.
    const bool grown =
        now.size() > files_.size() && std::equal(files_.begin(), files_.end(), now.begin());
    if (!grown) {
        clear();
        files_.clear();
    }
    for (std::size_t i = files_.size(); i < now.size(); ++i) {
        const QImage image(Text(now[i]));
        // The newest picture may be one the module is still writing: it waits for the next look.
        // An older one that does not read stays without its thumbnail.
        if (image.isNull() && i + 1 == now.size()) {
            break;
        }
        auto* item = new QListWidgetItem(image.isNull() ? QIcon() : QIcon(Thumbnail(image)),
                                         QString::fromStdString(now[i].filename().string()), this);
        item->setData(Qt::UserRole, Text(now[i]));
        item->setToolTip(QDir::toNativeSeparators(Text(now[i])));
        files_.push_back(now[i]);
    }
}

} // namespace lorvane::desktop
