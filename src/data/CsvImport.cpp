#include "data/CsvImport.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <fstream>
#include <iterator>
#include <map>
#include <system_error>

#include "data/DataFilePair.h"
#include "frame/NumberText.h"
#include "frame/ObsLabel.h"
#include "frame/RecordFile.h"
#include "frame/RuntimeError.h"
#include "frame/Startup.h"
#include "frame/Workspace.h"
#include "platform/FileLock.h"

namespace lorvane {

namespace {

std::string PlaceText(int line, int column) {
    if (line <= 0) {
        return "";
    }
    std::string place = "line " + std::to_string(line);
    if (column > 0) {
        place += ", column " + std::to_string(column);
    }
    return place + ": ";
}

std::string Quoted(std::string_view text) {
    constexpr std::size_t shown = 40;
    if (text.size() > shown) {
        return "\"" + std::string(text.substr(0, shown)) + "...\"";
    }
    return "\"" + std::string(text) + "\"";
}

// One field of the CSV text and where it starts.
struct Field {
    std::string Text;
    int Line = 0;
    bool IsQuoted = false;
};

struct Row {
    std::vector<Field> Fields;
    int Line = 0;

    bool Blank() const {
        for (const Field& field : Fields) {
            if (field.IsQuoted || !Trim(field.Text).empty()) {
                return false;
            }
        }
        return true;
    }
};

bool IsBlank(char c) {
    return c == ' ' || c == '\t';
}

// Splits CSV text into rows of fields: fields separated by commas, rows by CR LF, LF or CR;
// a field in double quotes may hold commas, line breaks and doubled quotes. A UTF-8 byte
// order mark is skipped. Blank lines at the end are dropped.
std::vector<Row> SplitRows(std::string_view text) {
    if (text.starts_with("\xEF\xBB\xBF")) {
        text.remove_prefix(3);
    }
    std::vector<Row> rows;
    std::size_t pos = 0;
    int line = 1;
    auto atLineEnd = [&] { return pos < text.size() && (text[pos] == '\n' || text[pos] == '\r'); };
    auto skipLineEnd = [&] {
        if (text[pos] == '\r' && pos + 1 < text.size() && text[pos + 1] == '\n') {
            ++pos;
        }
        ++pos;
        ++line;
    };

    while (pos < text.size()) {
        Row row;
        row.Line = line;
        while (true) {
            Field field;
            field.Line = line;
            const int column = static_cast<int>(row.Fields.size()) + 1;
            std::size_t start = pos;
            while (start < text.size() && IsBlank(text[start])) {
                ++start;
            }
            if (start < text.size() && text[start] == '"') {
                field.IsQuoted = true;
                pos = start + 1;
                while (true) {
                    if (pos >= text.size()) {
                        throw ImportError(field.Line, column,
                                          "the quote that opens this field is never closed");
                    }
                    const char c = text[pos];
                    if (c == '"') {
                        if (pos + 1 < text.size() && text[pos + 1] == '"') {
                            field.Text.push_back('"');
                            pos += 2;
                            continue;
                        }
                        ++pos;
                        break;
                    }
                    if (c == '\n' ||
                        (c == '\r' && !(pos + 1 < text.size() && text[pos + 1] == '\n'))) {
                        ++line;
                    }
                    field.Text.push_back(c);
                    ++pos;
                }
                while (pos < text.size() && IsBlank(text[pos])) {
                    ++pos;
                }
                if (pos < text.size() && text[pos] != ',' && !atLineEnd()) {
                    throw ImportError(line, column, "unexpected text after the closing quote");
                }
            } else {
                while (pos < text.size() && text[pos] != ',' && !atLineEnd()) {
                    field.Text.push_back(text[pos++]);
                }
            }
            row.Fields.push_back(std::move(field));
            if (pos < text.size() && text[pos] == ',') {
                ++pos;
                continue;
            }
            if (atLineEnd()) {
                skipLineEnd();
            }
            break;
        }
        rows.push_back(std::move(row));
    }
    while (!rows.empty() && rows.back().Blank()) {
        rows.pop_back();
    }
    return rows;
}

bool ParseWhole(std::string_view text, int& value) {
    const char* first = text.data();
    const char* last = text.data() + text.size();
    const auto [end, error] = std::from_chars(first, last, value);
    return error == std::errc() && end == last && first != last;
}

enum class Reading { Number, NotANumber, TooLarge, TooSmall };

// Without an exponent, a number out of range is small when no digit before the point is
// anything but 0; with one, when its exponent is negative.
bool NearZero(std::string_view text) {
    const std::size_t exponent = text.find_first_of("eE");
    if (exponent != std::string_view::npos) {
        return exponent + 1 < text.size() && text[exponent + 1] == '-';
    }
    const std::string_view whole = text.substr(0, text.find('.'));
    return whole.find_first_of("123456789") == std::string_view::npos;
}

Reading ReadDouble(std::string_view text, double& value) {
    if (text.size() > 1 && text.front() == '+' && text[1] != '-' && text[1] != '+') {
        text.remove_prefix(1);
    }
    const char* first = text.data();
    const char* last = text.data() + text.size();
    const auto [end, error] = std::from_chars(first, last, value, std::chars_format::general);
    if (first == last || end != last) {
        return Reading::NotANumber;
    }
    if (error == std::errc::result_out_of_range) {
        return NearZero(text) ? Reading::TooSmall : Reading::TooLarge;
    }
    return error == std::errc() && std::isfinite(value) ? Reading::Number : Reading::NotANumber;
}

// What is wrong with a text that does not read as a number.
std::string NumberProblem(Reading reading) {
    switch (reading) {
    case Reading::TooLarge:
        return "is out of range (the largest number is about 1.8E+308)";
    case Reading::TooSmall:
        return "is out of range (the smallest number apart from 0 is about 4.9E-324)";
    default:
        return "is not a number";
    }
}

// The characters of UTF-8 text: every byte that does not continue a character.
std::size_t CharacterCount(std::string_view text) {
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char c) {
        return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
    }));
}

