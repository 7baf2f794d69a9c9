#pragma once

/// The course of the examination: rest, exercise, recovery. Times are seconds from the beginning, in
/// [0, recordingSeconds); the end passes into the beginning, so that the recording can be played in a loop.
namespace heart {

inline constexpr double recordingSeconds = 240;
inline constexpr int framesPerSecond = 500;
inline constexpr int recordingFrames = 120000;

inline constexpr double restingRate = 65;
inline constexpr double peakRate = 150;

/// Beats per minute, without the fluctuations from beat to beat.
double heartRate(double time);

/// 0 at rest, 1 at peak rate.
double exertion(double time);

/// Share of the full ST depression: it comes late in exercise and outlasts it.
double ischaemia(double time);

/// Breaths per minute.
double breathingRate(double time);

} // namespace heart
