#include "display/LeadLayout.h"
#include "analysis/signals/TInt16Signal.h"
#include "display/QSignalMonitorDisplay.h"

#include <QtTest>

class LeadLayoutTest : public QObject
{
    Q_OBJECT

    static QString shown(const QSignalMonitorDisplay& display)
    {
        QStringList channels;
        for (int channel = 0; channel < 16; ++channel) {
            if (display.channelVisible(channel))
                channels += QString::number(channel);
        }
        return channels.join(QLatin1Char(' '));
    }

    static QString order(const QSignalMonitorDisplay& display)
    {
        QStringList channels;
        for (int row = 0; row < 8; ++row)
            channels += QString::number(display.channelOrder(row));
        return channels.join(QLatin1Char(' '));
    }

private Q_SLOTS:
    void leadsAreSharedOut_data()
    {
        QTest::addColumn<int>("channels");
        QTest::addColumn<QString>("onFirst");
        QTest::addColumn<bool>("secondHidden");
        const QString limbs = QStringLiteral("0 1 2 3 4 5");
        QTest::newRow("none") << 0 << limbs << true;
        QTest::newRow("three") << 3 << limbs << true;
        QTest::newRow("six") << 6 << limbs << true;
        QTest::newRow("seven") << 7 << QStringLiteral("0 1 2 3 4 5 6") << true;
        QTest::newRow("eight") << 8 << limbs << false;
        QTest::newRow("twelve") << 12 << limbs << false;
        QTest::newRow("sixteen") << 16 << limbs << false;
    }

    void leadsAreSharedOut()
    {
        QFETCH(int, channels);
        TInt16Signal signal(64, 64, channels, 500);
        QWidget window;
        QSignalMonitorDisplay first(&window);
        QSignalMonitorDisplay second(&window);
        layOutLeads(first, second, &signal);
        QTEST(shown(first), "onFirst");
        QCOMPARE(shown(second), QStringLiteral("6 7 8 9 10 11"));
        QVERIFY(!first.isHidden());
        QTEST(second.isHidden(), "secondHidden");
    }

    void withoutSignalTheSecondIsHidden()
    {
        QWidget window;
        QSignalMonitorDisplay first(&window);
        QSignalMonitorDisplay second(&window);
        layOutLeads(first, second, nullptr);
        QVERIFY(second.isHidden());
    }

    void hexaxialOrderComesAndGoes()
    {
        TInt16Signal signal(64, 64, 12, 500);
        QSignalMonitorDisplay display;
        setHexaxialOrder(display, &signal, true);
        QCOMPARE(order(display), QStringLiteral("4 0 3 1 5 2 6 7"));
        QVERIFY(display.channelInverted(3));
        setHexaxialOrder(display, &signal, false);
        QCOMPARE(order(display), QStringLiteral("0 1 2 3 4 5 6 7"));
        QVERIFY(!display.channelInverted(3));
    }

    void hexaxialOrderNeedsTheLimbLeads()
    {
        TInt16Signal five(64, 64, 5, 500);
        TInt16Signal six(64, 64, 6, 500);
        QSignalMonitorDisplay display;
        setHexaxialOrder(display, &five, true);
        setHexaxialOrder(display, nullptr, true);
        QCOMPARE(order(display), QStringLiteral("0 1 2 3 4 5 6 7"));
        QVERIFY(!display.channelInverted(3));
        setHexaxialOrder(display, &six, true);
        QVERIFY(display.channelInverted(3));
    }
};

QTEST_MAIN(LeadLayoutTest)
#include "LeadLayoutTest.moc"
