#include "simulators/heart/DemoRecording.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QXmlStreamReader>
#include <QtTest>

namespace {

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

int runWith(const QStringList& arguments)
{
    QProcess process;
    process.start(QStringLiteral(MAKE_ECG500), arguments);
    return process.waitForFinished() && process.exitStatus() == QProcess::NormalExit ? process.exitCode()
                                                                                     : -1;
}

} // namespace

class MakeEcg500Test : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_folder;
    QByteArray m_expected;

    QString path(const char* name) const { return m_folder.filePath(QString::fromLatin1(name)); }

private Q_SLOTS:
    void initTestCase()
    {
        m_expected = QByteArray::fromStdString(heart::fileBytes(heart::demoRecording()));
        QVERIFY(!m_expected.isEmpty());
    }

    void theBuildTreeHoldsTheRecording() { QCOMPARE(contentOf(QStringLiteral(ECG500)), m_expected); }

    void itWritesTheRecording()
    {
        QCOMPARE(runWith({path("a.dat")}), 0);
        QCOMPARE(contentOf(path("a.dat")), m_expected);
    }

    void thePictureShowsTwoPagesOfThirteenStrips()
    {
        QCOMPARE(runWith({path("b.dat"), QStringLiteral("--plot"), path("b.svg")}), 0);
        QCOMPARE(contentOf(path("b.dat")), m_expected);
        QXmlStreamReader xml(contentOf(path("b.svg")));
        QHash<QString, int> texts;
        while (!xml.atEnd())
            if (xml.readNext() == QXmlStreamReader::StartElement && xml.name() == QLatin1String("text"))
                ++texts[xml.readElementText()];
        QVERIFY2(!xml.hasError(), qPrintable(xml.errorString()));
        QCOMPARE(texts.value(QStringLiteral("V6")), 2);
        QCOMPARE(texts.value(QStringLiteral("II")), 4);
        QCOMPARE(texts.size(), 14);
    }

    void thePictureOfTheDocumentationIsUpToDate()
    {
        QCOMPARE(runWith({path("e.dat"), QStringLiteral("--plot"), path("e.svg")}), 0);
        QVERIFY(contentOf(path("e.svg")) == contentOf(QStringLiteral(DEMO_PICTURE)));
    }

    void aWrongCommandLineIsRefused_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::newRow("nothing") << QStringList();
        QTest::newRow("no picture") << QStringList{path("c.dat"), QStringLiteral("--plot")};
        QTest::newRow("unknown") << QStringList{path("c.dat"), QStringLiteral("--draw"), path("c.svg")};
    }
    void aWrongCommandLineIsRefused()
    {
        QFETCH(QStringList, arguments);
        QCOMPARE(runWith(arguments), 2);
        QVERIFY(!QFile::exists(path("c.dat")));
    }

    void aFileThatCannotBeWrittenIsAnError() { QCOMPARE(runWith({path("nowhere/d.dat")}), 1); }
};

QTEST_GUILESS_MAIN(MakeEcg500Test)

#include "MakeEcg500Test.moc"
