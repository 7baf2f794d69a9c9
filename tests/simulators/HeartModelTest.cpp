#include "simulators/EcgMeasures.h"
#include "simulators/heart/Course.h"
#include "simulators/heart/DemoRecording.h"

#include <QtTest>

#include <algorithm>
#include <cmath>

using namespace heart;
using namespace measures;

namespace {

// Seconds of the course that hold no premature beat.
constexpr double restFrom = 2;
constexpr double restTo = 13;
constexpr double peakFrom = 126;
constexpr double peakTo = 149;
constexpr double recoveredFrom = 228;
constexpr double recoveredTo = 238;

double secondsOf(const TComplex& complex)
{
    return double(complex.r) / framesPerSecond;
}

} // namespace

#define VERIFY_WITHIN(value, low, high)                                                                      \
    do {                                                                                                     \
        const double measured = (value);                                                                     \
        QVERIFY2(measured >= (low) && measured <= (high), qPrintable(QString::number(measured)));            \
    } while (false)

class HeartModelTest : public QObject
{
    Q_OBJECT

private:
    TEcg m_ecg;
    std::vector<TComplex> m_complexes;

    std::vector<TComplex> between(double from, double to) const
    {
        std::vector<TComplex> found;
        for (const TComplex& complex : m_complexes)
            if (secondsOf(complex) >= from && secondsOf(complex) < to)
                found.push_back(complex);
        return found;
    }

    std::vector<TComplex> atRest() const { return between(restFrom, restTo); }

    /// Indices of beats that come in less than 0.85 of the interval before.
    std::vector<std::size_t> premature() const
    {
        std::vector<std::size_t> found;
        for (std::size_t i = 2; i + 2 < m_complexes.size(); ++i)
            if (m_complexes[i].rr < 0.85 * m_complexes[i - 1].rr && m_complexes[i - 1].rr < 1.1 * usualRr(i))
                found.push_back(i);
        return found;
    }

    double usualRr(std::size_t i) const { return 60 / heartRate(secondsOf(m_complexes[i])); }

    /// The sinus intervals ahead of a premature beat and behind its pause, on the mean.
    double sinusRrAround(std::size_t i) const { return (m_complexes[i - 1].rr + m_complexes[i + 2].rr) / 2; }

    std::vector<std::size_t> prematureOfWidth(bool wide) const
    {
        std::vector<std::size_t> found;
        for (const std::size_t i : premature())
            if (m_complexes[i].isWide() == wide)
                found.push_back(i);
        return found;
    }

    double meanSt(double from, double to, int lead, double behindJ) const
    {
        double sum = 0;
        const std::vector<TComplex> complexes = between(from, to);
        for (const TComplex& complex : complexes)
            sum += stLevel(m_ecg, complex, lead, behindJ);
        return sum / double(complexes.size());
    }

    double meanRate(double from, double to) const
    {
        double sum = 0;
        const std::vector<TComplex> complexes = between(from, to);
        for (const TComplex& complex : complexes)
            sum += complex.rr;
        return 60 * double(complexes.size()) / sum;
    }

private Q_SLOTS:
    void initTestCase()
    {
        m_ecg = demoLeads(false);
        m_complexes = complexesOf(m_ecg);
        QVERIFY(m_complexes.size() > 390 && m_complexes.size() < 450);
    }

    void theRateRisesAndRecovers()
    {
        VERIFY_WITHIN(meanRate(restFrom, restTo), 63, 68);
        VERIFY_WITHIN(meanRate(75, 80), 95, 115);
        VERIFY_WITHIN(meanRate(peakFrom, peakTo), 147, 152);
        VERIFY_WITHIN(meanRate(190, 195), 95, 120);
        VERIFY_WITHIN(meanRate(recoveredFrom, recoveredTo), 62, 72);
    }

    void breathingMovesTheRateAtRestOnly()
    {
        const auto byRr = [](const TComplex& a, const TComplex& b) { return a.rr < b.rr; };
        const std::vector<TComplex> rest = atRest();
        const auto [shortest, longest] = std::minmax_element(rest.begin(), rest.end(), byRr);
        VERIFY_WITHIN(longest->rr - shortest->rr, 0.05, 0.15);
        const std::vector<TComplex> peak = between(peakFrom, peakTo);
        const auto [shortestAtPeak, longestAtPeak] = std::minmax_element(peak.begin(), peak.end(), byRr);
        VERIFY_WITHIN(longestAtPeak->rr - shortestAtPeak->rr, 0, 0.01);
    }

    void theQrsAxisIsAboutFiftyDegrees()
    {
        for (const TComplex& complex : atRest())
            VERIFY_WITHIN(qrsAxis(m_ecg, complex), 40, 60);
    }

    void theQrsIsNarrow()
    {
        for (const TComplex& complex : atRest())
            VERIFY_WITHIN(complex.qrsDuration(), 0.08, 0.10);
    }

    void conductionToTheVentriclesTakesItsUsualTime()
    {
        for (const TComplex& complex : atRest())
            VERIFY_WITHIN(prInterval(m_ecg, complex), 0.14, 0.18);
        for (const TComplex& complex : between(90, 94))
            VERIFY_WITHIN(prInterval(m_ecg, complex), 0.14, 0.16);
    }

    void theQtFollowsTheRate()
    {
        for (const auto& [from, to] : {std::pair(restFrom, restTo), std::pair(80.0, 95.0),
                                       std::pair(peakFrom, peakTo), std::pair(recoveredFrom, recoveredTo)}) {
            for (const TComplex& complex : between(from, to))
                VERIFY_WITHIN(qtInterval(m_ecg, complex) / std::sqrt(complex.rr), 0.38, 0.43);
        }
    }

