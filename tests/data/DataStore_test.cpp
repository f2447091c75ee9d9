#include <gtest/gtest.h>

#include "data/DataFiles.h"
#include "data/DataStore.h"
#include "platform/Headless.h"
#include "support/Errors.h"
#include "support/TestModule.h"

using namespace lorvane;
using lorvane::test::ErrorNumberOf;
using lorvane::test::Input1Content;
using lorvane::test::Input2Bytes;
using lorvane::test::ReadFile;
using lorvane::test::TempFolder;
using lorvane::test::WriteFile;

namespace {

constexpr double M = -99999.99;

class DataStoreTest : public ::testing::Test {
protected:
    void Write(const Input1Content& input1, const std::vector<std::string>& names,
               const std::vector<std::string>& description = {"A test set"}) {
        WriteFile(Input1(), input1.Bytes());
        WriteFile(Input2(), Input2Bytes(description, names));
    }
    std::filesystem::path Input1() const { return temp.Path() / "INPUT1.RAN"; }
    std::filesystem::path Input2() const { return temp.Path() / "INPUT2.RAN"; }
    Int16 Load(const std::vector<int>& indexList) {
        return store.LoadSelected(Input1(), Input2(), indexList, events);
    }

    TempFolder temp;
    HeadlessEventPump events;
    DataStore store;
};

// Three quarterly variables over six observations, 1990Q3 on.
Input1Content ThreeVariables() {
    Input1Content content;
    content.FirstYear = 1990;
    content.FirstPeriod = 3;
    content.Columns = {{1, 2, 3, 4, 5, 6}, {10, 20, 30, 40, 50, 60}, {-1, -2, -3, -4, -5, -6}};
    return content;
}

} // namespace

TEST_F(DataStoreTest, HeaderNamesAndDescription) {
    Write(ThreeVariables(), {"  gdp  ", "", std::string(500, 'x')},
          {"  First part", " second part", std::string(500, ' ')});

    ASSERT_EQ(store.ReadHeader(Input1()), 1);
    EXPECT_EQ(store.DataType, 2);
    EXPECT_EQ(store.FirstYear, 1990);
    EXPECT_EQ(store.FirstPeriod, 3);
    EXPECT_EQ(store.PeriodsPerYear, 4);
    EXPECT_EQ(store.ObsCount, 6);
    EXPECT_EQ(store.VarCount, 3);
    EXPECT_EQ(store.MissingCode, M);
    EXPECT_EQ(store.ObsLabelOf(1), "1990.3");
    EXPECT_EQ(store.ObsLabelOf(3), "1991.1");

    std::vector<std::string> names;
    ASSERT_EQ(ReadNames(Input2(), 3, names), 1);
    EXPECT_EQ(names, (std::vector<std::string>{"gdp", "", std::string(500, 'x')}));

    // The three records are joined before trimming: the blanks between them stay.
    std::string description;
    ASSERT_EQ(ReadDescription(Input2(), description), 1);
    EXPECT_EQ(description, "First part" + std::string(488, ' ') + " second part");
}

TEST_F(DataStoreTest, LoadKeepsTheChosenColumnsInTheChosenOrder) {
    Write(ThreeVariables(), {"a", "b", "c"});
    ASSERT_EQ(Load({3, 1}), 1);
    EXPECT_EQ(store.SelectedCount(), 2);
    EXPECT_EQ(store.SelectedRows(), 6);
    EXPECT_EQ(store.SelectedName(1), "c");
    EXPECT_EQ(store.SelectedName(2), "a");
    EXPECT_EQ(store.SelectedValue(1, 1), -1);
    EXPECT_EQ(store.SelectedValue(6, 1), -6);
    EXPECT_EQ(store.SelectedValue(4, 2), 4);
    EXPECT_EQ(store.SelectedIndexList.At(1), 3);
    EXPECT_EQ(store.Description, "A test set");
    EXPECT_GE(events.Yields(), 6 * 3); // the load stays responsive

    // A new load replaces the store with the new dimensions: k = 1, the same variable twice
    // is allowed as well.
    ASSERT_EQ(Load({2}), 1);
    EXPECT_EQ(store.SelectedCount(), 1);
    EXPECT_EQ(store.SelectedRows(), 6);
    EXPECT_EQ(store.SelectedValue(5, 1), 50);
    EXPECT_EQ(ErrorNumberOf([&] { store.SelectedValue(1, 2); }), SubscriptOutOfRange);
    ASSERT_EQ(Load({2, 2}), 1);
    EXPECT_EQ(store.SelectedValue(3, 2), 30);
}

