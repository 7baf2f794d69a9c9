#pragma once

class QFileDevice;

namespace velantor {

/// Brings what was written to the open file to the disk and returns when it is there (fsync). False if the
/// file is not open or the disk refuses; the data then may not survive a power cut.
bool syncToDisk(QFileDevice& file);

} // namespace velantor
