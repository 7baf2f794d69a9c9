#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTranslator>
#include <QtTest>

namespace {

QString catalogue(const char* name)
{
    return QStringLiteral(VELANTOR_BIN "/%1.qm").arg(QLatin1String(name));
}

} // namespace

/// The catalogues that lie beside the desktop program.
class TranslationsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theThreeCataloguesLieBesideTheProgram();
    void noneLiesBesideTheEnglishProgram();
    void textsOfTheProgramAreSpanish();
    void textsOfQtAreSpanish_data();
    void textsOfQtAreSpanish();
};

void TranslationsTest::theThreeCataloguesLieBesideTheProgram()
{
    for (const char* name : {"qt_es", "VelantorStressECG_es", "report_es"})
        QVERIFY2(QFile::exists(catalogue(name)), name);
    QVERIFY(QFileInfo(QStringLiteral(VELANTOR_BIN "/velantor-ecg")).isExecutable());
}

void TranslationsTest::noneLiesBesideTheEnglishProgram()
{
    const QDir folder(QStringLiteral(VELANTOR_BIN "/english"));
    QCOMPARE(folder.entryList({QStringLiteral("*.qm")}, QDir::Files), QStringList());
    QVERIFY(QFileInfo(folder.filePath(QStringLiteral("velantor-ecg"))).isExecutable());
}

void TranslationsTest::textsOfTheProgramAreSpanish()
{
    QTranslator translator;
    QVERIFY(translator.load(catalogue("VelantorStressECG_es")));
    QCOMPARE(translator.translate("DisplayColorDialog", "Grid"), QStringLiteral("Cuadrícula"));
    QCOMPARE(translator.translate("StressMonitorWindow", "Recovery"), QStringLiteral("Recuperación"));
}

void TranslationsTest::textsOfQtAreSpanish_data()
{
    QTest::addColumn<QString>("context");
    QTest::addColumn<QString>("english");
    QTest::addColumn<QString>("spanish");
    const auto row = [](const char* context, const char* english, const char* spanish) {
        QTest::newRow(english) << QString::fromLatin1(context) << QString::fromLatin1(english)
                               << QString::fromUtf8(spanish);
    };
    row("QPlatformTheme", "Cancel", "Cancelar");
    row("QPlatformTheme", "OK", "Aceptar");
    row("QSerialPort", "Permission error while locking the device",
        "Error de permisos al bloquear el dispositivo");
}

void TranslationsTest::textsOfQtAreSpanish()
{
    QFETCH(QString, context);
    QFETCH(QString, english);
    QTranslator translator;
    QVERIFY(translator.load(catalogue("qt_es")));
    QTEST(translator.translate(qPrintable(context), qPrintable(english)), "spanish");
}

QTEST_GUILESS_MAIN(TranslationsTest)
#include "TranslationsTest.moc"
