#include "StoreFolder.h"
#include "analysis/beats/TBeat.h"
#include "study/TBeatFile.h"
#include "study/TEcgFile.h"

#include <QProcess>
#include <QRandomGenerator>
#include <QThread>
#include <QtTest>

#include <cstdio>

namespace {

constexpr int blockFrames = 51;

/// Tells channel and place, and never repeats at the distance of a block.
short sampleAt(int channel, int frame)
{
    return short((frame * 7 + channel * 1009) % 30011);
}

void appendBlock(TEcgFile& ecg)
{
    const int start = ecg.sampleCount();
    std::vector<std::vector<short>> columns(static_cast<std::size_t>(ecg.channelCount()));
    std::vector<const short*> pointers;
    for (int channel = 0; channel < ecg.channelCount(); ++channel) {
        std::vector<short>& column = columns[static_cast<std::size_t>(channel)];
        for (int i = 0; i < blockFrames; ++i)
            column.push_back(sampleAt(channel, start + i));
        pointers.push_back(column.data());
    }
    ecg.addPerChannel(pointers.data(), blockFrames);
}

/// Records until it is killed and tells after each block how much there is.
int recordForEver(const QString& folder, const QByteArray& lastName)
{
    LocalStudyDatabase database(folder);
    StudyInfo info = sampleInfoOf(lastName);
    Study* study = database.createStudy(info);
    for (int number = 0; !study->ecg()->writeFailed(); ++number) {
        appendBlock(*study->ecg());
        TBeat beat(study->ecg());
        beat.setNumber(number);
        study->beats()->append(beat);
        if (number % 50 == 49)
            database.saveStudy(study);
        std::printf("%d %d %d\n", info.id, study->ecg()->sampleCount(), study->beats()->count());
        std::fflush(stdout);
    }
    return 1;
}

} // namespace

/// A recording survives the death of its process.
class StudyCrashTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aKilledRecordingIsListedAndWholeUpToTheLastBlockTold()
    {
        const StoreFolder folder;
        QRandomGenerator random(7);
        for (int round = 0; round < 20; ++round) {
            const QByteArray name = "round " + QByteArray::number(round);
            const QList<QByteArray> told = recordAndKill(folder.path(), name, random.bounded(1, 120));
            QCOMPARE(told.size(), 3);
            checkRecording(folder, told.at(0).toInt(), told.at(1).toInt(), told.at(2).toInt());
            if (QTest::currentTestFailed())
                return;
        }
        LocalStudyDatabase database(folder.path());
        QCOMPARE(database.listStudies().size(), size_t(20));
        database.rebuildIndex();
        QCOMPARE(database.listStudies().size(), size_t(20));
    }

    void aStoreStartsWhereverItsFirstStartWasKilled()
    {
        for (int round = 0; round < 20; ++round) {
            const StoreFolder folder;
            QVERIFY(QDir().mkpath(folder.path()));
            for (int id = 1; id <= 50; ++id)
                QVERIFY(writeFile(folder.studyFile("set " + QByteArray::number(id)), oldStudyFile(id, "")));
            QProcess process;
            start(process, folder.path(), "first start");
            QThread::msleep(ulong(round) * 2);
            process.kill();
            QVERIFY(process.waitForFinished());
            LocalStudyDatabase database(folder.path());
            QVERIFY(database.listStudies().size() >= 50);
            QVERIFY(database.protocolNames().size() == 7);
        }
    }

private:
    static void start(QProcess& process, const QString& folder, const QByteArray& name)
    {
        process.start(QCoreApplication::applicationFilePath(),
                      {QStringLiteral("--record"), folder, QString::fromUtf8(name)});
    }

    /// The last words of a recording that was killed some milliseconds after its first block.
    static QList<QByteArray> recordAndKill(const QString& folder, const QByteArray& name, int milliseconds)
    {
        QProcess process;
        start(process, folder, name);
        QByteArray told;
        while (!told.contains('\n') && process.waitForReadyRead(30000))
            told += process.readAllStandardOutput();
        QThread::msleep(ulong(milliseconds));
        process.kill();
        process.waitForFinished();
        told += process.readAllStandardOutput();
        const QList<QByteArray> lines = told.left(told.lastIndexOf('\n')).split('\n');
        return lines.last().split(' ');
    }

    static void checkRecording(const StoreFolder& folder, qint32 id, int frames, int beats)
    {
        LocalStudyDatabase database(folder.path());
        QVERIFY(listedIds(database).contains(id));
        Study* study = database.openStudy(id);
        QVERIFY(study != nullptr);
        TEcgFile& ecg = *study->ecg();
        QVERIFY(frames > 0 && ecg.sampleCount() >= frames);
        QVERIFY(beats > 0 && study->beats()->count() >= beats);
        int wrong = 0;
        for (int frame = 0; frame < ecg.sampleCount(); ++frame)
            for (int channel = 0; channel < ecg.channelCount(); ++channel)
                wrong += ecg.sample(channel, frame) != sampleAt(channel, frame);
        QCOMPARE(wrong, 0);
        for (int i = 0; i < study->beats()->count(); ++i) {
            TBeat beat(&ecg);
            QVERIFY(study->beats()->read(i, beat));
            QCOMPARE(beat.number(), i);
        }
    }
};

int main(int argc, char* argv[])
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() == 4 && arguments.at(1) == QLatin1String("--record"))
        return recordForEver(arguments.at(2), arguments.at(3).toUtf8());
    StudyCrashTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "StudyCrashTest.moc"
