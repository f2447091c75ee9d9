#include <gtest/gtest.h>

#include "estimate/EstimateRoad.h"

using namespace lorvane;
using namespace lorvane::test;

namespace {

constexpr const char* SingularSystem =
    "Attempt to invert a (near-)singular matrix. Respecify the VAR model.";

// Samples too short for the model end in words of the screen, and the user can respecify.
class ShortSamples : public ::testing::Test {
protected:
    void Walk(const std::string& csv, const std::vector<std::pair<int, int>>& zeros) {
        WalkCsvToVARSUR(test, csv, {0, 1, 2}, 1, zeros);
        ASSERT_EQ(module().CurrentScreen, "VARSUR");
    }
    Module& module() { return test.module(); }
    Control& control(const char* name) { return Ctl(module(), "VARSUR", name); }
    std::string Press(const char* button) {
        const std::size_t before = control("Text1").Caption.size();
        module().Click("VARSUR", button);
        EXPECT_FALSE(module().Ended())
            << (module().Failure() ? module().Failure()->MessageText() : "");
        return control("Text1").Caption.substr(before);
    }

    TestModule test;
};

} // namespace

TEST_F(ShortSamples, AnExactFitHasTooFewObservationsForItsStandardErrors) {
    // Four observations, VAR(1): T = 3 equals the three coefficients of each equation.
    WalkCsvToVARSUR(test, "a,b\n1,2\n2,1\n4,5\n3,3\n", {0, 1}, 1);
    ASSERT_EQ(module().CurrentScreen, "VARSUR");
    const std::string words = "Too few observations: equation 1 has 3 coefficients and T = 3. "
                              "Respecify the VAR model.";
    EXPECT_EQ(Press("Command3"), words + "\r\n");
    EXPECT_EQ(control("Label0").Caption, " " + words);
    EXPECT_FALSE(control("Command1").Enabled);
    EXPECT_TRUE(control("Command2").Enabled);
    EXPECT_FALSE(std::filesystem::exists(module().DataFile("WALDT.TMP")));
}

TEST_F(ShortSamples, AnErrorVarianceThatRoundingLeftIndefiniteIsSingular) {
    // T = 5, three variables, VAR(1), dlinvest left out of the second equation: Sigma is
    // singular, and its decomposition meets a pivot of the wrong sign.
    Walk("a,b,c\n0.531,-0.143,3.591\n0.537,0.204,0.464\n-0.535,-0.75,0.558\n"
         "-0.464,0.849,-0.221\n-1.867,-1.377,-0.898\n-2.084,-0.082,-0.304\n",
         {{2, 1}});
    test.dialogs().QueueAnswer("OK");
    EXPECT_TRUE(Press("Command3").ends_with(std::string(SingularSystem) + "\r\n"));
    EXPECT_EQ(control("Label0").Caption, " " + std::string(SingularSystem));
    EXPECT_FALSE(control("Command1").Enabled);
    EXPECT_TRUE(control("Command2").Enabled);
}

TEST_F(ShortSamples, ScoresOfFewerObservationsThanElementsOfLAreSingular) {
    // T = 5 observations for the six free elements of L: their outer product is singular,
    // whatever its inversion makes of it.
    Walk("a,b,c\n0.5,-1.789,-0.775\n0.073,1.475,0.004\n-1.659,0.314,-1.198\n"
         "1.226,-0.256,1.781\n-0.131,-1.026,-1.47\n-0.361,0.445,1.189\n",
         {{1, 2}, {3, 1}});
    Press("Command3");
    Press("Command4");
    Press("Command4");
    EXPECT_EQ(Press("Command5"), "Variance matrix of the nonzero elements of L is singular. The "
                                 "last results will be used.\r\n");
    EXPECT_EQ(control("Label0").Caption, " Full information maximum likelihood failed");
    EXPECT_EQ(control("Text6").Caption, "0");
    EXPECT_TRUE(control("Command1").Enabled);
}
