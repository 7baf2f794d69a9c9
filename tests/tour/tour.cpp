#include "app/Desktop.h"
#include "tour/RestingEcgTour.h"

#include <QCoreApplication>
#include <QThread>

#include <cstdio>
#include <cstdlib>
#include <memory>

// tour LANGUAGE PICTURES SIMULATOR SOURCE: runs the desktop program and uses it as a technician would. Writes
// pictures of the screen into the folder PICTURES. LANGUAGE, english or spanish, is what the program has to
// speak, SIMULATOR the program that stands in for an ECG device, SOURCE what it plays.

namespace {

TTourPlaces places;
std::unique_ptr<QThread> technician;

void useProgram()
{
    try {
        RestingEcgTour tour(places);
        tour.run();
        for (const QString& wait : tour.waits())
            std::printf("%s ms\n", qPrintable(wait));
    } catch (const std::exception& error) {
        std::fprintf(stderr, "The tour FAILED. %s\n", error.what());
        std::fflush(nullptr);
        // The program would wait for its user.
        std::_Exit(1);
    }
}

/// The application is there, its windows are not yet.
void sendTechnician()
{
    technician.reset(QThread::create(useProgram));
    technician->start();
}

} // namespace

Q_COREAPP_STARTUP_FUNCTION(sendTechnician)

int main(int argc, char* argv[])
{
    if (argc != 5) {
        std::fputs("Usage: tour LANGUAGE PICTURES SIMULATOR SOURCE\n", stderr);
        return 2;
    }
    places = {QString::fromLocal8Bit(argv[1]), QString::fromLocal8Bit(argv[2]),
              QString::fromLocal8Bit(argv[3]), QString::fromLocal8Bit(argv[4])};
    int count = 1;
    const int code = runDesktop(count, argv);
    technician->wait();
    return code;
}
