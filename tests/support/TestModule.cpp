#include "support/TestModule.h"

#include <atomic>
#include <fstream>
#include <iterator>
#include <random>

namespace lorvane::test {

TempFolder::TempFolder() {
    static std::atomic<int> counter{0};
    std::random_device device;
    path_ = std::filesystem::temp_directory_path() /
            ("lorvane-test-" + std::to_string(device()) + "-" + std::to_string(counter++));
    std::filesystem::create_directories(path_);
}

TempFolder::~TempFolder() {
    std::error_code error;
    std::filesystem::remove_all(path_, error);
}

TestModule::TestModule()
    : module_(Platform{dialogs_, events_, clock_, random_, processes_, screens_, nullptr}) {
    module_.StartFolder = temp_.Path() / "start";
    module_.WorkFolder = temp_.Path() / "work";
    module_.DataFolder = temp_.Path() / "data";
    std::filesystem::create_directories(module_.StartFolder);
    std::filesystem::create_directories(module_.WorkFolder);
    std::filesystem::create_directories(module_.DataSubfolder());
}

Control& Ctl(Module& module, std::string_view screen, std::string_view control) {
    Screen* loaded = module.LoadedScreen(screen);
    if (loaded == nullptr) {
        throw RuntimeError(SubscriptOutOfRange, "screen " + std::string(screen) + " is not loaded");
    }
    return (*loaded)(control);
}

std::string ReadFile(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());
}

void WriteFile(const std::filesystem::path& file, const std::string& content) {
    std::ofstream stream(file, std::ios::binary);
    stream << content;
}

} // namespace lorvane::test
