#pragma once

#include <filesystem>
#include <string>

#include "data/CsvImport.h"

namespace lorvane::desktop {

// A CSV file as the import reads it, before anything is written: the data set it makes, or
// why it cannot be imported. What is previewed is what gets imported.
struct DataPreview {
    std::filesystem::path File;
    ImportedData Data;
    // Empty when the file can be imported; else the reason, with its line and column.
    std::string Problem;

    bool Importable() const { return Problem.empty(); }
};

// Reads and parses the file with the import's own rules and defaults (the file's name is the
// description of the data set).
DataPreview PreviewCsv(const std::filesystem::path& file);

// The calendar the dates set: "Quarterly data, 1960.1 to 1982.4: 92 observations of 7
// variables." An undated data set is numbered from 1.
std::string CalendarText(const ImportedData& data);

// The missing values and the code that stands for them in the data files.
std::string MissingText(const ImportedData& data);

// The label of observation t (from 1), as the module shows it.
std::string ObservationLabel(const ImportedData& data, int t);

} // namespace lorvane::desktop
