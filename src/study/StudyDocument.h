#pragma once

#include <QByteArray>
#include <QJsonObject>

class Study;
struct StudyInfo;

// The JSON document of a study and its parts, without any file. Keys are those of docs/file-formats.md.

/// `study` with its texts, id and times.
QJsonObject makeStudyObject(Study& study);
/// `patient` with its texts and risk factors.
QJsonObject makePatientObject(Study& study);
/// The whole document of a study file.
QJsonObject makeStudyDocument(Study& study);
/// The same as compact JSON, without ever holding all of it as objects.
QByteArray makeStudyText(Study& study);

/// The document that identifies a samples file, as compact JSON of at most `maxBytes`. Long texts are
/// shortened, longest first, until it fits; empty if it cannot be made to fit. The study must have its
/// samples file.
QByteArray makeEcgHeaderDocument(Study& study, int maxBytes);

/// Fills a study from a document whose `study` and `patient` are there. Its files are not touched.
void fillStudy(Study& study, const QJsonObject& document);

/// Fills the texts and times of a record from the `study` and `patient` objects.
void readStudyInfo(StudyInfo& info, const QJsonObject& document);
