#pragma once

struct StudyInfo;
class TAcqDevice;

/// Fills how the samples of a new study are taken from the device that is going to take them.
void fillAcquisition(StudyInfo& info, const TAcqDevice& device);
