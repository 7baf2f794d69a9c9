#include "fuzz/FuzzTarget.h"

#include <QString>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace {

/// Qt warns of each damaged file, a thousand times a second.
void dropMessage(QtMsgType type, const QMessageLogContext&, const QString& text)
{
    if (type == QtFatalMsg)
        std::fprintf(stderr, "%s\n", text.toUtf8().constData());
}

} // namespace

// The names under which the fuzzer calls.
extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    qInstallMessageHandler(dropMessage);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzzOne(QByteArray(reinterpret_cast<const char*>(data), static_cast<int>(size)));
    return 0;
}

void require(bool promise, const char* text)
{
    if (promise)
        return;
    std::fprintf(stderr, "Broken promise: %s\n", text);
    std::abort();
}
