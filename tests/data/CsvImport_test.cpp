#include <gtest/gtest.h>

#include <charconv>
#include <sstream>

#include "data/CsvImport.h"
#include "data/DataStore.h"
#include "frame/ObsLabel.h"
#include "platform/Headless.h"
#include "support/TestModule.h"

using namespace lorvane;
using namespace std::string_literals;
using lorvane::test::ReadFile;
using lorvane::test::TempFolder;
using lorvane::test::WriteFile;

namespace {

struct ImportRun {
    int Code = 0;
    std::string Out;
    std::string Err;
};

ImportRun Import(const std::vector<std::string>& arguments) {
    std::ostringstream out;
    std::ostringstream err;
    ImportRun run;
    run.Code = RunImport(arguments, out, err);
    run.Out = out.str();
    run.Err = err.str();
    return run;
}

std::vector<std::string> Labels(const ImportedData& data) {
    std::vector<std::string> labels;
    for (int t = 1; t <= data.ObsCount(); ++t) {
        labels.push_back(ObsLabel(t, data.DataType, data.FirstYear, data.FirstPeriod,
                                  data.PeriodsPerYear, data.ObsCount()));
    }
    return labels;
}

// Imports text into a fresh work folder and loads every variable back.
class ImportFolder {
public:
    ImportRun ImportText(const std::string& csv, std::vector<std::string> options = {}) {
        WriteFile(Csv(), csv);
        std::vector<std::string> arguments = {Csv().string(), Work().string()};
        arguments.insert(arguments.end(), options.begin(), options.end());
        return Import(arguments);
    }
    Int16 LoadAll() {
        if (store.ReadHeader(Input1()) == 0) {
            return 0;
        }
        std::vector<int> all;
        for (int j = 1; j <= store.VarCount; ++j) {
            all.push_back(j);
        }
        return store.LoadSelected(Input1(), Input2(), all, events);
    }
    std::filesystem::path Csv() const { return temp.Path() / "data.csv"; }
    std::filesystem::path Work() const { return temp.Path() / "work"; }
    std::filesystem::path DataDir() const { return Work() / "LORVANE.DAT"; }
    std::filesystem::path Input1() const { return DataDir() / "INPUT1.RAN"; }
    std::filesystem::path Input2() const { return DataDir() / "INPUT2.RAN"; }

