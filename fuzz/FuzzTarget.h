#pragma once

#include <QByteArray>

/// One run of a fuzz target. Each target defines it; exceptions that leave it are findings.
void fuzzOne(const QByteArray& input);

/// Stops the fuzzer with that text if a promise of the code under test is broken.
void require(bool promise, const char* text);
