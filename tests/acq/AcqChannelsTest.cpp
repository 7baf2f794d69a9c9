#include "acq/AcqChannels.h"

#include <QtTest>

class AcqChannelsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theOrderIsFixed()
    {
        QCOMPARE(names(acq::allChannels, 14),
                 QStringLiteral("I II III aVR aVL aVF V1 V2 V3 V4 V5 V6 CM5 CR5"));
    }

    void filesMayHaveTwoMore()
    {
        QVERIFY(names(acq::allChannels, 16).endsWith(QStringLiteral("CM5 CR5 XX1 XX2")));
        QCOMPARE(names(acq::allChannels, 99), names(acq::allChannels, 16));
    }

    void theReducedMaskSelectsThree()
    {
        QCOMPARE(acq::reducedChannels, 1154);
        QCOMPARE(names(1154, 14), QStringLiteral("II V2 V5"));
        QCOMPARE(names(1154, 16), QStringLiteral("II V2 V5"));
    }

    void bitsBeyondTheChannelsSelectNothing()
    {
        QCOMPARE(names(1 << 13 | 1 << 14, 14), QStringLiteral("CR5"));
        QCOMPARE(names(1154, 8), QStringLiteral("II V2"));
        QCOMPARE(names(0, 14), QString());
        QCOMPARE(names(-1, 0), QString());
        QCOMPARE(names(-1, -3), QString());
    }

    void eachChannelIsFoundAtItsPlace()
    {
        for (int i = 0; i < int(std::size(acq::channelNames)); ++i)
            QCOMPARE(acq::placeOfChannel(acq::channelNames[i]), i);
        for (const char* name : {"", "v5", "V7", "II "})
            QCOMPARE(acq::placeOfChannel(name), -1);
    }

private:
    static QString names(int mask, int channels)
    {
        QStringList list;
        for (const int channel : acq::selectedChannels(mask, channels))
            list += QString::fromLatin1(acq::channelNames[channel]);
        return list.join(QLatin1Char(' '));
    }
};

QTEST_GUILESS_MAIN(AcqChannelsTest)
#include "AcqChannelsTest.moc"