    TempFolder temp;
    HeadlessEventPump events;
    DataStore store;
};

std::string Repeated(std::string_view text, int times) {
    std::string repeated;
    for (int i = 0; i < times; ++i) {
        repeated += text;
    }
    return repeated;
}

double Number(std::string_view text) {
    double value = 0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

} // namespace

TEST(CsvImport, DateForms) {
    struct Case {
        const char* Text;
        int Year, Period, PeriodsPerYear;
    };
    for (const Case& c :
         {Case{"1960Q1", 1960, 1, 4}, Case{" 1982q4 ", 1982, 4, 4}, Case{"1960M03", 1960, 3, 12},
          Case{"1960m3", 1960, 3, 12}, Case{"1960-11", 1960, 11, 12}, Case{"1960", 1960, 1, 1},
          Case{"32767", 32767, 1, 1}}) {
        const auto date = ParseCsvDate(c.Text);
        ASSERT_TRUE(date) << c.Text;
        EXPECT_EQ(date->Year, c.Year) << c.Text;
        EXPECT_EQ(date->Period, c.Period) << c.Text;
        EXPECT_EQ(date->PeriodsPerYear, c.PeriodsPerYear) << c.Text;
    }
    for (const char* text : {"1960Q5", "1960Q0", "1960Q01", "1960M13", "1960M0", "1960-3-01",
                             "1960-", "1960.5", "Q1", "-1960", "+1960", "32768", "", "1960 Q1"}) {
        EXPECT_FALSE(ParseCsvDate(text)) << text;
    }
}

TEST(CsvImport, CalendarFromTheDateColumn) {
    const ImportOptions defaults;
    const ImportedData undated = ParseCsv("a,b\n1,2\n3,4\n", defaults);
    EXPECT_EQ(undated.DataType, 0);
    EXPECT_EQ(undated.FirstYear, 1);
    EXPECT_EQ(undated.Names, (std::vector<std::string>{"a", "b"}));
    EXPECT_EQ(undated.Columns, (std::vector<std::vector<double>>{{1, 3}, {2, 4}}));
    EXPECT_EQ(Labels(undated), (std::vector<std::string>{"1", "2"}));

    const ImportedData annual = ParseCsv("Year,x\n1990,1\n1991,2\n1992,3\n", defaults);
    EXPECT_EQ(annual.DataType, 1);
    EXPECT_EQ(annual.Names, std::vector<std::string>{"x"});
    EXPECT_EQ(Labels(annual), (std::vector<std::string>{"1990", "1991", "1992"}));

    // Plain years under a variable's name are a variable.
    const ImportedData years = ParseCsv("pop,x\n1990,1\n1991,2\n", defaults);
    EXPECT_EQ(years.DataType, 0);
    EXPECT_EQ(years.VarCount(), 2);

    const ImportedData quarterly = ParseCsv("q,x\n1990Q3,1\n1990Q4,2\n1991Q1,3\n", defaults);
    EXPECT_EQ(quarterly.DataType, 2);
    EXPECT_EQ(quarterly.PeriodsPerYear, 4);
    EXPECT_EQ(quarterly.FirstPeriod, 3);
    EXPECT_EQ(Labels(quarterly), (std::vector<std::string>{"1990.3", "1990.4", "1991.1"}));

    for (const char* csv :
         {"m,x\n1960M11,1\n1960M12,2\n1961M01,3\n", "m,x\n1960-11,1\n1960-12,2\n1961-01,3\n"}) {
        const ImportedData monthly = ParseCsv(csv, defaults);
        EXPECT_EQ(monthly.DataType, 3);
        EXPECT_EQ(monthly.PeriodsPerYear, 12);
        EXPECT_EQ(Labels(monthly), (std::vector<std::string>{"1960.11", "1960.12", "1961.01"}));
    }
}

TEST(CsvImport, TextConventions) {
    // Byte order mark, CR LF, quoted names and numbers, blanks around cells, the three
    // missing forms, signs and exponents, blank lines at the end. (Doubled quotes, which no
    // name may hold, are among the refusals.)
    const std::string csv = "\xEF\xBB\xBF"
                            "\"gdp, real\",\"say hi\", c \r\n"
                            "1.5, \"-2\" ,+3e2\r\n"
                            ",NA, .\r\n"
                            ".5,1E-3,-0.25\r\n"
                            "\r\n\r\n";
    ImportOptions crossSection;
    crossSection.CrossSection = true;
    const ImportedData data = ParseCsv(csv, crossSection);
    EXPECT_EQ(data.Names, (std::vector<std::string>{"gdp, real", "say hi", "c"}));
    const double m = DefaultMissingCode;
    EXPECT_EQ(data.Columns,
              (std::vector<std::vector<double>>{{1.5, m, 0.5}, {-2, m, 0.001}, {300, m, -0.25}}));
    EXPECT_EQ(data.MissingValues, 3);
    EXPECT_EQ(data.ObsCount(), 3);

    // A lone line end inside quotes belongs to the field, and later lines count it.
    try {
        ParseCsv("a,b\n1,\"2\n\"\n3,x\n", ImportOptions{});
        FAIL();
    } catch (const ImportError& error) {
        EXPECT_EQ(error.Line(), 2);
        EXPECT_EQ(error.Column(), 2);
    }
}

TEST(CsvImport, RefusedDataNameTheirPlaceAndWriteNothing) {
    struct Case {
        std::string Csv;
        int Line;
        int Column;
        std::string Says;
        std::vector<std::string> Options = {};
    };
    std::string tooMany = "x\n";
    for (int t = 0; t <= MaxObservations; ++t) {
        tooMany += "1\n";
    }
    const std::vector<Case> cases = {
        {"a,b,c\n1,2,3\n4,5\n", 3, 3, "the line ends after 2 fields, but line 1 has 3 columns"},
        {"a,b\n1,2\n3,4,5\n", 3, 3, "the line has 3 fields"},
        {"a,b\n1,2\n3,abc\n", 3, 2, "\"abc\" in \"b\" is not a number"},
        {"a\n1\n\"1,5\"\n", 3, 1, "\"1,5\" in \"a\" is not a number"},
        {"a\n1\nnan\n", 3, 1, "\"nan\" in \"a\" is not a number"},
        {"a\n1e999\n", 2, 1,
         "\"1e999\" in \"a\" is out of range (the largest number is about 1.8E+308)"},
        {"a\n1e-400\n", 2, 1, "\"1e-400\" in \"a\" is out of range (the smallest number"},
        {"q,a\n1960Q1,1\n1960Q2,x1\n", 3, 2, "\"x1\" in \"a\" is not a number"},
        {"a," + std::string(501, 'n') + "\n1,2\n", 1, 2, "501 characters long; at most 500"},
        {"a," + Repeated("\xC3\xA9", 300) + "\n1,2\n", 1, 2,
         "300 characters long (600 bytes in UTF-8); at most 500 bytes fit"},
        // The work files end a quoted name at its next quote.
        {"a,\"b\"\"c\"\n1,2\n", 1, 2,
         "the name \"b\"c\" holds a double quote, which the work files cannot carry"},
        {"\xFF\xFE"
         "a\0\n\0"
         "1\0\n\0"s,
         1, 0, "the file is UTF-16 text"},
        {"a\0,\0b\0\n\0"s, 1, 0, "the file is UTF-16 text"},
        {"a,b\n1,2\n3,\0\n"s, 3, 0, "a NUL byte (character 0): the file is not text"},
        {"a,b,a\n1,2,3\n", 1, 3, "\"a\" is already the name of column 1"},
        {"a, ,c\n1,2,3\n", 1, 2, "the name is empty"},
        {"a,b\n", 2, 0, "no observations below the names of line 1"},
        {"a,b\r\n\r\n\r\n", 2, 0, "no observations"},
        {"", 1, 0, "the file is empty"},
        {"q,a\n1960Q1,1\n1960Q3,2\n", 3, 1,
         "the dates are not consecutive: \"1960Q3\" follows \"1960Q1\" (expected 1960Q2)"},
        {"q,a\n1960Q4,1\n1960Q4,2\n", 3, 1, "(expected 1961Q1)"},
        {"year,a\n1960,1\n1962,2\n", 3, 1, "(expected 1961)"},
        {"d,a\n1960Q1,1\n1960M04,2\n", 3, 1, "is not of the same kind as \"1960Q1\""},
        {"d,a\n1960Q1,1\nfoo,2\n", 3, 1, "\"foo\" is not a date"},
        {"q,a\n1960Q5,1\n", 2, 1,
         "\"1960Q5\" is a date that cannot be read: a quarter is Q1 to Q4"},
        {"q,a\n1960Q4,1\n1960Q5,2\n", 3, 1, "\"1960Q5\" is a date that cannot be read"},
        {"d,a\n1960M13,1\n", 2, 1, "a month is 01 to 12"},
        {"year,a\n40000,1\n", 2, 1, "a year is at most 32767"},
        {"d\n1960Q1\n", 1, 0, "there are no variables"},
        {"a,b\n1,\"2\n", 2, 2, "never closed"},
        {"a,b\n1,\"2\"x\n", 2, 2, "unexpected text after the closing quote"},
        {"a,b\n1,\n",
         2,
         2,
         "cannot be stored under the missing-value code 0",
         {"--missing-code", "0"}},
        {tooMany, MaxObservations + 2, 0, "more than 32767 observations"},
        // Undated data are a series: no gaps between the first and the last value.
        {"a,b\n1,2\n3,\n,4\n5,6\n", 3, 2,
         "a missing value in \"b\" between its first and last values"},
        {"a\n1\n-99999.99\n", 3, 1, "\"-99999.99\" in \"a\" equals the missing-value code"},
        {"q,a\n1960Q1,1\n1960Q2,-1\n",
         3,
         2,
         "equals the missing-value code",
         {"--missing-code", "-1"}},
        // A code of 0 leaves the module its own.
        {"a\n-99999.99\n", 2, 1, "equals the missing-value code", {"--missing-code", "0"}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.Says);
        ImportFolder folder;
        std::filesystem::create_directories(folder.DataDir());
        WriteFile(folder.DataDir() / "OUTPUT.TXT", "log\r\n");
        WriteFile(folder.Input1(), "old");
        const ImportRun run = folder.ImportText(c.Csv, c.Options);
        EXPECT_EQ(run.Code, 1);
        const std::string place = "line " + std::to_string(c.Line) +
                                  (c.Column > 0 ? ", column " + std::to_string(c.Column) : "") +
                                  ": ";
        EXPECT_NE(run.Err.find(place), std::string::npos) << run.Err;
        EXPECT_NE(run.Err.find(c.Says), std::string::npos) << run.Err;
        EXPECT_NE(run.Err.find("Nothing was written."), std::string::npos);
        EXPECT_EQ(ReadFile(folder.Input1()), "old");
        EXPECT_FALSE(std::filesystem::exists(folder.Input2()));
        EXPECT_EQ(ReadFile(folder.DataDir() / "OUTPUT.TXT"), "log\r\n");
        EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.DataDir()),
                                std::filesystem::directory_iterator()),
                  2);
    }

    // Without a LORVANE.DAT beforehand, none is created.
    ImportFolder fresh;
    EXPECT_EQ(fresh.ImportText("a,b\n1,x\n").Code, 1);
    EXPECT_FALSE(std::filesystem::exists(fresh.DataDir()));
}

