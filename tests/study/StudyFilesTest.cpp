#include "study/StudyFiles.h"
#include "StudySet.h"
#include "study/StudyDocument.h"
#include "support/QtJsonLeak.h"

#include <QJsonDocument>
#include <QtEndian>
#include <QtTest>

#include <random>

#include <sys/stat.h>

namespace {

const QByteArray soundText = R"({"study":{"id":5,"comments":"hola"},"patient":{"sex":"F"}})";

QByteArray newForm(const QByteArray& text)
{
    return "VTSTUDY2" + qCompress(text);
}

QByteArray announcing(quint32 length, const QByteArray& text)
{
    QByteArray bytes = newForm(text);
    qToBigEndian(length, bytes.data() + 8);
    return bytes;
}

} // namespace

/// What is read from the three files of a set; what is not sound is answered with nothing.
class StudyFilesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_set = std::make_unique<TStudySet>(); }

    void pathsTakeTheNameAsItStands()
    {
        QCOMPARE(studyFilePath(QStringLiteral("/data"), "12-Ana", "vtstudy"),
                 QStringLiteral("/data/12-Ana.vtstudy"));
        QCOMPARE(studyFilePath(QStringLiteral("/%2/%3"), "%1 ñ", "vtecg"),
                 QString::fromUtf8("/%2/%3/%1 ñ.vtecg"));
    }

    void bothFormsGiveTheSameText()
    {
        for (const QByteArray& bytes : {"VTSTUDY1" + soundText, newForm(soundText)}) {
            QVERIFY(writeFile(m_set->study(), bytes));
            QByteArray document = "left over";
            QVERIFY(readStudyDocument(m_set->study(), document));
            QCOMPARE(document, soundText);
            const auto study = loadStudy(m_set->study());
            QVERIFY(study != nullptr);
            QCOMPARE(study->id(), 5);
            QCOMPARE(study->value("comments"), QByteArray("hola"));
        }
    }

    void filesWithoutATextAreRefused_data()
    {
        QByteArray damaged = newForm(soundText.repeated(20));
        damaged[damaged.size() / 2] = char(damaged[damaged.size() / 2] ^ 0x55);
        const QByteArray brackets(12 * 1000 * 1000, '[');
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("shorter than the mark") << QByteArray("VTSTUDY");
        QTest::newRow("foreign mark") << "VTSTUDY3" + soundText;
        QTest::newRow("mark in other letters") << "vtstudy1" + soundText;
        QTest::newRow("no mark") << soundText;
        QTest::newRow("nothing behind the mark") << QByteArray("VTSTUDY2");
        QTest::newRow("nothing behind the old mark") << QByteArray("VTSTUDY1");
        QTest::newRow("length only") << QByteArray("VTSTUDY2\0\0\0\x10", 12);
        QTest::newRow("not compressed") << "VTSTUDY2" + soundText;
        QTest::newRow("damaged") << damaged;
        QTest::newRow("cut short") << newForm(soundText).chopped(6);
        QTest::newRow("300 MB announced") << announcing(300u << 20, soundText);
        QTest::newRow("4 GB announced") << announcing(0xffffffffu, soundText);
        QTest::newRow("brackets without end") << newForm(brackets);
        QTest::newRow("brackets that announce little") << announcing(58, brackets);
    }

    void filesWithoutATextAreRefused()
    {
        QFETCH(QByteArray, bytes);
        QVERIFY(writeFile(m_set->study(), bytes));
        QByteArray document = "left over";
        QVERIFY(!readStudyDocument(m_set->study(), document));
        QCOMPARE(document, QByteArray());
        QVERIFY(readStudyObjects(m_set->study()).isEmpty());
        QVERIFY(loadStudy(m_set->study()) == nullptr);
    }

    void absentFilesFoldersAndPipesAreRefused()
    {
        const QString pipe = m_set->folder() + QStringLiteral("/pipe.vtstudy");
        QCOMPARE(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
        for (const QString& path :
             {m_set->folder() + QStringLiteral("/absent.vtstudy"), m_set->folder(), pipe}) {
            QByteArray document;
            QVERIFY(!readStudyDocument(path, document));
            QVERIFY(loadStudy(path) == nullptr);
            QVERIFY(openEcgFile(path) == nullptr);
            const auto ecg = openEcgFile(m_set->ecg());
            QVERIFY(openBeatFile(*ecg, path) == nullptr);
        }
    }

    void aFileTooLargeForAnyStudyIsRefused()
    {
        QVERIFY(writeFile(m_set->study(), "VTSTUDY1" + soundText));
        QVERIFY(QFile::resize(m_set->study(), 241LL * 1024 * 1024));
        QByteArray document;
        QVERIFY(!readStudyDocument(m_set->study(), document));
    }

    void textsWithoutStudyOrPatientAreRefused_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("no study") << QByteArray(R"({"patient":{"sex":"F"}})");
        QTest::newRow("no patient") << QByteArray(R"({"study":{"id":5}})");
        QTest::newRow("empty study") << QByteArray(R"({"study":{},"patient":{"sex":"F"}})");
        QTest::newRow("empty patient") << QByteArray(R"({"study":{"id":5},"patient":{}})");
        QTest::newRow("study that is a list") << QByteArray(R"({"study":[5],"patient":{"sex":"F"}})");
        QTest::newRow("patient that is a text") << QByteArray(R"({"study":{"id":5},"patient":"Ana"})");
        QTest::newRow("empty object") << QByteArray("{}");
        QTest::newRow("a list") << '[' + soundText + ']';
        QTest::newRow("broken") << soundText.chopped(1);
        QTest::newRow("zeros") << QByteArray(64, '\0');
        QTest::newRow("brackets without end") << QByteArray(12 * 1000 * 1000, '[');
    }

    void textsWithoutStudyOrPatientAreRefused()
    {
        QFETCH(QByteArray, text);
        for (const QByteArray& bytes : {"VTSTUDY1" + text, newForm(text)}) {
            QVERIFY(writeFile(m_set->study(), bytes));
            QVERIFY(readStudyObjects(m_set->study()).isEmpty());
            QVERIFY(loadStudy(m_set->study()) == nullptr);
        }
    }

    void aSetWithoutSamplesOrBeatsIsRefused()
    {
        QVERIFY(loadStudy(m_set->study()) != nullptr);
        const QByteArray beats = readFile(m_set->beats());
        for (const QByteArray& bytes :
             {QByteArray(), QByteArray("VTBEATS"), QByteArray("VTBEATS2") + beats}) {
            QVERIFY(writeFile(m_set->beats(), bytes));
            QVERIFY(loadStudy(m_set->study()) == nullptr);
        }
        QVERIFY(QFile::remove(m_set->beats()));
        QVERIFY(loadStudy(m_set->study()) == nullptr);
        QVERIFY(writeFile(m_set->beats(), beats));
        QVERIFY(loadStudy(m_set->study()) != nullptr);
        QVERIFY(writeFile(m_set->ecg(), "VTECG1{}"));
        QVERIFY(loadStudy(m_set->study()) == nullptr);
        QVERIFY(QFile::remove(m_set->ecg()));
        QVERIFY(loadStudy(m_set->study()) == nullptr);
    }

    void aSetMovedToAnotherNameStaysReadable()
    {
        const QString base = m_set->folder() + QString::fromUtf8("/Perez.Ana %1 ñ");
        QVERIFY(QFile::rename(m_set->study(), base + QStringLiteral(".vtstudy")));
        QVERIFY(QFile::rename(m_set->ecg(), base + QStringLiteral(".vtecg")));
        QVERIFY(QFile::rename(m_set->beats(), base + QStringLiteral(".vtbeats")));
        const auto study = loadStudy(base + QStringLiteral(".vtstudy"));
        QVERIFY(study != nullptr);
        QCOMPARE(study->value("baseFilename"), QByteArray("set"));
        QVERIFY(study->ecg() != nullptr);
        QVERIFY(study->beats() != nullptr);
    }

    void aCrashLosesNoMoreThanTheLastFrame()
    {
        QVERIFY(QFile::remove(m_set->ecg()));
        {
            TEcgFile ecg(m_set->ecg(), 2, 500, 4096, true);
            ecg.writeHeader(R"(VTECG1{"ecg":{"sampleFormat":"short","samplingRate":500,"resolution":16,)"
                            R"("gainMin":-300,"gainMax":300,"channels":["I","II"]}})");
            const short samples[] = {1, 2, 3};
            const short* const channels[] = {samples, samples};
            ecg.addPerChannel(channels, 3);
        }
        QVERIFY(QFile::resize(m_set->ecg(), 4096 + 3 * 4 - 1));
        const auto study = loadStudy(m_set->study());
        QVERIFY(study != nullptr);
        QCOMPARE(study->ecg()->sampleCount(), 2);
        QCOMPARE(study->ecg()->sample(1, 1), 2);
        QCOMPARE(study->ecg()->sample(1, 2), 0);
    }

    void damageNeverDoesMoreThanMakingAFileUnreadable_data()
    {
        QTest::addColumn<QByteArray>("ending");
        QTest::addColumn<QByteArray>("bytes");
        const QJsonObject document = makeStudyDocument(*loadStudy(m_set->study()));
        const QByteArray text = QJsonDocument(document).toJson(QJsonDocument::Compact);
        QTest::newRow("compressed") << QByteArray(".vtstudy") << newForm(text);
        QTest::newRow("plain") << QByteArray(".vtstudy") << "VTSTUDY1" + text;
        QTest::newRow("samples") << QByteArray(".vtecg") << readFile(m_set->ecg()).left(900);
        QTest::newRow("beats") << QByteArray(".vtbeats") << readFile(m_set->beats());
    }

    void damageNeverDoesMoreThanMakingAFileUnreadable()
    {
        QFETCH(QByteArray, ending);
        QFETCH(QByteArray, bytes);
        const QString path = m_set->path(ending);
        QVERIFY(writeFile(path, bytes));
        QVERIFY(loadStudy(m_set->study()) != nullptr);
        for (unsigned seed = 0; seed < 150; ++seed) {
            QVERIFY(writeFile(path, damaged(bytes, seed)));
            const auto study = loadStudy(m_set->study());
            if (!study)
                continue;
            QVERIFY(study->beats() != nullptr);
            QVERIFY(study->ecg()->channelCount() >= 1 && study->ecg()->channelCount() <= 16);
            QVERIFY(study->ecg()->samplingRate() > 0);
            QVERIFY(!makeStudyDocument(*study).isEmpty());
        }
    }

private:
    /// Up to eight bytes changed, taken out or put in, or an end that is missing; the same for each seed.
    static QByteArray damaged(QByteArray bytes, unsigned seed)
    {
        std::mt19937 random(seed);
        const int edits = 1 + static_cast<int>(random() % 8);
        for (int edit = 0; edit < edits && !bytes.isEmpty(); ++edit) {
            const int at = static_cast<int>(random() % static_cast<unsigned>(bytes.size()));
            switch (random() % 5) {
            case 0:
                bytes[at] = char(random());
                break;
            case 1:
                bytes[at] = char(bytes[at] ^ (1 << random() % 8));
                break;
            case 2:
                bytes.remove(at, 1 + static_cast<int>(random() % 4));
                break;
            case 3:
                bytes.insert(at, "[]{}\",:0-9e"[random() % 11]);
                break;
            default:
                if (random() % 8 == 0)
                    bytes.truncate(at);
            }
        }
        return bytes;
    }

    std::unique_ptr<TStudySet> m_set = std::make_unique<TStudySet>();
};

QTEST_GUILESS_MAIN(StudyFilesTest)
#include "StudyFilesTest.moc"
