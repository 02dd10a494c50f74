// The window of "CON:". It is a program of its own, so that no command's output can hold up a file manager.
#include "platform/console/ConsoleProgram.h"

int main(int argc, char** argv) {
    return console::RunConsole(argc, argv);
}