TEST(CsvImport, LimitsAreBytesAndDateFormsNeedAHeadingOrAMark) {
    // 250 two-byte characters fill a name's 500 bytes.
    const ImportedData wide =
        ParseCsv("a," + Repeated("\xC3\xA9", 250) + "\n1,2\n", ImportOptions{});
    EXPECT_EQ(wide.Names[1].size(), 500u);
    // A first column of numbers beyond any year is a variable, not a bad date.
    EXPECT_EQ(ParseCsv("x,a\n40000,1\n", ImportOptions{}).VarCount(), 2);
    EXPECT_EQ(ParseCsv("a\n1e-320\n", ImportOptions{}).Columns[0][0], 1e-320);
}

// Both data files are written beside their places and then put in place both, or neither.
TEST(CsvImport, BothDataFilesAreReplacedOrNeither) {
    ImportFolder folder;
    ASSERT_EQ(folder.ImportText("a,b\n1,2\n3,4\n").Code, 0);
    const std::string input1 = ReadFile(folder.Input1());
    const std::string input2 = ReadFile(folder.Input2());
    auto refused = [&](const std::string& what) {
        SCOPED_TRACE(what);
        const ImportRun run = folder.ImportText("x,y,z\n5,6,7\n");
        EXPECT_EQ(run.Code, 3);
        EXPECT_NE(run.Err.find("Nothing was written."), std::string::npos) << run.Err;
        EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.DataDir()),
                                std::filesystem::directory_iterator()),
                  2);
    };

    // An INPUT2.RAN marked read-only is not replaced, and so INPUT1.RAN is not either.
    using std::filesystem::perms;
    std::filesystem::permissions(folder.Input2(), perms::owner_read | perms::group_read);
    refused("read-only");
    EXPECT_EQ(ReadFile(folder.Input1()), input1);
    EXPECT_EQ(ReadFile(folder.Input2()), input2);
    std::filesystem::permissions(folder.Input2(), perms::owner_write,
                                 std::filesystem::perm_options::add);

    // An INPUT2.RAN that no file can replace: INPUT1.RAN, already in place, comes back.
    std::filesystem::remove(folder.Input2());
    std::filesystem::create_directories(folder.Input2() / "inside");
    refused("a folder");
    EXPECT_EQ(ReadFile(folder.Input1()), input1);
    // Without an earlier INPUT1.RAN, none stays behind.
    std::filesystem::remove(folder.Input1());
    WriteFile(folder.DataDir() / "OUTPUT.TXT", "log\r\n");
    refused("no INPUT1.RAN");
    EXPECT_FALSE(std::filesystem::exists(folder.Input1()));
    EXPECT_EQ(ReadFile(folder.DataDir() / "OUTPUT.TXT"), "log\r\n");
}

