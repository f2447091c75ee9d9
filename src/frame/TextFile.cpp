#include "frame/TextFile.h"

#include <charconv>
#include <cmath>
#include <iterator>
#include <system_error>

#include "frame/NumberText.h"
#include "frame/RuntimeError.h"

namespace lorvane {

std::string ShortestText(double value) {
    char buffer[64];
    const auto end = std::to_chars(buffer, buffer + sizeof buffer, value).ptr;
    return std::string(buffer, end);
}

void CommaRecord::Separate() {
    if (!empty_) {
        line_.push_back(',');
    }
    empty_ = false;
}

CommaRecord& CommaRecord::Text(std::string_view text) {
    Separate();
    line_.push_back('"');
    line_ += text;
    line_.push_back('"');
    return *this;
}

CommaRecord& CommaRecord::Number(double value) {
    Separate();
    line_ += ShortestText(CheckedFinite(value));
    return *this;
}

CommaRecord& CommaRecord::Whole(long long value) {
    Separate();
    line_ += std::to_string(value);
    return *this;
}

TextOutput::TextOutput(const std::filesystem::path& file, Mode mode) : file_(file) {
    const auto flags = std::ios::binary | (mode == Mode::Append ? std::ios::app : std::ios::trunc);
    stream_.open(file, std::ios::out | flags);
    if (!stream_) {
        Raise(PathFileAccessError);
    }
}

void TextOutput::PrintLine(std::string_view text) {
    stream_ << text << "\r\n";
    if (!stream_) {
        Raise(PathFileAccessError);
    }
}

void TextOutput::WriteRecord(const CommaRecord& record) {
    PrintLine(record.Line());
}

void TextOutput::Close() {
    stream_.close();
    if (!stream_) {
        Raise(PathFileAccessError);
    }
}

TextInput::TextInput(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    std::error_code error;
    if (!stream || std::filesystem::is_directory(file, error)) {
        Raise(FileNotFound);
    }
    // Read up to one byte past the bound, never the whole of what the name leads to: a work file
    // padded beyond any model's size, or one that is a link to an endless device.
    char chunk[1 << 16];
    while (stream.read(chunk, sizeof chunk) || stream.gcount() > 0) {
        content_.append(chunk, static_cast<std::size_t>(stream.gcount()));
        if (content_.size() > MaxTextFileBytes) {
            content_ = std::string();
            Raise(InputPastEndOfFile);
        }
    }
}

bool TextInput::AtEnd() const {
    return position_ >= content_.size();
}

std::string TextInput::ReadLine() {
    if (AtEnd()) {
        Raise(InputPastEndOfFile);
    }
    const std::size_t end = content_.find('\n', position_);
    std::string line =
        content_.substr(position_, end == std::string::npos ? std::string::npos : end - position_);
    position_ = end == std::string::npos ? content_.size() : end + 1;
    if (!line.empty() && line.back() == '\r') {
        line.pop_back();
    }
    return line;
}

std::string TextInput::ReadField() {
    while (!AtEnd() && (content_[position_] == ' ' || content_[position_] == '\t')) {
        ++position_;
    }
    if (AtEnd()) {
        Raise(InputPastEndOfFile);
    }
    std::string field;
    auto atSeparator = [this] {
        const char c = content_[position_];
        return c == ',' || c == '\n' || c == '\r';
    };
    if (content_[position_] == '"') {
        const std::size_t close = content_.find('"', position_ + 1);
        const std::size_t end = close == std::string::npos ? content_.size() : close;
        field = content_.substr(position_ + 1, end - position_ - 1);
        position_ = close == std::string::npos ? content_.size() : close + 1;
        while (!AtEnd() && !atSeparator()) {
            ++position_;
        }
    } else {
        while (!AtEnd() && !atSeparator()) {
            field.push_back(content_[position_++]);
        }
        field = TrimRight(field);
    }
    // The separator: a comma, or a line end (CR LF, LF or CR).
    if (!AtEnd()) {
        const char c = content_[position_++];
        if (c == '\r' && !AtEnd() && content_[position_] == '\n') {
            ++position_;
        }
    }
    return field;
}

double TextInput::ReadNumber() {
    const std::string field = Trim(ReadField());
    if (field.empty()) {
        return 0.0;
    }
    const char* first = field.data();
    const char* last = field.data() + field.size();
    if (*first == '+') {
        ++first;
    }
    double value = 0.0;
    const auto [rest, error] = std::from_chars(first, last, value);
    // The comma form never holds "nan" or "inf": such a field is not a number.
    if (error != std::errc() || rest != last || !std::isfinite(value)) {
        Raise(TypeMismatch);
    }
    return value;
}

Int16 TextInput::ReadWhole() {
    return CInt(ReadNumber());
}

Int16 TextInput::ReadCount(int lowest, int highest) {
    const Int16 count = ReadWhole();
    if (count < lowest || count > highest) {
        Raise(InputPastEndOfFile);
    }
    return count;
}

void TextInput::ExpectFields(long long fields) const {
    if (fields < 0 || static_cast<unsigned long long>(fields) > content_.size() - position_) {
        Raise(InputPastEndOfFile);
    }
}

std::vector<std::string> ReadLines(const std::filesystem::path& file, std::size_t maxLines) {
    TextInput input(file);
    std::vector<std::string> lines;
    while (!input.AtEnd() && lines.size() < maxLines) {
        lines.push_back(input.ReadLine());
    }
    return lines;
}

Int16 FileExists(const std::filesystem::path& file) {
    try {
        TextInput input(file);
        input.ReadLine();
        return 1;
    } catch (const RuntimeError&) {
        return 0;
    }
}

} // namespace lorvane
