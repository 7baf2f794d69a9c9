#include "recorder/TStudyWriter.h"

#include "analysis/beats/TBeat.h"
#include "analysis/signals/TInt16Signal.h"
#include "study/FullDisk.h"
#include "study/StoreFolder.h"
#include "study/TBeatFile.h"
#include "study/TEcgFile.h"

#include <QtTest>

namespace {

constexpr int channels = 14;
constexpr int rawCapacity = 81920;

short sampleAt(int channel, int frame)
{
    return static_cast<short>(frame * 31 + channel * 1009);
}

TBeat beatAt(double seconds)
{
    TBeat beat(channels);
    beat.setWindow(seconds, 0.8);
    beat.setValue(TBeat::beatTime, seconds + 0.3);
    return beat;
}

/// Bytes of a samples file that holds that many frames.
rlim_t ecgBytes(int frames)
{
    return TEcgFile::defaultHeaderSize + rlim_t(frames) * channels * sizeof(qint16);
}

} // namespace

class TStudyWriterTest : public QObject
{
    Q_OBJECT

private:
    /// The raw signal gains these many frames.
    void acquire(int frames)
    {
        std::vector<short> data;
        for (int frame = m_raw->sampleCount(); frame < m_raw->sampleCount() + frames; ++frame) {
            for (int channel = 0; channel < channels; ++channel)
                data.push_back(sampleAt(channel, frame));
        }
        m_raw->addInterleaved(reinterpret_cast<const char*>(data.data()),
                              static_cast<int>(data.size() * sizeof(short)));
    }

    /// Whether frames of the file are those of the raw signal from `start` on.
    bool holds(int first, int count, int start)
    {
        bool right = true;
        for (int i = first; i < first + count; ++i) {
            for (int channel = 0; channel < channels; ++channel)
                right = right && m_study->ecg()->sample(channel, i) == sampleAt(channel, start + i);
        }
        return right;
    }

    QByteArray storedLastName()
    {
        const auto stored = m_database->loadStudy(m_folder->studyFile(m_info.baseFilename));
        return stored ? stored->value("patient/lastName") : QByteArray();
    }

