#include "structural/SymbolicSolver.h"

#include <cmath>
#include <cstddef>
#include <utility>

#include "frame/NumberText.h"
#include "frame/RuntimeError.h"
#include "frame/TextParts.h"

namespace lorvane {

namespace {

constexpr const char* LineEnd = "\r\n";
// How closely a consistency row must hold, relative to the size of its terms.
constexpr double ConsistencyTolerance = 1e-5;

// The value that the text of x gives back: every number the solver keeps is carried by its
// text, so it has the digits NumberToText shows and no more.
double Carried(double x) {
    return Val(Trim(NumberToText(x)));
}

// A row of the system: its terms and its right-hand side. source names the caller's text that
// still stands for the value (its index), or is -1 once the solver has written a new one.
struct SystemRow {
    TermRow lhs;
    double value = 0;
    int source = -1;
};

// A row of the table of solved rows: an unknown, or a product moved in whole, with its value.
struct SolvedRow {
    FactorRun lhs;
    double value = 0;
    int source = -1;
};

// One solve of the system by squares, single products and substitution. The passes work on the
// term tables; the step log is written from them only when a log is there to receive it.
class Solver {
public:
    Solver(int parameterCount, SolverDisplay display, const SolverOutput& output,
           const std::vector<std::string>& givenTexts, std::vector<SystemRow> rows)
        : parameterCount_(parameterCount), output_(output), givenTexts_(givenTexts),
          rows_(std::move(rows)),
          showing_(display != SolverDisplay::Silent && output.stepLog != nullptr),
          pausing_(display != SolverDisplay::Silent && static_cast<bool>(output.pause)),
          reporting_(display == SolverDisplay::Visible && static_cast<bool>(output.progress)) {}

    bool Run();
    // The rows of the solved unknowns in the order of their numbers; duplicates and consistency
    // rows stay in the table only.
    std::vector<SolvedRow> Solution() const;
    const std::vector<SystemRow>& Rows() const { return rows_; }

    std::string ValueText(double value, int source) const {
        return source >= 0 ? givenTexts_[static_cast<std::size_t>(source)]
                           : Trim(NumberToText(value));
    }

private:
    enum class Sweep { Done, WholeRow };

    // Decision: a solve succeeds only when each of b(1)..b(P) has exactly one row of its own in
    // the table. Counting the rows of the table instead let a b solved twice stand in for one
    // never solved, and the solution then shifted every value behind the repeat.
    bool Complete() const { return solvedCount_ == parameterCount_; }
    bool Known(int p) const {
        return p >= 1 && p <= parameterCount_ && known_[static_cast<std::size_t>(p)];
    }
    void AddSolved(int p, double value);
    double Value(int p) const { return values_[static_cast<std::size_t>(p)]; }
    bool Agrees(const SystemRow& row) const;
    bool AddConsistency(const SystemRow& row);
    bool RemainderAgrees();
    bool SolveSquares();
    void SolveSingleProducts();
    void SolveByDivision(std::size_t i);
    bool SubstituteProducts();
    Sweep SubstituteWith(std::size_t i);
    void ShowNewSystem();
    void ShowProgress();
    void Write(const std::string& text);
    void Pause();

