// The Qt platform: the picture surface, the instance lock, the screen in twips.

#include <QFile>
#include <QGuiApplication>
#include <QScreen>
#include <QTemporaryDir>
#include <QTest>

#include "GuiFixture.h"

namespace lorvane::guitest {

class PlatformTest : public QObject {
    Q_OBJECT

private slots:
    void theSurfaceDrawsInItsLogicalUnits() {
        gui::QtSurface surface(110, 100);
        // Until a scale is set the units are twips.
        QCOMPARE(surface.toPixels(150, 300), QPointF(10, 20));
        surface.setScale(0, 0, 1.1, 1);
        surface.setDrawWidth(3);
        surface.line(0.1, 0.5, 1.0, 0.5, 0x0000FF);
        QCOMPARE(surface.image().pixelColor(55, 50), QColor(Qt::blue));
        QCOMPARE(surface.image().pixelColor(55, 40), QColor(Qt::white));
        const double width = surface.textWidth("MM");
        QVERIFY(width > 0);

        // A scale may turn the vertical axis upwards; one without extent is refused.
        surface.setScale(0, 1, 2.2, 0);
        QCOMPARE(surface.toPixels(1.1, 0.75), QPointF(55, 25));
        QCOMPARE(surface.toLogical(QPointF(55, 25)), QPointF(1.1, 0.75));
        QVERIFY(std::abs(surface.textWidth("MM") - 2 * width) < 1e-9);
        surface.setScale(0, 0, 0, 1);
        QCOMPARE(surface.toPixels(1.1, 0.75), QPointF(55, 25));
    }

    void aSavedPictureIsARealBitmap() {
        QTemporaryDir folder;
        gui::QtSurface surface(64, 48);
        surface.setScale(0, 0, 64, 48);
        surface.setDrawWidth(4);
        surface.line(0, 24, 64, 24, 0xFF0000);
        const QString file = folder.filePath("IRP00001.BMP");
        QVERIFY(surface.saveBitmap(file.toStdString()));
        QFile written(file);
        QVERIFY(written.open(QIODevice::ReadOnly));
        QCOMPARE(written.read(2), QByteArray("BM"));
        const QImage back(file, "BMP");
        QCOMPARE(back.size(), QSize(64, 48));
        QCOMPARE(back.pixelColor(32, 24), QColor(Qt::red));
        QVERIFY(!surface.saveBitmap(folder.filePath("missing/IRP00002.BMP").toStdString()));
    }

    void aSecondInstanceFindsTheLockTaken() {
        QTemporaryDir folder;
        auto first = std::make_unique<gui::QtProcesses>(folder.path());
        QVERIFY(!first->previousInstanceRunning("VAR"));
        QVERIFY(!first->previousInstanceRunning("VAR"));
        gui::QtProcesses second(folder.path());
        QVERIFY(second.previousInstanceRunning("var"));
        QVERIFY(!second.previousInstanceRunning("OTHER"));
        // The lock goes with the process that held it.
        first.reset();
        QVERIFY(!gui::QtProcesses(folder.path()).previousInstanceRunning("VAR"));
    }

    void theScreenIsMeasuredInTwips() {
        gui::QtScreens screens;
        const QSize available = QGuiApplication::primaryScreen()->availableGeometry().size();
        QCOMPARE(screens.screenWidth(), available.width() * 15.0);
        QCOMPARE(screens.screenHeight(), available.height() * 15.0);
        QWidget frame;
        screens.setFrame(&frame);
        frame.show();
        QVERIFY(!screens.frameMinimised());
        frame.setWindowState(Qt::WindowMinimized);
        QVERIFY(screens.frameMinimised());
    }
};

LORVANE_GUI_SUITE(PlatformTest);

} // namespace lorvane::guitest

#include "Platform_test.moc"
