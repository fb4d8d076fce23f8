// Where the components of a form stand in the running program.
#include "designer/model/component_types.h"
#include "designer/model/form_geometry.h"

#include <QtTest>

using Components = QList<VL::DesignComponent>;
Q_DECLARE_METATYPE(Components)

class FormGeometryTest : public QObject
{
    Q_OBJECT

private slots:
    void clientOrigin_data();
    void clientOrigin();
    void tabPageArea_data();
    void tabPageArea();
    void firstWindow();

private:
    static VL::DesignComponent component(int type, int x, int y, bool selfDrawn = false)
    {
        VL::DesignComponent made;
        made.type = type;
        made.x = x;
        made.y = y;
        made.width = 100;
        made.height = 50;
        if (selfDrawn)
            made.properties.insert(QStringLiteral("_vlwin_type"), 1);
        return made;
    }
};

void FormGeometryTest::clientOrigin_data()
{
    QTest::addColumn<Components>("components");
    QTest::addColumn<QPoint>("expected");
    const auto window = component(VL::Window, 10, 10);
    QTest::newRow("nothing") << Components{} << QPoint();
    QTest::newRow("no window") << Components{component(VL::Button, 5, 5)} << QPoint();
    QTest::newRow("window alone") << Components{window} << QPoint(10, 40);
    QTest::newRow("drawn below the title bar")
        << Components{window, component(VL::Button, 10, 40), component(VL::Label, 200, 300)}
        << QPoint(10, 40);
    QTest::newRow("window behind its components")
        << Components{component(VL::Button, 50, 60), component(VL::Window, 30, 20)}
        << QPoint(30, 50);
    // One component on or left of the frame: the positions count from the client area.
    QTest::newRow("on the title bar")
        << Components{window, component(VL::Button, 100, 100), component(VL::Label, 10, 39)}
        << QPoint();
    QTest::newRow("left of the window")
        << Components{window, component(VL::Button, 9, 100)} << QPoint();
    QTest::newRow("window at the corner")
        << Components{component(VL::Window, 0, 0), component(VL::Button, 0, 0)} << QPoint();
    // The self-drawn title bar is part of the client area.
    QTest::newRow("self-drawn") << Components{component(VL::Window, 10, 20, true),
                                              component(VL::Button, 12, 21, true)}
                                << QPoint(10, 20);
}

void FormGeometryTest::clientOrigin()
{
    QFETCH(Components, components);
    QFETCH(QPoint, expected);
    QCOMPARE(VL::clientOrigin(components), expected);
}

void FormGeometryTest::tabPageArea_data()
{
    QTest::addColumn<QString>("position");
    QTest::addColumn<QRect>("expected");
    QTest::newRow("absent") << QString() << QRect(0, 25, 300, 175);
    QTest::newRow("unknown") << QStringLiteral("斜着") << QRect(0, 25, 300, 175);
    QTest::newRow("top") << QStringLiteral("上方") << QRect(0, 25, 300, 175);
    QTest::newRow("bottom") << QStringLiteral("下方") << QRect(0, 0, 300, 175);
    QTest::newRow("left") << QStringLiteral("左侧") << QRect(60, 0, 240, 200);
    QTest::newRow("right") << QStringLiteral("右侧") << QRect(0, 0, 240, 200);
}

void FormGeometryTest::tabPageArea()
{
    QFETCH(QString, position);
    QFETCH(QRect, expected);
    VL::DesignComponent tab = component(VL::TabWidget, 40, 60);
    tab.width = 300;
    tab.height = 200;
    if (!position.isEmpty())
        tab.properties.insert(QStringLiteral("tabPosition"), position);
    QCOMPARE(VL::tabPageArea(tab), expected);
}

void FormGeometryTest::firstWindow()
{
    const Components components{component(VL::Button, 1, 1), component(VL::Window, 2, 2),
                                component(VL::Window, 3, 3)};
    QCOMPARE(VL::windowComponent(components)->x, 2);
    QVERIFY(!VL::windowComponent({components.first()}));
    QVERIFY(!VL::isSelfDrawn(components));
    QVERIFY(VL::isSelfDrawn({components.first(), component(VL::Label, 0, 0, true)}));
}

QTEST_GUILESS_MAIN(FormGeometryTest)
#include "form_geometry_test.moc"