// "N characters long", with the bytes beside when they are more than the characters: the
// limits of the data files are in bytes.
std::string LengthText(std::string_view text) {
    const std::size_t characters = CharacterCount(text);
    std::string length = std::to_string(characters) + " characters long";
    if (characters != text.size()) {
        length += " (" + std::to_string(text.size()) + " bytes in UTF-8)";
    }
    return length;
}

// A file that is not text: UTF-16 (whose common characters have a NUL byte beside them), or
// any NUL byte, which no text holds.
void RefuseNonText(std::string_view text) {
    if (text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF") ||
        (text.size() >= 2 && (text[0] == '\0' || text[1] == '\0'))) {
        throw ImportError(1, 0, "the file is UTF-16 text; save it as UTF-8 or ASCII text");
    }
    const std::size_t nul = text.find('\0');
    if (nul == std::string_view::npos) {
        return;
    }
    int line = 1;
    for (std::size_t i = 0; i < nul; ++i) {
        if (text[i] == '\n' || (text[i] == '\r' && text[i + 1] != '\n')) {
            ++line;
        }
    }
    throw ImportError(line, 0, "a NUL byte (character 0): the file is not text");
}

// Why text in the form of a date (a year of up to five digits, optionally a Q, M or - and a
// period) cannot be read as one; empty when it is no date at all or a good one.
std::optional<std::string> DateProblem(std::string_view text) {
    const std::size_t digits = std::min(text.find_first_not_of("0123456789"), text.size());
    if (digits == 0 || digits > 5 || ParseCsvDate(text)) {
        return std::nullopt;
    }
    if (digits == text.size() || std::stoi(std::string(text.substr(0, digits))) > 32767) {
        return Quoted(text) + " is a date that cannot be read: a year is at most 32767";
    }
    const char mark = text[digits];
    const std::string_view period = text.substr(digits + 1);
    if (period.empty() || period.size() > 2 ||
        period.find_first_not_of("0123456789") != std::string_view::npos) {
        return std::nullopt;
    }
    if (mark == 'Q' || mark == 'q') {
        return Quoted(text) + " is a date that cannot be read: a quarter is Q1 to Q4";
    }
    if (mark == 'M' || mark == 'm' || mark == '-') {
        return Quoted(text) + " is a date that cannot be read: a month is 01 to 12";
    }
    return std::nullopt;
}

bool IsMissing(std::string_view trimmed) {
    return trimmed.empty() || trimmed == "NA" || trimmed == ".";
}

// Words that head a first column of plain years.
bool IsDateHeading(std::string_view name) {
    const std::string word = UpperCase(Trim(name));
    return word.empty() || word == "DATE" || word == "DATES" || word == "YEAR" || word == "YEARS" ||
           word == "OBS" || word == "PERIOD" || word == "TIME";
}

std::string DateText(const CsvDate& date) {
    const std::string year = std::to_string(date.Year);
    switch (date.PeriodsPerYear) {
    case 4:
        return year + "Q" + std::to_string(date.Period);
    case 12:
        return year + "M" + (date.Period < 10 ? "0" : "") + std::to_string(date.Period);
    default:
        return year;
    }
}

