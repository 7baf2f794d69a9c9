#pragma once

#include <QByteArray>
#include <QString>

#include <vector>

/// One annotation of a WFDB record.
struct TWfdbAnnotation
{
    qint64 sample = 0; ///< its place, in samples of the annotation file's own frequency
    int code = 0;      ///< what it tells; see WfdbCodes.h
    int subtype = 0;   ///< -128 to 127
    int channel = 0;   ///< 0 to 255
    int num = 0;       ///< -128 to 127
    QByteArray aux;    ///< text, without the zeros at its end
};

/// The annotations of a file in the MIT format (PhysioNet, annot(5) of the WFDB Applications Guide), in the
/// order of the file.
class TWfdbAnnotations
{
public:
    /// Throws TError "Cannot read WFDB annotations" for a file that cannot be read, breaks off before its end
    /// mark, or has more than 8 MB, which is weeks of beats.
    static TWfdbAnnotations read(const QString& path);

    const std::vector<TWfdbAnnotation>& list() const { return m_list; }
    /// Samples per second that the file tells for itself; 0 if it counts in samples of its record.
    double frequency() const { return m_frequency; }

private:
    std::vector<TWfdbAnnotation> m_list;
    double m_frequency = 0.0;
};
