#include "acq/FrameBytes.h"
#include "acq/TFrameParser.h"

#include <QtTest>

#include <array>
#include <random>
#include <vector>

namespace {

/// A byte as it arrives, and where it comes from.
struct TReceived
{
    unsigned char byte = 0;
    /// -1 for a byte that was never sent.
    int frame = -1;
    int offset = 0;
    bool isChanged = false;
};

/// Sends numbered frames through a bad line and compares what the parser makes of it with what was sent.
class TBadLine
{
public:
    TBadLine(const TFrameBytes& family, const TFrameParser& parser, unsigned seed)
        : m_family(family), m_parser(parser), m_random(seed)
    {
    }

    /// `faults`: one in so many bytes is lost, changed or preceded by one too many; 0 for none.
    void send(int frames, int faults)
    {
        setNextFault(faults);
        for (int frame = 0; frame < frames; ++frame) {
            m_frame = frame;
            m_wasClean = m_isClean;
            m_isClean = true;
            m_isDelivered = false;
            sendFrame(frame, faults);
            m_clean += m_isClean ? 1 : 0;
            if (m_isClean && m_wasClean && frame > 0 && !m_isDelivered)
                ++m_cleanLost;
        }
    }

    int delivered() const { return m_delivered; }
    int clean() const { return m_clean; }
    int deliveredClean() const { return m_deliveredClean; }
    /// Frames that came whole, behind another one that did, and still were not found.
    int cleanLost() const { return m_cleanLost; }
    /// Delivered frames that are neither one that was sent nor hold a fault.
    int invented() const { return m_invented; }
    /// Delivered frames whose samples are not those of their bytes.
    int misread() const { return m_misread; }

private:
    // Bytes that are no sync byte: six bits above 0x0F. A battery of 0xC0 would be one in the wrong place.
    QByteArray frameBytes(int number) const
    {
        QByteArray bytes = m_family.empty;
        unsigned digits = static_cast<unsigned>(number);
        for (const TFrameBytes::TPlace& place : m_family.channels) {
            for (const int offset : {place.offset, place.offset + 1}) {
                bytes[offset] = static_cast<char>(0x10U + (digits & 0x3FU));
                digits = digits >> 6U ^ digits << 26U;
            }
        }
        bytes[m_family.battery] = static_cast<char>(0x10 + number % 0x40);
        return bytes;
    }

    void sendFrame(int number, int faults)
    {
        const QByteArray bytes = frameBytes(number);
        for (int offset = 0; offset < bytes.size(); ++offset) {
            TReceived received{static_cast<unsigned char>(bytes[offset]), number, offset, false};
            if (faults > 0 && --m_nextFault == 0) {
                setNextFault(faults);
                m_isClean = false;
                if (!garble(received))
                    continue;
            }
            receive(received);
        }
    }

    void setNextFault(int faults)
    {
        m_nextFault =
            faults > 0 ? 1 + static_cast<int>(m_random() % (2U * static_cast<unsigned>(faults))) : 0;
    }

    /// False if the byte is lost.
    bool garble(TReceived& received)
    {
        const auto noise = static_cast<unsigned char>(m_random());
        switch (m_random() % 3U) {
        case 0:
            return false;
        case 1:
            receive({noise, -1, 0, true});
            return true;
        default:
            received.isChanged = received.byte != noise;
            received.byte = noise;
            return true;
        }
    }

    void receive(const TReceived& received)
    {
        m_last[m_count++ % m_last.size()] = received;
        TEcgSample sample;
        if (m_parser.add(received.byte, sample))
            check(sample);
    }

    /// A frame is made of the last bytes that came, without a gap.
    void check(const TEcgSample& sample)
    {
        ++m_delivered;
        const std::size_t size = static_cast<std::size_t>(m_family.size());
        if (m_count < size) {
            ++m_invented;
            return;
        }
        QByteArray bytes;
        bool isFaulty = false;
        const TReceived first = m_last[(m_count - size) % m_last.size()];
        TReceived before = first;
        for (std::size_t i = m_count - size; i < m_count; ++i) {
            const TReceived& received = m_last[i % m_last.size()];
            bytes.append(static_cast<char>(received.byte));
            isFaulty = isFaulty || received.frame < 0 || received.isChanged || !follows(before, received);
            before = received;
        }
        if (sample.channels != m_family.decoded(bytes))
            ++m_misread;
        if (isFaulty)
            return;
        if (first.offset != 0 || bytes != frameBytes(first.frame)) {
            ++m_invented;
            return;
        }
        ++m_deliveredClean;
        m_isDelivered = m_isDelivered || first.frame == m_frame;
    }

