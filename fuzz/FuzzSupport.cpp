#include "FuzzSupport.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <system_error>

#include <unistd.h>

namespace lorvane::fuzz {

namespace {

std::filesystem::path MakeScratchFolder() {
    const std::filesystem::path folder =
        std::filesystem::temp_directory_path() / ("lorvane-fuzz-" + std::to_string(::getpid()));
    std::filesystem::create_directories(folder);
    std::atexit([] {
        std::error_code error;
        std::filesystem::remove_all(ScratchFolder(), error);
    });
    return folder;
}

} // namespace

const std::filesystem::path& ScratchFolder() {
    static const std::filesystem::path folder = MakeScratchFolder();
    return folder;
}

void WriteBytes(const std::filesystem::path& file, std::string_view bytes) {
    std::ofstream stream(file, std::ios::binary | std::ios::trunc);
    stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (!stream) {
        Broken("cannot write the scratch file " + file.string());
    }
}

std::string ReadBytes(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

void Broken(const std::string& what) {
    std::fprintf(stderr, "fuzz: %s\n", what.c_str());
    std::fflush(stderr);
    std::abort();
}

} // namespace lorvane::fuzz
