#include "simulators/heart/DemoRecording.h"

#include "simulators/heart/Course.h"

#include <QCryptographicHash>
#include <QtTest>

#include <algorithm>
#include <cmath>

using namespace heart;

namespace {

// Every sample counts: who changes the model on purpose puts the new sum here.
constexpr char expectedSha256[] = "9afa243416858bd7ff070e169ad5f9d57f70307376b8cc26dc0c14c0a23656a1";

QByteArray sha256(const std::string& bytes)
{
    return QCryptographicHash::hash(QByteArray::fromStdString(bytes), QCryptographicHash::Sha256).toHex();
}

/// Standard deviation over a second of what came to lead II on its way, without the slow part, mV.
double noiseIn(const std::vector<TLeadVoltages>& clean, const std::vector<TLeadVoltages>& disturbed,
               int second)
{
    double sum = 0;
    const int first = second * framesPerSecond;
    for (int i = first; i < first + framesPerSecond; ++i) {
        const double now = disturbed[i][II] - clean[i][II];
        const double before = disturbed[i - 10][II] - clean[i - 10][II]; // a period of the mains
        sum += (now - before) * (now - before) / 2;
    }
    return std::sqrt(sum / framesPerSecond);
}

/// Amplitude of 50 Hz in lead II over the whole recording, mV.
double mainsIn(const std::vector<TLeadVoltages>& clean, const std::vector<TLeadVoltages>& disturbed)
{
    double real = 0;
    double imaginary = 0;
    for (int i = 0; i < recordingFrames; ++i) {
        const double value = disturbed[i][II] - clean[i][II];
        real += value * std::cos(2 * M_PI * i / 10);
        imaginary += value * std::sin(2 * M_PI * i / 10);
    }
    return 2 * std::hypot(real, imaginary) / recordingFrames;
}

} // namespace

class DemoRecordingTest : public QObject
{
    Q_OBJECT

private:
    std::vector<TFrame> m_frames;
    std::vector<TLeadVoltages> m_clean;
    std::vector<TLeadVoltages> m_disturbed;

    /// Greatest change of a lead from a frame to the next in [from, to), counts.
    int greatestStep(int lead, int from, int to) const
    {
        int greatest = 0;
        for (int i = from; i + 1 < to; ++i)
            greatest = std::max(greatest, std::abs(m_frames[i + 1][lead] - m_frames[i][lead]));
        return greatest;
    }

private Q_SLOTS:
    void initTestCase()
    {
        m_frames = demoRecording();
        m_clean = demoLeads(false);
        m_disturbed = demoLeads(true);
    }

    void itLastsAtLeastThreeMinutes()
    {
        QCOMPARE(m_frames.size(), std::size_t(recordingFrames));
        QCOMPARE(double(recordingFrames) / framesPerSecond, recordingSeconds);
        QVERIFY(recordingSeconds >= 180);
    }

    void aFrameOfTheFileIs28Bytes()
    {
        QCOMPARE(fileBytes(m_frames).size(), std::size_t(recordingFrames) * 28);
    }

    void samplesAreLittleEndianInTheOrderOfTheLeads()
    {
        TFrame frame;
        for (int lead = 0; lead < leadCount; ++lead)
            frame[lead] = std::int16_t(lead * 257 - 2);
        const std::string bytes = fileBytes({frame});
        QCOMPARE(QByteArray(bytes.data(), 6), QByteArray("\xFE\xFF\xFF\x00\x00\x02", 6));
        QCOMPARE(QByteArray(bytes.data() + 26, 2), QByteArray("\x0B\x0D", 2));
        QCOMPARE(QByteArray(leadNames[13]), QByteArray("CR5"));
    }

    void einthovenAndGoldbergerHoldInEveryFrame()
    {
        for (const TFrame& frame : m_frames) {
            QVERIFY(frame[III] == frame[II] - frame[I]);
            QVERIFY(frame[aVR] == -(frame[I] + frame[II]) / 2);
            QVERIFY(frame[aVL] == (frame[I] - frame[III]) / 2);
            QVERIFY(frame[aVF] == (frame[II] + frame[III]) / 2);
        }
    }

    void halvesOfCountsAreCutTowardsZero()
    {
        TLeadVoltages leads{};
        leads[I] = 2 * millivoltsPerCount;
        leads[II] = 1 * millivoltsPerCount;
        const TFrame frame = digitized(leads);
        QCOMPARE(int(frame[III]), -1);
        QCOMPARE(int(frame[aVR]), -1);
        QCOMPARE(int(frame[aVL]), 1);
        QCOMPARE(int(frame[aVF]), 0);
    }

    void aMillivoltIsItsShareOfTheRange()
    {
        TLeadVoltages leads{};
        leads[V5] = 300.0 / 4;
        leads[V1] = -300.0 / 2;
        QCOMPARE(int(digitized(leads)[V5]), 8192);
        QCOMPARE(int(digitized(leads)[V1]), -16384);
    }

    void cr5IsV5AgainstTheRightArm()
    {
        // The limb leads tell the right arm against the terminal that V5 is measured against.
        for (const TLeadVoltages& leads : m_disturbed)
            QVERIFY(std::abs(leads[CR5] - (leads[V5] + (leads[I] + leads[II]) / 3)) < 1e-9);
    }

    void noSampleComesNearTheEndsOfTheRange()
    {
        for (const TFrame& frame : m_frames) {
            const auto [lowest, highest] = std::minmax_element(frame.begin(), frame.end());
            QVERIFY(*lowest > -500 && *highest < 500);
        }
    }

    void theEndPassesIntoTheBeginningWithoutAStep()
    {
        for (int lead = 0; lead < leadCount; ++lead) {
            const int step = std::abs(m_frames.front()[lead] - m_frames.back()[lead]);
            const int usual = greatestStep(lead, 0, 100); // before the first beat: P wave and noise
            QVERIFY2(step <= std::max(usual, 2), leadNames[lead]);
        }
    }

    void muscleNoiseGrowsWithExercise()
    {
        const double rest = noiseIn(m_clean, m_disturbed, 20);
        const double exercise = noiseIn(m_clean, m_disturbed, 140);
        QVERIFY(rest > 0.002 && rest < 0.012);
        QVERIFY(exercise > 2.5 * rest);
        QVERIFY(exercise < 0.05);
        QVERIFY(noiseIn(m_clean, m_disturbed, 236) < 1.5 * rest);
    }

    void thereIsALittleMains()
    {
        const double mains = mainsIn(m_clean, m_disturbed);
        QVERIFY(mains > 0.002 && mains < 0.02);
    }

    void theSameBytesComeEachTime() { QCOMPARE(fileBytes(demoRecording()), fileBytes(m_frames)); }

    void theBytesAreThoseOfEveryOtherMachine()
    {
        QCOMPARE(sha256(fileBytes(m_frames)), QByteArray(expectedSha256));
    }
};

QTEST_GUILESS_MAIN(DemoRecordingTest)

#include "DemoRecordingTest.moc"
