// VAR: the vector autoregression module. With a work folder it runs on the desktop; with
// --script it performs a script of user actions without a window.

#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

#include <QApplication>
#include <QFileInfo>

#include "QtDialogs.h"
#include "QtPlatform.h"
#include "QtSurface.h"
#include "Screenshot.h"
#include "Wallpaper.h"
#include "frame/Module.h"
#include "frame/ScriptDriver.h"
#include "frame/Startup.h"
#include "platform/FileSizeLimit.h"
#include "platform/Headless.h"

namespace {

using namespace lorvane;

constexpr int UsageError = 2;

void PrintUsage(std::ostream& out) {
    out << "Usage:\n"
           "  VAR WORKFOLDER                             run the module on the desktop\n"
           "  VAR --script FILE [--trace] WORKFOLDER     run a script of user actions without a "
           "window\n"
           "  VAR --help                                 show this text\n"
           "\n"
           "Script lines (blank lines and lines starting with # are ignored; a text may be "
           "quoted):\n"
           "  click SCREEN.CONTROL                 press a button or click a control\n"
           "  dblclick SCREEN.CONTROL ITEM         double click a list item (index from 0, or its "
           "text)\n"
           "  highlight SCREEN.CONTROL ITEM...     highlight list items\n"
           "  check SCREEN.CONTROL 0|1             set a check box\n"
           "  type SCREEN.CONTROL TEXT             replace the text of a text box\n"
           "  mouse SCREEN.CONTROL X Y             the pointer over a picture, in its units\n"
           "  dblclick-picture SCREEN.CONTROL      double click a picture\n"
           "  answer BUTTON                        answer the next message box (OK, Cancel, "
           "Abort,\n"
           "                                       Retry, Ignore, Yes, No)\n"
           "  input TEXT | input-cancel            answer the next input box\n"
           "  seed N                               seed the random source\n"
           "  expect SCREEN.CONTROL PROPERTY VALUE caption, visible, enabled, count, item N, "
           "contains\n"
           "  expect-screen NAME                   the screen that fills the frame\n"
           "  expect-file NAME 0|1                 a file of LORVANE.DAT is missing or there\n"
           "  dump SCREEN.CONTROL                  print a control's text or items\n"
           "  dump-report                          print the pending report\n"
           "  screenshot FILE                      render what the frame shows to a PNG file\n"
           "  screenshot-box FILE                  render the next box over the frame to a PNG\n"
           "                                       file when it is shown\n"
           "  remove NAME                          delete a file of LORVANE.DAT, as another "
           "program\n"
           "                                       might\n"
           "\n"
           "Script exit codes: 0 done, 1 an expect failed, 2 bad script line, 3 a box had no\n"
           "queued answer, 4 a run-time error ended the module.\n";
}

struct CommandLine {
    bool help = false;
    bool script = false;
    bool trace = false;
    std::string scriptFile;
    // The work folder as one text: the words that are not options, joined by blanks.
    std::string workFolder;
};

bool Parse(const std::vector<std::string>& arguments, CommandLine& line) {
    std::vector<std::string> words;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& argument = arguments[i];
        if (argument == "--help" || argument == "-h") {
            line.help = true;
        } else if (argument == "--script") {
            if (line.script || i + 1 >= arguments.size()) {
                return false;
            }
            line.script = true;
            line.scriptFile = arguments[++i];
        } else if (argument == "--trace") {
            line.trace = true;
        } else if (argument.rfind("--", 0) == 0) {
            return false;
        } else {
            words.push_back(argument);
        }
    }
    for (const std::string& word : words) {
        line.workFolder += (line.workFolder.empty() ? "" : " ") + word;
    }
    if (line.help) {
        return true;
    }
    if (line.trace && !line.script) {
        return false;
    }
    return !line.script || !line.workFolder.empty();
}

std::string ModuleNameOf(const QString& executable) {
    return QFileInfo(executable).completeBaseName().toStdString();
}

std::filesystem::path ExecutableFolder() {
    return QCoreApplication::applicationDirPath().toStdString();
}

// A script's output is the module's own: Qt's notes on the environment stay out of it.
void DropQtNotes(QtMsgType type, const QMessageLogContext&, const QString& message) {
    if (type == QtCriticalMsg || type == QtFatalMsg) {
        std::cerr << message.toStdString() << '\n';
    }
}

int RunScript(int argc, char** argv, const CommandLine& line) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    qInstallMessageHandler(DropQtNotes);
    QApplication app(argc, argv);
    std::ifstream script(line.scriptFile);
    if (!script) {
        std::cerr << "VAR: cannot read the script " << line.scriptFile << '\n';
        return UsageError;
    }

    ScriptedDialogs dialogs(&std::cout);
    HeadlessEventPump events;
    SystemClock clock;
    ClassicRandom random;
    HeadlessProcesses processes(&std::cout);
    HeadlessScreens screens;
    gui::QtSurfaceFactory surfaces;
    Module module(Platform{dialogs, events, clock, random, processes, screens, &surfaces},
                  ModuleNameOf(QCoreApplication::applicationFilePath()));
    // The frame is never shown; it only renders screenshots.
    gui::Wallpaper frame(module);

    const std::filesystem::path executableFolder = ExecutableFolder();
    ScriptDriver driver(
        module, dialogs, std::cout, std::cerr,
        [&module, &line, &executableFolder] {
            ModuleEntry(module, line.workFolder, executableFolder);
        },
        ScriptCamera{[&frame] { gui::Follow(frame); },
                     [&frame](const std::string& file, const BoxRequest* box) {
                         return gui::SaveScreenshot(frame, file, box);
                     }});
    driver.SetTrace(line.trace);
    return driver.Run(script);
}

int RunDesktop(int argc, char** argv, const CommandLine& line) {
    QApplication app(argc, argv);

    gui::QtDialogs dialogs;
    gui::QtEventPump events;
    SystemClock clock;
    ClassicRandom random;
    gui::QtProcesses processes;
    gui::QtScreens screens;
    gui::QtSurfaceFactory surfaces;
    Module module(Platform{dialogs, events, clock, random, processes, screens, &surfaces},
                  ModuleNameOf(QCoreApplication::applicationFilePath()));
    module.boxes().SetMeasure(gui::QtDialogs::measure());

    gui::Wallpaper frame(module);
    frame.setAutoShow(true);
    screens.setFrame(&frame);
    dialogs.attach(&frame, &module);
    dialogs.setBeforeShow([&frame] { frame.refresh(); });
    events.setRefresh([&frame] { frame.refresh(); });

    // The end of the module ends the process, after the message of a run-time error.
    QObject::connect(
        &frame, &gui::Wallpaper::moduleEnded, &app,
        [&module, &frame] {
            if (module.Failure()) {
                module.boxes().MessageBoxShort(module.Failure()->MessageText(), 0,
                                               module.ModuleName);
            }
            frame.hide();
            QCoreApplication::quit();
        },
        Qt::QueuedConnection);

    const std::filesystem::path executableFolder = ExecutableFolder();
    frame.dispatch(
        [&] { module.Run([&] { ModuleEntry(module, line.workFolder, executableFolder); }); });
    QApplication::exec();
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    lorvane::FailWritesBeyondTheFileSizeLimit();
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    CommandLine line;
    if (!Parse(arguments, line)) {
        PrintUsage(std::cerr);
        return UsageError;
    }
    if (line.help) {
        PrintUsage(std::cout);
        return 0;
    }
    return line.script ? RunScript(argc, argv, line) : RunDesktop(argc, argv, line);
}
