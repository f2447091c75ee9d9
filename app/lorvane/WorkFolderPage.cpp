#include "WorkFolderPage.h"

#include <QDir>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "LogView.h"
#include "PictureStrip.h"
#include "Style.h"
#include "WorkFolder.h"

namespace lorvane::desktop {

namespace {

std::filesystem::path Path(const QString& folder) {
    return std::filesystem::path(folder.toStdString());
}

} // namespace

QString InUseText(const std::optional<std::string>& moduleName) {
    const QString name =
        moduleName && !moduleName->empty()
            ? QStringLiteral("The module %1").arg(QString::fromStdString(*moduleName))
            : QStringLiteral("A module");
    return QObject::tr("%1 is using this work folder. Its log and its pictures show here as it "
                       "writes them; when it ends, it hands the folder back to Lorvane.")
        .arg(name);
}

WorkFolderPage::WorkFolderPage(QWidget* parent)
    : QWidget(parent), path_(new QLabel(this)), notice_(new QLabel(this)),
      start_(new QPushButton(tr("Start the VAR module"), this)), log_(new LogView(this)),
      pictures_(new PictureStrip(this)) {
    path_->setFont(gui::SansFont(gui::TextPoints * 1.2, true));
    path_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    notice_->setWordWrap(true);
    notice_->setTextFormat(Qt::PlainText);
    notice_->setStyleSheet(QStringLiteral("QLabel { background: #fff4c2; padding: 6px; }"));
    log_->text()->setPlaceholderText(tr("The log is empty: the module writes its results here."));

    auto* top = new QHBoxLayout;
    top->addWidget(path_, 1);
    top->addWidget(start_);
    auto* picturesLabel =
        new QLabel(tr("Saved pictures (double click one to see it large):"), this);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addWidget(notice_);
    layout->addWidget(log_, 1);
    layout->addWidget(picturesLabel);
    layout->addWidget(pictures_);

    look_.setInterval(LookInterval);
    connect(&look_, &QTimer::timeout, this, &WorkFolderPage::catchUp);
    connect(start_, &QPushButton::clicked, this, &WorkFolderPage::startRequested);
    connect(pictures_, &PictureStrip::opened, this, &WorkFolderPage::pictureOpened);
}

void WorkFolderPage::showFolder(const QString& workFolder) {
    folder_ = workFolder;
    path_->setText(QDir::toNativeSeparators(workFolder));
    log_->follow(LogFile(Path(workFolder)));
    pictures_->showFolder(Path(workFolder));
    updateState();
    look_.start();
}

void WorkFolderPage::catchUp() {
    if (folder_.isEmpty()) {
        return;
    }
    log_->catchUp();
    pictures_->catchUp();
    updateState();
}

void WorkFolderPage::updateState() {
    const std::filesystem::path folder = Path(folder_);
    const std::optional<std::string> active = ActiveModule(folder);
    const bool data = HoldsDataSet(folder);
    if (active) {
        notice_->setText(InUseText(active));
    } else if (!data) {
        notice_->setText(tr("This work folder holds no data set: open a CSV file to import one."));
    }
    notice_->setVisible(active || !data);
    start_->setEnabled(!active && data);
}

} // namespace lorvane::desktop
