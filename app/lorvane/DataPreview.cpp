#include "DataPreview.h"

#include <cctype>
#include <fstream>
#include <iterator>
#include <system_error>

#include "frame/NumberText.h"
#include "frame/ObsLabel.h"

namespace lorvane::desktop {

namespace {

std::string Counted(long long count, const std::string& singular) {
    return std::to_string(count) + " " + singular + (count == 1 ? "" : "s");
}

// "Quarterly data", or "Data with 6 periods a year".
std::string Frequency(const ImportedData& data) {
    std::string text = FrequencyText(data);
    if (text.ends_with(" a year")) {
        return "Data with " + text;
    }
    text[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(text[0])));
    return text + " data";
}

} // namespace

DataPreview PreviewCsv(const std::filesystem::path& file) {
    DataPreview preview;
    preview.File = file;
    std::error_code error;
    std::ifstream stream(file, std::ios::binary);
    if (!stream || std::filesystem::is_directory(file, error)) {
        preview.Problem = "The file " + file.string() + " cannot be read.";
        return preview;
    }
    const std::string text((std::istreambuf_iterator<char>(stream)),
                           std::istreambuf_iterator<char>());
    ImportOptions options;
    options.Description = file.filename().string();
    try {
        preview.Data = ParseCsv(text, options);
    } catch (const ImportError& refused) {
        preview.Problem = refused.what();
    }
    return preview;
}

std::string ObservationLabel(const ImportedData& data, int t) {
    return ObsLabel(t, data.DataType, data.FirstYear, data.FirstPeriod, data.PeriodsPerYear,
                    data.ObsCount());
}

std::string CalendarText(const ImportedData& data) {
    const int count = data.ObsCount();
    const std::string span =
        count == 0 ? std::string("no observations")
                   : ObservationLabel(data, 1) + " to " + ObservationLabel(data, count);
    return Frequency(data) + (data.DataType == 0 ? ", numbered " : ", ") + span + ": " +
           Counted(count, "observation") + " of " + Counted(data.VarCount(), "variable") + ".";
}

std::string MissingText(const ImportedData& data) {
    if (data.MissingValues == 0) {
        return "No missing values.";
    }
    return Counted(data.MissingValues, "missing value") +
           " (empty cells, NA and .), kept in the data files as " +
           Trim(NumberToText(data.MissingCode)) + ".";
}

} // namespace lorvane::desktop