TEST_F(DataStoreTest, ZeroMissingCodeIsReplacedInRecordOneOnly) {
    Input1Content content = ThreeVariables();
    content.MissingCode = 0;
    content.DataType = 3;
    content.FirstYear = -5;
    content.Columns[0][0] = 0; // a zero value is a value, not a missing one
    Write(content, {"a", "b", "c"});
    const std::string before = ReadFile(Input1());

    ASSERT_EQ(store.ReadHeader(Input1()), 1);
    ASSERT_EQ(store.MissingCode, 0);
    double code = DefaultMissingCode;
    ASSERT_EQ(FixMissingCode(Input1(), code), 1);
    EXPECT_EQ(code, M);
    const std::string after = ReadFile(Input1());
    ASSERT_EQ(after.size(), before.size());
    EXPECT_EQ(after.substr(0, 4), before.substr(0, 4)); // A and B of record 1 kept
    EXPECT_EQ(after.substr(4, 8), test::LittleEndianDouble(M));
    EXPECT_EQ(after.substr(12), before.substr(12));

    // Once a code is stored, it is handed back and the file stays as it is.
    double other = -1;
    ASSERT_EQ(FixMissingCode(Input1(), other), 1);
    EXPECT_EQ(other, M);
    EXPECT_EQ(ReadFile(Input1()), after);

    ASSERT_EQ(Load({1, 2}), 1);
    EXPECT_EQ(store.MissingCode, M);
    EXPECT_EQ(store.FirstCommonObs(), 1);
    EXPECT_EQ(store.LastCommonObs(), 6);
    EXPECT_EQ(store.MissingBetween(0, 0, 0), 0);

    EXPECT_EQ(FixMissingCode(temp.Path() / "NONE.RAN", code), 0);
}

TEST_F(DataStoreTest, ZeroCodeInMemoryMeansNothingIsMissing) {
    Input1Content content = ThreeVariables();
    content.MissingCode = 0;
    content.Columns[0] = {0, 0, 0, 0, 0, 0};
    Write(content, {"a", "b", "c"});
    ASSERT_EQ(Load({1}), 1);
    EXPECT_EQ(store.FirstCommonObs(), 1);
    EXPECT_EQ(store.LastCommonObs(), 6);
    EXPECT_EQ(store.MissingBetween(1, 1, 6), 0);
}

TEST_F(DataStoreTest, CommonObservationsAndMissingBetween) {
    Input1Content content;
    content.Columns = {
        {M, 2, 3, M, 5, 6, 7, M},
        {1, M, 3, 4, M, 6, 7, 8},
        {M, M, M, M, M, M, M, M},
    };
    Write(content, {"a", "b", "c"});

    ASSERT_EQ(Load({1, 2}), 1);
    EXPECT_EQ(store.FirstCommonObs(), 3);
    EXPECT_EQ(store.LastCommonObs(), 7);
    EXPECT_EQ(store.MissingBetween(0, 0, 0), 2); // t = 4 and 5, inside 3..7
    EXPECT_EQ(store.MissingBetween(1, 1, 8), 5); // the sample takes in both ends
    EXPECT_EQ(store.MissingBetween(1, 6, 7), 0);
    EXPECT_EQ(store.MissingBetween(-1, 2, 4), 2); // any non-zero mode uses the sample

    // The dependent variables are a sublist of the selected ones.
    Int16 n(1);
    Int16 second(2);
    store.YIndexList.Store(StoreMode, n, 1, second);
    EXPECT_EQ(store.YCount(), 1);
    EXPECT_EQ(store.YName(1), "b");
    EXPECT_EQ(store.YValue(4, 1), 4);
    EXPECT_EQ(store.FirstYObs(), 1);
    EXPECT_EQ(store.LastYObs(), 8);

    ASSERT_EQ(Load({1, 3}), 1);
    EXPECT_EQ(store.FirstCommonObs(), 0);
    EXPECT_EQ(store.LastCommonObs(), 0);
    EXPECT_EQ(store.MissingBetween(0, 0, 0), 0);

    ASSERT_EQ(Load({3}), 1);
    EXPECT_EQ(store.FirstCommonObs(), 0);
    EXPECT_EQ(store.LastCommonObs(), 0);
}

