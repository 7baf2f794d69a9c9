#pragma once

#include "study/Study.h"

#include <random>

/// Fills studies with texts, results, events, echo scores and protocols that nobody would think of; the same
/// for each seed.
class TRandomStudy
{
public:
    explicit TRandomStudy(unsigned seed) : m_random(seed) {}

    void fill(Study& study);

private:
    int below(int n) { return std::uniform_int_distribution<int>(0, n - 1)(m_random); }
    bool oneIn(int n) { return below(n) == 0; }
    double number();
    QByteArray text();
    std::vector<double> numbers();
    void fillTexts(Study& study);
    void fillResults(TStudyResults& results);
    void fillEvents(TStudyEvents& events);
    std::unique_ptr<TEchoScoring> echoScoring();
    std::unique_ptr<TStressProtocol> protocol();

    std::mt19937 m_random;
};

inline void TRandomStudy::fill(Study& study)
{
    fillTexts(study);
    fillResults(study.results());
    fillEvents(study.events());
    if (!oneIn(3))
        study.setEchoScoring(echoScoring());
    if (!oneIn(3))
        study.setProtocol(protocol());
}

inline double TRandomStudy::number()
{
    switch (below(4)) {
    case 0:
        return below(2000) - 1000;
    case 1:
        return std::uniform_real_distribution<double>(-1.0, 1.0)(m_random);
    case 2:
        return std::ldexp(std::uniform_real_distribution<double>(-1.0, 1.0)(m_random), below(600) - 300);
    default:
        return below(100000) / 500.0;
    }
}

inline QByteArray TRandomStudy::text()
{
    static const char* const pieces[] = {"a", "Z",  " ", "\"",     "\\", "\n", "\t",   "\r",   "/",
                                         "ñ", "É",  "€", "漢",     "😀",  "𝄞",  "\x01", "\x7f", "<",
                                         "&", "%1", "{", "}",      "[",  "]",  ",",    ":",    "\\u0041",
                                         "é", "'",  ";", "\u2028", "-",  "0"};
    QByteArray text;
    for (int left = oneIn(3) ? 0 : below(40); left > 0; --left)
        text += pieces[below(static_cast<int>(std::size(pieces)))];
    return text;
}

inline std::vector<double> TRandomStudy::numbers()
{
    std::vector<double> numbers(static_cast<std::size_t>(oneIn(2) ? 0 : below(30)));
    for (double& value : numbers)
        value = number();
    return numbers;
}

inline void TRandomStudy::fillTexts(Study& study)
{
    study.setId(1 + below(999999999));
    study.setStudyDateTime(text());
    study.setRecordingDateTime(text());
    for (const TStudyField& field : studyFields())
        study.setValue(field.key, text());
    for (const TStudyField& field : patientFields())
        study.setValue(QByteArray("patient/") + field.key, text());
    for (int left = below(12); left > 0; --left)
        study.setRiskFactor(text(), oneIn(2), text());
}

inline void TRandomStudy::fillResults(TStudyResults& results)
{
    for (const auto& [name, item] : results.items()) {
        if (TResultValue* value = results.value(name))
            value->setValue(number());
        else if (TResultList* list = results.list(name))
            list->setValues(numbers());
        else if (TResultTrend* trend = results.trend(name))
            trend->setPoints(numbers(), numbers());
    }
}

inline void TRandomStudy::fillEvents(TStudyEvents& events)
{
    for (int left = below(10); left > 0; --left) {
        TStudyEvent& event = events.add();
        event.setDescription(text());
        event.position = number();
        event.duration = number();
        event.print = oneIn(2);
    }
}

inline std::unique_ptr<TEchoScoring> TRandomStudy::echoScoring()
{
    auto scoring = std::make_unique<TEchoScoring>();
    for (int i = below(30); i > 0; --i)
        scoring->setScore(TEchoScoring::storedName(1 + below(16)), static_cast<TEchoTime>(below(3)),
                          oneIn(5) ? std::numeric_limits<qint32>::min() : below(6) - 1);
    return scoring;
}

/// Only with what its type keeps: whole seconds and its own keys.
inline std::unique_ptr<TStressProtocol> TRandomStudy::protocol()
{
    auto protocol = std::make_unique<TStressProtocol>(text(), static_cast<TProtocolType>(below(5)));
    for (int left = below(15); left > 0; --left) {
        TProtocolStage& stage = protocol->addStage(static_cast<TStagePhase>(below(3)), below(1000));
        switch (protocol->type()) {
        case TProtocolType::Treadmill:
            stage.setValue("speed", number());
            stage.setValue("incline", number());
            break;
        case TProtocolType::Ergometer:
            stage.setValue("workload", number());
            break;
        case TProtocolType::Pharmacologic:
            stage.setValue("dose", number());
            break;
        case TProtocolType::Ecg:
        case TProtocolType::TiltTest:
            break;
        }
    }
    return protocol;
}
