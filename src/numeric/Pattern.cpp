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
    TextInput input(file);
    input.ExpectFields(n < 0 ? -1 : static_cast<long long>(n) * n);
    Pattern pattern(n);
    for (int i = 1; i <= n; ++i) {
        for (int j = 1; j <= n; ++j) {
            pattern(i, j) = input.ReadWhole();
        }
    }
    return pattern;
}

Pattern ReadZeroOnePattern(const std::filesystem::path& file, int n) {
    Pattern pattern = ReadPattern(file, n);
    for (int i = 1; i <= n; ++i) {
        for (int j = 1; j <= n; ++j) {
            if (pattern(i, j) != 0 && pattern(i, j) != 1) {
                Raise(InputPastEndOfFile);
            }
        }
    }
    return pattern;
}

} // namespace lorvane
