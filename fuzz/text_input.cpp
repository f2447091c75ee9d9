// The comma-form reader on arbitrary bytes. The first byte chooses the reads (two bits each,
// repeated: a line, a field, a number, a whole number); the rest is the file. Every read either
// consumes at least one byte or raises its run-time error (62 at the end or when only blanks
// are left, 13 for a field that is not a number, 6 for a whole number beyond 16 bits), so the
// reads reach the end. A number
// read is always finite. Then a record written in the comma form from the same bytes reads back
// exactly.

#include <algorithm>
#include <cmath>
#include <cstring>
#include <string>

#include "FuzzSupport.h"
#include "frame/RuntimeError.h"
#include "frame/TextFile.h"

using namespace lorvane;
using namespace lorvane::fuzz;

namespace {

void ReadAll(const std::filesystem::path& file, std::uint8_t program, std::size_t size) {
    TextInput input(file);
    for (std::size_t call = 0; !input.AtEnd(); ++call) {
        if (call > size) {
            Broken("the reads do not reach the end of the file");
        }
        const int kind = (program >> (2 * (call % 4))) & 3;
        try {
            switch (kind) {
            case 0:
                if (input.ReadLine().find('\n') != std::string::npos) {
                    Broken("a line holds a line feed");
                }
                break;
            case 1:
                input.ReadField();
                break;
            case 2:
                if (const double value = input.ReadNumber(); !std::isfinite(value)) {
                    Broken("ReadNumber gave a value that is not finite");
                }
                break;
            default:
                input.ReadWhole();
                break;
            }
        } catch (const RuntimeError& error) {
            // A field is sought past blanks: blanks up to the end are the end of the file.
            const bool expected = (error.Number() == InputPastEndOfFile && input.AtEnd()) ||
                                  (kind >= 2 && error.Number() == TypeMismatch) ||
                                  (kind == 3 && error.Number() == Overflow);
            if (!expected || kind == 0) {
                Broken("read " + std::to_string(kind) + " raised error " +
                       std::to_string(error.Number()));
            }
        }
    }
    try {
        input.ReadField();
        Broken("a read at the end raised nothing");
    } catch (const RuntimeError& error) {
        if (error.Number() != InputPastEndOfFile) {
            Broken("a read at the end raised error " + std::to_string(error.Number()));
        }
    }
}

void RoundTrip(std::string_view bytes) {
    double number = 0;
    if (bytes.size() >= sizeof number) {
        std::memcpy(&number, bytes.data(), sizeof number);
    }
    if (!std::isfinite(number)) {
        number = 0;
    }
    std::string text(bytes.substr(std::min(bytes.size(), sizeof number)));
    text.erase(std::remove(text.begin(), text.end(), '"'), text.end());
    const long long whole = static_cast<long long>(bytes.size() % 65536) - 32768;

    const std::filesystem::path file = ScratchFolder() / "RECORD.TMP";
    {
        TextOutput out(file, TextOutput::Mode::Output);
        out.WriteRecord(CommaRecord().Text(text).Number(number).Whole(whole));
        out.WriteRecord(CommaRecord().Number(-number).Text(""));
        out.Close();
    }
    TextInput in(file);
    const std::string textBack = in.ReadField();
    const double numberBack = in.ReadNumber();
    const int wholeBack = in.ReadWhole();
    const double negatedBack = in.ReadNumber();
    const std::string emptyBack = in.ReadField();
    if (textBack != text || numberBack != number || wholeBack != whole || negatedBack != -number ||
        !emptyBack.empty() || !in.AtEnd()) {
        Broken("a comma-form record does not read back");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    const std::string_view content = AsText(data + 1, size - 1);
    const std::filesystem::path file = ScratchFolder() / "INPUT.TMP";
    WriteBytes(file, content);
    ReadAll(file, data[0], content.size());
    RoundTrip(content);
    return 0;
}