long long DateIndex(const CsvDate& date) {
    return static_cast<long long>(date.Year) * date.PeriodsPerYear + date.Period - 1;
}

// The data type a number of periods a year implies.
int DataTypeOfPeriods(int periodsPerYear) {
    switch (periodsPerYear) {
    case 1:
        return 1;
    case 4:
        return 2;
    case 12:
        return 3;
    default:
        return 4;
    }
}

// The header, dates and options settle the calendar of the data.
void SettleCalendar(ImportedData& data, const std::optional<CsvDate>& firstDate,
                    const ImportOptions& options) {
    if (firstDate) {
        data.DataType = DataTypeOfPeriods(firstDate->PeriodsPerYear);
        data.FirstYear = firstDate->Year;
        data.FirstPeriod = firstDate->Period;
        data.PeriodsPerYear = firstDate->PeriodsPerYear;
    }
    if (options.DataType) {
        data.DataType = *options.DataType;
    } else if (!firstDate && options.PeriodsPerYear) {
        data.DataType = DataTypeOfPeriods(*options.PeriodsPerYear);
    }
    if (options.PeriodsPerYear) {
        data.PeriodsPerYear = *options.PeriodsPerYear;
    } else if (!firstDate) {
        data.PeriodsPerYear = data.DataType == 2 ? 4 : data.DataType == 3 ? 12 : 1;
        if (data.DataType == 4) {
            throw ImportError(0, 0, "data type 4 needs the number of periods a year (--periods)");
        }
    }
    if (options.FirstYear) {
        data.FirstYear = *options.FirstYear;
    }
    if (options.FirstPeriod) {
        data.FirstPeriod = *options.FirstPeriod;
    }

    if (data.DataType < 0 || data.DataType > 4) {
        throw ImportError(0, 0,
                          "the data type must be 0 (undated), 1 (annual) or 2 to 4 "
                          "(several periods a year), not " +
                              std::to_string(data.DataType));
    }
    if (data.PeriodsPerYear < 1 || data.PeriodsPerYear > 32767) {
        throw ImportError(0, 0,
                          "the number of periods a year must be 1 to 32767, not " +
                              std::to_string(data.PeriodsPerYear));
    }
    if (data.FirstYear < -32768 || data.FirstYear > 32767) {
        throw ImportError(
            0, 0, "the first year must be a 16-bit number, not " + std::to_string(data.FirstYear));
    }
    const int lastPeriod = data.DataType >= 2 ? static_cast<int>(data.PeriodsPerYear) : 32767;
    if (data.FirstPeriod < 1 || data.FirstPeriod > lastPeriod) {
        throw ImportError(0, 0,
                          "the first period must be 1 to " + std::to_string(lastPeriod) + ", not " +
                              std::to_string(data.FirstPeriod));
    }
}

// The code that marks a missing value in the module: 0 there means that none is missing, and
// the module then marks them with the default code.
double EffectiveMissingCode(double code) {
    return code == 0 ? DefaultMissingCode : code;
}

// Decision: undated data are a series, as the module takes them; a missing value between the
// first and the last value of a variable would enter the regressions as a number, so it is
// refused (cross-section data, which may have such gaps, are asked for by an option).
void RefuseGaps(const ImportedData& data, const std::vector<Row>& rows, int firstVariable) {
    const std::size_t observations = rows.size() - 1;
    std::vector<std::size_t> firstValid(data.Columns.size(), observations);
    std::vector<std::size_t> lastValid(data.Columns.size(), 0);
    for (std::size_t j = 0; j < data.Columns.size(); ++j) {
        for (std::size_t t = 0; t < observations; ++t) {
            if (data.Columns[j][t] != data.MissingCode) {
                firstValid[j] = std::min(firstValid[j], t);
                lastValid[j] = t;
            }
        }
    }
    for (std::size_t t = 0; t < observations; ++t) {
        for (std::size_t j = 0; j < data.Columns.size(); ++j) {
            if (data.Columns[j][t] == data.MissingCode && t > firstValid[j] && t < lastValid[j]) {
                const int column = static_cast<int>(j) + firstVariable;
                const Field& cell = rows[t + 1].Fields[static_cast<std::size_t>(column - 1)];
                throw ImportError(cell.Line, column,
                                  "a missing value in " + Quoted(data.Names[j]) +
                                      " between its first and last values: data without dates "
                                      "are a series without gaps (give the dates, or "
                                      "--cross-section for cross-section data)");
            }
        }
    }
}

} // namespace

