#include "frame/Workspace.h"

#include <system_error>
#include <vector>

#include "frame/NumberText.h"

namespace lorvane {

std::filesystem::path Workspace::DataFile(std::string_view name) const {
    return DataSubfolder() / UpperCase(name);
}

std::filesystem::path Workspace::WorkFile(std::string_view name) const {
    return FindFolded(WorkFolder, name);
}

std::filesystem::path Workspace::StartFile(std::string_view name) const {
    return FindFolded(StartFolder, name);
}

std::string DataFileText(std::string_view name) {
    return (std::filesystem::path("LORVANE.DAT") / UpperCase(name)).string();
}

std::filesystem::path FindFolded(const std::filesystem::path& folder, std::string_view name) {
    std::error_code error;
    const std::filesystem::path exact = folder / name;
    if (std::filesystem::exists(exact, error)) {
        return exact;
    }
    const std::string wanted = UpperCase(name);
    for (std::filesystem::directory_iterator it(folder, error), end; !error && it != end;
         it.increment(error)) {
        if (UpperCase(it->path().filename().string()) == wanted) {
            return it->path();
        }
    }
    return exact;
}

bool WildcardMatch(std::string_view pattern, std::string_view name) {
    const std::string p = UpperCase(pattern);
    const std::string n = UpperCase(name);
    std::size_t pi = 0, ni = 0, starP = std::string::npos, starN = 0;
    while (ni < n.size()) {
        if (pi < p.size() && (p[pi] == '?' || p[pi] == n[ni])) {
            ++pi;
            ++ni;
        } else if (pi < p.size() && p[pi] == '*') {
            starP = pi++;
            starN = ni;
        } else if (starP != std::string::npos) {
            pi = starP + 1;
            ni = ++starN;
        } else {
            return false;
        }
    }
    while (pi < p.size() && p[pi] == '*') {
        ++pi;
    }
    return pi == p.size();
}

int DeleteMatching(const std::filesystem::path& folder, std::string_view pattern) {
    std::error_code error;
    int deleted = 0;
    std::vector<std::filesystem::path> victims;
    for (std::filesystem::directory_iterator it(folder, error), end; !error && it != end;
         it.increment(error)) {
        if (it->is_regular_file(error) && WildcardMatch(pattern, it->path().filename().string())) {
            victims.push_back(it->path());
        }
    }
    for (const auto& file : victims) {
        if (std::filesystem::remove(file, error)) {
            ++deleted;
        }
    }
    return deleted;
}

} // namespace lorvane
