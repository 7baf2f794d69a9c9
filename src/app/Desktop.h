#pragma once

/// The whole program, from the application object to the end of its event loop; the value is the exit code.
/// What is thrown anywhere on the way is shown in a box and ends the program properly.
int runDesktop(int argc, char** argv);
