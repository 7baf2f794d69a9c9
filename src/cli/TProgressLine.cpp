#include "cli/TProgressLine.h"

#include "platform/Terminal.h"

#include <cstdio>

TProgressLine::TProgressLine() : m_isOn(velantor::standardErrorIsTerminal()) {}

TProgressLine::~TProgressLine()
{
    if (m_isShown)
        std::fputc('\n', stderr);
}

void TProgressLine::show(const QString& text)
{
    if (!m_isOn)
        return;
    // Back to the start of the line, whose rest is cleared.
    std::fprintf(stderr, "\r%s\x1b[K", qPrintable(text));
    std::fflush(stderr);
    m_isShown = true;
}
