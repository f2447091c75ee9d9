#pragma once

#include <QObject>
#include <QProcess>
#include <QString>

namespace lorvane::desktop {

// Starts the VAR module on a work folder, the folder as its command line, and tells when it
// has ended.
class ModuleStarter : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;

    // False when the module could not be started; problem() tells why.
    virtual bool start(const QString& workFolder) = 0;
    virtual bool running() const = 0;
    virtual QString problem() const = 0;

signals:
    // The module has ended, whether it handed the work folder back or not.
    void ended();
};

// The module as a process of its own: the program VAR in the package's start folder.
class ModuleProcess : public ModuleStarter {
    Q_OBJECT
public:
    explicit ModuleProcess(const QString& startFolder, QObject* parent = nullptr);

    bool start(const QString& workFolder) override;
    bool running() const override;
    QString problem() const override { return problem_; }

    const QString& program() const { return program_; }

private:
    QString program_;
    QProcess process_;
    QString problem_;
};

} // namespace lorvane::desktop
