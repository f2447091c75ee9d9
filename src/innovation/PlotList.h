#pragma once

#include <string>
#include <vector>

#include "frame/Int16.h"

namespace lorvane {

struct Workspace;

// One row of VARIRPL.TMP: a response's title and whether its picture was saved (1) or not (0).
struct PlotListEntry {
    std::string Title;
    Int16 Saved;
};

// Makes VARIRPL.TMP from VARIR2.TMP when it does not exist: every response's title, none saved.
void MakePlotList(const Workspace& workspace);

// The rows of VARIRPL.TMP, read to its end.
std::vector<PlotListEntry> ReadPlotList(const Workspace& workspace);

// Marks the k-th plot (from 1) as saved: VARIRPL.TMP is written anew by way of TMP.TMP.
void MarkPlotSaved(const Workspace& workspace, int k);

// How a row shows in the plot list: the title and " (not yet saved)" or " (already saved)".
std::string PlotListItem(const PlotListEntry& entry);

// The name of the k-th picture file, "IRP00001.BMP" for k = 1: the right five digits of k,
// padded with zeros.
std::string BitmapName(long k);

// The first picture file name, counting from 1, whose file under LORVANE.DAT does not exist,
// so that a saved picture never overwrites another.
std::string NextBitmapName(const Workspace& workspace);

} // namespace lorvane
