// The data files reader on damaged files. The input holds the bytes of INPUT1.RAN, then the
// marker "--INPUT2--", then the bytes of INPUT2.RAN (without the marker all of it is INPUT1.RAN
// and INPUT2.RAN is empty). The readers must report a damaged file by their status, and a
// successful load must hold exactly the values the records hold.

#include <algorithm>
#include <cmath>
#include <cstring>
#include <string>
#include <vector>

#include "FuzzSupport.h"
#include "data/DataStore.h"
#include "frame/RecordFile.h"
#include "frame/RuntimeError.h"
#include "platform/Headless.h"

using namespace lorvane;
using namespace lorvane::fuzz;

namespace {

constexpr std::string_view Marker = "--INPUT2--";

double ValueInBytes(std::string_view input1, long long record) {
    double value = 0;
    std::memcpy(&value, input1.data() + (record - 1) * Input1RecordLength + Input1FieldC,
                sizeof value);
    return value;
}

bool SameDouble(double a, double b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

void CheckLoaded(const DataStore& store, std::string_view input1, const std::vector<int>& chosen) {
    if (store.SelectedCount() != static_cast<int>(chosen.size())) {
        Broken("the load kept " + std::to_string(store.SelectedCount()) + " names for " +
               std::to_string(chosen.size()) + " chosen variables");
    }
    if (chosen.empty()) {
        return;
    }
    const int rows = store.SelectedRows();
    if (rows != store.ObsCount) {
        Broken("the load kept " + std::to_string(rows) + " rows of " +
               std::to_string(store.ObsCount));
    }
    for (std::size_t i = 1; i <= chosen.size(); ++i) {
        for (int t = 1; t <= rows; ++t) {
            const long long record =
                Input1HeaderRecords + static_cast<long long>(rows) * (chosen[i - 1] - 1) + t;
            if (!SameDouble(store.SelectedValue(t, static_cast<int>(i)),
                            ValueInBytes(input1, record))) {
                Broken("value (" + std::to_string(t) + ", " + std::to_string(i) +
                       ") is not the one of record " + std::to_string(record));
            }
        }
    }
    // Without a missing code nothing is missing; otherwise the first and last complete
    // observations enclose the ones with a missing value.
    const int first = store.FirstCommonObs();
    const int last = store.LastCommonObs();
    const int missing = store.MissingBetween(0, 0, 0);
    const bool consistent = store.MissingCode == 0
                                ? first == 1 && last == rows && missing == 0
                                : (first == 0) == (last == 0) && first <= last && last <= rows &&
                                      missing >= 0 && missing <= std::max(0, last - first - 1);
    if (!consistent) {
        Broken("common observations " + std::to_string(first) + " to " + std::to_string(last) +
               " with " + std::to_string(missing) + " missing");
    }
    // The labels of a damaged calendar may fail with a run-time error, never otherwise.
    for (int t = 1; t <= rows; ++t) {
        try {
            store.ObsLabelOf(t);
        } catch (const RuntimeError&) {
            break;
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes = AsText(data, size);
    const std::size_t split = bytes.find(Marker);
    const std::string_view input1Bytes = bytes.substr(0, split);
    const std::string_view input2Bytes =
        split == std::string_view::npos ? std::string_view() : bytes.substr(split + Marker.size());
    const std::filesystem::path input1 = ScratchFolder() / "INPUT1.RAN";
    const std::filesystem::path input2 = ScratchFolder() / "INPUT2.RAN";
    WriteBytes(input1, input1Bytes);
    WriteBytes(input2, input2Bytes);

    DataStore store;
    if (store.ReadHeader(input1) == 0) {
        if (input1Bytes.size() >= 3 * Input1RecordLength) {
            Broken("the header of a file of three whole records was not read");
        }
        return 0;
    }

    std::vector<std::string> names;
    if (ReadNames(input2, store.VarCount, names) == 1) {
        if (names.size() != static_cast<std::size_t>(store.VarCount.Value())) {
            Broken("ReadNames gave " + std::to_string(names.size()) + " names");
        }
        for (const std::string& name : names) {
            if (name.size() > Input2RecordLength ||
                (!name.empty() && (name.front() == ' ' || name.back() == ' '))) {
                Broken("a name is not a trimmed record: \"" + name + "\"");
            }
        }
    }

    // The first variables, the last one, and the first again.
    std::vector<int> chosen;
    for (int j = 1; j <= std::min<int>(store.VarCount, 3); ++j) {
        chosen.push_back(j);
    }
    if (store.VarCount > 3) {
        chosen.push_back(store.VarCount);
    }
    if (!chosen.empty()) {
        chosen.push_back(1);
    }
    HeadlessEventPump events;
    if (store.LoadSelected(input1, input2, chosen, events) == 1) {
        CheckLoaded(store, input1Bytes, chosen);
    }

    // A stored code of 0 is replaced; any other is handed back. A is kept.
    const double stored = ValueInBytes(input1Bytes, 1);
    double code = DefaultMissingCode;
    if (FixMissingCode(input1, code) == 1) {
        const std::string after = ReadBytes(input1);
        if (after.size() != input1Bytes.size() ||
            after.compare(0, Input1FieldC, input1Bytes.substr(0, Input1FieldC)) != 0) {
            Broken("FixMissingCode changed more than the code");
        }
        const double now = ValueInBytes(after, 1);
        if (stored == 0 ? now != DefaultMissingCode || code != DefaultMissingCode
                        : !SameDouble(now, stored) || !SameDouble(code, stored)) {
            Broken("FixMissingCode left the code wrong");
        }
    }
    return 0;
}
