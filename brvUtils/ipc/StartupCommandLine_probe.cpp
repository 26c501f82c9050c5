// A program that parses three flags by a library of headers alone.

#include <CLI/CLI.hpp>

#include <string>

int main(int argc, char** argv)
{
    CLI::App program;
    bool fast = false;
    int frames = 10;
    std::string road;
    program.add_flag("--fast", fast);
    program.add_option("--frames", frames);
    program.add_option("--road", road);
    CLI11_PARSE(program, argc, argv);
    return frames == 20 && fast && road == "circle" ? 0 : 1;
}
