#include "app/CommandLine.h"
#include "app/Completions.h"
#include "app/ManPage.h"
#include "film/BuildInfo.h"

#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>

/// Writes what is installed beside the program about it into a folder: orbel.1 and the completions
/// of two shells.
int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: orbel-reference FOLDER\n";
        return 2;
    }
    const std::filesystem::path folder = argv[1];
    bool written = true;
    const auto write = [&](const char* name, const std::string& text) {
        std::ofstream file(folder / name, std::ios::binary);
        written = static_cast<bool>(file << text << std::flush) && written;
    };
    orbel::app::describeCommands([&](const CLI::App& program) {
        write("orbel.1", orbel::app::manPage(program, orbel::buildVersion()));
        write("orbel.bash", orbel::app::bashCompletion(program));
        write("_orbel", orbel::app::zshCompletion(program));
    });
    return written ? 0 : 1;
}
