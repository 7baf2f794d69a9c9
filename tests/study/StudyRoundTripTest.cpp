#include "RandomStudy.h"
#include "StudySet.h"
#include "study/StudyFiles.h"

#include <QtTest>

namespace {

bool sameResult(const TResultItem& one, const TResultItem& other)
{
    if (const auto* value = dynamic_cast<const TResultValue*>(&one))
        return value->value() == dynamic_cast<const TResultValue&>(other).value();
    if (const auto* list = dynamic_cast<const TResultList*>(&one))
        return list->values() == dynamic_cast<const TResultList&>(other).values();
    const auto& trend = dynamic_cast<const TResultTrend&>(one);
    const auto& otherTrend = dynamic_cast<const TResultTrend&>(other);
    return trend.times() == otherTrend.times() && trend.values() == otherTrend.values();
}

/// The first result that differs, empty if none does.
QByteArray differentResult(const TStudyResults& one, const TStudyResults& other)
{
    for (const auto& [name, item] : one.items()) {
        if (!sameResult(*item, *other.get(name)))
            return name;
    }
    return QByteArray();
}

bool sameEvents(const TStudyEvents& one, const TStudyEvents& other)
{
    bool same = one.count() == other.count();
    for (int i = 0; same && i < one.count(); ++i) {
        const TStudyEvent& a = one.at(i);
        const TStudyEvent& b = other.at(i);
        same = a.index == b.index && a.position == b.position && a.duration == b.duration &&
               a.description == b.description && a.print == b.print;
    }
    return same;
}

void compare(Study& saved, Study& loaded)
{
    StudyInfo savedInfo;
    StudyInfo loadedInfo;
    infoFromStudy(savedInfo, saved);
    infoFromStudy(loadedInfo, loaded);
    QVERIFY(loadedInfo == savedInfo);
    QCOMPARE(differentResult(saved.results(), loaded.results()), QByteArray());
    QVERIFY(sameEvents(saved.events(), loaded.events()));
    QCOMPARE(loaded.echoScoring() != nullptr, saved.echoScoring() != nullptr);
    if (saved.echoScoring() != nullptr)
        QVERIFY(*loaded.echoScoring() == *saved.echoScoring());
    // A study without a protocol comes back with an empty one.
    QVERIFY(*loaded.protocol() == (saved.protocol() != nullptr ? *saved.protocol() : TStressProtocol()));
}

} // namespace

class StudyRoundTripTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whateverASavedStudyHoldsComesBack()
    {
        const TStudySet set;
        for (unsigned seed = 1; seed <= 200; ++seed) {
            Study saved(0);
            TRandomStudy(seed).fill(saved);
            saveStudyFile(saved, set.study());
            const auto loaded = loadStudy(set.study());
            QVERIFY2(loaded != nullptr, QByteArray::number(seed));
            compare(saved, *loaded);
            if (QTest::currentTestFailed())
                QFAIL("seed " + QByteArray::number(seed));
        }
    }

    void savingWhatWasLoadedChangesNothing()
    {
        const TStudySet set;
        for (unsigned seed = 1; seed <= 20; ++seed) {
            Study saved(0);
            TRandomStudy(seed).fill(saved);
            saved.setProtocol(std::make_unique<TStressProtocol>());
            saveStudyFile(saved, set.study());
            const QByteArray first = readFile(set.study());
            saveStudyFile(*loadStudy(set.study()), set.study());
            QCOMPARE(readFile(set.study()), first);
        }
    }

    void differentSeedsMakeDifferentStudies()
    {
        Study one(0);
        Study other(0);
        TRandomStudy(1).fill(one);
        TRandomStudy(2).fill(other);
        QVERIFY(!differentResult(one.results(), other.results()).isEmpty());
    }
};

QTEST_GUILESS_MAIN(StudyRoundTripTest)
#include "StudyRoundTripTest.moc"
