#include "analysis/delineation/TWaveletSpan.h"

#include <algorithm>

void TWaveletSpan::reset(int begin, int end)
{
    m_begin = begin;
    m_length = std::max(end - begin, 0);
    for (std::vector<double>& values : m_values)
        values.assign(m_length, 0.0);
}
