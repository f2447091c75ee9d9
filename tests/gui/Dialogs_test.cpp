// The module's message and input boxes as modal Qt dialogs.

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include "GuiFixture.h"

namespace lorvane::guitest {

namespace {

// Runs work on the next box that comes up, from inside its event loop.
void WithNextBox(std::function<void(QDialog*)> work) {
    auto* poll = new QTimer;
    QObject::connect(poll, &QTimer::timeout, poll, [poll, work = std::move(work)] {
        auto* box = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (box != nullptr && box->isVisible()) {
            poll->deleteLater();
            poll->stop();
            work(box);
        }
    });
    poll->start(5);
}

void Press(QDialog* box, const QString& button) {
    QTest::mouseClick(box->findChild<QPushButton*>(button + "Button"), Qt::LeftButton);
}

// The captions of a box's buttons in the order the focus visits them, from the focused one.
QStringList FocusOrder(QDialog* box) {
    QStringList order;
    QWidget* widget = box->focusWidget();
    do {
        if (auto* button = qobject_cast<QPushButton*>(widget)) {
            order << button->text();
        }
        widget = widget->nextInFocusChain();
    } while (widget != box->focusWidget());
    return order;
}

MessageBoxRequest Request(std::vector<std::string> buttons) {
    return {"A title that is long", "One\r\ntwo", "A title..", "One\r\ntwo", std::move(buttons)};
}

} // namespace

class DialogsTest : public QObject {
    Q_OBJECT

private slots:
    void aMessageBoxReturnsThePressedButton() {
        gui::QtDialogs dialogs;
        QStringList seen;
        WithNextBox([&seen](QDialog* box) {
            seen = FocusOrder(box);
            seen << box->windowTitle() << box->findChild<QLabel*>("Label1")->text()
                 << box->findChild<QLabel*>("Label2")->text();
            Press(box, "No");
        });
        QCOMPARE(dialogs.showMessage(Request({"Yes", "No", "Cancel"})), std::string("No"));
        QCOMPARE(seen, (QStringList{"Yes", "No", "Cancel", "A title that is long", "A title..",
                                    "One\ntwo"}));

        // Escape answers Cancel or a lone OK; Yes or No must be chosen.
        WithNextBox([](QDialog* box) { QTest::keyClick(box, Qt::Key_Escape); });
        QCOMPARE(dialogs.showMessage(Request({"OK", "Cancel"})), std::string("Cancel"));
        WithNextBox([](QDialog* box) { QTest::keyClick(box, Qt::Key_Escape); });
        QCOMPARE(dialogs.showMessage(Request({"OK"})), std::string("OK"));
        bool stillOpen = false;
        WithNextBox([&stillOpen](QDialog* box) {
            QTest::keyClick(box, Qt::Key_Escape);
            stillOpen = box->isVisible();
            Press(box, "Yes");
        });
        QCOMPARE(dialogs.showMessage(Request({"Yes", "No"})), std::string("Yes"));
        QVERIFY(stillOpen);

        // A box whose default is its second button: Enter answers it at once.
        MessageBoxRequest discard = Request({"Yes", "No"});
        discard.defaultButton = 1;
        WithNextBox([&seen](QDialog* box) {
            seen = FocusOrder(box);
            QTest::keyClick(box, Qt::Key_Return);
        });
        QCOMPARE(dialogs.showMessage(discard), std::string("No"));
        QCOMPARE(seen, (QStringList{"No", "Yes"}));
    }

    void theModulesBoxesCarryTheirButtonSets() {
        GuiFixture fixture(GuiFixture::BoxKind::Qt);
        QVERIFY(fixture.show());
        QStringList buttons;
        WithNextBox([&buttons](QDialog* box) {
            buttons = FocusOrder(box);
            Press(box, "Cancel");
        });
        QCOMPARE(
            static_cast<int>(fixture.module().boxes().MessageBoxFull("Try again?", 21, "Retry")),
            2);
        QCOMPARE(buttons, (QStringList{"Retry", "Cancel"}));

        // The plain box has one OK whatever the caller asks for, and folds by the font's widths.
        const TextMeasure measure = gui::QtDialogs::measure();
        QVERIFY(measure("WWWWWWWWWW") > measure("iiiiiiiiii"));
        fixture.module().boxes().SetMeasure(measure);
        std::string text;
        for (int i = 0; i < 40; ++i) {
            text += i % 3 == 0 ? "WIDE MMMM " : "thin ill ";
        }
        QStringList lines;
        WithNextBox([&](QDialog* box) {
            buttons = FocusOrder(box);
            lines = box->findChild<QLabel*>("Label2")->text().split('\n');
            Press(box, "OK");
        });
        fixture.module().boxes().MessageBoxShort(text, 16, "Error!");
        QCOMPARE(buttons, (QStringList{"OK"}));
        QVERIFY(lines.size() > 1);
        for (const QString& line : lines) {
            QVERIFY2(measure(line.toStdString()) <= Boxes::TextWidth, qPrintable(line));
        }
    }

    void anInputBoxReturnsTheTextOrNothing() {
        gui::QtDialogs dialogs;
        const InputBoxRequest request{"Order", "Give the order p", "Order", "Give the order p",
                                      "1"};
        WithNextBox([](QDialog* box) {
            // The default is selected, so typing replaces it.
            QTest::keyClicks(box->findChild<QLineEdit*>("Text1"), "4");
            Press(box, "OK");
        });
        QCOMPARE(dialogs.showInput(request), std::optional<std::string>("4"));
        WithNextBox([](QDialog* box) { Press(box, "Cancel"); });
        QCOMPARE(dialogs.showInput(request), std::optional<std::string>());

        // Without a prompt the box shows its title alone.
        bool promptShown = true;
        WithNextBox([&promptShown](QDialog* box) {
            promptShown = box->findChild<QLabel*>("Label2")->isVisibleTo(box);
            QTest::keyClick(box->findChild<QLineEdit*>("Text1"), Qt::Key_Return);
        });
        QCOMPARE(dialogs.showInput({"Order", "", "Order", "", "2"}),
                 std::optional<std::string>("2"));
        QVERIFY(!promptShown);
    }

    void boxesGrowWithTheFrameInFullSize() {
        FrameFields fields;
        gui::QtDialogs dialogs;
        dialogs.attach(nullptr, &fields);
        const auto pointsOfText = [&dialogs] {
            double points = 0;
            WithNextBox([&points](QDialog* box) {
                points = box->findChild<QLabel*>("Label2")->font().pointSizeF();
                Press(box, "OK");
            });
            dialogs.showMessage(Request({"OK"}));
            return points;
        };
        const double normal = pointsOfText();
        // A larger screen alone changes nothing; full size does.
        fields.ScreenScale = 2;
        QCOMPARE(pointsOfText(), normal);
        fields.FullSize = 1;
        QCOMPARE(pointsOfText(), 2 * normal);
    }
};

LORVANE_GUI_SUITE(DialogsTest);

} // namespace lorvane::guitest

#include "Dialogs_test.moc"
