#include "QtPlatform.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QProcess>
#include <QScreen>
#include <QUrl>

#include "Style.h"

namespace lorvane::gui {

void QtEventPump::yield() {
    if (last_.isValid() && last_.elapsed() < interval_) {
        return;
    }
    if (refresh_) {
        refresh_();
    }
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    last_.start();
}

QtProcesses::QtProcesses(QString lockFolder)
    : lockFolder_(lockFolder.isEmpty() ? QDir::tempPath() : std::move(lockFolder)) {}

QtProcesses::~QtProcesses() = default;

bool QtProcesses::start(const std::string& program, const std::string& arguments,
                        WindowStyle /*style*/) {
    // The program may come quoted, so that a path with blanks survives a command line.
    QString name = ToQt(program).trimmed();
    while (name.startsWith(QLatin1Char('"'))) {
        name.remove(0, 1);
    }
    while (name.endsWith(QLatin1Char('"'))) {
        name.chop(1);
    }
    if (name.isEmpty()) {
        return false;
    }
    // The command line of the module's programs is one text (a folder or a file), blanks and all.
    QStringList argumentList;
    const QString argument = ToQt(arguments).trimmed();
    if (!argument.isEmpty()) {
        argumentList << argument;
    }
    return QProcess::startDetached(name, argumentList);
}

bool QtProcesses::open(const std::string& fileOrAddress) {
    const QString target = ToQt(fileOrAddress).trimmed();
    if (target.isEmpty()) {
        return false;
    }
    const QUrl url = QFileInfo::exists(target)
                         ? QUrl::fromLocalFile(QFileInfo(target).absoluteFilePath())
                         : QUrl::fromUserInput(target);
    return url.isValid() && QDesktopServices::openUrl(url);
}

bool QtProcesses::previousInstanceRunning(const std::string& moduleName) {
    if (lock_) {
        return false;
    }
    auto lock = std::make_unique<QLockFile>(
        QDir(lockFolder_)
            .filePath(QStringLiteral("lorvane-%1.lock").arg(ToQt(moduleName).toUpper())));
    // The lock never ages while its process lives; one left by a process that died is taken over.
    lock->setStaleLockTime(0);
    if (!lock->tryLock(0)) {
        return lock->error() == QLockFile::LockFailedError;
    }
    lock_ = std::move(lock);
    return false;
}

QSize QtScreens::screenSize() const {
    const QScreen* screen =
        frame_ && frame_->screen() ? frame_->screen() : QGuiApplication::primaryScreen();
    return screen != nullptr ? screen->availableGeometry().size() : QSize(640, 480);
}

double QtScreens::screenWidth() const {
    return screenSize().width() * TwipsPerPixel;
}

double QtScreens::screenHeight() const {
    return screenSize().height() * TwipsPerPixel;
}

bool QtScreens::frameMinimised() const {
    return frame_ && frame_->isMinimized();
}

bool QtScreens::frameMaximised() const {
    return frame_ && frame_->isMaximized();
}

} // namespace lorvane::gui
