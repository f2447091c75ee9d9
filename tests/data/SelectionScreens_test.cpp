#include <gtest/gtest.h>

#include "data/CsvImport.h"
#include "data/SelVar1.h"
#include "frame/ModuleEnded.h"
#include "frame/Startup.h"
#include "support/E1Road.h"
#include "support/TestModule.h"

using namespace lorvane;
using lorvane::test::ReadFile;
using lorvane::test::TestModule;

namespace {

// A module started on a work folder that holds the given CSV data.
class SelectionTest : public ::testing::Test {
protected:
    void StartWith(const std::string& csv) { lorvane::test::StartWith(test, csv); }
    void StartWithE1() { StartWith(lorvane::test::E1Csv()); }

    Module& module() { return test.module(); }
    Screen& screen(const char* name) { return *module().LoadedScreen(name); }
    Control& control(const char* screenName, const char* name) { return screen(screenName)(name); }
    void Click(const char* screenName, const char* name, int times = 1) {
        for (int i = 0; i < times; ++i) {
            module().Click(screenName, name);
        }
    }
    void DoubleClick(int item) { module().DoubleClick("SelVar1", "List2", item); }

    TestModule test;
};

} // namespace

TEST_F(SelectionTest, TheTypicalRoadOnTheExampleData) {
    StartWithE1();
    const Control& available = control("SelVar1", "List2");
    EXPECT_EQ(available.Items, (std::vector<std::string>{"invest", "income", "cons", "dlinvest",
                                                         "dlincome", "dlcons"}));
    EXPECT_EQ(control("SelVar1", "Label0").Caption, " Select the variables in your VAR model");
    EXPECT_EQ(control("SelVar1", "Label3").Caption, "Select minimal 2 variables.");
    EXPECT_FALSE(control("SelVar1", "Command1").Enabled);

    DoubleClick(3);
    EXPECT_EQ(control("SelVar1", "Label3").Caption, " Select 1 more!");
    DoubleClick(4);
    DoubleClick(5);
    EXPECT_EQ(control("SelVar1", "Label3").Caption, "Select minimal 2 variables.");
    EXPECT_EQ(available.Items[3], "* dlinvest");
    EXPECT_TRUE(control("SelVar1", "Command1").Enabled);
    Click("SelVar1", "Command1");

    ASSERT_EQ(module().CurrentScreen, "SelObs");
    EXPECT_EQ(control("SelObs", "Label1").Caption, " Selected variables in the VAR model");
    EXPECT_EQ(control("SelObs", "List1").Items,
              (std::vector<std::string>{"Selected variables:", "", "dlinvest", "dlincome", "dlcons",
                                        "", "First available observation: t = 2 (=1960.2)",
                                        "Last available observation: t = 92 (=1982.4)"}));

    Click("SELOBS", "SubsetYes");
    EXPECT_EQ(control("SELOBS", "SubsetYes").Caption, "Oops");
    EXPECT_EQ(control("SELOBS", "SubsetNo").Caption, "Confirm");
    ASSERT_EQ(module().PinnedScreen2, "SELSS1");
    EXPECT_EQ(control("SELSS1", "ObsList").ListCount(), 91);
    EXPECT_EQ(control("SELSS1", "Upper").Caption, "Upperbound: t = 92 (1982.4)");
    Click("SELSS1", "StapX10");
    EXPECT_EQ(control("SELSS1", "UDown").Caption, "10 Down");
    Click("SELSS1", "UDown");
    Click("SELSS1", "StapOver10");
    Click("SELSS1", "UDown", 6);
    EXPECT_EQ(control("SELSS1", "NewUpperB").Caption, "76");
    EXPECT_EQ(control("SELSS1", "Upper").Caption, "Upperbound: t = 76 (1978.4)");
    Click("SELSS1", "BoundsOK");
    EXPECT_EQ(control("SELSS1", "Label0").Caption, " Chosen subsample: t = 2 to 76");
    EXPECT_EQ(module().SampleFirst, 2);
    EXPECT_EQ(module().SampleLast, 76);
    Click("SELSS1", "Continue");
    EXPECT_EQ(module().PinnedScreen2, "");
    EXPECT_EQ(module().LoadedScreen("SELSS1"), nullptr);
    EXPECT_TRUE(control("SELOBS", "Continue").Visible);
    EXPECT_EQ(control("SELOBS", "List1").Items.back(), "Last chosen observation: t = 76 (=1978.4)");

    Click("SELOBS", "Continue");
    ASSERT_EQ(module().CurrentScreen, "SelvarYInfo");
    EXPECT_EQ(control("SelvarYInfo", "Label0").Caption,
              " Characteristics of the dependent variables");
    const std::vector<std::string> firstBlock = {"dlinvest",
                                                 "  First available observation = 2 (=1960.2)",
                                                 "  Last available observation  = 92 (=1982.4)",
                                                 "  First chosen observation = 2 (=1960.2)",
                                                 "  Last chosen observation  = 76 (=1978.4)",
                                                 "  Number of usable chosen observations: 75",
                                                 "Subsample characteristics:",
                                                 "  Minimum value: -1.4018397E-001",
                                                 "  Maximum value: 1.9358475E-001",
                                                 "  Sample mean:   1.8108313E-002",
                                                 "  This variable is continuously distributed!",
                                                 ""};
    const auto& report = control("SelvarYInfo", "List2").Items;
    ASSERT_EQ(report.size(), 36u);
    EXPECT_EQ(std::vector<std::string>(report.begin(), report.begin() + 12), firstBlock);
    EXPECT_EQ(report[21], "  Sample mean:   2.0711313E-002");
    EXPECT_EQ(report[31], "  Minimum value: -1.2996573E-002");

    Click("SelvarYInfo", "Command1");
    const std::string expected =
        "Selected variables:\r\n\r\ndlinvest\r\ndlincome\r\ndlcons\r\n\r\n"
        "First available observation: t = 2 (=1960.2)\r\nLast available observation: t = 92 "
        "(=1982.4)\r\n"
        "First chosen observation: t = 2 (=1960.2)\r\nLast chosen observation: t = 76 "
        "(=1978.4)\r\n\r\n"
        "Dependent variables:\r\n\r\nY(1) = dlinvest\r\nY(2) = dlincome\r\nY(3) = dlcons\r\n\r\n"
        "Characteristics:\r\n\r\n";
    EXPECT_EQ(module().ResultText.substr(0, expected.size()), expected);
    EXPECT_EQ(module().store().LagTable.Rows(), 3);
}

