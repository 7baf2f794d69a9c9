#pragma once

#include "study/StudyInfo.h"

#include <QString>
#include <QTemporaryDir>

/// Data folders of known content, each made when it is first asked for and removed at the end of the program.
/// A benchmark may write into them what it takes away again.
class StudyFolders
{
public:
    static constexpr int listedRows = 100'000;
    static constexpr int restingStudies = 10'000;
    static constexpr int longStudies = 20;
    static constexpr double hour = 3600.0;

    static StudyFolders& instance();

    /// An index of `listedRows` rows, without the studies that they tell of.
    QString listedFolder();
    /// `restingStudies` sets of resting ECGs: no trends, one second of samples.
    QString restingFolder();
    /// One stress test of an hour at 150 beats/min: all trends filled, 14 channels at 500 Hz.
    QString hourFolder();
    /// `longStudies` sets with the study file of that stress test, all of one id.
    QString longFolder();

    /// The id and the base name of the stress test.
    StudyInfo hourStudy();
    /// Path of its study file.
    QString hourStudyPath();

private:
    StudyFolders() = default;
    QString folder(const char* name, void (StudyFolders::*fill)(const QString&));
    void fillListed(const QString& path);
    void fillResting(const QString& path);
    void fillHour(const QString& path);
    void fillLong(const QString& path);

    QTemporaryDir m_root;
    StudyInfo m_hourStudy;
};

/// The record of the n-th of many patients.
StudyInfo patientOf(int number);
