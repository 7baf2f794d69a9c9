#pragma once

#include <QtGlobal>

/// Process-wide constants: who we are, the marks of our files and the names that several subsystems share.
namespace velantor {

inline constexpr char organizationName[] = "Velantor";
inline constexpr char applicationName[] = "ECG";
inline constexpr char applicationVersion[] = "1.27c";

/// Folder below the generic data location that holds studies, index and reports.
inline constexpr char dataFolderName[] = "VelantorStress";

// Marks that stand at the head of each file, without a terminating zero.
inline constexpr char studyMagicOld[] = "VTSTUDY1";
inline constexpr char studyMagic[] = "VTSTUDY2";
inline constexpr char ecgMagic[] = "VTECG1";
inline constexpr char beatsMagic[] = "VTBEATS1";
/// Comment of the zip file that makes it an archive of ours.
inline constexpr char archiveMagic[] = "VTZIP1";

inline constexpr char studyExtension[] = "vtstudy";
inline constexpr char ecgExtension[] = "vtecg";
inline constexpr char beatsExtension[] = "vtbeats";
inline constexpr char archiveExtension[] = "vtz";

// Names of the filter kinds, as the display settings store them.
inline constexpr char baselineFilterFir[] = "fir";
inline constexpr char notchFilter50Hz[] = "50hz";
inline constexpr char muscleFilter40Hz[] = "40hz";

/// Channels that a signal, a beat and a study have at most.
inline constexpr int maxChannels = 16;

} // namespace velantor