    std::unique_ptr<StoreFolder> m_folder;
    std::unique_ptr<LocalStudyDatabase> m_database;
    StudyInfo m_info;
    Study* m_study = nullptr;
    std::unique_ptr<TInt16Signal> m_raw;
    std::unique_ptr<TStudyWriter> m_writer;

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<StoreFolder>();
        m_database = std::make_unique<LocalStudyDatabase>(m_folder->path());
        m_info = makeSampleInfo();
        m_study = m_database->createStudy(m_info);
        m_raw = std::make_unique<TInt16Signal>(4096, rawCapacity, channels, 500);
        m_writer = std::make_unique<TStudyWriter>(*m_study, *m_raw);
        m_writer->setStore(m_database.get());
    }

    void cleanup()
    {
        m_writer.reset();
        m_database->closeStudy(m_study);
        m_database.reset();
        m_folder.reset();
    }

    void samplesFromTheStartOnReachTheFileWithEachCall()
    {
        acquire(300);
        m_writer->start(m_raw->sampleCount());
        m_writer->appendSamples();
        QCOMPARE(m_study->ecg()->sampleCount(), 0);
        for (const int frames : {51, 1, 0, 2500, 102}) {
            acquire(frames);
            m_writer->appendSamples();
            QCOMPARE(m_study->ecg()->sampleCount(), m_raw->sampleCount() - 300);
            QCOMPARE(QFileInfo(m_folder->ecgFile(m_info.baseFilename)).size(),
                     qint64(ecgBytes(m_raw->sampleCount() - 300)));
        }
        QVERIFY(holds(0, m_study->ecg()->sampleCount(), 300));
        QVERIFY(!m_writer->takeFailure());
    }

    void aBlockLongerThanThoseOfTheFileIsWrittenWhole()
    {
        m_writer->start(0);
        acquire(20000);
        m_writer->appendSamples();
        QCOMPARE(m_study->ecg()->sampleCount(), 20000);
        QVERIFY(holds(0, 20000, 0));
    }

    void beatsReachTheFileAtOnce()
    {
        QCOMPARE(m_writer->appendBeat(beatAt(1.0)), 0);
        QCOMPARE(m_writer->appendBeat(beatAt(2.0)), 1);
        QCOMPARE(m_study->beats()->count(), 2);
        TBeat read;
        QVERIFY(m_study->beats()->read(1, read));
        QCOMPARE(read.windowStart(), 2.0);
        QVERIFY(!m_writer->takeFailure());
    }

    void savingWritesTheDocument()
    {
        m_study->setValue("patient/lastName", "Saved");
        m_writer->save();
        QVERIFY(!m_writer->takeFailure());
        QCOMPARE(storedLastName(), QByteArray("Saved"));
    }

    void withoutAStoreNoDocumentIsWritten()
    {
        m_writer->setStore(nullptr);
        m_study->setValue("patient/lastName", "Unsaved");
        m_writer->save();
        QVERIFY(!m_writer->takeFailure());
        QCOMPARE(storedLastName(), m_info.lastName);
    }

    void aFullDiskIsToldOnceAndWhatWasWrittenStays()
    {
        m_writer->start(0);
        acquire(500);
        m_writer->appendSamples();
        const FullDisk disk(ecgBytes(700));
        acquire(500);
        m_writer->appendSamples();
        QVERIFY(m_writer->takeFailure());
        QVERIFY(!m_writer->takeFailure());
        acquire(500);
        m_writer->appendSamples();
        QVERIFY(!m_writer->takeFailure());
        QCOMPARE(m_study->ecg()->sampleCount(), 500);
        QVERIFY(holds(0, 500, 0));
    }

    void whatAFullDiskRefusedIsWrittenOnceThereIsRoom()
    {
        m_writer->start(0);
        acquire(500);
        m_writer->appendSamples();
        {
            const FullDisk disk(ecgBytes(700));
            for (int i = 0; i < 20; ++i) {
                acquire(501);
                m_writer->appendSamples();
            }
        }
        acquire(51);
        m_writer->appendSamples();
        QCOMPARE(m_study->ecg()->sampleCount(), m_raw->sampleCount());
        QVERIFY(holds(0, m_raw->sampleCount(), 0));
    }

    void whatTheRingHasLostMeanwhileIsSilenceSoThatTheTimeStaysRight()
    {
        m_writer->start(0);
        acquire(500);
        m_writer->appendSamples();
        {
            const FullDisk disk(ecgBytes(700));
            for (int i = 0; i < 40; ++i) {
                acquire(5000);
                m_writer->appendSamples();
            }
        }
        acquire(51);
        m_writer->appendSamples();
        QCOMPARE(m_study->ecg()->sampleCount(), 500 + 40 * 5000 + 51);
        QVERIFY(holds(0, 500, 0));
        QCOMPARE(m_study->ecg()->sample(1, 100000), 0);
        const int oldest = m_raw->oldestSample();
        QVERIFY(holds(oldest, m_raw->sampleCount() - oldest, 0));
    }

    void beatsThatAFullDiskRefusedComeBeforeTheNextOne()
    {
        m_writer->appendBeat(beatAt(1.0));
        {
            const FullDisk disk(256 + 56 + 80 * channels);
            QCOMPARE(m_writer->appendBeat(beatAt(2.0)), -1);
            QCOMPARE(m_writer->appendBeat(beatAt(3.0)), -1);
            QVERIFY(!m_writer->isSignalWritten());
        }
        QCOMPARE(m_writer->appendBeat(beatAt(4.0)), 3);
        QVERIFY(m_writer->isSignalWritten());
        QCOMPARE(m_study->beats()->count(), 4);
        for (int i = 0; i < 4; ++i) {
            TBeat beat;
            QVERIFY(m_study->beats()->read(i, beat));
            QCOMPARE(beat.windowStart(), 1.0 + i);
        }
    }

    void theLastBeatsThatAFullDiskRefusedComeWithTheSave()
    {
        {
            const FullDisk disk(256);
            m_writer->appendBeat(beatAt(1.0));
        }
        QCOMPARE(m_study->beats()->count(), 0);
        m_writer->save();
        QCOMPARE(m_study->beats()->count(), 1);
        QVERIFY(m_writer->isSignalWritten());
    }

    void aDiskThatIsFullAgainIsToldAgain()
    {
        m_writer->start(0);
        for (int i = 0; i < 2; ++i) {
            {
                const FullDisk disk(ecgBytes(m_study->ecg()->sampleCount() + 100));
                acquire(500);
                m_writer->appendSamples();
                QVERIFY(!m_writer->isSignalWritten());
                QVERIFY(m_writer->takeFailure());
                m_writer->appendSamples();
                QVERIFY(!m_writer->takeFailure());
            }
            m_writer->appendSamples();
            QVERIFY(m_writer->isSignalWritten());
            QVERIFY(!m_writer->takeFailure());
        }
        QCOMPARE(m_study->ecg()->sampleCount(), 1000);
    }

    void theSignalAndTheDocumentAreToldEachForItself()
    {
        const FullDisk disk(256);
        m_writer->appendBeat(beatAt(1.0));
        QVERIFY(m_writer->takeFailure());
        m_writer->saveDocument();
        QVERIFY(m_writer->takeFailure());
        m_writer->saveDocument();
        m_writer->appendBeat(beatAt(2.0));
        QVERIFY(!m_writer->takeFailure());
    }

    void theDocumentAloneIsWrittenToo()
    {
        m_study->setValue("patient/lastName", "Typed");
        m_writer->saveDocument();
        QVERIFY(!m_writer->takeFailure());
        QCOMPARE(storedLastName(), QByteArray("Typed"));
    }

    void beatsThatDoNotFitAreToldOnce()
    {
        m_writer->appendBeat(beatAt(1.0));
        const FullDisk disk(256 + 56 + 80 * channels);
        QCOMPARE(m_writer->appendBeat(beatAt(2.0)), -1);
        QVERIFY(m_writer->takeFailure());
        QCOMPARE(m_writer->appendBeat(beatAt(3.0)), -1);
        QVERIFY(!m_writer->takeFailure());
        QCOMPARE(m_study->beats()->count(), 1);
    }

    void aSamplesFileThatWasDeletedIsTold()
    {
        m_writer->start(0);
        QVERIFY(QFile::remove(m_folder->ecgFile(m_info.baseFilename)));
        acquire(100);
        m_writer->appendSamples();
        QVERIFY(m_writer->takeFailure());
        QVERIFY(!m_writer->isSignalWritten());
        acquire(100);
        m_writer->appendSamples();
        QVERIFY(!m_writer->takeFailure());
    }

    void aFolderThatVanishedIsTold()
    {
        QVERIFY(QDir(m_folder->path()).removeRecursively());
        m_writer->save();
        QVERIFY(m_writer->takeFailure());
        m_writer->save();
        QVERIFY(!m_writer->takeFailure());
    }

    void aStudyThatWasNotOpenedForRecordingIsTold()
    {
        m_database->saveStudy(m_study);
        m_database->closeStudy(m_study);
        m_study = m_database->openStudy(m_info.id);
        QVERIFY(m_study);
        TStudyWriter writer(*m_study, *m_raw);
        writer.start(0);
        acquire(100);
        writer.appendSamples();
        QVERIFY(writer.takeFailure());
        QCOMPARE(m_study->ecg()->sampleCount(), 0);
    }

    void aStudyWithoutFilesIsNotWritten()
    {
        Study study(1);
        TStudyWriter writer(study, *m_raw);
        writer.start(0);
        acquire(100);
        writer.appendSamples();
        QCOMPARE(writer.appendBeat(beatAt(1.0)), -1);
        writer.save();
        QVERIFY(!writer.takeFailure());
    }
};

QTEST_GUILESS_MAIN(TStudyWriterTest)

#include "TStudyWriterTest.moc"
