#pragma once

#include <QLocalServer>
#include <QObject>
#include <QString>

namespace lorvane::desktop {

// The return of a work folder from the module. At its end the module starts the main program
// again with the work folder; that new process hands the folder to the window that shows it,
// which takes it up, and ends without a window of its own. Each user's window of a work folder
// listens under a name of that folder.

// The folder as one text for every process: absolute, with links resolved when it exists.
QString CanonicalFolder(const QString& folder);

// The name under which the window of a work folder listens.
QString HandBackName(const QString& workFolder);

// Hands the work folder to the window that shows it; false when no window took it.
bool HandToWindow(const QString& workFolder, int timeoutMilliseconds = 5000);

// The listening side, for one work folder at a time.
class HandBackListener : public QObject {
    Q_OBJECT
public:
    explicit HandBackListener(QObject* parent = nullptr);

    // Answers for this work folder from now on, and for no other; false when it cannot listen.
    // The latest window to take up a folder is the one that gets it back.
    bool listen(const QString& workFolder);
    void stop();
    bool listening() const { return server_.isListening(); }

signals:
    void handedBack(const QString& workFolder);

private:
    void accept();

    QLocalServer server_;
};

} // namespace lorvane::desktop
