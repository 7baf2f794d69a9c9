#include "base/Settings.h"
#include "base/Constants.h"

#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

class SettingsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_folder.isValid());
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_folder.path());
        QCoreApplication::setOrganizationName(QLatin1String(velantor::organizationName));
        QCoreApplication::setApplicationName(QLatin1String(velantor::applicationName));
    }

    void init() { QSettings().clear(); }

    void absentKeysReadAsTheirDefaults()
    {
        QCOMPARE(settings::acqMode.value(), QString());
        QCOMPARE(settings::signalGain.value(), 0.0);
        QCOMPARE(settings::signalGain.valueOr(settings::configSignalGain), 450.0);
        QCOMPARE(settings::lowBatteryLevel.value(), 0.0);
        QCOMPARE(settings::lowBatteryLevel.valueOr(settings::configLowBatteryLevel), 2.6);
        QCOMPARE(settings::ecgGraphicRhythmLead.value(), QStringLiteral("II"));
        QCOMPARE(settings::printStressGraphics.value(), true);
        QCOMPARE(settings::autoExportStudies.value(), false);
        QCOMPARE(settings::ecgReviewDisplay.showAverageBeat.value(), true);
        QCOMPARE(settings::ecgReviewDisplay.hexaxialOrder.value(), false);
        QCOMPARE(settings::recentStudyList.value(), QStringList());
    }

    void aWrittenValueStandsUnderItsKeyAndIsReadBack()
    {
        settings::signalGain.setValue(300.0);
        settings::recentStudyList.setValue({QStringLiteral("1||a"), QStringLiteral("2||b")});
        settings::stressMonitorDisplay.hexaxialOrder.setValue(true);

        QCOMPARE(QSettings().value(QStringLiteral("Config/SignalGain")).toInt(), 300);
        QCOMPARE(settings::signalGain.valueOr(450.0), 300.0);
        QCOMPARE(settings::recentStudyList.value().size(), 2);
        QCOMPARE(QSettings().value(QStringLiteral("MonitorWindow/HexaxialOrder")).toBool(), true);
        QCOMPARE(settings::ecgMonitorDisplay.hexaxialOrder.value(), false);
    }

    void whatIsNoNumberReadsAsTheDefault()
    {
        QSettings().setValue(QStringLiteral("Config/SignalGain"), QStringLiteral("abc"));
        QSettings().setValue(QStringLiteral("Config/LowBatteryLevel"), QStringLiteral("nan"));
        QCOMPARE(settings::signalGain.valueOr(450.0), 450.0);
        QCOMPARE(settings::lowBatteryLevel.valueOr(2.6), 2.6);
    }

    void theSignalGainKeepsItsFraction()
    {
        settings::signalGain.setValue(450.5);
        QCOMPARE(settings::signalGain.value(), 450.5);
        QSettings().setValue(QStringLiteral("Config/SignalGain"), 300); // as a box of whole numbers writes it
        QCOMPARE(settings::signalGain.value(), 300.0);
        QSettings().setValue(QStringLiteral("Config/SignalGain"), QStringLiteral("inf"));
        QCOMPARE(settings::signalGain.valueOr(450.0), 450.0);
    }

    void aBoolKeyTakesItsFourTextsOnly_data()
    {
        QTest::addColumn<QVariant>("stored");
        QTest::addColumn<bool>("ifFalse");
        QTest::addColumn<bool>("ifTrue");
        for (const char* text : {"true", "TRUE", "True", "1"})
            QTest::newRow(text) << QVariant(QLatin1String(text)) << true << true;
        for (const char* text : {"false", "False", "0"})
            QTest::newRow(text) << QVariant(QLatin1String(text)) << false << false;
        for (const char* text : {"yes", "2", "-1", "1.0", "abc", "no"})
            QTest::newRow(text) << QVariant(QLatin1String(text)) << false << true;
        QTest::newRow("empty") << QVariant(QString()) << false << true;
        QTest::newRow("bool") << QVariant(true) << true << true;
        QTest::newRow("number") << QVariant(0) << false << false;
    }

    void aBoolKeyTakesItsFourTextsOnly()
    {
        QFETCH(QVariant, stored);
        const TSetting<bool> setting{"Test/Flag"};
        QSettings().setValue(QLatin1String(setting.key), stored);
        QTEST(setting.valueOr(false), "ifFalse");
        QTEST(setting.valueOr(true), "ifTrue");
    }

    void theStoreIsTheApplicationsOwn()
    {
        settings::acqMode.setValue(QStringLiteral("demo"));
        QVERIFY(QFile::exists(m_folder.filePath(QStringLiteral("Velantor/ECG.conf"))));
    }

private:
    QTemporaryDir m_folder;
};

QTEST_GUILESS_MAIN(SettingsTest)
#include "SettingsTest.moc"
