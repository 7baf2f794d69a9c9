#include "study/ResultsJson.h"
#include "ResultNames.h"
#include "study/TStudyResults.h"

#include <QJsonDocument>
#include <QtTest>

#include <limits>
#include <map>

namespace {

using Numbers = std::vector<double>;

QByteArray compact(const TStudyResults& results)
{
    return QJsonDocument(makeResultsObject(results)).toJson(QJsonDocument::Compact);
}

void read(TStudyResults& results, const QByteArray& json)
{
    QJsonParseError error;
    const QJsonObject object = QJsonDocument::fromJson(json, &error).object();
    QCOMPARE(error.error, QJsonParseError::NoError);
    readResultsObject(results, object);
}

/// The form of results that hold nothing, by name.
std::map<QByteArray, QByteArray> emptyForms()
{
    std::map<QByteArray, QByteArray> forms;
    for (const QByteArray& name : valueNames())
        forms[name] = R"({"type":"value","value":0})";
    forms["measurementChannel"] = R"({"type":"value","value":-1})";
    forms["QRSAxis"] = R"({"type":"value","value":-999})";
    for (const QByteArray& name : listNames())
        forms[name] = R"({"type":"valueArray","values":[]})";
    for (const QByteArray& name : trendNames())
        forms[name] = R"({"timestamps":[],"type":"trend","values":[]})";
    return forms;
}

QByteArray joined(const std::map<QByteArray, QByteArray>& forms)
{
    QByteArray text;
    for (const auto& [name, form] : forms)
        text += (text.isEmpty() ? "{\"" : ",\"") + name + "\":" + form;
    return text + '}';
}

} // namespace

class ResultsJsonTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyNameIsWrittenEvenWhenEmpty() { QCOMPARE(compact(TStudyResults()), joined(emptyForms())); }

    void eachKindHasItsForm()
    {
        TStudyResults results;
        results.value("maxBPM")->setValue(171.5);
        results.list("STLevelPerStage(15)")->setValues({-0.1, 0.0, 0.25});
        results.trend("METSTrend")->setPoints({0.4, 12.0}, {1.0, 9.75});
        std::map<QByteArray, QByteArray> forms = emptyForms();
        forms["maxBPM"] = R"({"type":"value","value":171.5})";
        forms["STLevelPerStage(15)"] = R"({"type":"valueArray","values":[-0.1,0,0.25]})";
        forms["METSTrend"] = R"({"timestamps":[0.4,12],"type":"trend","values":[1,9.75]})";
        QCOMPARE(compact(results), joined(forms));
    }

    void theFormOfAFileIsRead()
    {
        TStudyResults results;
        read(results, R"-({"maxBPM":{"type":"value","value":171.5},)-"
                      R"-("BPMPerStage":{"type":"valueArray","values":[70,90.5]},)-"
                      R"-("STSlopeTrend(15)":{"type":"trend","timestamps":[1,2],"values":[0.5,-0.5]}})-");
        QCOMPARE(results.value("maxBPM")->value(), 171.5);
        QCOMPARE(results.list("BPMPerStage")->values(), (Numbers{70.0, 90.5}));
        QCOMPARE(results.trend("STSlopeTrend(15)")->times(), (Numbers{1.0, 2.0}));
        QCOMPARE(results.trend("STSlopeTrend(15)")->values(), (Numbers{0.5, -0.5}));
    }

    void whatTheFileDoesNotHaveKeepsItsStart()
    {
        TStudyResults results;
        read(results, R"({"maxBPM":{"value":1}})");
        QCOMPARE(results.value("measurementChannel")->value(), -1.0);
        QCOMPARE(results.value("QRSAxis")->value(), -999.0);
    }

    void unknownNamesAreDropped()
    {
        TStudyResults results;
        read(results, R"-({"maxbpm":{"type":"value","value":1},"STLevelTrend(16)":{"type":"trend",)-"
                      R"-("timestamps":[1],"values":[1]},"":{"type":"value","value":2}})-");
        QCOMPARE(compact(results), joined(emptyForms()));
    }

    void theTableDecidesTheKindNotTheWord()
    {
        TStudyResults results;
        read(results, R"({"maxBPM":{"type":"trend","value":99,"values":[1],"timestamps":[1]},)"
                      R"("BPMPerStage":{"type":"value","value":5,"values":[6]},)"
                      R"("BPMTrend":{"values":[7],"timestamps":[8]}})");
        QCOMPARE(results.value("maxBPM")->value(), 99.0);
        QCOMPARE(results.list("BPMPerStage")->values(), Numbers{6.0});
        QCOMPARE(results.trend("BPMTrend")->times(), Numbers{8.0});
        QCOMPARE(results.trend("BPMTrend")->values(), Numbers{7.0});
    }

    void ofATrendTheShorterArrayCounts()
    {
        TStudyResults results;
        read(results, R"({"BPMTrend":{"timestamps":[1,2,3],"values":[70]},)"
                      R"("DPTrend":{"timestamps":[1],"values":[70,80]},)"
                      R"("METSTrend":{"timestamps":[1,2]}})");
        QCOMPARE(results.trend("BPMTrend")->times(), Numbers{1.0});
        QCOMPARE(results.trend("BPMTrend")->values(), Numbers{70.0});
        QCOMPARE(results.trend("DPTrend")->count(), 1);
        QCOMPARE(results.trend("METSTrend")->count(), 0);
    }

    void aTrendThatIsNotSortedIsSorted()
    {
        TStudyResults results;
        read(results, R"({"BPMTrend":{"timestamps":[3,1,2],"values":[30,10,20]}})");
        QCOMPARE(results.trend("BPMTrend")->times(), (Numbers{1.0, 2.0, 3.0}));
        QCOMPARE(results.trend("BPMTrend")->values(), (Numbers{10.0, 20.0, 30.0}));
    }

    void whatIsNoNumberReadsAsZero()
    {
        TStudyResults results;
        results.value("maxBPM")->setValue(5.0);
        read(results, R"({"maxBPM":{"value":"fast"},"maxDP":7,"BPMPerStage":{"values":[1,null,"2",[3],4]},)"
                      R"("sysBPPerStage":{"values":"none"}})");
        QCOMPARE(results.value("maxBPM")->value(), 0.0);
        QCOMPARE(results.value("maxDP")->value(), 0.0);
        QCOMPARE(results.list("BPMPerStage")->values(), (Numbers{1.0, 0.0, 0.0, 0.0, 4.0}));
        QCOMPARE(results.list("sysBPPerStage")->count(), 0);
    }

    void aNumberThatIsNotFiniteComesBackAsZero()
    {
        TStudyResults results;
        results.value("maxMETS")->setValue(std::numeric_limits<double>::quiet_NaN());
        results.list("BPMPerStage")->setValues({1.0, std::numeric_limits<double>::infinity()});
        TStudyResults back;
        read(back, compact(results));
        QCOMPARE(back.value("maxMETS")->value(), 0.0);
        QCOMPARE(back.list("BPMPerStage")->values(), (Numbers{1.0, 0.0}));
    }

    void numbersComeBackToTheLastBit()
    {
        const Numbers numbers{0.1, 1.0 / 3.0, 1e300, 5e-324, 123456789.123456789, -0.30000000000000004};
        TStudyResults results;
        results.list("pacemakerPulses")->setValues(numbers);
        TStudyResults back;
        read(back, compact(results));
        QVERIFY(back.list("pacemakerPulses")->values() == numbers);
    }
};

QTEST_GUILESS_MAIN(ResultsJsonTest)
#include "ResultsJsonTest.moc"