TEST(CsvImport, GapsAreRefusedOnlyInsideAnUndatedSeries) {
    // Before the first and after the last value of a variable, values may be missing.
    EXPECT_EQ(ParseCsv("a,b\n,1\n2,3\n4,\n", ImportOptions{}).MissingValues, 2);
    // Dated data, and undated data said to be dated, are checked by the module itself.
    EXPECT_EQ(ParseCsv("year,a\n1990,1\n1991,\n1992,3\n", ImportOptions{}).MissingValues, 1);
    ImportOptions annual;
    annual.DataType = 1;
    EXPECT_EQ(ParseCsv("a\n1\nNA\n3\n", annual).MissingValues, 1);
    // A cross-section may have its gaps anywhere, when the user says so.
    ImportFolder folder;
    const ImportRun run = folder.ImportText("a,b\n1,2\n.,3\n4,5\n", {"--cross-section"});
    ASSERT_EQ(run.Code, 0) << run.Err;
    ASSERT_EQ(folder.LoadAll(), 1);
    EXPECT_EQ(folder.store.SelectedValue(2, 1), DefaultMissingCode);
    // Another code than the value's leaves the value as it is; under the code 0, which means
    // that nothing is missing, a zero is a zero.
    ImportOptions otherCode;
    otherCode.MissingCode = -1;
    EXPECT_EQ(ParseCsv("a\n-99999.99\n", otherCode).Columns[0][0], -99999.99);
    otherCode.MissingCode = 0;
    EXPECT_EQ(ParseCsv("a\n1\n0\n2\n", otherCode).Columns[0][1], 0);
}