std::string FrequencyText(const ImportedData& data) {
    switch (data.DataType) {
    case 0:
        return "undated";
    case 1:
        return "annual";
    default:
        if (data.PeriodsPerYear == 4) {
            return "quarterly";
        }
        if (data.PeriodsPerYear == 12) {
            return "monthly";
        }
        return std::to_string(data.PeriodsPerYear) + " periods a year";
    }
}

WorkFolderInUse::WorkFolderInUse()
    : std::runtime_error("the work folder is held by a running module") {}

ImportError::ImportError(int line, int column, const std::string& message)
    : std::runtime_error(PlaceText(line, column) + message), line_(line), column_(column),
      problem_(message) {}

std::optional<CsvDate> ParseCsvDate(std::string_view text) {
    const std::string trimmed = Trim(text);
    std::string_view rest = trimmed;
    std::size_t digits = 0;
    while (digits < rest.size() && rest[digits] >= '0' && rest[digits] <= '9') {
        ++digits;
    }
    if (digits == 0 || digits > 5) {
        return std::nullopt;
    }
    CsvDate date;
    if (!ParseWhole(rest.substr(0, digits), date.Year) || date.Year > 32767) {
        return std::nullopt;
    }
    rest.remove_prefix(digits);
    if (rest.empty()) {
        return date;
    }
    const char mark = rest.front();
    rest.remove_prefix(1);
    int period = 0;
    if (rest.empty() || rest.size() > 2 || !ParseWhole(rest, period)) {
        return std::nullopt;
    }
    if ((mark == 'Q' || mark == 'q') && rest.size() == 1 && period >= 1 && period <= 4) {
        date.PeriodsPerYear = 4;
    } else if ((mark == 'M' || mark == 'm' || mark == '-') && period >= 1 && period <= 12) {
        date.PeriodsPerYear = 12;
    } else {
        return std::nullopt;
    }
    date.Period = period;
    return date;
}

