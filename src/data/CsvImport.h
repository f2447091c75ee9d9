#pragma once

#include <filesystem>
#include <optional>
#include <ostream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "data/DataStore.h"

namespace lorvane {

// What the command line may set; unset fields come from the data's date column or defaults.
struct ImportOptions {
    enum class DateColumn { Detect, Yes, No };

    std::optional<int> DataType;
    std::optional<int> FirstYear;
    std::optional<int> FirstPeriod;
    std::optional<int> PeriodsPerYear;
    std::optional<std::string> Description;
    double MissingCode = DefaultMissingCode;
    DateColumn Dates = DateColumn::Detect;
    // Undated observations are units of a cross-section, where a missing value may stand
    // anywhere; otherwise undated data are a series without gaps.
    bool CrossSection = false;
};

// A data set as INPUT1.RAN and INPUT2.RAN hold it. Columns[j - 1][t - 1] is the value of
// variable j at observation t; a missing value is MissingCode.
struct ImportedData {
    int DataType = 0;
    int FirstYear = 1;
    int FirstPeriod = 1;
    int PeriodsPerYear = 1;
    double MissingCode = DefaultMissingCode;
    std::string Description;
    std::vector<std::string> Names;
    std::vector<std::vector<double>> Columns;
    long long MissingValues = 0;

    int ObsCount() const { return Columns.empty() ? 0 : static_cast<int>(Columns.front().size()); }
    int VarCount() const { return static_cast<int>(Columns.size()); }
};

// Input that cannot be imported. Line and column are 1-based places in the CSV text (0 when
// the problem has no such place, as with a bad option).
class ImportError : public std::runtime_error {
public:
    ImportError(int line, int column, const std::string& message);
    int Line() const { return line_; }
    int Column() const { return column_; }
    // The message without the place.
    const std::string& Problem() const { return problem_; }

private:
    int line_;
    int column_;
    std::string problem_;
};

// The most observations and variables the files can count, and the longest name.
inline constexpr int MaxObservations = 32767;
inline constexpr int MaxVariables = 32767;
inline constexpr std::size_t MaxNameLength = Input2RecordLength;
inline constexpr std::size_t MaxDescriptionLength = Input2RecordLength * Input2DescriptionRecords;

// Reads CSV text: a first line of names, then one line per observation, with an optional
// first column of dates. Throws ImportError naming the line and column of the first problem;
// a value equal to the missing-value code is one, and so is, in undated data that are not a
// cross-section, a missing value between the first and the last value of a variable.
ImportedData ParseCsv(std::string_view text, const ImportOptions& options);

// A date of the first column: the year, the period within the year and the periods per year
// the form implies (1 for a plain year). Empty when text is not a date.
struct CsvDate {
    int Year = 0;
    int Period = 1;
    int PeriodsPerYear = 1;
};
std::optional<CsvDate> ParseCsvDate(std::string_view text);

// The calendar in words: "undated", "annual", "quarterly", "monthly" or "N periods a year".
std::string FrequencyText(const ImportedData& data);

// A running module holds the work folder: its data files are not the import's to replace.
class WorkFolderInUse : public std::runtime_error {
public:
    WorkFolderInUse();
};

// Writes dataFolder/LORVANE.DAT/INPUT1.RAN and INPUT2.RAN (creating the folders), holding the
// work folder's lock meanwhile; throws WorkFolderInUse when a module holds it. Both are first
// written to temporary files beside them and then both put in place, or neither, across a crash
// too: a failure leaves the earlier files as they were. An earlier file marked read-only is not
// replaced. Throws RuntimeError on file errors.
void WriteDataFiles(const ImportedData& data, const std::filesystem::path& dataFolder);

// Why the module could not run on a work folder of this name, or nothing: it drops blanks at
// the ends of its command line, and its work-folder files carry the folder in double quotes.
std::optional<std::string> WorkFolderNameProblem(std::string_view folder);

// The command line of lorvane-import: arguments without the program name. Returns the exit
// code: 0 done, 1 the data were refused, 2 bad arguments, 3 the files could not be written.
int RunImport(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err);

// The text of --help.
std::string ImportUsage();

} // namespace lorvane
