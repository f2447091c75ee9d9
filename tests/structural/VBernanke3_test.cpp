#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <string>
#include <vector>

#include "estimate/LFiles.h"
#include "estimate/WaldTest.h"
#include "frame/TextFile.h"
#include "innovation/InnovationModel.h"
#include "numeric/Matsubs.h"
#include "platform/Random.h"
#include "structural/SimplexObjectives.h"
#include "structural/SimplexRecords.h"
#include "structural/StructuralRoad.h"
#include "support/Reference.h"

using namespace lorvane;
using namespace lorvane::test;

namespace {

using Rows = std::vector<std::vector<int>>;

const Rows RecursivePattern = {{1, 0, 0}, {-1, 1, 0}, {-1, -1, 1}};
const Rows OveridentifiedPattern = {{1, 0, 0}, {-1, 1, 0}, {-1, 0, 1}};

const nlohmann::json& Overidentification() {
    return E1Reference()["structural_overidentified"];
}

std::vector<double> Numbers(const nlohmann::json& values) {
    std::vector<double> numbers;
    for (const auto& value : values) {
        numbers.push_back(value.get<double>());
    }
    return numbers;
}

Pattern PatternOf(const Rows& rows) {
    Pattern Apat(3);
    for (int i = 1; i <= 3; ++i) {
        for (int j = 1; j <= 3; ++j) {
            Apat(i, j) = rows[static_cast<std::size_t>(i - 1)][static_cast<std::size_t>(j - 1)];
        }
    }
    return Apat;
}

// ROUTE.TMP, SVARA.TMP and BERNSV2.TMP as the specification screens leave them, then the
// search screen.
void OpenSearch(Module& module, const Rows& pattern, const std::vector<double>& start, int mark,
                const std::string& route) {
    TextOutput routeFile(module.DataFile("ROUTE.TMP"), TextOutput::Mode::Output);
    routeFile.WriteRecord(CommaRecord().Text(route));
    routeFile.Close();
    TextOutput patternFile(module.DataFile("SVARA.TMP"), TextOutput::Mode::Output);
    for (const auto& row : pattern) {
        for (const int value : row) {
            patternFile.WriteRecord(CommaRecord().Whole(value));
        }
    }
    patternFile.Close();
    TextOutput startFile(module.DataFile("BERNSV2.TMP"), TextOutput::Mode::Output);
    startFile.WriteRecord(CommaRecord().Whole(static_cast<long long>(start.size())));
    for (const double value : start) {
        startFile.WriteRecord(CommaRecord().Number(value).Whole(mark));
    }
    startFile.Close();
    module.Run([&module] { module.GoToScreen("VBernanke3"); });
}

// The objectives on the saved nonstructural estimates, to judge the screen's results.
double LogLikelihoodAt(const Module& module, const Rows& pattern, const std::vector<double>& b) {
    const Matrix L = ReadLFile(module, "BVARL.TMP");
    Matrix S(3, 3);
    for (int i = 1; i <= 3; ++i) {
        for (int j = 1; j <= 3; ++j) {
            for (int k = 1; k <= 3; ++k) {
                S(i, j) += L(i, k) * L(j, k);
            }
        }
    }
    double c0 = 0;
    SimplexObjectives objectives(PatternOf(pattern), S, Matrix(3, 3), 73, c0);
    return objectives.LogLikelihood(b);
}

class Simplex : public ::testing::Test {
protected:
    void SetUp() override {
        WalkE1ToVARSTR1(test);
        ASSERT_EQ(module().CurrentScreen, "VARSTR1");
    }

    Module& module() { return test.module(); }
    Control& control(const char* name) { return Ctl(module(), "VBernanke3", name); }
    std::filesystem::path File(const char* name) { return module().DataFile(name); }

    // The recursive model's moment solution B = L^-1: its lower triangle row by row.
    std::vector<double> RecursiveSolution() {
        const Matrix L = ReadLFile(module(), "BVARL.TMP");
        Matrix B(3, 3);
        double determinant = 0;
        Int16 flag;
        InvertMatrix(L, B, determinant, 3, flag);
        std::vector<double> b;
        for (int i = 1; i <= 3; ++i) {
            for (int j = 1; j <= i; ++j) {
                b.push_back(B(i, j));
            }
        }
        return b;
    }

