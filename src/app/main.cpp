#include "app/Desktop.h"

int main(int argc, char* argv[])
{
    return runDesktop(argc, argv);
}
