#pragma once

#include <QByteArray>
#include <QJsonObject>

class TStudyResults;

/// The `results` object of a study file: one object per name of the fixed table.
QJsonObject makeResultsObject(const TStudyResults& results);

/// The same as compact JSON at the end of a text, made result by result: those of a long test are many times
/// as large as objects.
void appendResults(QByteArray& text, const TStudyResults& results);

/// Fills the entries that the object has, each by the kind that the table gives its name. Other names are
/// passed over; of a trend the shorter array counts; a number that is not finite reads as 0.
void readResultsObject(TStudyResults& results, const QJsonObject& object);
