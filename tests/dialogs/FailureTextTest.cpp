#include "dialogs/FailureText.h"

#include <QTranslator>
#include <QtTest>

class FailureTextTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void withoutACatalogueTheTextStays();
    void usersReadFailuresInTheirLanguage_data();
    void usersReadFailuresInTheirLanguage();
};

void FailureTextTest::withoutACatalogueTheTextStays()
{
    for (const char* text : {"", "Device read error", "Error: Cannot open file", "Unknown protocol Bruce"})
        QCOMPARE(failureText(text), QString::fromUtf8(text));
}

void FailureTextTest::usersReadFailuresInTheirLanguage_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("expected");
    QTest::newRow("device") << QByteArray("Device read error")
                            << QStringLiteral("Error de lectura del equipo");
    QTest::newRow("recorder") << QByteArray("Communication with ECG acquiring device failed.")
                              << QStringLiteral("Falló la comunicación con el equipo de adquisición de ECG.");
    QTest::newRow("with another inside")
        << QByteArray("Error: Cannot open file") << QStringLiteral("Error: No se puede abrir el archivo");
    QTest::newRow("with a name inside")
        << QByteArray("Unknown protocol Mañana %1") << QStringLiteral("Protocolo desconocido Mañana %1");
    QTest::newRow("already Spanish") << QByteArray("No se pudo abrir el puerto (CreateFile)")
                                     << QStringLiteral("No se pudo abrir el puerto (CreateFile)");
    QTest::newRow("of the system") << QByteArray("no such device, ñ") << QStringLiteral("no such device, ñ");
}

void FailureTextTest::usersReadFailuresInTheirLanguage()
{
    QFETCH(QByteArray, text);
    QTranslator spanish;
    QVERIFY(spanish.load(QStringLiteral(VELANTOR_BIN "/VelantorStressECG_es.qm")));
    QVERIFY(QCoreApplication::installTranslator(&spanish));
    QTEST(failureText(text), "expected");
}

QTEST_MAIN(FailureTextTest)
#include "FailureTextTest.moc"