ImportedData ParseCsv(std::string_view text, const ImportOptions& options) {
    if (!std::isfinite(options.MissingCode)) {
        throw ImportError(0, 0, "the missing-value code must be a finite number");
    }
    RefuseNonText(text);
    const std::vector<Row> rows = SplitRows(text);
    if (rows.empty()) {
        throw ImportError(1, 0, "the file is empty; its first line must hold the names");
    }
    const Row& header = rows.front();
    const int columns = static_cast<int>(header.Fields.size());
    if (rows.size() < 2) {
        throw ImportError(header.Line + 1, 0,
                          "there are no observations below the names of line " +
                              std::to_string(header.Line));
    }
    if (rows.size() - 1 > static_cast<std::size_t>(MaxObservations)) {
        throw ImportError(rows[MaxObservations + 1].Line, 0,
                          "more than " + std::to_string(MaxObservations) +
                              " observations; the data files cannot hold more");
    }

    // Is the first column a column of dates?
    bool dated = options.Dates == ImportOptions::DateColumn::Yes;
    const Field& firstCell = rows[1].Fields.front();
    if (options.Dates == ImportOptions::DateColumn::Detect) {
        const std::string cell = Trim(firstCell.Text);
        if (const auto date = ParseCsvDate(cell)) {
            dated = date->PeriodsPerYear > 1 || IsDateHeading(header.Fields.front().Text);
        } else if (const auto problem = DateProblem(cell);
                   problem && (cell.find_first_of("QqMm-") != std::string::npos ||
                               IsDateHeading(header.Fields.front().Text))) {
            throw ImportError(firstCell.Line, 1, *problem);
        }
    }
    const int firstVariable = dated ? 2 : 1;

    ImportedData data;
    data.MissingCode = options.MissingCode;
    std::map<std::string, int> seen;
    for (int c = firstVariable; c <= columns; ++c) {
        const Field& field = header.Fields[static_cast<std::size_t>(c - 1)];
        std::string name = Trim(field.Text);
        if (name.empty()) {
            throw ImportError(field.Line, c, "the name is empty");
        }
        if (name.size() > MaxNameLength) {
            throw ImportError(field.Line, c,
                              "the name is " + LengthText(name) + "; at most " +
                                  std::to_string(MaxNameLength) + " bytes fit");
        }
        // The work files carry names in double quotes, which end at the next quote.
        if (name.find('"') != std::string::npos) {
            throw ImportError(field.Line, c,
                              "the name " + Quoted(name) +
                                  " holds a double quote, which the work files cannot carry");
        }
        for (const char ch : name) {
            if (static_cast<unsigned char>(ch) < 0x20) {
                throw ImportError(field.Line, c,
                                  "the name " + Quoted(name) +
                                      " holds a line break or control character");
            }
        }
        if (const auto [it, added] = seen.emplace(name, c); !added) {
            throw ImportError(field.Line, c,
                              "the name " + Quoted(name) + " is already the name of column " +
                                  std::to_string(it->second));
        }
        data.Names.push_back(std::move(name));
    }
    if (data.Names.empty()) {
        throw ImportError(header.Line, 0, "there are no variables, only a column of dates");
    }
    if (data.Names.size() > static_cast<std::size_t>(MaxVariables)) {
        throw ImportError(header.Line, MaxVariables + firstVariable,
                          "more than " + std::to_string(MaxVariables) + " variables");
    }

    const std::size_t observations = rows.size() - 1;
    data.Columns.assign(data.Names.size(), std::vector<double>(observations, 0.0));
    std::optional<CsvDate> firstDate;
    CsvDate previousDate;
    std::string previousDateText;
    for (std::size_t r = 1; r < rows.size(); ++r) {
        const Row& row = rows[r];
        const int fields = static_cast<int>(row.Fields.size());
        if (fields < columns) {
            throw ImportError(row.Line, fields + 1,
                              "the line ends after " + std::to_string(fields) + " field" +
                                  (fields == 1 ? "" : "s") + ", but line " +
                                  std::to_string(header.Line) + " has " + std::to_string(columns) +
                                  " columns");
        }
        if (fields > columns) {
            throw ImportError(row.Fields[static_cast<std::size_t>(columns)].Line, columns + 1,
                              "the line has " + std::to_string(fields) + " fields, but line " +
                                  std::to_string(header.Line) + " has " + std::to_string(columns) +
                                  " columns");
        }
        if (dated) {
            const Field& cell = row.Fields.front();
            const auto date = ParseCsvDate(cell.Text);
            if (!date) {
                const std::string trimmed = Trim(cell.Text);
                throw ImportError(
                    cell.Line, 1,
                    DateProblem(trimmed).value_or(Quoted(trimmed) + " is not a date"));
            }
            if (!firstDate) {
                firstDate = date;
            } else if (date->PeriodsPerYear != previousDate.PeriodsPerYear) {
                throw ImportError(cell.Line, 1,
                                  "the date " + Quoted(Trim(cell.Text)) +
                                      " is not of the same kind as " + Quoted(previousDateText) +
                                      " above it");
            } else if (DateIndex(*date) != DateIndex(previousDate) + 1) {
                CsvDate expected = previousDate;
                if (++expected.Period > expected.PeriodsPerYear) {
                    expected.Period = 1;
                    ++expected.Year;
                }
                throw ImportError(cell.Line, 1,
                                  "the dates are not consecutive: " + Quoted(Trim(cell.Text)) +
                                      " follows " + Quoted(previousDateText) + " (expected " +
                                      DateText(expected) + ")");
            }
            previousDate = *date;
            previousDateText = Trim(cell.Text);
        }
        for (int c = firstVariable; c <= columns; ++c) {
            const Field& cell = row.Fields[static_cast<std::size_t>(c - 1)];
            const std::size_t j = static_cast<std::size_t>(c - firstVariable);
            const std::string trimmed = Trim(cell.Text);
            double value = 0;
            if (IsMissing(trimmed)) {
                if (data.MissingCode == 0) {
                    throw ImportError(cell.Line, c,
                                      "a missing value (" + Quoted(trimmed) + " in " +
                                          Quoted(data.Names[j]) +
                                          ") cannot be stored under the missing-value code 0, "
                                          "which means that nothing is missing");
                }
                value = data.MissingCode;
                ++data.MissingValues;
            } else if (const Reading reading = ReadDouble(trimmed, value);
                       reading != Reading::Number) {
                throw ImportError(cell.Line, c,
                                  Quoted(trimmed) + " in " + Quoted(data.Names[j]) + " " +
                                      NumberProblem(reading) +
                                      (reading == Reading::NotANumber
                                           ? " (a missing value is an empty cell, NA or .)"
                                           : ""));
            } else if (value == EffectiveMissingCode(data.MissingCode)) {
                // Decision: a real value is never taken for a missing one.
                throw ImportError(cell.Line, c,
                                  Quoted(trimmed) + " in " + Quoted(data.Names[j]) +
                                      " equals the missing-value code, which would make it a "
                                      "missing value; choose another code with --missing-code");
            }
            data.Columns[j][r - 1] = value;
        }
    }

    SettleCalendar(data, firstDate, options);
    if (data.DataType == 0 && !options.CrossSection && data.MissingValues > 0) {
        RefuseGaps(data, rows, firstVariable);
    }
    data.Description = options.Description.value_or("");
    if (data.Description.size() > MaxDescriptionLength) {
        throw ImportError(0, 0,
                          "the description is " + LengthText(data.Description) + "; at most " +
                              std::to_string(MaxDescriptionLength) + " bytes fit");
    }
    return data;
}

