#include "study/StagedFile.h"

#include <QSaveFile>

TStagedWrite writeStaged(const QString& path, std::initializer_list<QByteArray> pieces)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return TStagedWrite::CannotOpen;
    bool isWritten = true;
    for (const QByteArray& piece : pieces)
        isWritten = isWritten && file.write(piece) == piece.size();
    // The commit flushes too, but would put a file in place whose last bytes found no room.
    if (!isWritten || !file.flush()) {
        file.cancelWriting();
        return TStagedWrite::Failed;
    }
    return file.commit() ? TStagedWrite::Done : TStagedWrite::Failed;
}
