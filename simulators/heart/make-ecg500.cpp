#include "simulators/heart/DemoRecording.h"
#include "simulators/heart/EcgPaper.h"

#include <cstdio>
#include <cstring>
#include <fstream>
#include <stdexcept>

namespace {

constexpr char usage[] = "make-ecg500 OUT.dat [--plot OUT.svg]\n"
                         "Writes the recording that the demonstration device replays, and a picture of it.\n";

void write(const char* path, const std::string& content)
{
    std::ofstream file(path, std::ios::binary);
    file << content;
    file.close();
    if (!file)
        throw std::runtime_error(std::string("Cannot write ") + path);
}

void run(const char* recordingPath, const char* picturePath)
{
    const std::vector<heart::TFrame> frames = heart::demoRecording();
    write(recordingPath, heart::fileBytes(frames));
    if (picturePath != nullptr)
        write(picturePath, heart::ecgPaper(frames, {{"Rest", 2}, {"Peak exercise", 132}}));
}

} // namespace

int main(int argc, char* argv[])
{
    const bool withPicture = argc == 4 && std::strcmp(argv[2], "--plot") == 0;
    if (argc != 2 && !withPicture) {
        std::fputs(usage, stderr);
        return 2;
    }
    try {
        run(argv[1], withPicture ? argv[3] : nullptr);
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