    bool follows(const TReceived& before, const TReceived& after) const
    {
        if (before.frame == after.frame)
            return after.offset - before.offset <= 1;
        return after.frame == before.frame + 1 && after.offset == 0 && before.offset == m_family.size() - 1;
    }

    TFrameBytes m_family;
    TFrameParser m_parser;
    std::mt19937 m_random;
    std::array<TReceived, 64> m_last;
    std::size_t m_count = 0;
    /// Bytes until then.
    int m_nextFault = 0;
    int m_frame = 0;
    bool m_isClean = true;
    bool m_wasClean = true;
    bool m_isDelivered = false;
    int m_delivered = 0;
    int m_clean = 0;
    int m_deliveredClean = 0;
    int m_cleanLost = 0;
    int m_invented = 0;
    int m_misread = 0;
};

TBadLine lineFor(bool highRate, unsigned seed)
{
    if (highRate)
        return {TFrameBytes::highRate(), THRFrameParser(), seed};
    return {TFrameBytes::standard(), TStdFrameParser(), seed};
}

} // namespace

class GarbledStreamTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void minutesOfABadLine_data();
    void minutesOfABadLine();
    void noiseAloneIsNoReasonToStop();
};

void GarbledStreamTest::minutesOfABadLine_data()
{
    QTest::addColumn<int>("minutes");
    QTest::addColumn<bool>("highRate");
    QTest::addColumn<int>("faults");
    QTest::addColumn<unsigned>("seed");
    QTest::newRow("standard, no fault") << 1 << false << 0 << 1U;
    QTest::newRow("standard, few faults") << 1 << false << 20'000 << 2U;
    QTest::newRow("standard, many faults") << 10 << false << 100 << 3U;
    QTest::newRow("high rate, no fault") << 1 << true << 0 << 4U;
    QTest::newRow("high rate, few faults") << 1 << true << 20'000 << 5U;
    QTest::newRow("high rate, many faults") << 10 << true << 100 << 6U;
}

void GarbledStreamTest::minutesOfABadLine()
{
    QFETCH(int, minutes);
    QFETCH(bool, highRate);
    QFETCH(int, faults);
    QFETCH(unsigned, seed);
    const int frames = 60 * minutes * (highRate ? 1000 : 500);
    TBadLine line = lineFor(highRate, seed);
    line.send(frames, faults);
    QCOMPARE(line.invented(), 0);
    QCOMPARE(line.misread(), 0);
    QCOMPARE(line.cleanLost(), 0);
    if (faults == 0) {
        QCOMPARE(line.clean(), frames);
        QCOMPARE(line.delivered(), frames);
    }
    // At the worst a fault costs its frame and the next one.
    const int garbled = frames - line.clean();
    QVERIFY(line.deliveredClean() >= line.clean() - garbled);
    QVERIFY(line.deliveredClean() <= line.clean());
}

void GarbledStreamTest::noiseAloneIsNoReasonToStop()
{
    for (const bool highRate : {false, true}) {
        std::mt19937 random(7);
        TFrameParser parser(highRate ? acq::highRateFrame : acq::standardFrame);
        TEcgSample sample;
        for (int i = 0; i < 1'000'000; ++i)
            parser.add(static_cast<unsigned char>(random()), sample);
        const TFrameBytes family = highRate ? TFrameBytes::highRate() : TFrameBytes::standard();
        int found = 0;
        for (int i = 0; i < 3; ++i) {
            for (const char byte : family.empty)
                found += parser.add(static_cast<unsigned char>(byte), sample) ? 1 : 0;
        }
        QVERIFY(found >= 2);
    }
}

QTEST_GUILESS_MAIN(GarbledStreamTest)
#include "GarbledStreamTest.moc"