namespace {

// A file being written beside its final name; removed unless it was put in place.
class PendingFile {
public:
    PendingFile(std::filesystem::path final)
        : final_(std::move(final)), temporary_(WrittenName(final_)) {}
    ~PendingFile() {
        std::error_code error;
        std::filesystem::remove(temporary_, error);
    }
    PendingFile(const PendingFile&) = delete;
    PendingFile& operator=(const PendingFile&) = delete;

    const std::filesystem::path& Temporary() const { return temporary_; }
    const std::filesystem::path& Final() const { return final_; }

private:
    std::filesystem::path final_;
    std::filesystem::path temporary_;
};

// A file there already is replaced only when it may be written: one marked read-only is not
// the import's to replace.
void CheckReplaceable(const std::filesystem::path& file) {
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(file, error);
    if (std::filesystem::exists(status) &&
        (status.permissions() & std::filesystem::perms::owner_write) ==
            std::filesystem::perms::none) {
        Raise(PathFileAccessError);
    }
}

void WriteInput1(const ImportedData& data, const std::filesystem::path& file) {
    const Int16 obsCount(data.ObsCount());
    const Int16 varCount(data.VarCount());
    RecordFile out(file, Input1RecordLength, RecordFile::Mode::Create);
    auto header = [&](long long number, Int16 a, Int16 b, double c) {
        Record record(Input1RecordLength);
        record.SetInt16(Input1FieldA, static_cast<std::int16_t>(a.Value()));
        record.SetInt16(Input1FieldB, static_cast<std::int16_t>(b.Value()));
        record.SetDouble(Input1FieldC, c);
        out.Write(number, record);
    };
    header(1, Int16(data.DataType), Int16(data.FirstYear), data.MissingCode);
    header(2, Int16(data.PeriodsPerYear), Int16(data.FirstPeriod), 0);
    header(3, obsCount, varCount, 0);
    Record record(Input1RecordLength);
    for (int j = 1; j <= varCount; ++j) {
        const std::vector<double>& column = data.Columns[static_cast<std::size_t>(j - 1)];
        for (int t = 1; t <= obsCount; ++t) {
            record.SetDouble(Input1FieldC, column[static_cast<std::size_t>(t - 1)]);
            out.Write(Input1HeaderRecords + static_cast<long long>(obsCount) * (j - 1) + t, record);
        }
    }
    out.Close();
}

void WriteInput2(const ImportedData& data, const std::filesystem::path& file) {
    RecordFile out(file, Input2RecordLength, RecordFile::Mode::Create);
    Record record(Input2RecordLength);
    const std::string_view description = data.Description;
    for (long long r = 1; r <= Input2DescriptionRecords; ++r) {
        const std::size_t start = static_cast<std::size_t>(r - 1) * Input2RecordLength;
        record.SetText(start < description.size() ? description.substr(start, Input2RecordLength)
                                                  : std::string_view());
        out.Write(r, record);
    }
    for (std::size_t j = 0; j < data.Names.size(); ++j) {
        record.SetText(data.Names[j]);
        out.Write(Input2DescriptionRecords + static_cast<long long>(j) + 1, record);
    }
    out.Close();
}

struct Arguments {
    std::vector<std::string> Positional;
    ImportOptions Options;
    bool Help = false;
};

int WholeOption(const std::string& option, const std::string& value) {
    int number = 0;
    if (!ParseWhole(Trim(value), number)) {
        throw ImportError(0, 0, option + " needs a whole number, not " + Quoted(value));
    }
    return number;
}

Arguments ParseArguments(const std::vector<std::string>& arguments) {
    Arguments parsed;
    for (std::size_t a = 0; a < arguments.size(); ++a) {
        std::string option = arguments[a];
        if (option == "-h" || option == "--help") {
            parsed.Help = true;
            continue;
        }
        if (!option.starts_with("--") || option == "--") {
            parsed.Positional.push_back(option);
            continue;
        }
        if (option == "--dates") {
            parsed.Options.Dates = ImportOptions::DateColumn::Yes;
            continue;
        }
        if (option == "--no-dates") {
            parsed.Options.Dates = ImportOptions::DateColumn::No;
            continue;
        }
        if (option == "--cross-section") {
            parsed.Options.CrossSection = true;
            continue;
        }
        std::optional<std::string> value;
        if (const std::size_t equals = option.find('='); equals != std::string::npos) {
            value = option.substr(equals + 1);
            option.resize(equals);
        }
        auto needValue = [&]() -> const std::string& {
            if (!value) {
                if (a + 1 >= arguments.size()) {
                    throw ImportError(0, 0, option + " needs a value");
                }
                value = arguments[++a];
            }
            return *value;
        };
        if (option == "--type") {
            parsed.Options.DataType = WholeOption(option, needValue());
        } else if (option == "--first-year") {
            parsed.Options.FirstYear = WholeOption(option, needValue());
        } else if (option == "--first-period") {
            parsed.Options.FirstPeriod = WholeOption(option, needValue());
        } else if (option == "--periods") {
            parsed.Options.PeriodsPerYear = WholeOption(option, needValue());
        } else if (option == "--description") {
            parsed.Options.Description = needValue();
        } else if (option == "--missing-code") {
            const std::string& text = needValue();
            double code = 0;
            if (const Reading reading = ReadDouble(Trim(text), code); reading != Reading::Number) {
                throw ImportError(0, 0,
                                  "--missing-code needs a number: " + Quoted(text) + " " +
                                      NumberProblem(reading));
            }
            parsed.Options.MissingCode = code;
        } else {
            throw ImportError(0, 0, "unknown option " + option);
        }
    }
    return parsed;
}

} // namespace

