// The import tool's CSV reader on arbitrary text. It either refuses the text with an
// ImportError that names a place in it, or gives a data set that the data files hold exactly:
// written with WriteDataFiles and read back through the data store, names and values come
// back unchanged.

#include <algorithm>
#include <cmath>
#include <cstring>
#include <set>
#include <string>
#include <vector>

#include "FuzzSupport.h"
#include "data/CsvImport.h"
#include "data/DataStore.h"
#include "frame/NumberText.h"
#include "platform/Headless.h"

using namespace lorvane;
using namespace lorvane::fuzz;

namespace {

void CheckShape(const ImportedData& data) {
    if (data.Names.empty() || data.Names.size() != data.Columns.size()) {
        Broken(std::to_string(data.Names.size()) + " names for " +
               std::to_string(data.Columns.size()) + " columns");
    }
    std::set<std::string> distinct;
    for (const std::string& name : data.Names) {
        if (name.empty() || name.size() > MaxNameLength || name != Trim(name) ||
            !distinct.insert(name).second) {
            Broken("the name \"" + name + "\" is empty, too long, untrimmed or repeated");
        }
    }
    const std::size_t rows = data.Columns.front().size();
    if (rows == 0 || rows > static_cast<std::size_t>(MaxObservations)) {
        Broken(std::to_string(rows) + " observations");
    }
    long long missing = 0;
    for (const std::vector<double>& column : data.Columns) {
        if (column.size() != rows) {
            Broken("the columns differ in length");
        }
        for (const double value : column) {
            if (!std::isfinite(value)) {
                Broken("a value is not finite");
            }
            missing += value == data.MissingCode;
        }
    }
    if (missing < data.MissingValues) {
        Broken("fewer values carry the missing code than were missing");
    }
    if (data.DataType < 0 || data.DataType > 4 || data.PeriodsPerYear < 1 ||
        data.PeriodsPerYear > 32767 || data.FirstPeriod < 1 || data.FirstYear < -32768 ||
        data.FirstYear > 32767) {
        Broken("the calendar is out of range");
    }
}

void CheckRoundTrip(const ImportedData& data) {
    const std::filesystem::path folder = ScratchFolder() / "csv";
    WriteDataFiles(data, folder);
    const std::filesystem::path input1 = folder / "LORVANE.DAT" / "INPUT1.RAN";
    const std::filesystem::path input2 = folder / "LORVANE.DAT" / "INPUT2.RAN";
    DataStore store;
    std::vector<int> all(data.Names.size());
    for (std::size_t j = 0; j < all.size(); ++j) {
        all[j] = static_cast<int>(j) + 1;
    }
    HeadlessEventPump events;
    if (store.LoadSelected(input1, input2, all, events) != 1) {
        Broken("the written files do not load");
    }
    if (store.DataType != data.DataType || store.FirstYear != data.FirstYear ||
        store.FirstPeriod != data.FirstPeriod || store.PeriodsPerYear != data.PeriodsPerYear ||
        store.ObsCount != data.ObsCount() || store.VarCount != data.VarCount() ||
        std::memcmp(&store.MissingCode, &data.MissingCode, sizeof(double)) != 0) {
        Broken("the header does not read back");
    }
    for (std::size_t j = 0; j < all.size(); ++j) {
        const int i = static_cast<int>(j) + 1;
        // Names are kept trimmed; a name of control characters or trailing blanks cannot pass.
        if (store.SelectedName(i) != data.Names[j]) {
            Broken("name " + std::to_string(i) + " reads back as \"" + store.SelectedName(i) +
                   "\"");
        }
        for (int t = 1; t <= data.ObsCount(); ++t) {
            const double value = data.Columns[j][static_cast<std::size_t>(t - 1)];
            const double back = store.SelectedValue(t, i);
            if (std::memcmp(&value, &back, sizeof value) != 0) {
                Broken("value (" + std::to_string(t) + ", " + std::to_string(i) +
                       ") does not read back");
            }
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text = AsText(data, size);
    const std::size_t lines = static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n') +
                                                       std::count(text.begin(), text.end(), '\r'));
    for (const auto dates : {ImportOptions::DateColumn::Detect, ImportOptions::DateColumn::No}) {
        ImportOptions options;
        options.Dates = dates;
        try {
            const ImportedData imported = ParseCsv(text, options);
            CheckShape(imported);
            CheckRoundTrip(imported);
        } catch (const ImportError& error) {
            if (error.Line() < 0 || static_cast<std::size_t>(error.Line()) > lines + 2 ||
                error.Column() < 0 || std::string(error.what()).empty()) {
                Broken(std::string("a refusal names no place in the text: ") + error.what());
            }
        }
    }
    return 0;
}
