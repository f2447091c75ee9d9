// The view of a screen: widgets bound to controls by name, events into the logic, state back.

#include <QCheckBox>
#include <QFontInfo>
#include <QFontMetricsF>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>
#include <QTimer>

#include "GuiFixture.h"
#include "Style.h"
#include "frame/ScreenTable.h"

namespace lorvane::guitest {

namespace {

// A screen with one control of every kind.
void BuildAllKinds(TestScreen& s) {
    s.add(ControlKind::Label, "Label0", " Heading", 0, 0, 9600, 300).Heading = true;
    s.add(ControlKind::Label, "Label1", "Status", 300, 600, 3000, 300);
    s.add(ControlKind::Button, "Command1", "Go", 1500, 3000, 1200, 450);
    s.add(ControlKind::TextBox, "Text1", "12", 300, 1200, 1500, 315);
    Control& results = s.add(ControlKind::TextBox, "Text2", "", 4800, 600, 4500, 2000);
    results.MultiLine = true;
    results.Locked = true;
    results.Font = FontFace::Fixed;
    Control& list = s.add(ControlKind::ListBox, "List1", "", 300, 3600, 2400, 1500);
    Control& many = s.add(ControlKind::ListBox, "List2", "", 3000, 4200, 1500, 1500);
    many.MultiSelect = true;
    for (const char* item : {"a", "b", "c", "d"}) {
        list.AddItem(item);
        many.AddItem(item);
    }
    s.add(ControlKind::CheckBox, "Check1", "Trend", 3000, 3600, 1500, 300);
    s.add(ControlKind::Frame, "Frame1", "Method", 4800, 3600, 2400, 1500);
    s.add(ControlKind::OptionButton, "Option1", "OLS", 4950, 3900, 1500, 300);
    s.add(ControlKind::OptionButton, "Option2", "SUR", 4950, 4300, 1500, 300).Value = 1;
    s.add(ControlKind::OptionButton, "Option3", "Outside", 7500, 3900, 1500, 300).Value = 1;
    s.add(ControlKind::Picture, "Picture1", "", 300, 5400, 1650, 1500);
    s.add(ControlKind::Timer, "Timer1", "", 0, 0, 0, 0);
}

long Count(const std::vector<std::string>& events, const std::string& event) {
    return std::count(events.begin(), events.end(), event);
}

// A click where check boxes and option buttons take it: on their mark.
void ClickMark(QWidget* widget) {
    QTest::mouseClick(widget, Qt::LeftButton, {}, QPoint(6, widget->height() / 2));
}

} // namespace

class ScreenViewTest : public QObject {
    Q_OBJECT

private slots:
    void everyControlGetsAWidgetOfItsKindAndName() {
        GuiFixture fixture;
        fixture.define("Alpha", BuildAllKinds);
        fixture.go("Alpha");
        gui::ScreenView* view = fixture.view("Alpha");
        QVERIFY(view != nullptr);
        QCOMPARE(view->geometry(), QRect(0, 0, 640, 480));
        const std::map<ControlKind, QString> classOf = {
            {ControlKind::Label, "QLabel"},
            {ControlKind::Button, "QPushButton"},
            {ControlKind::ListBox, "QListWidget"},
            {ControlKind::CheckBox, "QCheckBox"},
            {ControlKind::Frame, "QGroupBox"},
            {ControlKind::OptionButton, "QRadioButton"},
            {ControlKind::Timer, "QTimer"},
            {ControlKind::Picture, "lorvane::gui::PictureWidget"}};
        for (const Control& control : fixture.screen("Alpha").Controls()) {
            QObject* object = view->findChild<QObject*>(QString::fromStdString(control.Name));
            QVERIFY2(object != nullptr, control.Name.c_str());
            QCOMPARE(view->controlObject(control.Name), object);
            if (classOf.count(control.Kind) != 0) {
                QCOMPARE(object->metaObject()->className(), classOf.at(control.Kind));
            }
        }
        QVERIFY(fixture.widget<QLineEdit>("Alpha", "Text1") != nullptr);
        auto* results = fixture.widget<QPlainTextEdit>("Alpha", "Text2");
        QVERIFY(results->isReadOnly());
        QVERIFY(EqualAdvances(results->font()));
        QVERIFY(!EqualAdvances(fixture.widget<QLabel>("Alpha", "Label1")->font()));

        // 15 twips to a pixel; the heading spans the screen in bold; frames lie under their
        // options.
        QCOMPARE(fixture.widget<QPushButton>("Alpha", "Command1")->geometry(),
                 QRect(100, 200, 80, 30));
        QCOMPARE(fixture.widget<QLabel>("Alpha", "Label0")->width(), 640);
        QVERIFY(fixture.widget<QLabel>("Alpha", "Label0")->font().bold());
        QVERIFY(view->children().indexOf(fixture.widget<QGroupBox>("Alpha", "Frame1")) <
                view->children().indexOf(fixture.widget<QRadioButton>("Alpha", "Option1")));
    }