    void Open(const Rows& pattern, const std::vector<double>& start, int mark = 1,
              const std::string& route = "SVARMLBERNANKE") {
        OpenSearch(module(), pattern, start, mark, route);
        parameters_ = static_cast<int>(start.size());
        ASSERT_EQ(module().CurrentScreen, "VBernanke3");
    }

    void Click(const char* button) { module().Click("VBernanke3", button); }
    void Run() { Click("Command2"); }
    void SwitchOption() { Click("Command1"); }
    std::vector<SimplexRecord> Records() { return ReadSimplexRecords(module(), parameters_); }

    // The t-values of the coefficients in A from WALDTSV.TMP: sqrt(T) a / sqrt(VA(r, r)).
    std::vector<double> TValuesOfA() {
        const ParameterFile file = ReadStructuralParameterFile(File("WALDTSV.TMP"));
        std::vector<double> t;
        for (int r = 1; r <= file.values.Size(); ++r) {
            t.push_back(std::sqrt(file.T) * file.values(r) / std::sqrt(file.variances[0](r, r)));
        }
        return t;
    }

    TestModule test;
    // The free parameters of the opened model.
    int parameters_ = 0;
};

TEST_F(Simplex, RecursiveModelReachesTheNonstructuralLikelihood) {
    Open(RecursivePattern, RecursiveSolution());
    EXPECT_FALSE(control("Command4").Enabled);
    EXPECT_FALSE(control("Command5").Visible);
    EXPECT_FALSE(control("Label1").Visible);
    EXPECT_EQ(control("Text2").Caption, "0.01");
    EXPECT_EQ(ReadFile(File("TMP.TMP")), "6\r\n");
    EXPECT_TRUE(control("Label3").Caption.ends_with(
        "Try option 2 first, and then switch to option 1. The final iteration round should be "
        "done with option 1."));
    EXPECT_TRUE(control("Text1").Caption.starts_with("\r\nStructural model:\r\n"));

    const double nonstructural = Overidentification()["nonstructural_loglik"].get<double>();
    double best = -1E+30;
    for (int run = 1; run <= 3; ++run) {
        Run();
        const std::vector<SimplexRecord> records = Records();
        ASSERT_EQ(records.size(), static_cast<std::size_t>(run));
        // A restart begins at the best record, which stays a vertex until a better one is found.
        EXPECT_GE(records.back().LogLikelihood, best);
        best = records.back().LogLikelihood;
        ExpectRelative(best, nonstructural, 1e-6, "run " + std::to_string(run));
    }
    EXPECT_TRUE(control("Command4").Enabled);
    EXPECT_TRUE(control("Label1").Visible);
    EXPECT_EQ(control("Command2").Caption, "Restart Simplex iteration");
    EXPECT_EQ(control("Label0").Caption,
              " Log-Likelihood = " + TrimLeft(FormatNumber(best, "##########.000000")));

    const std::vector<std::string> lines = Lines(control("Text1").Caption);
    ASSERT_EQ(lines.size(), 28u);
    EXPECT_EQ(lines[0], "Maximum Likelihood solution for b:");
    EXPECT_EQ(lines[2], "b(1) = " + FormatNumber(Records().back().b[0], "0.0000000E+00"));
    EXPECT_EQ(lines[9], "Log-Likelihood: " + FormatNumber(best, "0.0000000E+00"));
    EXPECT_EQ(lines[11], "Log-Likelihood of the nonstructural VAR: " +
                             FormatNumber(nonstructural, "0.0000000E+00"));
    EXPECT_EQ(lines[13], "The simplex result has been refined by Newton's method to the maximum,");
    EXPECT_TRUE(lines[14].starts_with("which raised the log-likelihood by "));
    EXPECT_EQ(lines[16], "Matrix B'B:");
    EXPECT_EQ(lines[21], "which should be close to:");
    // At the maximum B'B is the inverse of the nonstructural variance.
    EXPECT_EQ(lines[17], lines[22]);
    EXPECT_EQ(lines[26], "It is recommended to restart the simplex iteration until the");
}

TEST_F(Simplex, RecursiveModelScoreVarianceAgreesWithTheFimlVarianceOfL) {
    // Just identified: the likelihood over b is that over L, so the t-values of the
    // coefficients by the scores of b come near those by the delta method over L.
    Open(RecursivePattern, RecursiveSolution());
    Run();
    const std::string log = ReadFile(File("OUTPUT.TXT"));
    Click("Command4");
    EXPECT_EQ(control("Label0").Caption, " Structural VAR model: Estimation results");
    EXPECT_TRUE(control("Command5").Visible && control("Command5").Enabled);
    EXPECT_TRUE(control("Command3").Enabled);
    EXPECT_FALSE(control("Command2").Visible);
    EXPECT_FALSE(control("Text2").Visible);
    const nlohmann::json& reference = E1Reference()["structural_lower_triangular"]["method1_t_a"];
    const std::vector<double> t = TValuesOfA();
    ASSERT_EQ(t.size(), 3u);
    ExpectRelative(t[0], reference["(2,1)"].get<double>(), 0.01, "t of a(2,1)");
    ExpectRelative(t[1], reference["(3,1)"].get<double>(), 0.01, "t of a(3,1)");
    ExpectRelative(t[2], reference["(3,2)"].get<double>(), 0.01, "t of a(3,2)");

    // The report goes to the log after one empty line.
    const std::string report = control("Text1").Caption;
    EXPECT_EQ(ReadFile(File("OUTPUT.TXT")), log + "\r\n" + report + "\r\n");
    for (const char* heading :
         {"\r\nMatrix B:\r\n", "\r\nMatrix B^-1:\r\n", "\r\nAsymptotic variance matrix of b():\r\n",
          "\r\nAsymptotic variance matrix of the structural parameters in A:\r\n",
          "\r\n(t-values in parenthesis)\r\n"}) {
        EXPECT_NE(report.find(heading), std::string::npos) << heading;
    }

    Click("Command5");
    EXPECT_EQ(module().CurrentScreen, "VWaldT3");
}

TEST_F(Simplex, OveridentifiedModelFromMomentsToMaximumLikelihood) {
    const std::vector<double> moments = Numbers(Overidentification()["moment_solution_b"]);
    Open(OveridentifiedPattern, moments);
    module().platform().random.seed(2024);

    SwitchOption();
    EXPECT_EQ(control("Label4").Caption, "Current option = 2");
    EXPECT_EQ(control("Command1").Caption, "Switch to option 1");
    Run();
    EXPECT_FALSE(control("Command4").Enabled);
    EXPECT_TRUE(control("Text1").Caption.starts_with("Method of Moment solution for b:\r\n"));
    SwitchOption();
    EXPECT_EQ(control("Label4").Caption, "Current option = 1");
    EXPECT_EQ(control("Command1").Caption, "Switch to option 2");
    for (int run = 1; run <= 4; ++run) {
        Run();
    }
    const SimplexRecord best = *BestByLogLikelihood(Records());
    EXPECT_NEAR(best.LogLikelihood, Overidentification()["ml_loglik"].get<double>(), 0.1);
    EXPECT_GT(best.LogLikelihood, LogLikelihoodAt(module(), OveridentifiedPattern, moments));
    EXPECT_GT(best.LogLikelihood, Records().front().LogLikelihood);

    Click("Command4");
    const std::vector<double> mlB = Numbers(Overidentification()["ml_b"]);
    double distance = 0;
    for (std::size_t k = 0; k < mlB.size(); ++k) {
        distance = std::max(distance, std::abs(best.b[k] - mlB[k]) / std::abs(mlB[k]));
    }
    const std::vector<double> t = TValuesOfA();
    ASSERT_EQ(t.size(), 2u);
    const nlohmann::json& mlT = Overidentification()["ml_t_a"];
    EXPECT_NEAR(t[0], mlT["(2,1)"].get<double>(), 0.05 + distance) << distance;
    EXPECT_NEAR(t[1], mlT["(3,1)"].get<double>(), 0.05 + distance) << distance;
}

// The first run of option 1 ends at the maximum: a restart moves nothing, and the t-values of
// the estimate are those at the maximum.
TEST_F(Simplex, OveridentifiedModelIsAtTheMaximumAfterOneRun) {
    Open(OveridentifiedPattern, Numbers(Overidentification()["moment_solution_b"]));
    // The MAD cannot reach the zero moment: option 2 is not advised.
    EXPECT_TRUE(control("Label3").Caption.ends_with(
        "Your model is over-identified: the MAD cannot fall to zero, so option 2 is of little "
        "use. Use option 1."));
    module().platform().random.seed(7);
    Run();
    const SimplexRecord first = Records().back();
    EXPECT_NEAR(first.LogLikelihood, Overidentification()["ml_loglik"].get<double>(), 1e-6);
    EXPECT_TRUE(control("Label1").Visible);
    Run();
    const SimplexRecord second = Records().back();
    EXPECT_NEAR(second.LogLikelihood, first.LogLikelihood, 1e-9);
    for (std::size_t k = 0; k < first.b.size(); ++k) {
        EXPECT_NEAR(second.b[k], first.b[k], 1e-8 * std::abs(first.b[k])) << k;
    }
    Click("Command4");
    const std::vector<double> t = TValuesOfA();
    ASSERT_EQ(t.size(), 2u);
    const nlohmann::json& mlT = Overidentification()["ml_t_a"];
    EXPECT_NEAR(t[0], mlT["(2,1)"].get<double>(), 1e-4);
    EXPECT_NEAR(t[1], mlT["(3,1)"].get<double>(), 1e-4);
}

TEST_F(Simplex, RandomStartsFollowTheScriptSeedWhateverTheClock) {
    // No start value kept: every element starts at random.
    const std::vector<double> start(5, 0.0);
    Open(OveridentifiedPattern, start, 0);
    module().platform().random.seed(99);
    Run();
    const std::vector<double> first = Records().back().b;
    EXPECT_GT(Records().back().LogLikelihood,
              LogLikelihoodAt(module(), OveridentifiedPattern, {0.01, 0, 0.01, 0, 0.01}));

    TestModule other;
    WalkE1ToVARSTR1(other);
    OpenSearch(other.module(), OveridentifiedPattern, start, 0, "SVARMLBERNANKE");
    other.module().platform().random.seed(99);
    other.clock().seconds += 3600;
    other.module().Click("VBernanke3", "Command2");
    EXPECT_EQ(ReadSimplexRecords(other.module(), 5).back().b, first);

    other.module().Click("VBernanke3", "Command3");
    OpenSearch(other.module(), OveridentifiedPattern, start, 0, "SVARMLBERNANKE");
    other.module().platform().random.seed(100);
    other.module().Click("VBernanke3", "Command2");
    EXPECT_NE(ReadSimplexRecords(other.module(), 5).back().b, first);
}

TEST_F(Simplex, TheSizeOfTheRandomStartIsMendedWhenNotPositive) {
    Open(OveridentifiedPattern, std::vector<double>(5, 0.0), 0);
    for (const char* text : {"-2", "abc", "0"}) {
        control("Text2").Caption = text;
        Run();
        EXPECT_EQ(control("Text2").Caption, "1") << text;
        EXPECT_FALSE(control("Label1").Visible);
        EXPECT_EQ(ReadFile(File("TMP.TMP")), "5\r\n");
    }
    control("Text2").Caption = "0.050";
    Run();
    EXPECT_EQ(control("Text2").Caption, ".05");
    EXPECT_EQ(Records().size(), 1u);
}

TEST_F(Simplex, ARunAfterSwitchingStartsFromTheBestRecordOfTheNewCriterion) {
    const std::vector<double> optimum = RecursiveSolution();
    Open(RecursivePattern, optimum);
    Run();
    // A record whose MAD field is the smallest though its likelihood field is the worst. Its b
    // lies so near the moments that the MAD option stops before its first round: the run's
    // result is its start.
    std::vector<double> nearOptimum = optimum;
    nearOptimum[0] *= 1 + 1e-7;
    AppendSimplexRecord(module(), {-1E+6, 0, nearOptimum});
    SwitchOption();
    EXPECT_FALSE(control("Command4").Enabled);
    Run();
    EXPECT_EQ(Records().back().b, nearOptimum);
    EXPECT_FALSE(control("Command4").Enabled);
}

TEST_F(Simplex, WithoutAnEstimateOfVarianceTheReportStopsAtBInverse) {
    const std::vector<double> optimum = RecursiveSolution();
    Open(RecursivePattern, optimum, 1, "SVARSURBERNANKE");
    Run();
    const std::string waldt = ReadFile(File("WALDT.TMP"));
    const std::string log = ReadFile(File("OUTPUT.TXT"));
    Click("Command4");
    EXPECT_EQ(control("Label0").Caption, " Structural VAR: ML Estimation results");
    EXPECT_TRUE(control("Command3").Enabled);
    EXPECT_TRUE(control("Command5").Visible && control("Command5").Enabled);
    const std::string report = control("Text1").Caption;
    EXPECT_EQ(report.find("Asymptotic variance"), std::string::npos);
    EXPECT_TRUE(report.ends_with("x Innovation\r\n\r\nThe t-values cannot be computed without the "
                                 "FIML variance of L.\r\n\r\n"));
    EXPECT_EQ(ReadFile(File("WALDT.TMP")), waldt);
    EXPECT_EQ(ReadFile(File("OUTPUT.TXT")), log);
    EXPECT_FALSE(std::filesystem::exists(File("WALDTSV.TMP")));

    // B^-1 of the recursive model is L, and takes its place.
    const Matrix L = ReadLFile(module(), "BVARL.TMP");
    const Matrix F = ReadLFile(module());
    for (int i = 1; i <= 3; ++i) {
        for (int j = 1; j <= 3; ++j) {
            EXPECT_NEAR(F(i, j), L(i, j), 1e-4 * std::abs(L(1, 1))) << i << "," << j;
        }
    }
    EXPECT_EQ(ReadFile(File("VARLPAT.TMP")), "1\r\n0\r\n0\r\n1\r\n1\r\n0\r\n1\r\n1\r\n1\r\n");
}

TEST_F(Simplex, ASingularEstimateIsToldAndLeavesTheWayBack) {
    Open(RecursivePattern, RecursiveSolution());
    Run();
    AppendSimplexRecord(module(), {1E+9, 1, {0, 1, 1, 1, 1, 1}});
    const std::string log = ReadFile(File("OUTPUT.TXT"));
    test.dialogs().QueueAnswer("OK");
    Click("Command4");
    const std::string message = "Matrix B is singular. Respecify your model!";
    ASSERT_FALSE(test.dialogs().Shown().empty());
    EXPECT_NE(test.dialogs().Shown().back().find(message), std::string::npos);
    EXPECT_TRUE(control("Text1").Caption.ends_with(message + "\r\n"));
    EXPECT_EQ(control("Label0").Caption, " Try again");
    EXPECT_TRUE(control("Command3").Enabled);
    EXPECT_FALSE(control("Command5").Enabled);
    EXPECT_EQ(ReadFile(File("OUTPUT.TXT")), log);

    Click("Command3");
    EXPECT_EQ(module().CurrentScreen, "VARSTR1");
}

TEST_F(Simplex, TheInnovationAnalysisReadsTheStructuralFactor) {
    const InnovationModel nonstructural = ReadInnovationModel(module(), 3, 2, 73, 1);
    Open(OveridentifiedPattern, Numbers(Overidentification()["moment_solution_b"]));
    Run();
    Click("Command4");
    const InnovationModel structural = ReadInnovationModel(module(), 3, 2, 73, 1);

    EXPECT_EQ(structural.Theta, nonstructural.Theta);
    EXPECT_EQ(structural.VA, nonstructural.VA);
    // B^-1 has the pattern of B: the (3,2) element is zero and drops out of the parameters.
    const Matrix F = ReadLFile(module());
    EXPECT_EQ(structural.L, F);
    EXPECT_EQ(F(3, 2), 0);
    EXPECT_EQ(F(1, 2), 0);
    EXPECT_EQ(structural.NL, 5);
    ASSERT_EQ(structural.VL.Rows(), 5);
    for (int r = 1; r <= 5; ++r) {
        EXPECT_GT(structural.VL(r, r), 0);
        for (int s = 1; s <= 5; ++s) {
            EXPECT_NEAR(structural.VL(r, s), structural.VL(s, r), 1e-12 * structural.VL(r, r));
        }
    }
}

} // namespace

