#include "study/TEchoScoring.h"

namespace {

struct TSegmentNames
{
    const char* stored;
    const char* shown;
};

constexpr TSegmentNames segments[TEchoScoring::segmentCount + 1] = {
    {"", ""},
    {"BasalAnteroSeptum", "Septum Anterior Basal - LAD"},
    {"MidAnteroSeptum", "Septum Anterior Medio - LAD"},
    {"BasalSeptum", "Septum Basal - RAD"},
    {"MidSeptum", "Septum Medio - RAD"},
    {"ApicalSeptum", "Septum Apical - LAD"},
    {"BasalInferior", "Inferior Basal - RAD"},
    {"MidInferior", "Inferior Medio - RAD"},
    {"ApicalInferior", "Inferior Apical - LAD"},
    {"BasalPosterior", "Posterior Basal - CRX"},
    {"MidPosterior", "Posterior Medio - CRX"},
    {"BasalLateral", "Lateral Basal - CRX"},
    {"MidLateral", "Lateral Medio - CRX"},
    {"ApicalLateral", "Lateral Apical - LAD"},
    {"BasalAnterior", "Anterior Basal - LAD"},
    {"MidAnterior", "Anterior Medio - LAD"},
    {"ApicalAnterior", "Anterior Apical - LAD"},
};

bool isSegment(int segment)
{
    return segment >= 1 && segment <= TEchoScoring::segmentCount;
}

} // namespace

int TEchoScoring::segmentNumber(const QByteArray& storedName)
{
    for (int segment = 1; segment <= segmentCount; ++segment) {
        if (storedName == segments[segment].stored)
            return segment;
    }
    return 0;
}

QByteArray TEchoScoring::storedName(int segment)
{
    return isSegment(segment) ? QByteArray(segments[segment].stored) : QByteArray();
}

QByteArray TEchoScoring::shownName(int segment)
{
    return isSegment(segment) ? QByteArray(segments[segment].shown) : QByteArray();
}

void TEchoScoring::setScore(const QByteArray& storedName, TEchoTime time, qint32 score)
{
    const int segment = segmentNumber(storedName);
    if (segment > 0)
        m_scores[static_cast<std::size_t>(time)][static_cast<std::size_t>(segment)] = score;
}

qint32 TEchoScoring::score(int segment, TEchoTime time) const
{
    return isSegment(segment) ? m_scores[static_cast<std::size_t>(time)][static_cast<std::size_t>(segment)]
                              : 0;
}