    // The buttons of every screen of the module show their whole captions: a caption too long
    // for its button is set smaller.
    void everyButtonOfTheModuleShowsItsWholeCaption() {
        GuiFixture fixture;
        std::vector<std::string> copies;
        for (std::string_view name : ScreenNames()) {
            const std::unique_ptr<Screen> screen = CreateScreen(fixture.module(), name);
            if (screen == nullptr) {
                continue; // a box's name: the boxes are dialogs of their own
            }
            std::vector<Control> buttons;
            for (const Control& control : screen->Controls()) {
                if (control.Kind == ControlKind::Button && !control.Caption.empty()) {
                    buttons.push_back(control);
                }
            }
            const std::string copy = std::string(name) + "Buttons";
            fixture.define(
                copy,
                [buttons](TestScreen& s) {
                    for (const Control& b : buttons) {
                        s.add(ControlKind::Button, b.Name, b.Caption, b.Left, b.Top, b.Width,
                              b.Height);
                    }
                },
                screen->Width, screen->Height);
            copies.push_back(copy);
        }
        int checked = 0;
        for (const std::string& copy : copies) {
            fixture.go(copy);
            for (const Control& control : fixture.screen(copy).Controls()) {
                auto* button = fixture.widget<QPushButton>(copy, control.Name);
                QVERIFY(button != nullptr);
                const double wide = QFontMetricsF(button->font()).horizontalAdvance(button->text());
                QVERIFY2(wide <= button->width() - 2 * gui::Spacing + 0.5,
                         (copy + " " + control.Caption).c_str());
                ++checked;
            }
        }
        QVERIFY(checked > 50);
    }

    // A list shows whole rows, however its height falls against the height of a row.
    void aListShowsWholeRows() {
        GuiFixture fixture;
        fixture.define("Alpha", [](TestScreen& s) {
            Control& list = s.add(ControlKind::ListBox, "List1", "", 240, 480, 4800, 900);
            for (int i = 1; i <= 12; ++i) {
                list.AddItem("Response " + std::to_string(i));
            }
        });
        fixture.go("Alpha");
        auto* list = fixture.widget<QListWidget>("Alpha", "List1");
        const int row = list->sizeHintForRow(0);
        const int inside = list->height() - 2 * list->frameWidth();
        QVERIFY(inside > 0 && inside % row == 0);
        QVERIFY(list->height() <= 60 && list->height() > 60 - row);
    }

