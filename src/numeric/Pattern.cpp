#include "numeric/Pattern.h"

#include "frame/TextFile.h"

namespace lorvane {

int Pattern::Ones() const {
    int ones = 0;
    for (const Int16 cell : cells_) {
        ones += cell == 1 ? 1 : 0;
    }
    return ones;
}

std::size_t Pattern::Offset(int i, int j) const {
    if (i < 1 || i > n_ || j < 1 || j > n_) {
        Raise(SubscriptOutOfRange);
    }
    return static_cast<std::size_t>(i - 1) * static_cast<std::size_t>(n_) +
           static_cast<std::size_t>(j - 1);
}

Pattern ReadPattern(const std::filesystem::path& file, int n) {
    Pattern pattern(n);
    TextInput input(file);
    for (int i = 1; i <= n; ++i) {
        for (int j = 1; j <= n; ++j) {
            pattern(i, j) = input.ReadWhole();
        }
    }
    return pattern;
}

} // namespace lorvane