TEST(CsvImport, RoundTripThroughTheDataStore) {
    ImportFolder folder;
    std::filesystem::create_directories(folder.DataDir());
    WriteFile(folder.DataDir() / "OUTPUT.TXT", "earlier session\r\n");
    const ImportRun run = folder.ImportText("month,tiny,huge,odd\n"
                                            "2001-12,5e-324,1.7976931348623157e308,0.1\n"
                                            "2002-01,1e-300,-2.5e-7,NA\n"
                                            "2002-02,-0.30000000000000004,123456789.12345679,"
                                            "0.3333333333333333\n",
                                            {"--missing-code", "-1", "--description", "  Three  "});
    ASSERT_EQ(run.Code, 0) << run.Err;
    EXPECT_EQ(run.Out, "Imported 3 observations of 3 variables (monthly, 2001.12 to 2002.02, 1 "
                       "missing value) into " +
                           folder.DataDir().string() + "\n");
    EXPECT_EQ(ReadFile(folder.DataDir() / "OUTPUT.TXT"), "earlier session\r\n");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.DataDir()),
                            std::filesystem::directory_iterator()),
              3);

    ASSERT_EQ(folder.LoadAll(), 1);
    const DataStore& store = folder.store;
    EXPECT_EQ(store.DataType, 3);
    EXPECT_EQ(store.FirstYear, 2001);
    EXPECT_EQ(store.FirstPeriod, 12);
    EXPECT_EQ(store.PeriodsPerYear, 12);
    EXPECT_EQ(store.MissingCode, -1);
    EXPECT_EQ(store.Description, "Three");
    EXPECT_EQ(store.SelectedName(3), "odd");
    const std::vector<std::vector<double>> expected = {
        {5e-324, 1e-300, -0.30000000000000004},
        {1.7976931348623157e308, -2.5e-7, 123456789.12345679},
        {0.1, -1, 1.0 / 3.0},
    };
    for (int i = 1; i <= 3; ++i) {
        for (int t = 1; t <= 3; ++t) {
            EXPECT_EQ(store.SelectedValue(t, i), expected[i - 1][t - 1]) << t << "," << i;
        }
    }
    EXPECT_EQ(store.FirstCommonObs(), 1);
    EXPECT_EQ(store.MissingBetween(0, 0, 0), 1);

    // Importing again replaces both files and leaves nothing beside them.
    ASSERT_EQ(folder.ImportText("a\n7\n").Code, 0);
    ASSERT_EQ(folder.LoadAll(), 1);
    EXPECT_EQ(folder.store.ObsCount, 1);
    EXPECT_EQ(folder.store.SelectedValue(1, 1), 7);
    EXPECT_EQ(folder.store.Description, "data.csv");
    EXPECT_EQ(ReadFile(folder.Input2()).size(), 4u * 500u);
}