    void pAndTStandUprightWhereTheyShould()
    {
        for (const TComplex& complex : atRest()) {
            VERIFY_WITHIN(pAmplitude(m_ecg, complex, I), 0.03, 0.15);
            VERIFY_WITHIN(pAmplitude(m_ecg, complex, II), 0.08, 0.20);
            VERIFY_WITHIN(pAmplitude(m_ecg, complex, aVR), -0.15, -0.04);
            for (const TLead lead : {I, II, aVF, V3, V4, V5, V6, CM5, CR5})
                VERIFY_WITHIN(tAmplitude(m_ecg, complex, lead), 0.1, 0.8);
            VERIFY_WITHIN(tAmplitude(m_ecg, complex, aVR), -0.4, -0.1);
        }
    }

    void theRWaveGrowsFromV1ToV5()
    {
        for (const TComplex& complex : atRest()) {
            for (int lead = V1; lead < V5; ++lead)
                QVERIFY(rAmplitude(m_ecg, complex, lead) < rAmplitude(m_ecg, complex, lead + 1));
            QVERIFY(rAmplitude(m_ecg, complex, V6) < rAmplitude(m_ecg, complex, V5));
        }
    }

    void theSWaveShrinksFromV2ToV6()
    {
        for (const TComplex& complex : atRest())
            for (int lead = V2; lead < V6; ++lead)
                QVERIFY(sAmplitude(m_ecg, complex, lead) < sAmplitude(m_ecg, complex, lead + 1));
    }

    void amplitudesAreThoseOfAnAdult()
    {
        for (const TComplex& complex : atRest()) {
            VERIFY_WITHIN(rAmplitude(m_ecg, complex, V5), 1.3, 1.7);
            VERIFY_WITHIN(rAmplitude(m_ecg, complex, V1), 0.1, 0.5);
            VERIFY_WITHIN(sAmplitude(m_ecg, complex, V1), -1.5, -0.6);
            VERIFY_WITHIN(rAmplitude(m_ecg, complex, II), 0.7, 1.6);
            VERIFY_WITHIN(rAmplitude(m_ecg, complex, I), 0.4, 1.0);
            // Below Sokolow's and Lyon's limit of hypertrophy.
            QVERIFY(rAmplitude(m_ecg, complex, V5) - sAmplitude(m_ecg, complex, V1) < 3.5);
        }
    }

    void theStSegmentFallsAtHighRateAndRecovers()
    {
        for (const TLead lead : {V4, V5, V6}) {
            // At the J point of the recorder, 10 ms behind the QRS, and half way to the T wave.
            for (const double behindJ : {0.01, 0.04}) {
                const double rest = meanSt(restFrom, restTo, lead, behindJ);
                VERIFY_WITHIN(rest, -0.02, 0.02);
                VERIFY_WITHIN(rest - meanSt(peakFrom, peakTo, lead, behindJ), 0.10, 0.20);
                VERIFY_WITHIN(meanSt(recoveredFrom, recoveredTo, lead, behindJ), -0.02, 0.02);
            }
        }
    }

    void theTWaveChangesWithTheRate()
    {
        const double rest = tAmplitude(m_ecg, atRest().front(), V4);
        const double exercise = tAmplitude(m_ecg, between(90, 94).front(), V4);
        VERIFY_WITHIN(exercise / rest, 0.6, 0.9);
    }

    void thereAreAFewPrematureBeats()
    {
        QCOMPARE(prematureOfWidth(true).size(), std::size_t(5));
        QCOMPARE(prematureOfWidth(false).size(), std::size_t(2));
    }

    void ventricularBeatsAreWideWithAnOppositeT()
    {
        for (const std::size_t i : prematureOfWidth(true)) {
            const TComplex& complex = m_complexes[i];
            VERIFY_WITHIN(complex.qrsDuration(), 0.12, 0.18);
            QVERIFY(rAmplitude(m_ecg, complex, II) > 1);
            QVERIFY(m_ecg[complex.r + int(0.24 * framesPerSecond)][II] < -0.1);
        }
    }

    void ventricularBeatsLeaveTheSinusRhythmAlone()
    {
        for (const std::size_t i : prematureOfWidth(true)) {
            const double both = m_complexes[i].rr + m_complexes[i + 1].rr;
            VERIFY_WITHIN(both / sinusRrAround(i), 1.92, 2.08);
        }
    }

    void supraventricularBeatsResetTheSinusRhythm()
    {
        for (const std::size_t i : prematureOfWidth(false)) {
            const double both = m_complexes[i].rr + m_complexes[i + 1].rr;
            VERIFY_WITHIN(both / sinusRrAround(i), 1.65, 1.9);
            // From low in the atria.
            QVERIFY(pAmplitude(m_ecg, m_complexes[i], II) < -0.03);
        }
    }

    void theRhythmGoesOnThroughTheLoop()
    {
        TEcg joint(m_ecg.end() - 6 * framesPerSecond, m_ecg.end());
        joint.insert(joint.end(), m_ecg.begin(), m_ecg.begin() + 6 * framesPerSecond);
        const std::vector<TComplex> complexes = complexesOf(joint);
        QVERIFY(complexes.size() >= 10);
        for (std::size_t i = 1; i < complexes.size(); ++i) {
            VERIFY_WITHIN(complexes[i].rr, 0.82, 1.02);
            VERIFY_WITHIN(prInterval(joint, complexes[i]), 0.14, 0.18);
        }
    }
};

QTEST_GUILESS_MAIN(HeartModelTest)

#include "HeartModelTest.moc"
