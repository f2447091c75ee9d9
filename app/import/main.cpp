// lorvane-import: prepares a work folder for the VAR module from a CSV file.

#include <exception>
#include <iostream>
#include <string>
#include <vector>

#include "data/CsvImport.h"
#include "frame/RuntimeError.h"
#include "platform/FileSizeLimit.h"

int main(int argc, char** argv) {
    lorvane::FailWritesBeyondTheFileSizeLimit();
    try {
        const std::vector<std::string> arguments(argv + 1, argv + argc);
        return lorvane::RunImport(arguments, std::cout, std::cerr);
    } catch (const std::exception& exception) {
        // Whatever escapes the import (memory exhausted by a huge file, say) ends it as the
        // module's general run-time error does, with its exit code, instead of an abort.
        std::cerr << "lorvane-import: " << lorvane::ErrorOfException(exception).MessageText()
                  << "\n";
        return 4;
    }
}
