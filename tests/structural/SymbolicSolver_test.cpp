#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "frame/Int16.h"
#include "frame/NumberText.h"
#include "frame/RuntimeError.h"
#include "numeric/Matrix.h"
#include "numeric/MatrixProducts.h"
#include "numeric/Pattern.h"
#include "structural/StructuralRoad.h"
#include "structural/StructuralVariance.h"
#include "structural/SymbolicSolver.h"
#include "support/Reference.h"

namespace lorvane {
namespace {

using test::PatternOf;

// A moment system B'B = c as the structural screens build it: the rows (i, j), j <= i, whose
// moment is not "0", the right-hand sides rounded to single precision.
struct MomentSystem {
    Int16 parameters;
    std::vector<std::string> lhs;
    std::vector<double> rhs;

    std::vector<std::string> RhsTexts() const {
        std::vector<std::string> texts;
        for (const double value : rhs) {
            texts.push_back(Trim(NumberToText(value)));
        }
        return texts;
    }
};

MomentSystem SystemOf(const Pattern& pattern, const Matrix& B) {
    const StructuralSystem structure(pattern);
    MomentSystem system{structure.ParameterCount(), structure.Equations(), {}};
    const Matrix moments = CrossProduct(B);
    for (const auto& [i, j] : structure.EquationPlaces()) {
        system.rhs.push_back(ToSingle(moments(i, j)));
    }
    return system;
}

std::vector<double> Values(const std::vector<std::string>& texts) {
    std::vector<double> values;
    for (const std::string& text : texts) {
        values.push_back(Val(text));
    }
    return values;
}

std::vector<std::string> LinesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::size_t start = 0;
    for (std::size_t end; (end = text.find("\r\n", start)) != std::string::npos; start = end + 2) {
        lines.push_back(text.substr(start, end - start));
    }
    EXPECT_EQ(start, text.size()) << "a line without its line end";
    return lines;
}

// The lines of a step log that tell a step.
std::vector<std::string> StepLines(const std::string& log) {
    std::vector<std::string> steps;
    for (const std::string& line : LinesOf(log)) {
        if (line.starts_with("Solve") || line.starts_with("Substitute")) {
            steps.push_back(line);
        }
    }
    return steps;
}

// What a visible solve sent out.
struct Watch {
    std::string log;
    std::vector<std::string> captions;
    int pauses = 0;

