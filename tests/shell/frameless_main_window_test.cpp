// The outermost window with its title bar, and the identity it shows.
#include "shell/app_identity.h"
#include "shell/custom_title_bar.h"
#include "shell/dark_theme.h"
#include "shell/frame_geometry.h"
#include "shell/frameless_main_window.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCloseEvent>
#include <QLabel>
#include <QMenu>
#include <QScreen>
#include <QtTest>

class FramelessMainWindowTest : public QObject
{
    Q_OBJECT

private slots:
    void edgesOfFrame_data();
    void edgesOfFrame();
    void keepsWindowsOnScreens_data();
    void keepsWindowsOnScreens();
    void identity();
    void titleFollowsContent();
    void buttonsTellWhatIsWanted_data();
    void buttonsTellWhatIsWanted();
    void doubleClickMaximizes();
    void systemMenuByKeyboard();
    void contentDecidesAboutClosing();
    void closesWithItsContent();
    void restoresGeometry();
    void signsAreDrawn_data();
    void signsAreDrawn();
};

namespace {

// A content that may refuse to close.
class Content : public QLabel
{
public:
    bool mayClose = true;

protected:
    void closeEvent(QCloseEvent *event) override { event->setAccepted(mayClose); }
};

QAbstractButton *buttonOf(const FramelessMainWindow &window, const QString &accessibleName)
{
    for (QAbstractButton *button : window.findChildren<QAbstractButton *>()) {
        if (button->accessibleName() == accessibleName)
            return button;
    }
    return nullptr;
}

} // namespace

void FramelessMainWindowTest::edgesOfFrame_data()
{
    QTest::addColumn<QPoint>("position");
    QTest::addColumn<Qt::Edges>("edges");
    QTest::addColumn<Qt::CursorShape>("cursor");
    const auto row = [](const char *name, int x, int y, Qt::Edges edges, Qt::CursorShape cursor) {
        QTest::newRow(name) << QPoint(x, y) << edges << cursor;
    };
    row("middle", 100, 100, {}, Qt::ArrowCursor);
    row("just within", 5, 100, {}, Qt::ArrowCursor);
    row("left", 4, 100, Qt::LeftEdge, Qt::SizeHorCursor);
    row("right", 195, 100, Qt::RightEdge, Qt::SizeHorCursor);
    row("top", 100, 0, Qt::TopEdge, Qt::SizeVerCursor);
    row("bottom", 100, 199, Qt::BottomEdge, Qt::SizeVerCursor);
    row("corner", 0, 0, Qt::LeftEdge | Qt::TopEdge, Qt::SizeFDiagCursor);
    row("near a corner", 190, 2, Qt::RightEdge | Qt::TopEdge, Qt::SizeBDiagCursor);
    row("beside a corner", 2, 190, Qt::LeftEdge | Qt::BottomEdge, Qt::SizeBDiagCursor);
    row("other diagonal", 199, 199, Qt::RightEdge | Qt::BottomEdge, Qt::SizeFDiagCursor);
    row("outside", 200, 100, {}, Qt::ArrowCursor);
}

void FramelessMainWindowTest::edgesOfFrame()
{
    QFETCH(QPoint, position);
    QFETCH(Qt::Edges, edges);
    QCOMPARE(FrameGeometry::edgesAt(position, QSize(200, 200), 5), edges);
    QTEST(FrameGeometry::cursorFor(edges), "cursor");
}