TEST_F(DataStoreTest, FilesThatDisagreeGiveStatusZero) {
    Write(ThreeVariables(), {"a", "b", "c"});
    const std::string input1 = ReadFile(Input1());
    Table<double> matrix;

    // Cut inside the last value.
    WriteFile(Input1(), input1.substr(0, input1.size() - 5));
    EXPECT_EQ(ReadData(Input1(), matrix, events), 0);
    EXPECT_EQ(Load({1}), 0);

    // Cut inside the header.
    WriteFile(Input1(), input1.substr(0, 30));
    Int16 k, type, year, period, periods, obs;
    double code = 0;
    EXPECT_EQ(ReadHeader(Input1(), k, code, type, year, period, periods, obs), 0);
    EXPECT_EQ(store.ReadHeader(Input1()), 0);

    // A header that claims more observations or variables than the file holds.
    Input1Content longer = ThreeVariables();
    longer.ObsCount = 7;
    WriteFile(Input1(), longer.Bytes());
    EXPECT_EQ(store.ReadHeader(Input1()), 1);
    EXPECT_EQ(Load({1}), 0);
    Input1Content wild = ThreeVariables();
    wild.ObsCount = 32767;
    wild.VarCount = 32767;
    WriteFile(Input1(), wild.Bytes());
    EXPECT_EQ(ReadData(Input1(), matrix, events), 0);
    Input1Content negative = ThreeVariables();
    negative.ObsCount = -4;
    WriteFile(Input1(), negative.Bytes());
    EXPECT_EQ(ReadData(Input1(), matrix, events), 0);

    // Fewer names than variables, a chosen number beyond them, missing files.
    WriteFile(Input1(), input1);
    WriteFile(Input2(), Input2Bytes({"d"}, {"a", "b"}));
    std::vector<std::string> names;
    EXPECT_EQ(ReadNames(Input2(), 3, names), 0);
    EXPECT_EQ(Load({1}), 0);
    WriteFile(Input2(), Input2Bytes({"d"}, {"a", "b", "c"}));
    EXPECT_EQ(Load({4}), 0);
    EXPECT_EQ(Load({0}), 0);
    EXPECT_EQ(Load({3}), 1);
    std::filesystem::remove(Input2());
    EXPECT_EQ(Load({3}), 0);
    std::string description;
    EXPECT_EQ(ReadDescription(Input2(), description), 0);
}

TEST(Stores, ThreeModes) {
    ListStore<std::string> names;
    Int16 count(2);
    std::string name = "x";
    names.Store(FetchMode, count, 0, name);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(ErrorNumberOf([&] { names.Store(FetchMode, count, 1, name); }), SubscriptOutOfRange);

    count = 2;
    name = "first";
    names.Store(StoreMode, count, 1, name);
    count = 99; // the count is taken only by the first store after clearing
    name = "second";
    names.Store(StoreMode, count, 2, name);
    EXPECT_EQ(ErrorNumberOf([&] { names.Store(StoreMode, count, 3, name); }), SubscriptOutOfRange);
    names.Store(FetchMode, count, 1, name);
    EXPECT_EQ(count, 2);
    EXPECT_EQ(name, "first");

    names.Store(ClearMode, count, 0, name);
    EXPECT_FALSE(names.Filled());
    EXPECT_EQ(names.Count(), 0);
    count = 1;
    name = "only";
    names.Store(StoreMode, count, 1, name);
    EXPECT_EQ(names.Count(), 1);
    EXPECT_EQ(names.At(1), "only");

    TableStore<double> values;
    Int16 rows(3), columns(2);
    double value = 1.5;
    values.Store(StoreMode, rows, columns, 3, 2, value);
    rows = 0;
    columns = 0;
    value = 0;
    values.Store(FetchMode, rows, columns, 3, 2, value);
    EXPECT_EQ(rows, 3);
    EXPECT_EQ(columns, 2);
    EXPECT_EQ(value, 1.5);
    values.Store(FetchMode, rows, columns, 1, 1, value);
    EXPECT_EQ(value, 0); // a new table starts with zeros
    EXPECT_EQ(ErrorNumberOf([&] { values.At(4, 1); }), SubscriptOutOfRange);
    EXPECT_EQ(ErrorNumberOf([&] { values.At(1, 0); }), SubscriptOutOfRange);
    values.Clear();
    EXPECT_EQ(values.Rows(), 0);
    EXPECT_EQ(ErrorNumberOf([&] { values.At(1, 1); }), SubscriptOutOfRange);
}
