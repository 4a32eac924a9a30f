#include "app/CommandLine.h"

#include <exception>
#include <iostream>

int main(int argc, char** argv) {
    try {
        return orbel::app::runCommandLine(argc, argv, std::cout, std::cerr);
    } catch (const std::exception& error) {
        std::cerr << "orbel: " << error.what() << '\n';
        return 1;
    }
}
