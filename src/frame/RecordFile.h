#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

namespace lorvane {

// The bytes of one fixed-length record, with little-endian fields at byte offsets.
class Record {
public:
    explicit Record(std::size_t length) : bytes_(length, 0) {}

    std::size_t Length() const { return bytes_.size(); }
    const std::vector<unsigned char>& Bytes() const { return bytes_; }
    std::vector<unsigned char>& Bytes() { return bytes_; }

    // Fields beyond the record's end are run-time error 5.
    std::int16_t Int16At(std::size_t offset) const;
    double DoubleAt(std::size_t offset) const;
    void SetInt16(std::size_t offset, std::int16_t value);
    void SetDouble(std::size_t offset, double value);

    // The whole record as text, and text cut or padded with blanks to the record's length.
    std::string Text() const;
    void SetText(std::string_view text);

private:
    void Check(std::size_t offset, std::size_t width) const;
    std::vector<unsigned char> bytes_;
};

// A file of fixed-length records numbered from 1. The file stays open while the object
// lives. Opening a missing file for reading or updating is run-time error 53, any other
// failure to open is 75; reading a record that is not wholly in the file is 62; a record
// number below 1 is 63.
class RecordFile {
public:
    enum class Mode {
        Read,   // an existing file, read only
        Update, // an existing file, read and write
        Create  // a new empty file, replacing any file of that name
    };

    RecordFile(const std::filesystem::path& file, std::size_t recordLength, Mode mode);

    std::size_t RecordLength() const { return recordLength_; }
    // The number of whole records in the file.
    long long RecordCount();

    Record Read(long long number);
    // Writing past the end extends the file; a gap is filled with zero bytes.
    void Write(long long number, const Record& record);
    // Flushes and closes; a write that failed late is run-time error 75 here.
    void Close();

private:
    std::streamoff OffsetOf(long long number) const;

    std::fstream stream_;
    std::size_t recordLength_;
};

inline constexpr int BadRecordNumber = 63;

} // namespace lorvane
