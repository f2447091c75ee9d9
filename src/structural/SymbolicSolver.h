#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "frame/Int16.h"
#include "structural/SolverTerms.h"

namespace lorvane {

// How much of a solve is shown. Silent writes nothing at all; StepsOnly writes the step log but
// leaves the progress line alone; Visible writes both.
enum class SolverDisplay { Visible, StepsOnly, Silent };

// What a visible solve writes to. The step log is a growing text; progress receives each new
// caption of the progress line and may repaint; pause runs at each scanned row so that the
// screen stays alive. Any of them may be empty.
struct SolverOutput {
    std::string* stepLog = nullptr;
    std::function<void(const std::string&)> progress;
    std::function<void()> pause;
};

// Splits text around the first occurrence of target: left is all before it, right all after it.
// ok = 0 (and both pieces empty) when target does not occur.
void FindAround(std::string_view text, std::string_view target, std::string& left,
                std::string& right, Int16& ok);

// Every "+" becomes "-" and every "-" becomes "+"; a leading term without a sign is unchanged.
// The swap passes through the words "<min>" and "<plus>", so in a text with a sign these words
// become "-" and "+" as well.
std::string NegateExpression(std::string_view text);

// Solves the quadratic system SolverLhs = SolverRhs in the free elements b(1)..b(P) of B by
// symbolic substitution: square roots of rows b(i)b(i) = c, divisions of rows b(i)b(j) = c by a
// known factor, and substitution of known products into sums. Rows are sums of products in the
// form "b(1)b(1)+b(3)b(3)"; right-hand sides are numbers as text. On success (SolverOk = 1) the
// two lists hold the solution, one row per solved element in the order of the parameter number;
// on failure (0) they are left in their partial state. A left-hand side that is not of that form
// exactly fails at once, with the lists untouched. Every value the lists hold as text is used
// with the digits of its text; a division by a value of zero is run-time error 11.
Int16 SolveSystem(SolverDisplay Silent, Int16 ParameterCount, std::vector<std::string>& SolverLhs,
                  std::vector<std::string>& SolverRhs, const SolverOutput& output = {});

// The same system with its left-hand sides turned into term tables once, for the many silent
// re-solves at perturbed right-hand sides. Solve runs the very logic of SolveSystem and gives
// the same solution.
class CompiledSystem {
public:
    CompiledSystem(Int16 ParameterCount, const std::vector<std::string>& SolverLhs);

    // The values of the solution rows in the order SolveSystem gives them (one per parameter on
    // success); false when the solve fails. rhs holds the right-hand sides as numbers, row for
    // row with the left-hand sides, already in the precision the caller wants.
    // Each right-hand side enters with the digits of its number text, as in SolveSystem, so
    // that the same numbers give the same solution to the last bit.
    bool Solve(const std::vector<double>& rhs, std::vector<double>& solution) const;

private:
    Int16 parameterCount_;
    std::vector<TermRow> rows_;
    bool parsed_ = true;
};

} // namespace lorvane
