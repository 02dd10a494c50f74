#include "frame/EntryPoint.h"

int main(int argc, char** argv) {
    return solvane::EntryPoint(argc, argv);
}