TEST(CsvImport, E1IsQuarterlyFrom1960To1982) {
    const std::string path = std::string(LORVANE_SOURCE_DIR) + "/examples/e1.csv";
    const std::string csv = ReadFile(path);

    ImportFolder folder;
    const ImportRun run = Import({path, folder.Work().string()});
    ASSERT_EQ(run.Code, 0) << run.Err;
    ASSERT_EQ(folder.LoadAll(), 1);
    const DataStore& store = folder.store;
    EXPECT_EQ(store.ObsCount, 92);
    EXPECT_EQ(store.VarCount, 6);
    EXPECT_EQ(store.DataType, 2);
    EXPECT_EQ(store.ObsLabelOf(1), "1960.1");
    EXPECT_EQ(store.ObsLabelOf(2), "1960.2");
    EXPECT_EQ(store.ObsLabelOf(5), "1961.1");
    EXPECT_EQ(store.ObsLabelOf(92), "1982.4");
    EXPECT_EQ(store.SelectedName(1), "invest");
    EXPECT_EQ(store.SelectedName(6), "dlcons");
    EXPECT_EQ(store.FirstCommonObs(), 2); // the differences start one quarter later
    EXPECT_EQ(store.LastCommonObs(), 92);

    // Every value as the text of the file says, read independently here.
    std::istringstream lines(csv);
    std::string line;
    std::getline(lines, line);
    for (int t = 1; std::getline(lines, line); ++t) {
        std::istringstream cells(line);
        std::string cell;
        std::getline(cells, cell, ',');
        for (int i = 1; std::getline(cells, cell, ','); ++i) {
            const double expected = cell.empty() ? DefaultMissingCode : Number(cell);
            ASSERT_EQ(store.SelectedValue(t, i), expected) << "t=" << t << " i=" << i;
        }
    }
}