TEST(SimplexRoad, FromTheMethodChoiceToTheStructuralTests) {
    TestModule test;
    WalkE1ToVARSTR1(test);
    SpecifyStructural(test, test::Overidentified);
    Module& module = test.module();
    ASSERT_EQ(module.CurrentScreen, "VBernanke2");
    module.Click("VBernanke2", "Command4");
    ASSERT_EQ(module.CurrentScreen, "VBernanke3");
    module.Click("VBernanke3", "Command2");
    module.Click("VBernanke3", "Command2");
    const SimplexRecord best = *BestByLogLikelihood(ReadSimplexRecords(module, 5));
    EXPECT_NEAR(best.LogLikelihood, Overidentification()["ml_loglik"].get<double>(), 0.1);
    module.Click("VBernanke3", "Command4");
    EXPECT_EQ(Ctl(module, "VBernanke3", "Label0").Caption,
              " Structural VAR model: Estimation results");
    module.Click("VBernanke3", "Command5");
    EXPECT_EQ(module.CurrentScreen, "VWaldT3");
}

// Work files of another model, or cut short, end the search with the read error before anything
// is sized by them; the unharmed files let the same steps go through.
TEST(DamagedSearchFiles, FilesThatDoNotFitTheModelAreItsReadError) {
    // The search opened on the overidentified model (five free parameters), the damage done, then
    // one run. The number of the run-time error that ended the module, or 0.
    auto runAfter = [](const std::vector<double>& start,
                       const std::function<void(Module&)>& damage) {
        TestModule test;
        WalkE1ToVARSTR1(test);
        Module& module = test.module();
        OpenSearch(module, OveridentifiedPattern, start, 1, "SVARMLBERNANKE");
        if (!module.Failure()) {
            damage(module);
            module.Click("VBernanke3", "Command2");
        }
        return module.Failure() ? module.Failure()->Number() : 0;
    };
    const std::vector<double> moments = Numbers(Overidentification()["moment_solution_b"]);
    const auto unharmed = [](Module&) {};
    EXPECT_EQ(runAfter(moments, unharmed), 0);
    // Start values for one parameter too few or too many.
    EXPECT_EQ(runAfter({moments.begin(), moments.end() - 1}, unharmed), InputPastEndOfFile);
    EXPECT_EQ(runAfter({0.1, 0, 0.1, 0, 0.1, 0}, unharmed), InputPastEndOfFile);
    // Records of a model of four parameters, and a record cut short.
    EXPECT_EQ(runAfter(moments,
                       [](Module& module) {
                           WriteFile(module.DataFile("TMP.TMP"),
                                     "4\r\n-10,1\r\n1\r\n1\r\n1\r\n1\r\n");
                       }),
              InputPastEndOfFile);
    EXPECT_EQ(runAfter(moments,
                       [](Module& module) {
                           WriteFile(module.DataFile("TMP.TMP"), "5\r\n-10,1\r\n1\r\n1\r\n");
                       }),
              InputPastEndOfFile);
    // The saved L of two variables where the model has three.
    EXPECT_EQ(runAfter(moments,
                       [](Module& module) {
                           WriteFile(module.DataFile("BVARL.TMP"), "2\r\n1\r\n0\r\n0.5\r\n1\r\n");
                       }),
              InputPastEndOfFile);
}