    SolverOutput Output() {
        return {&log, [this](const std::string& caption) { captions.push_back(caption); },
                [this] { ++pauses; }};
    }
};

TEST(SymbolicSolverText, FindAroundSplitsAtTheFirstWholeTarget) {
    std::string left = "old";
    std::string right = "old";
    Int16 ok;
    FindAround("b(2)b(1)+b(1)b(3)", "b(1)", left, right, ok);
    EXPECT_EQ(ok, 1);
    EXPECT_EQ(left, "b(2)");
    EXPECT_EQ(right, "+b(1)b(3)");

    // The closing bracket belongs to the target.
    FindAround("b(11)b(2)+b(3)b(12)", "b(1)", left, right, ok);
    EXPECT_EQ(ok, 0);
    EXPECT_EQ(left, "");
    EXPECT_EQ(right, "");

    FindAround("b(1)b(2)", "b(1)b(2)", left, right, ok);
    EXPECT_EQ(ok, 1);
    EXPECT_EQ(left + right, "");
}

TEST(SymbolicSolverText, NegateExpressionSwapsEverySign) {
    EXPECT_EQ(NegateExpression("b(3)b(4)+b(5)b(6)-b(7)b(8)"), "b(3)b(4)-b(5)b(6)+b(7)b(8)");
    EXPECT_EQ(NegateExpression("-b(1)b(2)+-"), "+b(1)b(2)-+");
    EXPECT_EQ(NegateExpression("b(1)b(2)"), "b(1)b(2)");
    // The swap goes through these words: in a text with a sign they become signs too.
    EXPECT_EQ(NegateExpression("<plus>+"), "+-");
    EXPECT_EQ(NegateExpression("<plus>"), "<plus>");
}

// Each row brings one new unknown: squares and single products solve it without substitution,
// and the solution is listed by parameter number although b(3) is solved first.
TEST(SymbolicSolver, TriangularSystemByRootsAndDivisions) {
    std::vector<std::string> lhs = {"b(1)b(2)", "b(3)b(3)", "b(2)b(3)", "b(4)b(1)"};
    std::vector<std::string> rhs = {"6", "16", "12", "-3"};
    Watch watch;
    EXPECT_EQ(SolveSystem(SolverDisplay::StepsOnly, 4, lhs, rhs, watch.Output()), 1);
    EXPECT_EQ(lhs, (std::vector<std::string>{"b(1)", "b(2)", "b(3)", "b(4)"}));
    EXPECT_EQ(rhs, (std::vector<std::string>{"2", "3", "4", "-1.5"}));
    EXPECT_EQ(StepLines(watch.log), (std::vector<std::string>{"Solve b(3)b(3) = 16:", "Solve b(2)",
                                                              "Solve b(1)", "Solve b(4)"}));
    EXPECT_TRUE(watch.captions.empty()) << "StepsOnly leaves the progress line alone";
}

// A small solve written out by hand, step by step: the given texts stand until their row
// changes, every new value is the trimmed number text.
TEST(SymbolicSolver, StepLogOfAVisibleSolve) {
    std::vector<std::string> lhs = {"b(1)b(1)+b(2)b(2)", "b(2)b(3)", "b(3)b(3)"};
    std::vector<std::string> rhs = {"5.0", "1", "4"};
    Watch watch;
    EXPECT_EQ(SolveSystem(SolverDisplay::Visible, 3, lhs, rhs, watch.Output()), 1);
    EXPECT_EQ(LinesOf(watch.log),
              (std::vector<std::string>{"Solve b(3)b(3) = 4:",
                                        "New system:",
                                        "b(3) = 2",
                                        "b(1)b(1)+b(2)b(2) = 5.0",
                                        "b(2)b(3) = 1",
                                        "",
                                        "Solve b(2)",
                                        "New system:",
                                        "b(3) = 2",
                                        "b(2) = .5",
                                        "b(1)b(1)+b(2)b(2) = 5.0",
                                        "",
                                        "Substitute b(2).b(2) = .25 and solve the system",
                                        "New system:",
                                        "b(3) = 2",
                                        "b(2) = .5",
                                        "b(1)b(1) = 4.75",
                                        "",
                                        "Solve b(1)b(1) = 4.75:",
                                        "New system:",
                                        "b(3) = 2",
                                        "b(2) = .5",
                                        "b(1) = 2.17944947177034",
                                        "",
                                        ""}));
    EXPECT_EQ(watch.captions,
              (std::vector<std::string>{" Solving the structural model. Done 67%",
                                        " Solving the structural model. Done 100%"}));
    EXPECT_GT(watch.pauses, 0);
    EXPECT_EQ(lhs, (std::vector<std::string>{"b(1)", "b(2)", "b(3)"}));
    EXPECT_EQ(rhs, (std::vector<std::string>{"2.17944947177034", ".5", "2"}));

    // The same solve in silence writes nothing, calls nothing and gives the same lists.
    std::vector<std::string> quietLhs = {"b(1)b(1)+b(2)b(2)", "b(2)b(3)", "b(3)b(3)"};
    std::vector<std::string> quietRhs = {"5.0", "1", "4"};
    Watch quiet;
    quiet.log = "kept";
    EXPECT_EQ(SolveSystem(SolverDisplay::Silent, 3, quietLhs, quietRhs, quiet.Output()), 1);
    EXPECT_EQ(quiet.log, "kept");
    EXPECT_TRUE(quiet.captions.empty());
    EXPECT_EQ(quiet.pauses, 0);
    EXPECT_EQ(quietLhs, lhs);
    EXPECT_EQ(quietRhs, rhs);
}

TEST(SymbolicSolver, SquareWithoutPositiveRightHandSideStops) {
    std::vector<std::string> lhs = {"b(2)b(2)", "b(1)b(1)", "b(1)b(2)"};
    std::vector<std::string> rhs = {"4", "0", "1"};
    Watch watch;
    EXPECT_EQ(SolveSystem(SolverDisplay::Visible, 2, lhs, rhs, watch.Output()), 0);
    EXPECT_EQ(watch.log, "Solve b(1)b(1) = 0\r\nHowever, the right-hand side is not positive!\r\n");
    EXPECT_EQ(lhs, (std::vector<std::string>{"b(2)b(2)", "b(1)b(1)", "b(1)b(2)"}));
    EXPECT_EQ(rhs, (std::vector<std::string>{"4", "0", "1"}));

    // A square that a substitution leaves at zero ends the solve there, without the stall words.
    lhs = {"b(2)b(2)+b(1)b(1)", "b(1)b(1)"};
    rhs = {"1", "1"};
    watch.log.clear();
    EXPECT_EQ(SolveSystem(SolverDisplay::Visible, 2, lhs, rhs, watch.Output()), 0);
    EXPECT_TRUE(watch.log.ends_with("Solve b(2)b(2) = 0\r\n"
                                    "However, the right-hand side is not positive!\r\n"));
    EXPECT_EQ(watch.log.find("System could not be solved completely!"), std::string::npos);
    EXPECT_EQ(lhs, (std::vector<std::string>{"b(2)b(2)"}));
    EXPECT_EQ(rhs, (std::vector<std::string>{"0"}));

    // Without a square nothing begins.
    lhs = {"b(1)b(2)"};
    rhs = {"1"};
    EXPECT_EQ(SolveSystem(SolverDisplay::Silent, 2, lhs, rhs), 0);
}

// A duplicate row only checks a known b: no value is compared, the first value stands, and each
// parameter is in the solution once. A consistency row (a square or product of known b's) must
// agree with them.
TEST(SymbolicSolver, DuplicateRowsOnlyCheck) {
    std::vector<std::string> lhs = {"b(1)b(1)", "b(1)b(1)", "b(2)b(2)", "b(1)b(1)"};
    std::vector<std::string> rhs = {"4", "4", "9", "4"};
    Watch watch;
    EXPECT_EQ(SolveSystem(SolverDisplay::Visible, 2, lhs, rhs, watch.Output()), 1);
    EXPECT_EQ(lhs, (std::vector<std::string>{"b(1)", "b(2)"}));
    EXPECT_EQ(rhs, (std::vector<std::string>{"2", "3"}));
    EXPECT_EQ(watch.captions.back(), " Solving the structural model. Done 100%");

    // A second square that disagrees: the equations have no common solution.
    lhs = {"b(1)b(1)", "b(1)b(1)", "b(1)b(2)"};
    rhs = {"4", "9", "1"};
    Watch disagreeing;
    EXPECT_EQ(SolveSystem(SolverDisplay::StepsOnly, 2, lhs, rhs, disagreeing.Output()), 0);
    EXPECT_TRUE(disagreeing.log.ends_with(
        "Solve b(1)b(1) = 9\r\nHowever, this equation does not agree with the values already "
        "found!\r\n"));

    // A row left over when every b is known is checked as well.
    lhs = {"b(1)b(1)", "b(2)b(2)", "b(1)b(1)+b(2)b(2)"};
    rhs = {"4", "9", "14"};
    EXPECT_EQ(SolveSystem(SolverDisplay::Silent, 2, lhs, rhs), 0);
    lhs = {"b(1)b(1)", "b(2)b(2)", "b(1)b(1)+b(2)b(2)"};
    rhs = {"4", "9", "13"};
    EXPECT_EQ(SolveSystem(SolverDisplay::Silent, 2, lhs, rhs), 1);
}

// Remainders with minus signs: a product taken from the front before a "-" turns the signs of
// the rest, one taken from the middle or the end before a "-" adds its value.
TEST(SymbolicSolver, SubstitutionKeepsTheSignsOfRemainders) {
    std::vector<std::string> lhs = {"b(1)b(1)", "b(2)b(2)", "b(1)b(2)-b(3)b(3)+b(2)b(2)",
                                    "b(4)b(4)-b(1)b(2)-b(2)b(2)"};
    std::vector<std::string> rhs = {"4", "9", "14", "10"};
    Watch watch;
    EXPECT_EQ(SolveSystem(SolverDisplay::StepsOnly, 4, lhs, rhs, watch.Output()), 1);
    EXPECT_NE(watch.log.find("\r\nb(3)b(3)-b(2)b(2) = -8\r\nb(4)b(4)-b(2)b(2) = 16\r\n"),
              std::string::npos);
    EXPECT_EQ(lhs, (std::vector<std::string>{"b(1)", "b(2)", "b(3)", "b(4)"}));
    EXPECT_EQ(rhs, (std::vector<std::string>{"2", "3", "1", "5"}));
}

// Squares found after a substitution sweep are followed one new row at a time: b(3), solved
// together with b(2), has its products taken out only after b(5).
TEST(SymbolicSolver, SubstitutionFollowsOneNewRowAtATime) {
    std::vector<std::string> lhs = {"b(1)b(1)", "b(2)b(2)+b(1)b(1)", "b(3)b(3)+b(1)b(1)",
                                    "b(4)b(4)+b(3)b(3)", "b(5)b(5)+b(2)b(2)"};
    std::vector<std::string> rhs = {"1", "5", "10", "25", "29"};
    Watch watch;
    EXPECT_EQ(SolveSystem(SolverDisplay::StepsOnly, 5, lhs, rhs, watch.Output()), 1);
    EXPECT_EQ(StepLines(watch.log),
              (std::vector<std::string>{
                  "Solve b(1)b(1) = 1:", "Substitute b(1).b(1) = 1 and solve the system",
                  "Substitute b(1).b(1) = 1 and solve the system", "Solve b(2)b(2) = 4:",
                  "Solve b(3)b(3) = 9:", "Substitute b(2).b(2) = 4 and solve the system",
                  "Solve b(5)b(5) = 25:", "Substitute b(3).b(3) = 9 and solve the system",
                  "Solve b(4)b(4) = 16:"}));
    EXPECT_EQ(rhs, (std::vector<std::string>{"1", "2", "3", "4", "5"}));
}

Matrix BOf(const std::vector<std::vector<double>>& rows) {
    const int k = static_cast<int>(rows.size());
    Matrix B(k, k);
    for (int i = 1; i <= k; ++i) {
        for (int j = 1; j <= k; ++j) {
            B(i, j) = rows[i - 1][j - 1];
        }
    }
    return B;
}

// b(1)b(2) stands whole in the list when both are known: the substitution sweep stops there,
// and the single products find b(2) a second time in it. That row only checks the known values;
// b(3) still has to come from the last row.
TEST(SymbolicSolver, WholeProductRowLeavesTheSweep) {
    std::vector<std::string> lhs = {"b(1)b(1)", "b(2)b(2)", "b(1)b(2)", "b(3)b(3)+b(2)b(2)"};
    std::vector<std::string> rhs = {"1", "4", "2", "13"};
    Watch watch;
    EXPECT_EQ(SolveSystem(SolverDisplay::StepsOnly, 3, lhs, rhs, watch.Output()), 1);
    EXPECT_EQ(lhs, (std::vector<std::string>{"b(1)", "b(2)", "b(3)"}));
    EXPECT_EQ(rhs, (std::vector<std::string>{"1", "2", "3"}));
    // The consistency row is in the table, not in the solution; b(2)b(2) is substituted.
    EXPECT_NE(watch.log.find("b(1)b(2) = 2"), std::string::npos);
    EXPECT_NE(watch.log.find("Substitute b(2).b(2) = 4"), std::string::npos);
}

// Neither a square of a known b nor a single product with two known factors solves a b again:
// with those rows alone the count stays short and the solve fails.
TEST(SymbolicSolver, KnownFactorsNeverCountTwice) {
    std::vector<std::string> lhs = {"b(1)b(1)", "b(1)b(2)", "b(2)b(2)", "b(3)b(3)+b(1)b(3)"};
    std::vector<std::string> rhs = {"4", "6", "9", "5"};
    EXPECT_EQ(SolveSystem(SolverDisplay::Silent, 3, lhs, rhs), 0);
    const std::vector<std::string> only = {"b(1)b(1)", "b(1)b(2)", "b(2)b(2)"};
    std::vector<double> solution;
    EXPECT_FALSE(CompiledSystem(3, only).Solve({4, 6, 9}, solution));
}

// Equation 1 with variable 3 on the right, equation 2 with 4 and 5, equation 3 with 5, the last
// two alone: a chain where a row of two known factors used to solve b(5) again, so that b(9)
// was never solved and every value after the repeat moved one place.
TEST(SymbolicSolver, ChainSolvesEveryUnknownOnce) {
    const Pattern pattern = PatternOf(
        {{1, 0, 1, 0, 0}, {0, 1, 0, 1, 1}, {0, 0, 1, 0, 1}, {0, 0, 0, 1, 0}, {0, 0, 0, 0, 1}});
    const Matrix B = BOf({{1.3, 0, -0.4, 0, 0},
                          {0, 0.8, 0, 0.6, -0.2},
                          {0, 0, 2.1, 0, 0.7},
                          {0, 0, 0, 1.7, 0},
                          {0, 0, 0, 0, 0.9}});
    const MomentSystem system = SystemOf(pattern, B);
    std::vector<std::string> lhs = system.lhs;
    std::vector<std::string> rhs = system.RhsTexts();
    ASSERT_EQ(SolveSystem(SolverDisplay::Silent, system.parameters, lhs, rhs), 1);
    ASSERT_EQ(lhs.size(), 9u);
    for (std::size_t p = 0; p < lhs.size(); ++p) {
        EXPECT_EQ(lhs[p], "b(" + std::to_string(p + 1) + ")");
    }
    const MomentSystem again = SystemOf(pattern, BuildB(pattern, Values(rhs)));
    for (std::size_t r = 0; r < again.rhs.size(); ++r) {
        EXPECT_NEAR(again.rhs[r], system.rhs[r], 1e-6 * (1 + std::fabs(system.rhs[r])))
            << system.lhs[r];
    }
}

// The free elements of B in the order of their numbers.
std::vector<double> FreeElements(const Pattern& pattern, const Matrix& B) {
    std::vector<double> b;
    for (int i = 1; i <= pattern.Size(); ++i) {
        for (int j = 1; j <= pattern.Size(); ++j) {
            if (pattern(i, j) != 0) {
                b.push_back(B(i, j));
            }
        }
    }
    return b;
}

// The recursive model of the example data: B = C^-1 A from the independent coefficients.
TEST(SymbolicSolver, RecursiveModelOfTheExampleData) {
    const auto& reference = test::E1Reference()["structural_lower_triangular"];
    const Pattern pattern = PatternOf(reference["pattern"].get<std::vector<std::vector<int>>>());
    const auto& a = reference["a"];
    const auto c = reference["c"].get<std::vector<double>>();
    Matrix B(3, 3);
    for (int i = 1; i <= 3; ++i) {
        B(i, i) = 1 / c[i - 1];
        for (int j = 1; j < i; ++j) {
            const std::string place = "(" + std::to_string(i) + "," + std::to_string(j) + ")";
            B(i, j) = -a[place].get<double>() / c[i - 1];
        }
    }
    const MomentSystem system = SystemOf(pattern, B);
    ASSERT_EQ(system.parameters, 6);
    std::vector<std::string> lhs = system.lhs;
    std::vector<std::string> rhs = system.RhsTexts();
    ASSERT_EQ(SolveSystem(SolverDisplay::Silent, system.parameters, lhs, rhs), 1);
    ASSERT_EQ(lhs, (std::vector<std::string>{"b(1)", "b(2)", "b(3)", "b(4)", "b(5)", "b(6)"}));
    const std::vector<double> b = Values(rhs);
    const std::vector<double> expected = FreeElements(pattern, B);
    for (std::size_t p = 0; p < b.size(); ++p) {
        EXPECT_NEAR(b[p], expected[p], 1e-6 * std::fabs(expected[p])) << "b(" << p + 1 << ")";
    }
    const MomentSystem again = SystemOf(pattern, BuildB(pattern, b));
    for (std::size_t r = 0; r < again.rhs.size(); ++r) {
        EXPECT_NEAR(again.rhs[r], system.rhs[r], 1e-6 * std::fabs(system.rhs[r])) << lhs[r];
    }
}

// Fifteen parameters: b(1) must not be found in b(11)..b(15), nor b(2) in b(12).
TEST(SymbolicSolver, TwoDigitParametersAreOtherUnknowns) {
    const Pattern pattern = PatternOf(
        {{1, 0, 0, 0, 0}, {1, 1, 0, 0, 0}, {1, 1, 1, 0, 0}, {1, 1, 1, 1, 0}, {1, 1, 1, 1, 1}});
    const Matrix B = BOf({{1.5, 0, 0, 0, 0},
                          {0.3, 2, 0, 0, 0},
                          {-0.7, 0.2, 1.2, 0, 0},
                          {0.4, -0.6, 0.5, 0.9, 0},
                          {0.8, 0.1, -0.3, 0.6, 1.1}});
    const MomentSystem system = SystemOf(pattern, B);
    std::vector<std::string> lhs = system.lhs;
    std::vector<std::string> rhs = system.RhsTexts();
    ASSERT_EQ(SolveSystem(SolverDisplay::Silent, system.parameters, lhs, rhs), 1);
    ASSERT_EQ(lhs.size(), 15u);
    EXPECT_EQ(lhs[10], "b(11)");
    const std::vector<double> b = Values(rhs);
    const std::vector<double> expected = FreeElements(pattern, B);
    for (std::size_t p = 0; p < b.size(); ++p) {
        EXPECT_NEAR(b[p], expected[p], 1e-5) << lhs[p];
    }
}

TEST(SymbolicSolver, RowsOfAnotherFormAreRefused) {
    for (const std::string row : {"b(1)b(1)+b(2)", "b(01)b(1)", "-b(1)b(1)", "b(1) b(1)", "0"}) {
        std::vector<std::string> lhs = {"b(1)b(1)", row};
        std::vector<std::string> rhs = {"1", "1"};
        EXPECT_EQ(SolveSystem(SolverDisplay::Silent, 1, lhs, rhs), 0) << row;
        EXPECT_EQ(lhs[1], row);
        std::vector<double> solution;
        EXPECT_FALSE(CompiledSystem(1, {"b(1)b(1)", row}).Solve({1, 1}, solution)) << row;
    }
    // Blanks around a row are trimmed.
    std::vector<std::string> lhs = {"  b(1)b(1) "};
    std::vector<std::string> rhs = {"9"};
    EXPECT_EQ(SolveSystem(SolverDisplay::Silent, 1, lhs, rhs), 1);
    EXPECT_EQ(rhs, (std::vector<std::string>{"3"}));
}

// The outcome of one solve: the values and the run-time error, if any.
struct Outcome {
    bool ok = false;
    std::vector<std::string> names;
    std::vector<double> values;
    std::optional<int> error;
};

Outcome ByText(const MomentSystem& system, const std::vector<double>& rhs) {
    Outcome outcome;
    std::vector<std::string> lhs = system.lhs;
    std::vector<std::string> texts;
    for (const double value : rhs) {
        texts.push_back(Trim(NumberToText(value)));
    }
    try {
        outcome.ok = SolveSystem(SolverDisplay::Silent, system.parameters, lhs, texts) == 1;
    } catch (const RuntimeError& error) {
        outcome.error = error.Number();
    }
    if (outcome.ok) {
        outcome.names = lhs;
        outcome.values = Values(texts);
    }
    return outcome;
}

Outcome ByTables(const CompiledSystem& compiled, const std::vector<double>& rhs) {
    Outcome outcome;
    try {
        outcome.ok = compiled.Solve(rhs, outcome.values);
    } catch (const RuntimeError& error) {
        outcome.error = error.Number();
    }
    if (!outcome.ok) {
        outcome.values.clear();
    }
    return outcome;
}

// A random pattern of one of four kinds: lower or upper triangular with holes, a lower
// triangular one with its variables renumbered (not triangular, still solvable), or free places
// anywhere. The diagonal is always free.
Pattern RandomPattern(int k, int kind, std::mt19937& random) {
    std::uniform_int_distribution<int> cell(-1, 1);
    std::vector<int> order(static_cast<std::size_t>(k));
    for (int i = 0; i < k; ++i) {
        order[static_cast<std::size_t>(i)] = i + 1;
    }
    if (kind == 2) {
        std::shuffle(order.begin(), order.end(), random);
    }
    Pattern pattern(k);
    for (int i = 1; i <= k; ++i) {
        for (int j = 1; j <= k; ++j) {
            const int row = order[static_cast<std::size_t>(i - 1)];
            const int col = order[static_cast<std::size_t>(j - 1)];
            const bool allowed = kind == 3 || (kind == 1 ? j > i : j < i);
            pattern(row, col) = i == j ? 1 : (allowed ? cell(random) : 0);
        }
    }
    return pattern;
}

// Both entries solve the same numbers to the same bits, or fail together.
TEST(SymbolicSolverCompiled, SameSolutionsAsTheTextSolve) {
    std::mt19937 random(20240611);
    std::uniform_real_distribution<double> diagonal(0.3, 3.0);
    std::uniform_real_distribution<double> offDiagonal(-1.5, 1.5);
    std::uniform_real_distribution<double> nudge(-1e-4, 1e-4);
    std::uniform_int_distribution<int> spoil(0, 9);
    int solved = 0;
    int failed = 0;
    int checked = 0;
    for (int k = 2; k <= 6; ++k) {
        for (int trial = 0; trial < 40; ++trial) {
            const Pattern pattern = RandomPattern(k, trial % 4, random);
            Matrix B(k, k);
            for (int i = 1; i <= k; ++i) {
                for (int j = 1; j <= k; ++j) {
                    B(i, j) =
                        pattern(i, j) == 0 ? 0 : (i == j ? diagonal(random) : offDiagonal(random));
                }
            }
            const MomentSystem system = SystemOf(pattern, B);
            const CompiledSystem compiled(system.parameters, system.lhs);
            for (int round = 0; round < 8; ++round) {
                std::vector<double> rhs = system.rhs;
                for (double& value : rhs) {
                    value = ToSingle(value * (1 + (round == 0 ? 0 : nudge(random))));
                }
                // Now and then a right-hand side of zero or below, to fail on purpose.
                if (round >= 6) {
                    rhs[static_cast<std::size_t>(spoil(random)) % rhs.size()] *=
                        round == 6 ? 0 : -1;
                }
                const Outcome text = ByText(system, rhs);
                const Outcome tables = ByTables(compiled, rhs);
                ASSERT_EQ(text.ok, tables.ok) << "k " << k << " trial " << trial;
                ASSERT_EQ(text.error, tables.error);
                ASSERT_EQ(text.values, tables.values);
                solved += text.ok ? 1 : 0;
                failed += !text.ok && !text.error ? 1 : 0;
                // A solve that succeeds gives every parameter once, and unperturbed it
                // reproduces the moments.
                if (text.ok) {
                    ASSERT_EQ(text.names.size(), static_cast<std::size_t>(system.parameters));
                    for (std::size_t p = 0; p < text.names.size(); ++p) {
                        ASSERT_EQ(text.names[p], "b(" + std::to_string(p + 1) + ")");
                    }
                }
                if (round == 0 && text.ok) {
                    const MomentSystem again = SystemOf(pattern, BuildB(pattern, text.values));
                    for (std::size_t r = 0; r < again.rhs.size(); ++r) {
                        EXPECT_NEAR(again.rhs[r], system.rhs[r],
                                    1e-6 * (1 + std::fabs(system.rhs[r])))
                            << system.lhs[r];
                    }
                    ++checked;
                }
            }
        }
    }
    EXPECT_GT(solved, 200);
    EXPECT_GT(failed, 100);
    EXPECT_GT(checked, 30);
}

} // namespace
} // namespace lorvane