TEST(CsvImport, OptionsOverrideTheData) {
    {
        ImportFolder folder;
        ASSERT_EQ(folder
                      .ImportText("a\n1\n2\n3\n",
                                  {"--periods", "6", "--first-year=2000", "--first-period", "5"})
                      .Code,
                  0);
        ASSERT_EQ(folder.LoadAll(), 1);
        EXPECT_EQ(folder.store.DataType, 4);
        EXPECT_EQ(folder.store.ObsLabelOf(1), "2000.5");
        EXPECT_EQ(folder.store.ObsLabelOf(3), "2001.1");
    }
    {
        ImportFolder folder;
        const ImportRun run = folder.ImportText("year,a\n1990,1\n1991,2\n", {"--no-dates"});
        ASSERT_EQ(run.Code, 0);
        ASSERT_EQ(folder.LoadAll(), 1);
        EXPECT_EQ(folder.store.VarCount, 2);
        EXPECT_EQ(folder.store.DataType, 0);
    }
    {
        ImportFolder folder;
        ASSERT_EQ(folder.ImportText("t,a\n1990,1\n1991,2\n", {"--dates", "--type", "0"}).Code, 0);
        ASSERT_EQ(folder.LoadAll(), 1);
        EXPECT_EQ(folder.store.VarCount, 1);
        EXPECT_EQ(folder.store.ObsLabelOf(2), "1991"); // undated, numbered from 1990
    }
    {
        // With missing code 0 and nothing missing, the module later puts its own code in.
        ImportFolder folder;
        ASSERT_EQ(folder.ImportText("a\n0\n1\n", {"--missing-code", "0"}).Code, 0);
        ASSERT_EQ(folder.store.ReadHeader(folder.Input1()), 1);
        EXPECT_EQ(folder.store.MissingCode, 0);
        double code = DefaultMissingCode;
        ASSERT_EQ(FixMissingCode(folder.Input1(), code), 1);
        ASSERT_EQ(folder.LoadAll(), 1);
        EXPECT_EQ(folder.store.MissingCode, DefaultMissingCode);
        EXPECT_EQ(folder.store.FirstCommonObs(), 1);
    }
}

TEST(CsvImport, CommandLineProblems) {
    const ImportRun help = Import({"--help"});
    EXPECT_EQ(help.Code, 0);
    for (const char* option : {"--type", "--first-year", "--first-period", "--periods",
                               "--description", "--missing-code", "--dates", "--no-dates"}) {
        EXPECT_NE(help.Out.find(option), std::string::npos) << option;
    }

    ImportFolder folder;
    WriteFile(folder.Csv(), "q,a\n1960Q1,1\n1960Q2,2\n");
    const std::string csv = folder.Csv().string();
    const std::string work = folder.Work().string();
    const std::vector<std::vector<std::string>> bad = {
        {},
        {csv},
        {csv, work, "extra"},
        {csv, work, "--colour", "red"},
        {csv, work, "--type", "x"},
        {csv, work, "--type"},
        {csv, work, "--missing-code", "abc"},
        {csv, work, "--type", "5"},
        {csv, work, "--first-period", "5"},
        {csv, work, "--periods", "0"},
        {csv, work, "--first-year", "40000"},
        {csv, work, "--description", std::string(1501, 'd')},
    };
    for (const auto& arguments : bad) {
        const ImportRun run = Import(arguments);
        EXPECT_EQ(run.Code, 2) << (arguments.empty() ? "" : arguments.back());
        EXPECT_FALSE(run.Err.empty());
    }
    WriteFile(folder.temp.Path() / "undated.csv", "a\n1\n");
    EXPECT_EQ(Import({(folder.temp.Path() / "undated.csv").string(), work, "--type", "4"}).Code, 2);
    EXPECT_FALSE(std::filesystem::exists(folder.Work()));

    EXPECT_EQ(Import({(folder.temp.Path() / "none.csv").string(), work}).Code, 1);

    // A work folder that cannot be made.
    WriteFile(folder.temp.Path() / "file", "x");
    const ImportRun blocked = Import({csv, (folder.temp.Path() / "file").string()});
    EXPECT_EQ(blocked.Code, 3);
    EXPECT_NE(blocked.Err.find("cannot write"), std::string::npos);

    // Work folders the module cannot take: it drops blanks at the ends of its command line, and
    // its files carry the folder in double quotes.
    for (const std::string& name : {work + " ", " " + work, work + "\"x"}) {
        const ImportRun run = Import({csv, name});
        EXPECT_EQ(run.Code, 2) << name;
        EXPECT_NE(run.Err.find(name.back() == 'x' ? "holds a double quote" : "ends in a blank"),
                  std::string::npos)
            << run.Err;
        EXPECT_FALSE(std::filesystem::exists(name));
    }
}