    void clickOnAButtonReachesTheLogicAndItsStateComesBack() {
        GuiFixture fixture;
        fixture.define("Alpha", [](TestScreen& s) {
            BuildAllKinds(s);
            s.onClick = [](TestScreen& screen, Control& control) {
                if (control.Name == "Command1") {
                    const long clicks = Count(screen.events, "Click Command1");
                    screen("Label1").Caption = "Clicked " + std::to_string(clicks);
                    screen("Text2").Caption = "line 1\r\nline 2";
                    screen("List1").Items[1] = "* b";
                    screen("List1").ListIndex = 1;
                    screen("Check1").Value = 1;
                    screen("Label0").Visible = false;
                    control.Enabled = clicks < 2;
                }
            };
        });
        fixture.go("Alpha");
        QVERIFY(fixture.show());
        auto* button = fixture.widget<QPushButton>("Alpha", "Command1");
        QTest::mouseClick(button, Qt::LeftButton);
        QCOMPARE(fixture.widget<QLabel>("Alpha", "Label1")->text(), QString("Clicked 1"));
        QCOMPARE(fixture.widget<QPlainTextEdit>("Alpha", "Text2")->toPlainText(),
                 QString("line 1\nline 2"));
        auto* list = fixture.widget<QListWidget>("Alpha", "List1");
        QCOMPARE(list->item(1)->text(), QString("* b"));
        QCOMPARE(list->currentRow(), 1);
        QVERIFY(fixture.widget<QCheckBox>("Alpha", "Check1")->isChecked());
        QVERIFY(fixture.widget<QLabel>("Alpha", "Label0")->isHidden());

        // The logic disables the button after the second click: a third one does not arrive.
        QTest::mouseClick(button, Qt::LeftButton);
        QVERIFY(!button->isEnabled());
        QTest::mouseClick(button, Qt::LeftButton);
        QCOMPARE(Count(fixture.screen("Alpha").events, "Click Command1"), 2);
        // Re-reading the state is no user action.
        QCOMPARE(fixture.screen("Alpha").events.size(), std::size_t{2});
    }

    void whatTheUserDoesIsWrittenIntoTheControls() {
        GuiFixture fixture;
        fixture.define("Alpha", BuildAllKinds);
        fixture.go("Alpha");
        QVERIFY(fixture.show());
        TestScreen& screen = fixture.screen("Alpha");

        auto* text = fixture.widget<QLineEdit>("Alpha", "Text1");
        text->selectAll();
        QTest::keyClicks(text, "3.5");
        QCOMPARE(screen("Text1").Caption, std::string("3.5"));
        QCOMPARE(Count(screen.events, "Change Text1"), 3);

        ClickMark(fixture.widget<QCheckBox>("Alpha", "Check1"));
        QCOMPARE(static_cast<int>(screen("Check1").Value), 1);
        // Options are exclusive within their frame only.
        ClickMark(fixture.widget<QRadioButton>("Alpha", "Option1"));
        QCOMPARE(static_cast<int>(screen("Option1").Value), 1);
        QCOMPARE(static_cast<int>(screen("Option2").Value), 0);
        QCOMPARE(static_cast<int>(screen("Option3").Value), 1);
        QVERIFY(!fixture.widget<QRadioButton>("Alpha", "Option2")->isChecked());

        // Several items of a multi-select list: click, then Ctrl+click.
        auto* many = fixture.widget<QListWidget>("Alpha", "List2");
        const auto at = [](QListWidget* list, int row) {
            return list->visualItemRect(list->item(row)).center();
        };
        QTest::mouseClick(many->viewport(), Qt::LeftButton, {}, at(many, 0));
        QTest::mouseClick(many->viewport(), Qt::LeftButton, Qt::ControlModifier, at(many, 2));
        QCOMPARE(screen("List2").Highlighted, (std::vector<bool>{true, false, true, false}));
        QCOMPARE(screen("List2").ListIndex, 2);

        // A double click (after the click the desktop delivers first) names its item.
        auto* single = fixture.widget<QListWidget>("Alpha", "List1");
        QTest::mouseClick(single->viewport(), Qt::LeftButton, {}, at(single, 3));
        QTest::mouseDClick(single->viewport(), Qt::LeftButton, {}, at(single, 3));
        QCOMPARE(Count(screen.events, "DoubleClick List1 3"), 1);
        QCOMPARE(screen("List1").ListIndex, 3);
        for (const char* event : {"Click Check1", "Click Option1", "Click List2", "Click List1"}) {
            QVERIFY2(Count(screen.events, event) >= 1, event);
        }
    }

