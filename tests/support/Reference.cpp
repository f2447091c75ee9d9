#include "support/Reference.h"

#include <filesystem>
#include <fstream>

namespace lorvane::test {

const nlohmann::json& E1Reference() {
    static const nlohmann::json reference = [] {
        std::ifstream in(std::filesystem::path(LORVANE_SOURCE_DIR) / "tests" / "reference" / "e1.json");
        return nlohmann::json::parse(in);
    }();
    return reference;
}

} // namespace lorvane::test
