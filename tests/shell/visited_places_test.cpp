// The way back through the places that the user has come from.
#include "shell/visited_places.h"

#include <QtTest>

class VisitedPlacesTest : public QObject
{
    Q_OBJECT

private slots:
    void goesBack_data();
    void goesBack();
    void forgetsTheOldest();
};

void VisitedPlacesTest::goesBack_data()
{
    QTest::addColumn<QString>("visited");
    QTest::addColumn<QString>("back");
    QTest::addRow("nowhere") << ""
                             << "";
    QTest::addRow("the latest first") << "甲:1 甲:9 乙:1"
                                      << "乙:1 甲:9 甲:1";
    QTest::addRow("one line once") << "甲:1 甲:1 甲:2"
                                   << "甲:2 甲:1";
    QTest::addRow("there and back") << "甲:1 乙:1 甲:1"
                                    << "甲:1 乙:1 甲:1";
}

void VisitedPlacesTest::goesBack()
{
    QFETCH(QString, visited);
    VisitedPlaces places;
    for (const QString &place : visited.split(' ', Qt::SkipEmptyParts))
        places.add({place.section(':', 0, 0), place.section(':', 1).toInt(), 1});
    QStringList back;
    while (const std::optional<TextPlace> place = places.takeLast())
        back << QStringLiteral("%1:%2").arg(place->file).arg(place->line);
    QTEST(back.join(' '), "back");
}

void VisitedPlacesTest::forgetsTheOldest()
{
    VisitedPlaces places;
    for (int line = 1; line <= VisitedPlaces::maxPlaces + 5; ++line)
        places.add({"甲", line, 1});
    int last = 0;
    while (const std::optional<TextPlace> place = places.takeLast())
        last = place->line;
    QCOMPARE(last, 6);
}

QTEST_GUILESS_MAIN(VisitedPlacesTest)
#include "visited_places_test.moc"