    void navigationReplacesTheViews() {
        GuiFixture fixture;
        fixture.define("Alpha", [](TestScreen& s) {
            BuildAllKinds(s);
            s.onClick = [](TestScreen& screen, Control&) { screen.owner().GoToScreen("Beta"); };
        });
        fixture.define("Beta", [](TestScreen& s) {
            s.add(ControlKind::Label, "Label0", "Beta", 0, 0, 9600, 300);
        });
        fixture.go("Alpha");
        QVERIFY(fixture.show());
        QPointer<gui::ScreenView> alpha = fixture.view("Alpha");

        // The button that leaves the screen belongs to the view that goes.
        QTest::mouseClick(fixture.widget<QPushButton>("Alpha", "Command1"), Qt::LeftButton);
        QCOMPARE(fixture.module().CurrentScreen, std::string("Beta"));
        QCOMPARE(fixture.frame().views(), (std::vector<gui::ScreenView*>{fixture.view("Beta")}));
        QVERIFY(fixture.view("Beta")->isVisible());
        QTRY_VERIFY(alpha.isNull());

        // Coming back builds a fresh view for the fresh screen.
        fixture.go("Alpha");
        QVERIFY(fixture.view("Alpha")->Shows(fixture.screen("Alpha")));
    }

    void aPictureShowsItsSurfaceAndReportsThePointerInItsUnits() {
        GuiFixture fixture;
        fixture.define("Alpha", BuildAllKinds);
        gui::QtSurface surface(110, 100);
        surface.setScale(0, 0, 1.1, 1);
        surface.setDrawWidth(3);
        surface.box(0.5, 0.4, 0.7, 0.6, 0xFF0000);
        fixture.frame().setPictureSource([&surface](const Screen&, const Control& control) {
            return control.Name == "Picture1" ? &surface : nullptr;
        });
        fixture.go("Alpha");
        QVERIFY(fixture.show());
        auto* picture = fixture.widget<gui::PictureWidget>("Alpha", "Picture1");
        const QImage shown = picture->grab().toImage();
        QCOMPARE(shown.pixelColor(50, 50), QColor(Qt::red));
        QCOMPARE(shown.pixelColor(20, 20), QColor(Qt::white));

        QMouseEvent move(QEvent::MouseMove, QPointF(55, 25), picture->mapToGlobal(QPointF(55, 25)),
                         Qt::NoButton, Qt::NoButton, Qt::NoModifier);
        QCoreApplication::sendEvent(picture, &move);
        QTest::mouseDClick(picture, Qt::LeftButton, {}, QPoint(10, 10));
        const auto& events = fixture.screen("Alpha").events;
        QCOMPARE(Count(events, "MouseMove Picture1 0.55 0.25"), 1);
        QCOMPARE(Count(events, "PictureDoubleClick Picture1"), 1);
    }

    void aTimerControlTicksWhileItIsOn() {
        GuiFixture fixture;
        fixture.define("Alpha", [](TestScreen& s) {
            BuildAllKinds(s);
            s("Timer1").Interval = 10;
            // The third tick turns the timer off.
            s.onTick = [](TestScreen& screen, Control& timer) {
                timer.Interval = Count(screen.events, "Tick Timer1") < 3 ? 10 : 0;
            };
        });
        fixture.go("Alpha");
        const auto& events = fixture.screen("Alpha").events;
        QTRY_COMPARE(Count(events, "Tick Timer1"), 3);
        QTest::qWait(50);
        QCOMPARE(Count(events, "Tick Timer1"), 3);
    }
};

LORVANE_GUI_SUITE(ScreenViewTest);

} // namespace lorvane::guitest

#include "ScreenView_test.moc"