void WriteDataFiles(const ImportedData& data, const std::filesystem::path& dataFolder) {
    // The counts must fit the files before anything is created.
    const Int16 obsCount(data.ObsCount());
    const Int16 varCount(data.VarCount());
    for (const auto& column : data.Columns) {
        if (column.size() != static_cast<std::size_t>(obsCount.Value())) {
            Raise(InvalidProcedureCall);
        }
    }
    if (data.Names.size() != static_cast<std::size_t>(varCount.Value())) {
        Raise(InvalidProcedureCall);
    }

    const Workspace workspace{{}, dataFolder, dataFolder};
    std::error_code error;
    const bool existed = std::filesystem::is_directory(workspace.DataSubfolder(), error);
    std::filesystem::create_directories(workspace.DataSubfolder(), error);
    if (error) {
        Raise(PathFileAccessError);
    }
    // The import holds the work folder's lock while it writes, as a running module does: the
    // data files of a module are never replaced under it, and no module starts on files that
    // are half replaced.
    const FileLock lock(workspace.WorkFile(WorkFolderLockName));
    if (lock.state() == FileLock::State::HeldElsewhere) {
        throw WorkFolderInUse();
    }
    try {
        SettleDataFiles(workspace.DataSubfolder());
        PendingFile input1(workspace.DataFile("INPUT1.RAN"));
        PendingFile input2(workspace.DataFile("INPUT2.RAN"));
        CheckReplaceable(input1.Final());
        CheckReplaceable(input2.Final());
        WriteInput1(data, input1.Temporary());
        WriteInput2(data, input2.Temporary());
        PutDataFilesInPlace(workspace.DataSubfolder());
    } catch (...) {
        if (!existed) {
            std::filesystem::remove(workspace.DataSubfolder(), error);
        }
        throw;
    }
}

std::optional<std::string> WorkFolderNameProblem(std::string_view folder) {
    if (folder.find('"') != std::string_view::npos) {
        return "the work folder " + Quoted(folder) +
               " holds a double quote, which the work-folder files cannot carry";
    }
    if (!folder.empty() && (IsBlank(folder.front()) || IsBlank(folder.back()))) {
        return "the work folder " + Quoted(folder) +
               " begins or ends in a blank, which the module drops from its command line";
    }
    return std::nullopt;
}

