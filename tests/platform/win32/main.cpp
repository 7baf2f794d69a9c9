#include "platform/CommPort.h"

#include <cstdio>

// Proves that the Win32 form of the port builds and links by itself; on such a machine it tells what stands
// at a port.
int main(int argc, char* argv[])
{
    if (argc < 2) {
        std::puts("usage: commport PORT");
        return 2;
    }
    try {
        CommPort port;
        port.open(argv[1], TCommSettings());
        const bool sent = port.purgeInput() && port.purgeOutput() && port.write("\x0b", 1);
        char answer[8] = {};
        const int count = sent ? port.read(answer, 7) : -1;
        std::printf("%d bytes: %s\n", count, answer);
        port.interrupt();
        return port.isInterrupted() && port.readByte() < 0 ? 0 : 1;
    } catch (const TError& error) {
        std::puts(error.what());
        return 1;
    }
}
