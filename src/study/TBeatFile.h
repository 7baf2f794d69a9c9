#pragma once

#include "analysis/beats/TBeatRecord.h"
#include "analysis/beats/TBeatStore.h"
#include "study/TRecordFile.h"

#include <vector>

class TSignal;

/// The beats file of a study: a header, then compact beat records. Appended to while recording, and each
/// record can be rewritten. A file on a read-only medium can be read; writes then do nothing. Main thread
/// only.
class TBeatFile : public TBeatStore
{
public:
    static constexpr int defaultHeaderSize = 256;

    /// Opens the beats of the recording `ecg` or, with `create`, starts an empty file. The file does not tell
    /// its channel count; it is that of `ecg`, which is not kept.
    /// Throws TError "Cannot create file" or "Cannot open file", also for a channel count outside 1 to 16 or
    /// a negative header size.
    TBeatFile(const TSignal& ecg, const QString& path, int headerSize = defaultHeaderSize,
              bool create = false);

    /// The header's bytes, trailing zeros included.
    QByteArray header() { return m_file.header(); }
    /// Puts `bytes` at the head of the file, cut or padded with zeros to the header size.
    void writeHeader(const QByteArray& bytes) { m_file.writeHeader(bytes); }

    /// Stores a copy behind the last beat. Returns its index, or -1 if it could not be written.
    int append(const TBeat& beat);
    /// Rewrites the record of the beat's index. False if there is none or it could not be written.
    bool update(const TBeat& beat);
    /// False if there is no such record.
    bool read(int index, TBeat& out) const;

    int count() const override;
    int maxCount() const override;
    bool beat(int index, TBeat& out) const override { return read(index, out); }
    int add(const TBeat& beat) override { return append(beat); }

    /// Whether a beat or the header ever failed to reach the file. Stays true.
    bool writeFailed() const { return m_file.writeFailed(); }
    /// Whether what was written may not last. Stays true.
    bool isLost() const { return m_file.isLost(); }
    /// Brings the beats to the disk. False if that fails.
    bool sync() { return m_file.sync(); }

private:
    TBeatRecord m_record;
    // A look-up moves the file's position and uses the buffer but changes no beat.
    mutable TRecordFile m_file;
    mutable std::vector<char> m_buffer;
};
