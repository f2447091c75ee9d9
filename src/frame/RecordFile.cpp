#include "frame/RecordFile.h"

#include <bit>
#include <system_error>

#include "frame/RuntimeError.h"

namespace lorvane {

void Record::Check(std::size_t offset, std::size_t width) const {
    if (offset > bytes_.size() || width > bytes_.size() - offset) {
        Raise(InvalidProcedureCall);
    }
}

std::int16_t Record::Int16At(std::size_t offset) const {
    Check(offset, 2);
    const auto bits = static_cast<std::uint16_t>(bytes_[offset] | (bytes_[offset + 1] << 8));
    return static_cast<std::int16_t>(bits);
}

double Record::DoubleAt(std::size_t offset) const {
    Check(offset, 8);
    std::uint64_t bits = 0;
    for (std::size_t i = 0; i < 8; ++i) {
        bits |= static_cast<std::uint64_t>(bytes_[offset + i]) << (8 * i);
    }
    return std::bit_cast<double>(bits);
}

void Record::SetInt16(std::size_t offset, std::int16_t value) {
    Check(offset, 2);
    const auto bits = static_cast<std::uint16_t>(value);
    bytes_[offset] = static_cast<unsigned char>(bits & 0xFF);
    bytes_[offset + 1] = static_cast<unsigned char>(bits >> 8);
}

void Record::SetDouble(std::size_t offset, double value) {
    Check(offset, 8);
    const auto bits = std::bit_cast<std::uint64_t>(value);
    for (std::size_t i = 0; i < 8; ++i) {
        bytes_[offset + i] = static_cast<unsigned char>((bits >> (8 * i)) & 0xFF);
    }
}

std::string Record::Text() const {
    return std::string(bytes_.begin(), bytes_.end());
}

void Record::SetText(std::string_view text) {
    for (std::size_t i = 0; i < bytes_.size(); ++i) {
        bytes_[i] = i < text.size() ? static_cast<unsigned char>(text[i]) : ' ';
    }
}

RecordFile::RecordFile(const std::filesystem::path& file, std::size_t recordLength, Mode mode)
    : recordLength_(recordLength) {
    if (recordLength == 0) {
        Raise(InvalidProcedureCall);
    }
    std::error_code error;
    const bool isFolder = std::filesystem::is_directory(file, error);
    if (mode != Mode::Create && !isFolder && !std::filesystem::exists(file, error)) {
        Raise(FileNotFound);
    }
    if (isFolder) {
        Raise(PathFileAccessError);
    }
    std::ios::openmode flags = std::ios::binary | std::ios::in;
    if (mode == Mode::Update) {
        flags |= std::ios::out;
    } else if (mode == Mode::Create) {
        flags |= std::ios::out | std::ios::trunc;
    }
    stream_.open(file, flags);
    if (!stream_.is_open()) {
        Raise(PathFileAccessError);
    }
}

std::streamoff RecordFile::OffsetOf(long long number) const {
    if (number < 1) {
        throw RuntimeError(BadRecordNumber, "Bad record number");
    }
    return static_cast<std::streamoff>(number - 1) * static_cast<std::streamoff>(recordLength_);
}

long long RecordFile::RecordCount() {
    stream_.clear();
    stream_.seekg(0, std::ios::end);
    const std::streamoff size = stream_.tellg();
    if (size < 0) {
        Raise(PathFileAccessError);
    }
    return static_cast<long long>(size / static_cast<std::streamoff>(recordLength_));
}

Record RecordFile::Read(long long number) {
    const std::streamoff offset = OffsetOf(number);
    Record record(recordLength_);
    stream_.clear();
    stream_.seekg(offset);
    stream_.read(reinterpret_cast<char*>(record.Bytes().data()),
                 static_cast<std::streamsize>(recordLength_));
    if (stream_.gcount() != static_cast<std::streamsize>(recordLength_)) {
        stream_.clear();
        Raise(InputPastEndOfFile);
    }
    return record;
}

void RecordFile::Write(long long number, const Record& record) {
    const std::streamoff offset = OffsetOf(number);
    if (record.Length() != recordLength_) {
        Raise(InvalidProcedureCall);
    }
    stream_.clear();
    stream_.seekp(offset);
    stream_.write(reinterpret_cast<const char*>(record.Bytes().data()),
                  static_cast<std::streamsize>(recordLength_));
    if (!stream_) {
        stream_.clear();
        Raise(PathFileAccessError);
    }
}

void RecordFile::Close() {
    if (!stream_.is_open()) {
        return;
    }
    stream_.clear();
    stream_.flush();
    const bool flushed = static_cast<bool>(stream_);
    stream_.close();
    if (!flushed || !stream_) {
        Raise(PathFileAccessError);
    }
}

} // namespace lorvane