TEST_F(SelectionTest, ReselectionOrderAndHighlightedItems) {
    StartWithE1();
    DoubleClick(0);
    DoubleClick(1);
    DoubleClick(0);
    DoubleClick(0);
    EXPECT_EQ(control("SelVar1", "List1").Items, (std::vector<std::string>{"income", "invest"}));
    Control& available = control("SelVar1", "List2");
    // A highlight, as the list reports it, makes the button to select them all pressable.
    EXPECT_FALSE(control("SelVar1", "Command3").Enabled);
    available.SetHighlighted(0, true);
    available.SetHighlighted(2, true);
    Click("SelVar1", "List2");
    EXPECT_TRUE(control("SelVar1", "Command3").Enabled);
    Click("SelVar1", "Command3");
    // Highlighted items leave their place and come back at the end, in list order.
    EXPECT_EQ(control("SelVar1", "List1").Items,
              (std::vector<std::string>{"income", "invest", "cons"}));
    for (int i = 0; i < 6; ++i) {
        available.SetHighlighted(i, true);
    }
    Click("SelVar1", "Command3");
    EXPECT_EQ(control("SelVar1", "List1").Items.front(), "invest");
    for (int i = 0; i < 6; ++i) {
        available.SetHighlighted(i, false);
    }
    Click("SelVar1", "List2");
    EXPECT_FALSE(control("SelVar1", "Command3").Enabled);
    Click("SelVar1", "Command1");
    EXPECT_EQ(module().store().SelectedName(1), "invest");
    EXPECT_EQ(module().store().SelectedCount(), 6);
}

TEST_F(SelectionTest, OneVariableCannotMakeAModel) {
    StartWith("x\n1\n2\n3\n");
    const std::string note = control("SelVar1", "Label2").Caption;
    EXPECT_EQ(note, "Available variable:\r\n\r\nx\r\n\r\n However, you have to select 1 variable "
                    "more, which is not "
                    "possible. Therefore, you cannot continue!");
    EXPECT_FALSE(control("SelVar1", "List2").Enabled);
    EXPECT_FALSE(control("SelVar1", "Command1").Enabled);
    EXPECT_TRUE(control("SelVar1", "Command2").Enabled);
    Click("SelVar1", "Command2");
    EXPECT_TRUE(module().Ended());
}

TEST_F(SelectionTest, DuplicateNamesLoadTheFirstTwice) {
    ImportedData data;
    data.Names = {"a", "b", "a"};
    data.Columns = {{1, 2}, {10, 20}, {100, 200}};
    WriteDataFiles(data, test.Root() / "work");
    module().Run(
        [&] { ModuleEntry(module(), (test.Root() / "work").string(), test.Root() / "start"); });
    DoubleClick(0);
    DoubleClick(2);
    Click("SelVar1", "Command1");
    EXPECT_EQ(module().store().SelectedValue(2, 1), 2);
    EXPECT_EQ(module().store().SelectedValue(2, 2), 2);
}

TEST_F(SelectionTest, NoObservationInCommon) {
    StartWith("a,b\n1,\n,2\n");
    DoubleClick(0);
    DoubleClick(1);
    Click("SelVar1", "Command1");
    EXPECT_EQ(module().CurrentScreen, "SelVar1");
    EXPECT_EQ(control("SelVar1", "Label4").Caption,
              "The chosen variables have no valid observations in common!");
    EXPECT_FALSE(control("SelVar1", "Command1").Enabled);
    EXPECT_TRUE(control("SelVar1", "Command4").Enabled);
    Click("SelVar1", "Command4");
    EXPECT_EQ(control("SelVar1", "Label4").Caption, "");
}

