#include "structural/MomentConditions.h"

#include "frame/NumberText.h"
#include "numeric/Matsubs.h"

namespace lorvane {

std::string& TextMatrix::operator()(int i, int j) {
    return cells_[Offset(i, j)];
}

const std::string& TextMatrix::operator()(int i, int j) const {
    return cells_[Offset(i, j)];
}

std::size_t TextMatrix::Offset(int i, int j) const {
    if (i < 1 || i > k_ || j < 1 || j > k_) {
        Raise(SubscriptOutOfRange);
    }
    return static_cast<std::size_t>(i - 1) * static_cast<std::size_t>(k_) +
           static_cast<std::size_t>(j - 1);
}

void BuildPattern(const Pattern& Apat, Int16& ParameterCount, TextMatrix& Bname, Matrix& Bnum) {
    const int k = Apat.Size();
    Bname = TextMatrix(k);
    Bnum.Resize(k, k);
    ParameterCount = 0;
    for (int i = 1; i <= k; ++i) {
        for (int j = 1; j <= k; ++j) {
            Bnum(i, j) = 0;
            if (Apat(i, j) == 0) {
                Bname(i, j) = "0";
            }
            if (Apat(i, j) == 1 || Apat(i, j) == -1) {
                Bnum(i, j) = 1;
                ++ParameterCount;
                Bname(i, j) = "b(" + TrimLeft(NumberToText(ParameterCount)) + ")";
            }
        }
    }
}

void CheckPattern(const Matrix& Bnum, int k, Int16& ok) {
    Matrix inverse(k, k);
    double determinant = 0;
    Int16 flag;
    InvertMatrix(Bnum, inverse, determinant, k, flag);
    ok = flag == 1 ? 0 : 1;
}

void BuildMomentMatrix(TextMatrix& Moment, const TextMatrix& Bname, Int16& EquationCount,
                       Int16& ZeroCount, int k) {
    Moment = TextMatrix(k);
    EquationCount = 0;
    ZeroCount = 0;
    for (int i = 1; i <= k; ++i) {
        for (int j = 1; j <= i; ++j) {
            std::string element;
            for (int m = 1; m <= k; ++m) {
                const std::string& f = Bname(m, i);
                const std::string& g = Bname(m, j);
                if (f == "0" || g == "0") {
                    continue;
                }
                element += "+" + f + g;
            }
            if (element.starts_with("+")) {
                element = TrimLeft(element.substr(1));
            }
            if (!element.empty()) {
                ++EquationCount;
            } else {
                element = "0";
            }
            if (element == "0") {
                ++ZeroCount;
            }
            Moment(i, j) = element;
            Moment(j, i) = element;
        }
    }
}

Matrix BuildB(const Pattern& Apat, const std::vector<double>& b) {
    const int k = Apat.Size();
    Matrix B(k, k);
    std::size_t p = 0;
    for (int i = 1; i <= k; ++i) {
        for (int j = 1; j <= k; ++j) {
            if (Apat(i, j) == 1 || Apat(i, j) == -1) {
                if (p >= b.size()) {
                    Raise(SubscriptOutOfRange);
                }
                B(i, j) = b[p++];
            }
        }
    }
    return B;
}

} // namespace lorvane
