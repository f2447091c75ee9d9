#include "HandBack.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>
#include <QLocalSocket>

namespace lorvane::desktop {

namespace {

constexpr char Acknowledgement[] = "ok\n";
constexpr int AcknowledgementWait = 2000;

QString UserName() {
    for (const char* variable : {"USER", "LOGNAME", "USERNAME"}) {
        const QString name = qEnvironmentVariable(variable);
        if (!name.isEmpty()) {
            return name;
        }
    }
    return QStringLiteral("user");
}

} // namespace

QString CanonicalFolder(const QString& folder) {
    const QFileInfo info(folder);
    const QString canonical = info.canonicalFilePath();
    return canonical.isEmpty() ? QDir::cleanPath(info.absoluteFilePath()) : canonical;
}

QString HandBackName(const QString& workFolder) {
    const QByteArray key = (UserName() + QLatin1Char('\n') + CanonicalFolder(workFolder)).toUtf8();
    const QByteArray digest = QCryptographicHash::hash(key, QCryptographicHash::Sha256).toHex();
    return QStringLiteral("lorvane-") + QString::fromLatin1(digest.left(24));
}

bool HandToWindow(const QString& workFolder, int timeoutMilliseconds) {
    QLocalSocket socket;
    socket.connectToServer(HandBackName(workFolder));
    if (!socket.waitForConnected(timeoutMilliseconds)) {
        return false;
    }
    socket.write(CanonicalFolder(workFolder).toUtf8() + '\n');
    if (!socket.waitForBytesWritten(timeoutMilliseconds)) {
        return false;
    }
    QByteArray answer;
    while (!answer.endsWith('\n') && socket.waitForReadyRead(timeoutMilliseconds)) {
        answer += socket.readAll();
    }
    return answer == Acknowledgement;
}

HandBackListener::HandBackListener(QObject* parent) : QObject(parent) {
    server_.setSocketOptions(QLocalServer::UserAccessOption);
    connect(&server_, &QLocalServer::newConnection, this, &HandBackListener::accept);
}

bool HandBackListener::listen(const QString& workFolder) {
    stop();
    const QString name = HandBackName(workFolder);
    // A name left behind by a window that has gone, or taken by an older window of the same
    // folder, is taken over.
    QLocalServer::removeServer(name);
    return server_.listen(name);
}

void HandBackListener::stop() {
    if (server_.isListening()) {
        server_.close();
    }
}

void HandBackListener::accept() {
    while (QLocalSocket* socket = server_.nextPendingConnection()) {
        connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
        // The folder may have arrived with the connection already.
        auto take = [this, socket] {
            if (!socket->canReadLine()) {
                return;
            }
            socket->disconnect(this);
            const QString folder = QString::fromUtf8(socket->readLine()).chopped(1);
            // The answer is out before anything else happens here: the window may close at
            // once, and the other process waits for it.
            socket->write(Acknowledgement);
            socket->waitForBytesWritten(AcknowledgementWait);
            socket->disconnectFromServer();
            emit handedBack(folder);
        };
        connect(socket, &QLocalSocket::readyRead, this, take);
        take();
    }
}

} // namespace lorvane::desktop