void FramelessMainWindowTest::keepsWindowsOnScreens_data()
{
    QTest::addColumn<QRect>("wanted");
    QTest::addColumn<QVector<QRect>>("screens");
    QTest::addColumn<QRect>("kept");
    const QRect main(0, 30, 1000, 770);
    const QRect left(-800, 0, 800, 600);
    const QVector<QRect> both = {main, left};
    QTest::newRow("fits") << QRect(100, 100, 500, 400) << both << QRect(100, 100, 500, 400);
    QTest::newRow("on the other") << QRect(-700, 9, 500, 400) << both << QRect(-700, 9, 500, 400);
    QTest::newRow("screen is gone")
        << QRect(-700, 9, 500, 400) << QVector<QRect>{main} << QRect(0, 30, 500, 400);
    QTest::newRow("beyond the right")
        << QRect(900, 700, 500, 400) << both << QRect(500, 400, 500, 400);
    QTest::newRow("across two") << QRect(-100, 50, 500, 400) << both << QRect(0, 50, 500, 400);
    QTest::newRow("too large") << QRect(-50, 0, 5000, 4000) << both << main;
    QTest::newRow("under the panel") << QRect(10, 0, 500, 400) << both << QRect(10, 30, 500, 400);
    QTest::newRow("no screen") << QRect(7, 8, 9, 10) << QVector<QRect>{} << QRect(7, 8, 9, 10);
}

void FramelessMainWindowTest::keepsWindowsOnScreens()
{
    QFETCH(QRect, wanted);
    QFETCH(QVector<QRect>, screens);
    QTEST(FrameGeometry::keptOnScreens(wanted, screens), "kept");
}

void FramelessMainWindowTest::identity()
{
    AppIdentity::apply();
    QCOMPARE(QGuiApplication::applicationDisplayName(),
             QStringLiteral("Vorel VorelDesk 全中文可视化开发环境"));
    QCOMPARE(QCoreApplication::applicationVersion(), QStringLiteral(VOREL_VERSION));
    for (const int size : {16, 32, 48, 64, 128, 256})
        QVERIFY(AppIdentity::icon().availableSizes().contains(QSize(size, size)));
    FramelessMainWindow window;
    QVERIFY(!window.windowIcon().isNull());
}

void FramelessMainWindowTest::titleFollowsContent()
{
    FramelessMainWindow window;
    auto *const content = new Content;
    content->setWindowTitle(QStringLiteral("甲[*] - VorelDesk"));
    window.setContent(content);
    QCOMPARE(window.titleBar()->title(), QStringLiteral("甲 - VorelDesk"));
    content->setWindowModified(true);
    QCOMPARE(window.titleBar()->title(), QStringLiteral("甲* - VorelDesk"));
    content->setWindowTitle(QStringLiteral("乙[*]"));
    QCOMPARE(window.titleBar()->title(), QStringLiteral("乙*"));
}

void FramelessMainWindowTest::buttonsTellWhatIsWanted_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<QByteArray>("signal");
    QTest::newRow("skin") << "更换皮肤" << QByteArray(SIGNAL(skinButtonClicked()));
    QTest::newRow("minimize") << "最小化" << QByteArray(SIGNAL(minimizeClicked()));
    QTest::newRow("maximize") << "最大化" << QByteArray(SIGNAL(maximizeClicked()));
    QTest::newRow("close") << "关闭" << QByteArray(SIGNAL(closeClicked()));
}

void FramelessMainWindowTest::buttonsTellWhatIsWanted()
{
    QFETCH(QString, button);
    QFETCH(QByteArray, signal);
    FramelessMainWindow window;
    window.show();
    QAbstractButton *const clicked = buttonOf(window, button);
    QVERIFY(clicked);
    QSignalSpy spy(window.titleBar(), signal.constData());
    QTest::mouseClick(clicked, Qt::LeftButton);
    QCOMPARE(spy.count(), 1);
}

