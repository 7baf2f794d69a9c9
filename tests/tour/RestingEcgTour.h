#pragma once

#include "tour/TourDriver.h"

#include <QElapsedTimer>

#include <memory>

class QProcess;

/// Where the tour finds what it needs, and where it leaves its pictures.
struct TTourPlaces
{
    /// "english" or "spanish": what the program has to speak.
    QString language;
    QString pictures;
    /// The simulated ECG device.
    QString simulator;
    /// What the device plays: a WFDB record, or a 14-channel file.
    QString deviceSource;
};

/// A morning at the resting ECG, from the first start of the program to its end: every section of the
/// launcher, the study dialog, an ECG of the demonstration that is taken twice, one from a device with loose
/// electrodes and one with the keyboard alone.
class RestingEcgTour
{
public:
    explicit RestingEcgTour(const TTourPlaces& places);
    ~RestingEcgTour();

    /// On a thread of its own, while the program runs on the main thread, which it ends. Throws TTourError.
    void run();

    /// How long the user waited for what, in milliseconds.
    const QStringList& waits() const { return m_waits; }

private:
    void lookAtLauncher();
    void refuseToStartWithoutDevice();
    void fillStudyDialog();
    void lookAtStressDialog();
    void takeDemonstrationEcg();
    void takeItAgain();
    void lookAtRecentStudies();
    void looseElectrodes();
    void takeDeviceEcg();
    void takeEcgByKeyboard();
    void leave();

    void openEcgSection();
    void startMonitor();
    void record(int seconds);
    void stopRecording();
    void saveStudy();
    void useDevice(bool highRate, const QStringList& options);
    void takeDeviceAway();

    TTourPlaces m_places;
    TourDriver m_driver;
    QElapsedTimer m_clock;
    QStringList m_waits;
    std::unique_ptr<QProcess> m_device;
};
