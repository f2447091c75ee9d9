#pragma once

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

#include "frame/Int16.h"

namespace lorvane {

// One record of the comma form: texts in double quotes, numbers unquoted without a leading
// blank, doubles in the shortest text that reads back to the same double.
class CommaRecord {
public:
    CommaRecord& Text(std::string_view text);
    CommaRecord& Number(double value);
    CommaRecord& Whole(long long value);
    const std::string& Line() const { return line_; }

private:
    void Separate();
    std::string line_;
    bool empty_ = true;
};

// A text file opened for output or appending; every line ends in CR LF. The file is closed
// when the object goes. Opening fails with run-time error 75.
class TextOutput {
public:
    enum class Mode { Output, Append };
    TextOutput(const std::filesystem::path& file, Mode mode);

    void PrintLine(std::string_view text);       // print form
    void WriteRecord(const CommaRecord& record); // comma form
    void Close();

private:
    std::ofstream stream_;
    std::filesystem::path file_;
};

// The largest text file that is read: more than the work files of the largest model the data
// store can hold in practice. A longer file is its read error, error 62.
inline constexpr std::size_t MaxTextFileBytes = std::size_t{256} << 20;

// A text file read from its start. Opening a missing file is run-time error 53; reading
// beyond its end is error 62. Lines may end in CR LF or LF.
class TextInput {
public:
    explicit TextInput(const std::filesystem::path& file);

    bool AtEnd() const;
    std::string ReadLine();
    // The next comma-form field; line ends separate fields as commas do.
    std::string ReadField();
    double ReadNumber(); // error 13 when the field is not a number; an empty field is 0
    Int16 ReadWhole();   // a number rounded half to even into 16 bits

    // The checks of a damaged work file. A count or size that cannot be right, or a file too
    // short for the fields its counts announce, is the file's read error, error 62, raised
    // before anything is sized by it: the reader stops at once instead of reading on.
    // A whole number that must lie in lowest..highest.
    Int16 ReadCount(int lowest, int highest = 32767);
    // Raises the read error unless `fields` more fields can still follow; every field takes
    // one character at least.
    void ExpectFields(long long fields) const;

private:
    std::string content_;
    std::size_t position_ = 0;
};

// Shortest text of a double that reads back to the same double ("0.1", "-2.5e-07").
std::string ShortestText(double value);

// Reads a whole text file into lines; at most maxLines lines.
std::vector<std::string> ReadLines(const std::filesystem::path& file,
                                   std::size_t maxLines = static_cast<std::size_t>(-1));

// 1 when the file opens for reading and one line can be read from it, else 0.
Int16 FileExists(const std::filesystem::path& file);

} // namespace lorvane