std::string ImportUsage() {
    return R"(Usage: lorvane-import DATA.csv WORKFOLDER [options]

Writes WORKFOLDER/LORVANE.DAT/INPUT1.RAN and INPUT2.RAN, the data files of the VAR
module, from a CSV file. Any other file in LORVANE.DAT (OUTPUT.TXT among them) is left
alone. The name of WORKFOLDER may hold no double quote and no blank at either end.

The CSV file: fields separated by commas, lines ended by LF or CR LF, an optional
UTF-8 byte order mark, fields in double quotes where they hold commas or quotes.
The first line holds the variable names (at most 500 bytes each: 500 characters of
ASCII, fewer of other UTF-8 text; all different; no double quotes).
Every other line is one observation; empty lines at the end are ignored. A cell that
is empty, NA or . is a missing value; any other cell must be a number written with a
decimal point.

An optional first column of dates sets the calendar:
  1960Q1             quarterly   (data type 2, 4 periods a year)
  1960M03, 1960-03   monthly     (data type 3, 12 periods a year)
  1960               annual      (data type 1); a first column of plain years counts
                     as dates only when its heading is empty or one of date, dates,
                     year, years, obs, period, time (or with --dates)
The dates must follow one another without gaps. Without dates the data are undated
(data type 0) and numbered from 1; they are a series as well, so a missing value between
the first and the last value of a variable is refused, unless --cross-section says that
the observations are the units of a cross-section. A value equal to the missing-value
code is refused in any data.

Options (they override what the dates say):
  --type N           data type: 0 undated, 1 annual, 2 to 4 several periods a year
  --first-year Y     year of the first observation (undated: its number)
  --first-period P   period of the first observation within its year
  --periods N        periods a year; without --type, 1 means annual, 4 quarterly,
                     12 monthly and any other number data type 4
  --description TEXT description of the data set (at most 1500 bytes;
                     default: the name of the CSV file)
  --missing-code X   the number that stands for a missing value (default -99999.99);
                     0 means "no missing values" and is refused when some are missing
  --dates            the first column holds dates
  --no-dates         the first column is a variable, even when it looks like dates
  --cross-section    undated data are a cross-section: missing values may stand
                     anywhere
  -h, --help         this text

Exit codes: 0 done; 1 the data were refused (the message names line and column);
2 bad arguments or options; 3 the files could not be written. When the data are refused or the
files cannot be written, nothing is changed in WORKFOLDER.
)";
}

int RunImport(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err) {
    const std::string program = "lorvane-import: ";
    Arguments parsed;
    try {
        parsed = ParseArguments(arguments);
    } catch (const ImportError& error) {
        err << program << error.what() << "\nTry lorvane-import --help.\n";
        return 2;
    }
    if (parsed.Help) {
        out << ImportUsage();
        return 0;
    }
    if (parsed.Positional.size() != 2) {
        err << program << "expected a CSV file and a work folder\nTry lorvane-import --help.\n";
        return 2;
    }
    const std::filesystem::path csv = parsed.Positional[0];
    const std::filesystem::path workFolder = parsed.Positional[1];
    if (const auto problem = WorkFolderNameProblem(parsed.Positional[1])) {
        err << program << *problem << "\nNothing was written.\n";
        return 2;
    }

    std::error_code error;
    std::ifstream stream(csv, std::ios::binary);
    if (!stream || std::filesystem::is_directory(csv, error)) {
        err << program << "cannot read " << csv.string() << "\n";
        return 1;
    }
    const std::string text((std::istreambuf_iterator<char>(stream)),
                           std::istreambuf_iterator<char>());
    if (!parsed.Options.Description) {
        parsed.Options.Description = csv.filename().string();
    }

    ImportedData data;
    try {
        data = ParseCsv(text, parsed.Options);
    } catch (const ImportError& refused) {
        // A problem without a place in the file comes from the options.
        err << program << (refused.Line() > 0 ? csv.string() + ": " : std::string())
            << refused.what() << "\nNothing was written.\n";
        return refused.Line() > 0 ? 1 : 2;
    }
    try {
        WriteDataFiles(data, workFolder);
    } catch (const WorkFolderInUse&) {
        err << program << "a module is running on " << workFolder.string()
            << "; end it first\nNothing was written.\n";
        return 3;
    } catch (const RuntimeError& failed) {
        err << program << "cannot write the data files in " << (workFolder / "LORVANE.DAT").string()
            << " (" << failed.Description() << ")\nNothing was written.\n";
        return 3;
    }

    const int obsCount = data.ObsCount();
    auto label = [&](int t) {
        return ObsLabel(t, data.DataType, data.FirstYear, data.FirstPeriod, data.PeriodsPerYear,
                        obsCount);
    };
    out << "Imported " << obsCount << " observation" << (obsCount == 1 ? "" : "s") << " of "
        << data.VarCount() << " variable" << (data.VarCount() == 1 ? "" : "s") << " ("
        << FrequencyText(data) << ", " << label(1) << " to " << label(obsCount) << ", "
        << data.MissingValues << " missing value" << (data.MissingValues == 1 ? "" : "s")
        << ") into " << (workFolder / "LORVANE.DAT").string() << "\n";
    return 0;
}

} // namespace lorvane
