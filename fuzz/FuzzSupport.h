#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

namespace lorvane::fuzz {

// A folder of this process's own under the temporary folder, made on first use and removed
// when the process exits normally.
const std::filesystem::path& ScratchFolder();

void WriteBytes(const std::filesystem::path& file, std::string_view bytes);
std::string ReadBytes(const std::filesystem::path& file);

inline std::string_view AsText(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

// Stops the run with a message when a property of the code under test does not hold; libFuzzer
// records the input as a crash.
[[noreturn]] void Broken(const std::string& what);

} // namespace lorvane::fuzz