TEST_F(SelectionTest, AGapInsideATimeSeriesStartsAgain) {
    test.dialogs().QueueAnswer("OK");
    StartWith("year,a,b\n1990,1,5\n1991,,6\n1992,3,7\n1993,4,8\n");
    DoubleClick(0);
    DoubleClick(1);
    Click("SelVar1", "Command1");
    EXPECT_EQ(test.dialogs().Shown().back(),
              "[box] Error in data file | Missing variables are only allowed at the "
              "beginning and/or end of the data file for time series data! -> OK");
    EXPECT_EQ(module().CurrentScreen, "SelVar1");
    EXPECT_FALSE(module().Ended());
}

TEST_F(SelectionTest, GapsInACrossSectionAreCountedOnly) {
    StartWith("a,b\n1,5\n,6\n3,7\n4,9\n");
    DoubleClick(0);
    DoubleClick(1);
    Click("SelVar1", "Command1");
    EXPECT_EQ(control("SELOBS", "List1").Items.back(),
              "Number of missing variables in between:  1");
    Click("SELOBS", "SubsetNo");
    Click("SELOBS", "SubsetNo");
    EXPECT_FALSE(screen("SELOBS").IsShown(control("SELOBS", "SubsetYes")));
    EXPECT_EQ(control("SELOBS", "List1").Items.back(), "= chosen");
    Click("SELOBS", "Continue");
    EXPECT_EQ(module().CurrentScreen, "SelvarYInfo");
}

TEST_F(SelectionTest, StepButtonsAndClamps) {
    StartWith("a,b\n1,5\n2,6\n3,7\n");
    DoubleClick(0);
    DoubleClick(1);
    Click("SelVar1", "Command1");
    Click("SELOBS", "SubsetYes");
    auto step = [&] { return control("SELSS1", "Stap").Caption; };
    Click("SELSS1", "StepDown");
    EXPECT_EQ(step(), "1");
    Click("SELSS1", "StepUp", 4);
    Click("SELSS1", "StapOver10");
    EXPECT_EQ(step(), "1"); // 0.5 rounds to even, then up to the least step
    Click("SELSS1", "StepUp", 14);
    Click("SELSS1", "StapOver10");
    EXPECT_EQ(step(), "2"); // 1.5 rounds to even
    Click("SELSS1", "StepUp", 12);
    Click("SELSS1", "StapOver10");
    EXPECT_EQ(step(), "1");
    Click("SELSS1", "StapX10", 5);
    EXPECT_EQ(step(), "10000");
    Click("SELSS1", "LUp");
    Click("SELSS1", "UDown");
    // The lower bound stops at the upper, the upper at the lower: one observation.
    EXPECT_EQ(control("SELSS1", "NewLowerB").Caption, "3");
    EXPECT_EQ(control("SELSS1", "NewUpperB").Caption, "3");
    Click("SELSS1", "LDown");
    EXPECT_EQ(control("SELSS1", "NewLowerB").Caption, "1");
    EXPECT_EQ(control("SELSS1", "Lower").Caption, "Lowerbound: t = 1");
}

TEST_F(SelectionTest, AConstantVariableEndsTheModule) {
    test.dialogs().QueueAnswer("OK");
    StartWith("a,b\n1,5\n2,5\n3,5\n");
    DoubleClick(0);
    DoubleClick(1);
    Click("SelVar1", "Command1");
    Click("SELOBS", "SubsetNo");
    Click("SELOBS", "SubsetNo");
    Click("SELOBS", "Continue");
    EXPECT_TRUE(module().Ended());
    EXPECT_EQ(test.dialogs().Shown().back(), "[box] Error in module VAR | Variable b is constant "
                                             "(5)! Module VAR will be terminated. -> OK");
}

TEST_F(SelectionTest, AnAlmostConstantVariableAndTheKindsOfVariable) {
    test.dialogs().QueueAnswer("OK");
    StartWith("d,n,i,c\n0,0,1,1e-30\n1,2.5,2,2e-30\n1,3,3,1e-30\n");
    for (int i = 0; i < 4; ++i) {
        DoubleClick(i);
    }
    Click("SelVar1", "Command1");
    Click("SELOBS", "SubsetNo");
    Click("SELOBS", "SubsetNo");
    Click("SELOBS", "Continue");
    const auto& report = control("SelvarYInfo", "List2").Items;
    EXPECT_EQ(report[7], "  This variable is a zero-one dummy variable. ");
    EXPECT_EQ(report[16], "  This variable is nonnegative, with 1 zero values.");
    EXPECT_EQ(report[25], "  This variable is integer valued.");
    EXPECT_TRUE(module().Ended());
    // Values below the resolution of the number text show as 0.
    EXPECT_EQ(test.dialogs().Shown().back(),
              "[box] Error in module VAR | Variable c is almost constant (min = 0, "
              "max = 0)! Module VAR will be terminated. -> OK");
    // Values below the resolution of the number text show as 0.
    EXPECT_EQ(test.dialogs().Shown().back(),
              "[box] Error in module VAR | Variable c is almost constant (min = 0, "
              "max = 0)! Module VAR will be terminated. -> OK");
}
