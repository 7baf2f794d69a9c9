#include "app/RecentStudies.h"

#include "app/TestHome.h"

#include <QtTest>

namespace {

StudyInfo study(qint32 id, const char* lastName = "Diaz", const char* firstName = "Ana")
{
    StudyInfo info;
    info.id = id;
    info.studyDateTime = "20240305070809";
    info.lastName = lastName;
    info.firstName = firstName;
    return info;
}

QStringList words(const char* text)
{
    return QString::fromUtf8(text).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

QStringList shownIds()
{
    QStringList ids;
    for (const TRecentStudy& each : RecentStudies::shown())
        ids << each.id;
    return ids;
}

} // namespace

class RecentStudiesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QSettings().clear(); }

    void anEntryIsOneTextOfFourParts()
    {
        RecentStudies::add(study(12));
        QCOMPARE(settings::recentStudyList.value(), words("12||20240305070809||Diaz||Ana"));
        const std::vector<TRecentStudy> shown = RecentStudies::shown();
        QCOMPARE(shown.size(), size_t(1));
        const TRecentStudy expected{QStringLiteral("12"), QStringLiteral("Diaz, Ana"),
                                    QDateTime(QDate(2024, 3, 5), QTime(7, 8, 9))};
        QVERIFY(shown[0] == expected);
    }

    void theNewestIsFirstAndTheEleventhGoes()
    {
        for (int id = 1; id <= 12; ++id)
            RecentStudies::add(study(id));
        const QStringList entries = settings::recentStudyList.value();
        QCOMPARE(entries.size(), 10);
        QVERIFY(entries.first().startsWith(QLatin1String("12||")));
        QVERIFY(entries.last().startsWith(QLatin1String("3||")));
    }

    void aListThatIsTooLongIsCutAtTheNextStudy()
    {
        QStringList entries;
        for (int id = 1; id <= 30; ++id)
            entries << QStringLiteral("%1||20240305070809||Diaz||Ana").arg(id);
        settings::recentStudyList.setValue(entries);
        RecentStudies::add(study(99));
        QCOMPARE(settings::recentStudyList.value().size(), 10);
        QCOMPARE(shownIds(), words("99 1 2 3 4"));
    }

    void fiveOfTenAreShown()
    {
        for (int id = 1; id <= 10; ++id)
            RecentStudies::add(study(id));
        QCOMPARE(shownIds(), words("10 9 8 7 6"));
    }

    void entriesOfOtherPartsArePassedOver()
    {
        settings::recentStudyList.setValue(
            {QStringLiteral("1||20240305070809||Diaz||Ana"), QStringLiteral("2||20240305070809||Diaz"),
             QString(), QStringLiteral("3||20240305070809||Diaz||Ana||more"),
             QStringLiteral("4|20240305070809|Diaz|Ana"), QStringLiteral("5||20240305070809||||"),
             QStringLiteral("6||no time||Diaz||Ana")});
        QCOMPARE(shownIds(), words("1 5 6"));
        QCOMPARE(RecentStudies::shown()[1].patient, QStringLiteral(", "));
        QVERIFY(!RecentStudies::shown()[2].time.isValid());
    }

    void entriesThatArePassedOverTakeNoPlace()
    {
        QStringList entries{QString(), QStringLiteral("90||20240305070809||Diaz")};
        for (int id = 1; id <= 6; ++id)
            entries << QStringLiteral("%1||20240305070809||Diaz||Ana").arg(id);
        settings::recentStudyList.setValue(entries);
        QCOMPARE(shownIds(), words("1 2 3 4 5"));
    }

    void aNameWithTheSeparatorHidesItsOwnEntryAlone()
    {
        RecentStudies::add(study(1));
        RecentStudies::add(study(2, "Di||az"));
        RecentStudies::add(study(3));
        QCOMPARE(shownIds(), words("3 1"));
        QCOMPARE(settings::recentStudyList.value().size(), 3);
    }

    void aNameWithPlaceMarkersStaysAsItIs()
    {
        RecentStudies::add(study(1, "%4", "%1, \"x\""));
        QCOMPARE(RecentStudies::shown()[0].patient, QStringLiteral("%4, %1, \"x\""));
        QCOMPARE(RecentStudies::shown()[0].id, QStringLiteral("1"));
    }

    void removalComparesTheDigitsAsText_data()
    {
        QTest::addColumn<QString>("before");
        QTest::addColumn<int>("id");
        QTest::addColumn<QString>("after");
        const auto row = [](const char* tag, const char* before, int id, const char* after) {
            QTest::newRow(tag) << QString::fromLatin1(before) << id << QString::fromLatin1(after);
        };
        row("the entry", "1||a||b||c 12||a||b||c", 12, "1||a||b||c");
        row("a longer id that comes first", "123||a||b||c 12||a||b||c", 12, "12||a||b||c");
        row("a longer id that comes later", "12||a||b||c 123||a||b||c", 12, "123||a||b||c");
        row("one of two", "12||a||b||c 12||d||e||f", 12, "12||d||e||f");
        row("none", "12||a||b||c", 2, "12||a||b||c");
        row("of an empty list", "", 2, "");
        row("the only one", "12||a||b||c", 12, "");
    }

    void removalComparesTheDigitsAsText()
    {
        QFETCH(QString, before);
        QFETCH(int, id);
        QFETCH(QString, after);
        settings::recentStudyList.setValue(before.split(QLatin1Char(' '), Qt::SkipEmptyParts));
        RecentStudies::remove(id);
        QCOMPARE(settings::recentStudyList.value().join(QLatin1Char(' ')), after);
    }

private:
    TestHome m_home;
};

QTEST_GUILESS_MAIN(RecentStudiesTest)
#include "RecentStudiesTest.moc"
