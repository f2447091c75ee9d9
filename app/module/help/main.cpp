// lorvane-textpdf: makes a help page of the package, a PDF document, from its plain text source.
//   lorvane-textpdf SOURCE.txt TARGET.PDF TITLE

#include <fstream>
#include <iostream>
#include <iterator>
#include <stdexcept>
#include <string>

#include "TextPdf.h"

int main(int argc, char** argv) {
    if (argc != 4) {
        std::cerr << "Usage: lorvane-textpdf SOURCE.txt TARGET.PDF TITLE\n";
        return 2;
    }
    std::ifstream source(argv[1], std::ios::binary);
    if (!source) {
        std::cerr << "lorvane-textpdf: cannot read " << argv[1] << '\n';
        return 1;
    }
    const std::string text((std::istreambuf_iterator<char>(source)),
                           std::istreambuf_iterator<char>());
    std::string pdf;
    try {
        pdf = lorvane::help::TextToPdf(text, argv[3]);
    } catch (const std::invalid_argument& refused) {
        std::cerr << argv[1] << ": " << refused.what() << '\n';
        return 1;
    }
    std::ofstream target(argv[2], std::ios::binary);
    target << pdf;
    target.close();
    if (!target) {
        std::cerr << "lorvane-textpdf: cannot write " << argv[2] << '\n';
        return 1;
    }
    return 0;
}