    int parameterCount_;
    const SolverOutput& output_;
    const std::vector<std::string>& givenTexts_;
    std::vector<SystemRow> rows_;
    std::vector<SolvedRow> table_;
    std::vector<bool> known_ = std::vector<bool>(static_cast<std::size_t>(parameterCount_) + 1);
    std::vector<double> values_ =
        std::vector<double>(static_cast<std::size_t>(parameterCount_) + 1);
    int solvedCount_ = 0;
    bool inconsistent_ = false;
    bool showing_;
    bool pausing_;
    bool reporting_;
};

void Solver::Write(const std::string& text) {
    if (showing_) {
        *output_.stepLog += text;
    }
}

void Solver::Pause() {
    if (pausing_) {
        output_.pause();
    }
}

void Solver::ShowNewSystem() {
    if (!showing_) {
        return;
    }
    std::string text = std::string("New system:") + LineEnd;
    for (const SolvedRow& row : table_) {
        text += FactorRunText(row.lhs) + " = " + ValueText(row.value, row.source) + LineEnd;
    }
    for (const SystemRow& row : rows_) {
        text += TermRowText(row.lhs) + " = " + ValueText(row.value, row.source) + LineEnd;
    }
    Write(text + LineEnd);
}

void Solver::AddSolved(int p, double value) {
    table_.push_back({SingleFactor(p), value, -1});
    // An unknown numbered beyond P is solved like any other but never completes the count.
    if (p >= 1 && p <= parameterCount_) {
        known_[static_cast<std::size_t>(p)] = true;
        values_[static_cast<std::size_t>(p)] = value;
        ++solvedCount_;
    }
}

// Whether a row whose factors are all known holds at the known values, to the seven digits that
// the system carries (with room for what the divisions and roots made of them).
bool Solver::Agrees(const SystemRow& row) const {
    double sum = 0;
    double scale = std::abs(row.value);
    for (const Term& term : row.lhs) {
        const double product = Value(term.first) * Value(term.second);
        sum += term.negative ? -product : product;
        scale += std::abs(product);
    }
    return std::abs(sum - row.value) <= ConsistencyTolerance * scale;
}

// Decision: a row whose factors are all known already is a consistency row. It never solves a b
// again: it leaves the system for the table as a duplicate does, and its value must agree with
// the known ones. A model with more equations than unknowns and values that disagree has no
// solution of all its moment equations, whichever of them a solve by hand would use.
bool Solver::AddConsistency(const SystemRow& row) {
    const Term& term = row.lhs[0];
    table_.push_back(
        {Joined(SingleFactor(term.first), SingleFactor(term.second)), row.value, row.source});
    if (!Agrees(row)) {
        Write("Solve " + TermRowText(row.lhs) + " = " + ValueText(row.value, row.source) + LineEnd +
              "However, this equation does not agree with the values already found!" + LineEnd);
        inconsistent_ = true;
    }
    return !inconsistent_;
}

// Once every b is known, the rows still in the system are checked as consistency rows.
bool Solver::RemainderAgrees() {
    for (const SystemRow& row : rows_) {
        for (const Term& term : row.lhs) {
            if (!Known(term.first) || !Known(term.second)) {
                return false;
            }
        }
        if (!Agrees(row)) {
            Write("However, the equation " + TermRowText(row.lhs) + " = " +
                  ValueText(row.value, row.source) + " does not agree with the solution!" +
                  LineEnd);
            return false;
        }
    }
    return true;
}

void Solver::ShowProgress() {
    if (!reporting_) {
        return;
    }
    const Int16 percent = CInt(100.0 * solvedCount_ / parameterCount_);
    output_.progress(" Solving the structural model. Done " + Trim(NumberToText(percent)) + "%");
}

// Takes the positive root of every row b(p)b(p) = c, for p in order; such a row for a b already
// known is a consistency row.
bool Solver::SolveSquares() {
    for (int p = 1; p <= parameterCount_; ++p) {
        for (;;) {
            std::size_t r = 0;
            while (r < rows_.size() && !(rows_[r].lhs.size() == 1 && rows_[r].lhs[0].first == p &&
                                         rows_[r].lhs[0].second == p)) {
                ++r;
            }
            if (r == rows_.size()) {
                break;
            }
            const SystemRow& row = rows_[r];
            if (Known(p)) {
                const bool agrees = AddConsistency(row);
                rows_.erase(rows_.begin() + static_cast<std::ptrdiff_t>(r));
                if (!agrees) {
                    return false;
                }
                continue;
            }
            const double c = row.value;
            if (showing_) {
                Write("Solve " + TermRowText(row.lhs) + " = " + ValueText(c, row.source));
            }
            if (!(c > 0)) {
                if (showing_) {
                    Write(std::string(LineEnd) + "However, the right-hand side is not positive!" +
                          LineEnd);
                }
                return false;
            }
            Write(std::string(":") + LineEnd);
            AddSolved(p, Carried(CheckedSqrt(c)));
            rows_.erase(rows_.begin() + static_cast<std::ptrdiff_t>(r));
            ShowNewSystem();
        }
    }
    return true;
}

// Sweeps over the solved rows, the new ones included, until a sweep adds none.
void Solver::SolveSingleProducts() {
    for (;;) {
        const std::size_t before = table_.size();
        for (std::size_t i = 0; i < table_.size() && !inconsistent_; ++i) {
            SolveByDivision(i);
        }
        if (inconsistent_) {
            return;
        }
        if (table_.size() <= before) {
            return;
        }
    }
}

// Moves into the table every row that reads factor times solved row i = c, and every row that is
// solved row i over again; the scan starts anew after each move.
void Solver::SolveByDivision(std::size_t i) {
    const FactorRun target = table_[i].lhs;
    const double t = table_[i].value;
    std::size_t r = 0;
    while (r < rows_.size()) {
        Pause();
        const SystemRow& row = rows_[r];
        const FactorMatch match = FindFactors(row.lhs, target);
        if (!match.found) {
            ++r;
            continue;
        }
        const int before = match.at;
        const int after = 2 * static_cast<int>(row.lhs.size()) - match.at - target.count;
        const auto at = rows_.begin() + static_cast<std::ptrdiff_t>(r);
        if (before == 0 && after == 0) {
            // A duplicate: no value is compared, the first one stays first in the table.
            table_.push_back({target, row.value, row.source});
            rows_.erase(at);
            r = 0;
            continue;
        }
        const bool rightAlone = before == 0 && after == 1;
        const bool leftAlone = after == 0 && before == 1;
        if (!rightAlone && !leftAlone) {
            ++r;
            continue;
        }
        const int factor = FactorAt(row.lhs, leftAlone ? 0 : match.at + target.count);
        if (Known(factor)) {
            const bool agrees = AddConsistency(row);
            rows_.erase(at);
            if (!agrees) {
                return;
            }
            r = 0;
            continue;
        }
        AddSolved(factor, Carried(CheckedDivide(row.value, t)));
        rows_.erase(at);
        if (showing_) {
            Write("Solve " + FactorText(factor) + LineEnd);
            ShowNewSystem();
        }
        r = 0;
    }
}

// Takes products of two solved values out of the sums. After a sweep over the rows solved on
// entry (or after a row that is such a product as a whole) the squares are solved; when they
// add rows the sweep goes on at the current row, once more without a bound check, so that each
// round reaches one new row.
bool Solver::SubstituteProducts() {
    const std::size_t bound = table_.size();
    std::size_t before = bound;
    std::size_t i = 0;
    bool checkBound = true;
    for (;;) {
        if (!checkBound || i < bound) {
            if (SubstituteWith(i) == Sweep::Done) {
                ++i;
                checkBound = true;
                continue;
            }
        }
        if (!SolveSquares()) {
            return false;
        }
        if (table_.size() <= before) {
            return true;
        }
        before = table_.size();
        checkBound = false;
    }
}

// Substitutes the products of solved row i with each solved row j into the system; after each
// substitution j starts again from the first row.
Solver::Sweep Solver::SubstituteWith(std::size_t i) {
    std::size_t j = 0;
    while (j < table_.size()) {
        const FactorRun product = Joined(table_[i].lhs, table_[j].lhs);
        bool changed = false;
        for (SystemRow& row : rows_) {
            Pause();
            const FactorMatch match = FindFactors(row.lhs, product);
            if (!match.found) {
                continue;
            }
            if (row.lhs.size() == 1) {
                return Sweep::WholeRow;
            }
            const double q = row.value;
            const double prod = table_[i].value * table_[j].value;
            const auto k = static_cast<std::size_t>(match.at / 2);
            double value = 0;
            if (k == 0) {
                // The remainder loses its leading sign; a "-" there turns every sign of it.
                const bool minus = row.lhs[1].negative;
                row.lhs.erase(row.lhs.begin());
                if (minus) {
                    for (Term& term : row.lhs) {
                        term.negative = !term.negative;
                    }
                }
                value = minus ? prod - q : q - prod;
            } else {
                const bool minus = row.lhs[k].negative;
                row.lhs.erase(row.lhs.begin() + static_cast<std::ptrdiff_t>(k));
                value = minus ? q + prod : q - prod;
            }
            row.value = Carried(value);
            row.source = -1;
            if (showing_) {
                Write("Substitute " + FactorRunText(table_[i].lhs) + "." +
                      FactorRunText(table_[j].lhs) + " = " + Trim(NumberToText(prod)) +
                      " and solve the system" + LineEnd);
                ShowNewSystem();
            }
            changed = true;
            break;
        }
        j = changed ? 0 : j + 1;
    }
    return Sweep::Done;
}

bool Solver::Run() {
    if (!SolveSquares() || table_.empty()) {
        return false;
    }
    std::size_t mark = 0;
    int stall = 0;
    for (;;) {
        if (!SubstituteProducts()) {
            return false;
        }
        if (Complete()) {
            break;
        }
        SolveSingleProducts();
        if (inconsistent_) {
            return false;
        }
        if (Complete()) {
            break;
        }
        if (!SolveSquares()) {
            return false;
        }
        ShowProgress();
        if (Complete()) {
            break;
        }
        if (table_.size() > mark) {
            mark = table_.size();
        } else if (++stall > 10) {
            Write(std::string("System could not be solved completely!") + LineEnd);
            return false;
        }
    }
    if (!RemainderAgrees()) {
        return false;
    }
    Write(LineEnd);
    ShowProgress();
    return true;
}

std::vector<SolvedRow> Solver::Solution() const {
    std::vector<SolvedRow> solution;
    for (int p = 1; p <= parameterCount_; ++p) {
        for (const SolvedRow& row : table_) {
            if (row.lhs.count == 1 && row.lhs.number[0] == p) {
                solution.push_back(row);
            }
        }
    }
    return solution;
}

// Replaces every occurrence of from, the first one each time.
void ReplaceEvery(std::string& text, std::string_view from, std::string_view to) {
    std::string before;
    std::string after;
    Int16 found = 1;
    for (;;) {
        SplitAround(text, from, before, after, found);
        if (found == 0) {
            return;
        }
        text = before;
        text += to;
        text += after;
    }
}

const std::vector<std::string> NoTexts;
const SolverOutput NoOutput;

} // namespace

void FindAround(std::string_view text, std::string_view target, std::string& left,
                std::string& right, Int16& ok) {
    left.clear();
    right.clear();
    SplitAround(text, target, left, right, ok);
}

std::string NegateExpression(std::string_view text) {
    std::string result(text);
    if (result.find_first_of("+-") == std::string::npos) {
        return result;
    }
    ReplaceEvery(result, "+", "<min>");
    ReplaceEvery(result, "-", "<plus>");
    ReplaceEvery(result, "<min>", "-");
    ReplaceEvery(result, "<plus>", "+");
    return result;
}

Int16 SolveSystem(SolverDisplay Silent, Int16 ParameterCount, std::vector<std::string>& SolverLhs,
                  std::vector<std::string>& SolverRhs, const SolverOutput& output) {
    if (SolverLhs.size() != SolverRhs.size()) {
        Raise(SubscriptOutOfRange);
    }
    std::vector<SystemRow> rows(SolverLhs.size());
    for (std::size_t r = 0; r < rows.size(); ++r) {
        if (!ParseTermRow(SolverLhs[r], rows[r].lhs)) {
            return 0;
        }
        rows[r].value = Val(SolverRhs[r]);
        rows[r].source = static_cast<int>(r);
    }
    const std::vector<std::string> givenTexts = SolverRhs;
    Solver solver(ParameterCount, Silent, output, givenTexts, std::move(rows));
    const bool ok = solver.Run();
    SolverLhs.clear();
    SolverRhs.clear();
    if (ok) {
        for (const SolvedRow& row : solver.Solution()) {
            SolverLhs.push_back(FactorRunText(row.lhs));
            SolverRhs.push_back(solver.ValueText(row.value, row.source));
        }
    } else {
        for (const SystemRow& row : solver.Rows()) {
            SolverLhs.push_back(TermRowText(row.lhs));
            SolverRhs.push_back(solver.ValueText(row.value, row.source));
        }
    }
    return ok ? 1 : 0;
}

CompiledSystem::CompiledSystem(Int16 ParameterCount, const std::vector<std::string>& SolverLhs)
    : parameterCount_(ParameterCount), rows_(SolverLhs.size()) {
    for (std::size_t r = 0; r < rows_.size() && parsed_; ++r) {
        parsed_ = ParseTermRow(SolverLhs[r], rows_[r]);
    }
}

bool CompiledSystem::Solve(const std::vector<double>& rhs, std::vector<double>& solution) const {
    if (rhs.size() != rows_.size()) {
        Raise(SubscriptOutOfRange);
    }
    solution.clear();
    if (!parsed_) {
        return false;
    }
    std::vector<SystemRow> rows(rows_.size());
    for (std::size_t r = 0; r < rows.size(); ++r) {
        rows[r].lhs = rows_[r];
        rows[r].value = Carried(rhs[r]);
    }
    Solver solver(parameterCount_, SolverDisplay::Silent, NoOutput, NoTexts, std::move(rows));
    if (!solver.Run()) {
        return false;
    }
    for (const SolvedRow& row : solver.Solution()) {
        solution.push_back(row.value);
    }
    return true;
}

} // namespace lorvane
