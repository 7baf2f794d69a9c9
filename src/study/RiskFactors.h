#pragma once

#include <QByteArray>

#include <vector>

/// The cardiovascular risk factors that the study dialog asks for, in its order. The names are stored keys
/// and stay Spanish in every language of the interface; UTF-8.
std::vector<QByteArray> standardRiskFactors();
