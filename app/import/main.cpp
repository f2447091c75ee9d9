// lorvane-import: prepares a work folder for the VAR module from a CSV file.

#include <iostream>
#include <string>
#include <vector>

#include "data/CsvImport.h"

int main(int argc, char** argv) {
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    return lorvane::RunImport(arguments, std::cout, std::cerr);
}