void FramelessMainWindowTest::doubleClickMaximizes()
{
    FramelessMainWindow window;
    window.setContent(new Content);
    window.resize(500, 300);
    window.show();
    const QPoint onTitle(150, 10);
    QTest::mouseDClick(window.titleBar(), Qt::LeftButton, Qt::NoModifier, onTitle);
    QTRY_VERIFY(window.isMaximized());
    // Nothing is left to grasp: the content reaches the edges of the screen.
    QTRY_COMPARE(window.content()->geometry().right(), window.rect().right());
    QVERIFY(buttonOf(window, QStringLiteral("还原")));
    QTest::mouseDClick(window.titleBar(), Qt::LeftButton, Qt::NoModifier, onTitle);
    QTRY_VERIFY(!window.isMaximized());
    QTRY_VERIFY(window.content()->geometry().right() < window.rect().right());
    QTest::mouseDClick(window.titleBar(), Qt::RightButton, Qt::NoModifier, onTitle);
    QVERIFY(!window.isMaximized());
}

void FramelessMainWindowTest::systemMenuByKeyboard()
{
    FramelessMainWindow window;
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    QTest::keyClick(&window, Qt::Key_Space, Qt::AltModifier);
    QTRY_VERIFY(window.systemMenu()->isVisible());
    QStringList enabled;
    for (const QAction *action : window.systemMenu()->actions()) {
        if (action->isEnabled() && !action->isSeparator())
            enabled += action->text();
    }
    QCOMPARE(enabled, (QStringList{"最小化(&N)", "最大化(&X)", "关闭(&C)"}));
    QTest::keyClick(window.systemMenu(), Qt::Key_X);
    QTRY_VERIFY(window.isMaximized());
}

void FramelessMainWindowTest::contentDecidesAboutClosing()
{
    FramelessMainWindow window;
    auto *const content = new Content;
    window.setContent(content);
    window.show();
    content->mayClose = false;
    window.onCloseClicked();
    QVERIFY(window.isVisible() && content->isVisible());
    content->mayClose = true;
    window.onCloseClicked();
    QVERIFY(!window.isVisible());
}

void FramelessMainWindowTest::closesWithItsContent()
{
    FramelessMainWindow window;
    window.setContent(new Content);
    window.show();
    window.content()->close();
    QVERIFY(!window.isVisible());
}

void FramelessMainWindowTest::restoresGeometry()
{
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    QByteArray saved;
    {
        FramelessMainWindow window;
        window.setGeometry(screen.right() - 50, screen.bottom() - 40, 400, 300);
        window.show();
        saved = window.saveGeometry();
    }
    FramelessMainWindow window;
    QVERIFY(window.restoreFrame(saved));
    QCOMPARE(window.size(), QSize(400, 300));
    QVERIFY(screen.contains(window.geometry()));
    const QRect before = window.geometry();
    for (const QByteArray &bad : {QByteArray(), QByteArray("nonsense"), saved.left(20)})
        QVERIFY(!window.restoreFrame(bad));
    QCOMPARE(window.geometry(), before);
}

void FramelessMainWindowTest::signsAreDrawn_data()
{
    QTest::addColumn<qreal>("ratio");
    QTest::newRow("100%") << 1.0;
    QTest::newRow("150%") << 1.5;
    QTest::newRow("200%") << 2.0;
}

// The sign of "maximize" is a square of full ink, not a grey blur between two pixels.
void FramelessMainWindowTest::signsAreDrawn()
{
    QFETCH(qreal, ratio);
    FramelessMainWindow window;
    window.resize(400, 200);
    window.show();
    QAbstractButton *const button = buttonOf(window, QStringLiteral("最大化"));
    QImage image(button->size() * ratio, QImage::Format_RGB32);
    image.setDevicePixelRatio(ratio);
    image.fill(button->palette().color(QPalette::Window));
    button->render(&image);
    const QRgb ink = button->palette().color(QPalette::WindowText).rgb();
    int inked = 0;
    for (int x = 0; x < image.width(); ++x)
        inked += image.pixel(x, image.height() / 2) == ink ? 1 : 0;
    QVERIFY2(inked >= 2 && inked <= 4, qPrintable(QString::number(inked)));
}

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    applyDarkTheme(application);
    FramelessMainWindowTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "frameless_main_window_test.moc"
