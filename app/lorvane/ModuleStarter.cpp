#include "ModuleStarter.h"

#include <QDir>

namespace lorvane::desktop {

ModuleProcess::ModuleProcess(const QString& startFolder, QObject* parent) : ModuleStarter(parent) {
#ifdef _WIN32
    program_ = QDir(startFolder).filePath(QStringLiteral("VAR.EXE"));
#else
    program_ = QDir(startFolder).filePath(QStringLiteral("VAR"));
#endif
    // What the module tells the terminal stays visible there.
    process_.setProcessChannelMode(QProcess::ForwardedChannels);
    connect(&process_, &QProcess::finished, this, &ModuleStarter::ended);
}

bool ModuleProcess::start(const QString& workFolder) {
    if (running()) {
        problem_ = QStringLiteral("The module is running already.");
        return false;
    }
    process_.start(program_, {workFolder});
    if (!process_.waitForStarted()) {
        problem_ = QStringLiteral("Lorvane could not start the module %1: %2")
                       .arg(QDir::toNativeSeparators(program_), process_.errorString());
        return false;
    }
    problem_.clear();
    return true;
}

bool ModuleProcess::running() const {
    return process_.state() != QProcess::NotRunning;
}

} // namespace lorvane::desktop
