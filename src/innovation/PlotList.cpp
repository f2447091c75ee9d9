#include "innovation/PlotList.h"

#include <filesystem>
#include <system_error>

#include "frame/NumberText.h"
#include "frame/RuntimeError.h"
#include "frame/TextFile.h"
#include "frame/Workspace.h"
#include "innovation/ResponseOutput.h"

namespace lorvane {

namespace {

bool Exists(const std::filesystem::path& file) {
    std::error_code error;
    return std::filesystem::exists(file, error);
}

void WriteEntries(const std::filesystem::path& file, const std::vector<PlotListEntry>& entries) {
    TextOutput out(file, TextOutput::Mode::Output);
    for (const PlotListEntry& entry : entries) {
        out.WriteRecord(CommaRecord().Text(entry.Title));
        out.WriteRecord(CommaRecord().Whole(entry.Saved));
    }
    out.Close();
}

} // namespace

void MakePlotList(const Workspace& workspace) {
    if (Exists(workspace.DataFile("VARIRPL.TMP"))) {
        return;
    }
    TextInput input(workspace.DataFile("VARIR2.TMP"));
    const auto [H, n] = ReadResponseHead(input);
    std::vector<PlotListEntry> entries;
    for (int block = 1; block <= n * n; ++block) {
        entries.push_back({input.ReadField(), 0});
        input.ReadNumber(); // M
        for (int h = 0; h <= H; ++h) {
            input.ReadNumber();
            input.ReadNumber();
        }
    }
    WriteEntries(workspace.DataFile("VARIRPL.TMP"), entries);
}

std::vector<PlotListEntry> ReadPlotList(const Workspace& workspace) {
    TextInput input(workspace.DataFile("VARIRPL.TMP"));
    std::vector<PlotListEntry> entries;
    while (!input.AtEnd()) {
        PlotListEntry entry;
        entry.Title = input.ReadField();
        entry.Saved = input.ReadWhole();
        entries.push_back(std::move(entry));
    }
    return entries;
}

void MarkPlotSaved(const Workspace& workspace, int k) {
    std::vector<PlotListEntry> entries = ReadPlotList(workspace);
    if (k >= 1 && k <= static_cast<int>(entries.size())) {
        entries[static_cast<std::size_t>(k - 1)].Saved = 1;
    }
    const std::filesystem::path list = workspace.DataFile("VARIRPL.TMP");
    const std::filesystem::path temporary = workspace.DataFile("TMP.TMP");
    WriteEntries(temporary, entries);
    std::error_code error;
    std::filesystem::rename(temporary, list, error);
    if (error) {
        Raise(PathFileAccessError);
    }
}

std::string PlotListItem(const PlotListEntry& entry) {
    return entry.Title + (entry.Saved == 1 ? " (already saved)" : " (not yet saved)");
}

std::string BitmapName(long k) {
    const std::string digits = "00000" + TrimLeft(NumberToText(static_cast<double>(k)));
    return "IRP" + digits.substr(digits.size() - 5) + ".BMP";
}

std::string NextBitmapName(const Workspace& workspace) {
    long k = 1;
    while (Exists(workspace.DataFile(BitmapName(k)))) {
        ++k;
    }
    return BitmapName(k);
}

} // namespace lorvane
