// lorvane: the main program's part of the package on the desktop. It prepares a work folder from
// a CSV file (or opens one), starts the VAR module on it, and shows the module's log and pictures
// when the module hands the folder back.

#include <iostream>
#include <string>

#include <QApplication>
#include <QFileInfo>
#include <QIcon>

#include "HandBack.h"
#include "MainWindow.h"
#include "ModuleStarter.h"
#include "platform/FileSizeLimit.h"

namespace {

constexpr int UsageError = 2;

void PrintUsage(std::ostream& out) {
    out << "Usage:\n"
           "  lorvane                 open the window\n"
           "  lorvane DATA.csv        open the window on a CSV file to import\n"
           "  lorvane WORKFOLDER      open the window on a work folder; the window that waits\n"
           "                          for the module on that folder takes it up instead\n"
           "  lorvane --help          show this text\n";
}

} // namespace

int main(int argc, char** argv) {
    lorvane::FailWritesBeyondTheFileSizeLimit();
    // The command line is one text, a file or a folder, blanks and all.
    std::string path;
    for (int i = 1; i < argc; ++i) {
        const std::string argument = argv[i];
        if (argument == "--help" || argument == "-h") {
            PrintUsage(std::cout);
            return 0;
        }
        if (argument.rfind("--", 0) == 0) {
            PrintUsage(std::cerr);
            return UsageError;
        }
        path += (path.empty() ? "" : " ") + argument;
    }

    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("lorvane"));
    QApplication::setApplicationDisplayName(QStringLiteral("Lorvane"));
    QApplication::setWindowIcon(QIcon::fromTheme(QStringLiteral("lorvane")));

    using namespace lorvane::desktop;
    const QString target = QString::fromLocal8Bit(path).trimmed();
    if (!target.isEmpty() && !QFileInfo(target).isFile() && HandToWindow(target)) {
        return 0;
    }
    const QString startFolder = QApplication::applicationDirPath();
    MainWindow window(startFolder, new ModuleProcess(startFolder));
    window.show();
    if (!target.isEmpty()) {
        window.open(target);
    }
    return QApplication::exec();
}
