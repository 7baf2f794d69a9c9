#include "base/Error.h"
#include "wfdb/AnnotationBytes.h"
#include "wfdb/RecordingsFolder.h"
#include "wfdb/TWfdbAnnotations.h"

#include <QTemporaryDir>
#include <QtTest>

#include <map>

class WfdbAnnotationsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void intervalsAddUp()
    {
        const auto list = read(TAnnotationBytes().add('+', 18).add('N', 59).add('V', 1023).bytes()).list();
        QCOMPARE(list.size(), std::size_t(3));
        QCOMPARE(list[0].sample, qint64(18));
        QCOMPARE(list[1].sample, qint64(77));
        QCOMPARE(list[2].sample, qint64(1100));
        QCOMPARE(wfdb::mnemonicOf(list[2].code), QByteArray("V"));
    }

    void longIntervalsLeadToTheNextAnnotation()
    {
        const auto list = read(TAnnotationBytes()
                                   .skip(0x12345)
                                   .add('N', 0)
                                   .skip(100)
                                   .add('N', 3)
                                   .skip(-50)
                                   .add('N', 0)
                                   .bytes())
                              .list();
        QCOMPARE(list.size(), std::size_t(3));
        QCOMPARE(list[0].sample, qint64(0x12345));
        QCOMPARE(list[1].sample, qint64(0x12345 + 103));
        QCOMPARE(list[2].sample, qint64(0x12345 + 53));
    }

    void modifiersBelongToTheAnnotationBeforeThem()
    {
        const auto list = read(TAnnotationBytes()
                                   .add('(', 10)
                                   .num(1)
                                   .channel(200)
                                   .subtype(-1)
                                   .aux("abc")
                                   .add('N', 10)
                                   .add(')', 10)
                                   .num(-2)
                                   .channel(0)
                                   .bytes())
                              .list();
        QCOMPARE(list.size(), std::size_t(3));
        QCOMPARE(list[0].num, 1);
        QCOMPARE(list[0].channel, 200);
        QCOMPARE(list[0].subtype, -1);
        QCOMPARE(list[0].aux, QByteArray("abc"));
        // Number and channel stay until they are told anew; subtype and text do not.
        QCOMPARE(list[1].num, 1);
        QCOMPARE(list[1].channel, 200);
        QCOMPARE(list[1].subtype, 0);
        QCOMPARE(list[1].aux, QByteArray());
        QCOMPARE(list[2].num, -2);
        QCOMPARE(list[2].channel, 0);
        QCOMPARE(list[2].sample, qint64(30));
    }

    void aTextOfOddLengthIsFilledUp()
    {
        const auto list = read(TAnnotationBytes()
                                   .add('+', 1)
                                   .aux(QByteArray("(AFIB\0\0", 7))
                                   .add('N', 1)
                                   .aux("")
                                   .add('N', 1)
                                   .bytes())
                              .list();
        QCOMPARE(list.size(), std::size_t(3));
        QCOMPARE(list[0].aux, QByteArray("(AFIB"));
        QCOMPARE(list[2].sample, qint64(3));
    }

    void aFileMayTellItsOwnFrequency()
    {
        const auto annotations =
            read(TAnnotationBytes().add('"', 0).aux("## time resolution: 128.5").add('N', 7).bytes());
        QCOMPARE(annotations.frequency(), 128.5);
        QCOMPARE(annotations.list().size(), std::size_t(1));
        for (const char* text : {"## time resolution: 0", "## time resolution: x", "## time resolution: -1",
                                 "## time resolution: 1e300", "## time resolution: inf", "a note"}) {
            const auto other = read(TAnnotationBytes().add('"', 0).aux(text).add('N', 7).bytes());
            QCOMPARE(other.frequency(), 0.0);
            QCOMPARE(other.list().size(), std::size_t(2));
        }
    }

    void whatFollowsTheEndMarkIsPassedOver()
    {
        QCOMPARE(read(TAnnotationBytes().bytes()).list().size(), std::size_t(0));
        QCOMPARE(read(TAnnotationBytes().add('N', 1).bytes() + QByteArray(511, '\0')).list().size(),
                 std::size_t(1));
    }

    void brokenFilesAreRefused_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        const TAnnotationBytes beat = TAnnotationBytes().add('N', 5);
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("half a word") << QByteArray(1, '\0');
        QTest::newRow("no end mark") << beat.withoutEnd();
        QTest::newRow("cut interval") << TAnnotationBytes(beat).skip(70000).withoutEnd().chopped(1);
        QTest::newRow("cut text") << TAnnotationBytes(beat).aux("long text").withoutEnd().chopped(4);
        QTest::newRow("text beyond the end") << TAnnotationBytes(beat).word(63, 1023).bytes();
        QTest::newRow("number before any annotation") << TAnnotationBytes().num(1).bytes();
        QTest::newRow("text before any annotation") << TAnnotationBytes().aux("text").bytes();
        QTest::newRow("too long") << beat.withoutEnd().repeated(5 * 1024 * 1024) + QByteArray(2, '\0');
    }

    void brokenFilesAreRefused()
    {
        QFETCH(QByteArray, bytes);
        QVERIFY_EXCEPTION_THROWN(read(bytes), TError);
        QVERIFY_EXCEPTION_THROWN(TWfdbAnnotations::read(m_folder.filePath(QStringLiteral("absent"))), TError);
        QVERIFY_EXCEPTION_THROWN(TWfdbAnnotations::read(m_folder.path()), TError);
    }

    void codesHaveTheNamesOfTheFormat()
    {
        const std::map<int, char> known{
            {1, 'N'},  {2, 'L'},  {3, 'R'},  {4, 'a'},  {5, 'V'},  {6, 'F'},  {7, 'J'},  {8, 'A'},
            {9, 'S'},  {10, 'E'}, {11, 'j'}, {12, '/'}, {13, 'Q'}, {14, '~'}, {16, '|'}, {18, 's'},
            {19, 'T'}, {20, '*'}, {21, 'D'}, {22, '"'}, {23, '='}, {24, 'p'}, {25, 'B'}, {26, '^'},
            {27, 't'}, {28, '+'}, {29, 'u'}, {30, '?'}, {31, '!'}, {32, '['}, {33, ']'}, {34, 'e'},
            {35, 'n'}, {36, '@'}, {37, 'x'}, {38, 'f'}, {39, '('}, {40, ')'}, {41, 'r'}};
        for (int code = -1; code <= wfdb::codeCount; ++code) {
            const auto found = known.find(code);
            QCOMPARE(wfdb::mnemonicOf(code),
                     found == known.end() ? QByteArray() : QByteArray(1, found->second));
            if (found != known.end())
                QCOMPARE(wfdb::codeOf(found->second), code);
        }
        QCOMPARE(wfdb::codeOf(' '), 0);
        QCOMPARE(wfdb::codeOf('k'), 0);
        QCOMPARE(wfdb::codeOf('\0'), 0);
    }

    void beatsAreTheCodesOfBeats()
    {
        QByteArray beats;
        for (int code = -1; code <= wfdb::codeCount; ++code)
            beats += wfdb::isBeat(code) ? wfdb::mnemonicOf(code) : QByteArray();
        QCOMPARE(beats, QByteArray("NLRaVFJASEj/QB?enfr"));
    }

    void realAnnotationsAreReadToTheirEnd_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("annotations");
        QTest::addColumn<int>("beats");
        QTest::newRow("100") << QStringLiteral("mitdb/100.atr") << 2274 << 2273;
        QTest::newRow("118") << QStringLiteral("mitdb/118.atr") << 2301 << 2278;
        QTest::newRow("200") << QStringLiteral("mitdb/200.atr") << 2792 << 2601;
        QTest::newRow("207") << QStringLiteral("mitdb/207.atr") << 2385 << 1860;
        QTest::newRow("noise") << QStringLiteral("nstdb/118e06.atr") << 2301 << 2278;
        QTest::newRow("one lead") << QStringLiteral("ludb/1.i") << 48 << 6;
    }

    void realAnnotationsAreReadToTheirEnd()
    {
        QFETCH(QString, name);
        const QString folder = recordingsFolder();
        if (folder.isEmpty())
            QSKIP(noRecordings);
        const auto annotations = TWfdbAnnotations::read(folder + QLatin1Char('/') + name);
        QTEST(int(annotations.list().size()), "annotations");
        const auto beats = std::count_if(annotations.list().begin(), annotations.list().end(),
                                         [](const TWfdbAnnotation& each) { return wfdb::isBeat(each.code); });
        QTEST(int(beats), "beats");
    }

    void allAnnotationsOfASetAreRead_data()
    {
        QTest::addColumn<QString>("set");
        QTest::addColumn<QStringList>("patterns");
        QTest::addColumn<int>("files");
        QTest::addColumn<int>("annotations");
        const QStringList atr{QStringLiteral("*.atr")};
        QTest::newRow("mitdb") << QStringLiteral("mitdb") << atr << 12 << 28738;
        QTest::newRow("nstdb") << QStringLiteral("nstdb") << atr << 2 << 4602;
        QTest::newRow("qtdb") << QStringLiteral("qtdb")
                              << QStringList{QStringLiteral("*.atr"), QStringLiteral("*.q1c"),
                                             QStringLiteral("*.pu")}
                              << 59 << 444781;
        QTest::newRow("ludb") << QStringLiteral("ludb")
                              << QStringList{QStringLiteral("*.i*"), QStringLiteral("*.av?"),
                                             QStringLiteral("*.v?")}
                              << 720 << 48885;
    }

    void allAnnotationsOfASetAreRead()
    {
        QFETCH(QString, set);
        QFETCH(QStringList, patterns);
        if (recordingsFolder().isEmpty())
            QSKIP(noRecordings);
        const QDir folder(recordingsFolder() + QLatin1Char('/') + set);
        const QStringList names = folder.entryList(patterns, QDir::Files);
        std::size_t annotations = 0;
        for (const QString& name : names)
            annotations += TWfdbAnnotations::read(folder.filePath(name)).list().size();
        QTEST(int(names.size()), "files");
        QTEST(int(annotations), "annotations");
    }

private:
    TWfdbAnnotations read(const QByteArray& bytes) const
    {
        const QString path = m_folder.filePath(QStringLiteral("r.atr"));
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("The scratch folder takes no file.");
        file.close();
        return TWfdbAnnotations::read(path);
    }

    QTemporaryDir m_folder;
};

QTEST_GUILESS_MAIN(WfdbAnnotationsTest)
#include "WfdbAnnotationsTest.moc"
