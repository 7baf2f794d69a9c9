#pragma once

#include <QByteArray>

#include <vector>

/// Our spelling of a lead's name that differs from it only in case or by a leading "ECG" or "lead": "avr" and
/// "Lead aVR" are "aVR". Empty for what is no lead of ours: I, II, III, aVR, aVL, aVF, V1 to V6, CM5, CR5.
QByteArray canonicalLeadName(const QByteArray& name);

/// Names of the channels of a study for signals of that description: leads in our spelling, others as
/// described, in UTF-8, without commas and control characters, of 32 bytes at most. A signal without a
/// description is "Signal 3" by its place.
std::vector<QByteArray> channelNames(const std::vector<QByteArray>& descriptions);
