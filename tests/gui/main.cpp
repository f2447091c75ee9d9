// Runs the GUI test classes on Qt Test: all of them, or the one named as the first argument
// (the remaining arguments go to Qt Test).

#include <algorithm>
#include <iostream>
#include <string>
#include <vector>

#include <QApplication>
#include <QStyleHints>
#include <QTest>

#include "GuiFixture.h"

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    // Clicks right after a screen appears are what the tests do; the tests of the double-click
    // hold set an interval of their own.
    QGuiApplication::styleHints()->setMouseDoubleClickInterval(0);
    std::string only;
    std::vector<char*> arguments{argv[0]};
    int first = 1;
    if (argc > 1 && argv[1][0] != '-') {
        only = argv[1];
        first = 2;
    }
    for (int i = first; i < argc; ++i) {
        arguments.push_back(argv[i]);
    }

    auto& suites = lorvane::guitest::Suites();
    std::sort(suites.begin(), suites.end(),
              [](const auto& a, const auto& b) { return a.first < b.first; });
    int failed = 0;
    bool ran = false;
    for (const auto& [name, make] : suites) {
        if (!only.empty() && name != only) {
            continue;
        }
        ran = true;
        const std::unique_ptr<QObject> suite = make();
        failed += QTest::qExec(suite.get(), static_cast<int>(arguments.size()), arguments.data());
    }
    if (!ran) {
        std::cerr << "no test class named " << only << '\n';
        return 2;
    }
    return failed == 0 ? 0 : 1;
}
