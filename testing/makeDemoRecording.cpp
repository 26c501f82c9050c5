// make_demo_recording FILE: writes the recording that the examples come with.

#include "testing/DemoRecording.h"

#include <fstream>
#include <iostream>

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::cerr << "usage: make_demo_recording FILE\n";
        return 2;
    }
    std::ofstream file(argv[1], std::ios::binary);
    file << brvTesting::demoRecording();
    file.close();
    if (!file) {
        std::cerr << "cannot write \"" << argv[1] << "\"\n";
        return 1;
    }
    return 0;
}
