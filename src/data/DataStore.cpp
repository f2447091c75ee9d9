#include "data/DataStore.h"

#include <algorithm>
#include <new>
#include <stdexcept>

#include "frame/NumberText.h"
#include "frame/ObsLabel.h"
#include "frame/RecordFile.h"
#include "frame/RuntimeError.h"
#include "platform/EventPump.h"

namespace lorvane {

namespace {

// Runs read and reports 1, or 0 when a file error or an impossible size stopped it. Other
// exceptions (the module ending during a yield) pass through.
template <typename Read> Int16 Status(Read&& read) {
    try {
        read();
        return 1;
    } catch (const RuntimeError&) {
        return 0;
    } catch (const std::bad_alloc&) {
        return 0;
    } catch (const std::length_error&) {
        return 0;
    }
}

// Whether any of count variables is missing at t.
template <typename Value> bool AnyMissing(int t, int count, double code, Value&& value) {
    for (int i = 1; i <= count; ++i) {
        if (value(t, i) == code) {
            return true;
        }
    }
    return false;
}

template <typename Value> Int16 FirstComplete(int rows, int count, double code, Value&& value) {
    if (code == 0) {
        return 1;
    }
    for (int t = 1; t <= rows; ++t) {
        if (!AnyMissing(t, count, code, value)) {
            return t;
        }
    }
    return 0;
}

template <typename Value> Int16 LastComplete(int rows, int count, double code, Value&& value) {
    if (code == 0) {
        return rows;
    }
    for (int t = rows; t >= 1; --t) {
        if (!AnyMissing(t, count, code, value)) {
            return t;
        }
    }
    return 0;
}

} // namespace

Int16 ReadHeader(const std::filesystem::path& input1, Int16& varCount, double& missingCode,
                 Int16& dataType, Int16& firstYear, Int16& firstPeriod, Int16& periodsPerYear,
                 Int16& obsCount) {
    return Status([&] {
        RecordFile file(input1, Input1RecordLength, RecordFile::Mode::Read);
        const Record first = file.Read(1);
        const Record second = file.Read(2);
        const Record third = file.Read(3);
        file.Close();
        dataType = first.Int16At(Input1FieldA);
        firstYear = first.Int16At(Input1FieldB);
        missingCode = first.DoubleAt(Input1FieldC);
        periodsPerYear = second.Int16At(Input1FieldA);
        firstPeriod = second.Int16At(Input1FieldB);
        obsCount = third.Int16At(Input1FieldA);
        varCount = third.Int16At(Input1FieldB);
    });
}

Int16 FixMissingCode(const std::filesystem::path& input1, double& code) {
    return Status([&] {
        RecordFile file(input1, Input1RecordLength, RecordFile::Mode::Update);
        Record first = file.Read(1);
        if (first.DoubleAt(Input1FieldC) == 0) {
            first.SetDouble(Input1FieldC, code);
            file.Write(1, first);
            file.Close();
        } else {
            code = first.DoubleAt(Input1FieldC);
        }
    });
}

Int16 ReadNames(const std::filesystem::path& input2, int count, std::vector<std::string>& names) {
    return Status([&] {
        if (count < 0) {
            Raise(SubscriptOutOfRange);
        }
        RecordFile file(input2, Input2RecordLength, RecordFile::Mode::Read);
        std::vector<std::string> read;
        read.reserve(static_cast<std::size_t>(count));
        for (int j = 1; j <= count; ++j) {
            read.push_back(Trim(file.Read(Input2DescriptionRecords + j).Text()));
        }
        names = std::move(read);
    });
}

Int16 ReadDescription(const std::filesystem::path& input2, std::string& text) {
    return Status([&] {
        RecordFile file(input2, Input2RecordLength, RecordFile::Mode::Read);
        std::string joined;
        for (long long r = 1; r <= Input2DescriptionRecords; ++r) {
            joined += file.Read(r).Text();
        }
        text = Trim(joined);
    });
}

Int16 ReadData(const std::filesystem::path& input1, Table<double>& matrix, EventPump& events) {
    return Status([&] {
        RecordFile file(input1, Input1RecordLength, RecordFile::Mode::Read);
        const Record third = file.Read(3);
        const int rows = third.Int16At(Input1FieldA);
        const int columns = third.Int16At(Input1FieldB);
        if (rows < 0 || columns < 0) {
            Raise(SubscriptOutOfRange);
        }
        // A header that promises more values than the file holds fails at its first missing
        // record; finding that out before allocating keeps a wild header from asking for
        // gigabytes.
        const long long records = Input1HeaderRecords + static_cast<long long>(rows) * columns;
        if (file.RecordCount() < records) {
            Raise(InputPastEndOfFile);
        }
        Table<double> read(rows, columns);
        for (int t = 1; t <= rows; ++t) {
            for (int j = 1; j <= columns; ++j) {
                const long long number =
                    Input1HeaderRecords + static_cast<long long>(rows) * (j - 1) + t;
                read(t, j) = file.Read(number).DoubleAt(Input1FieldC);
                events.yield();
            }
        }
        matrix = std::move(read);
    });
}

Int16 DataStore::ReadHeader(const std::filesystem::path& input1) {
    return lorvane::ReadHeader(input1, VarCount, MissingCode, DataType, FirstYear, FirstPeriod,
                               PeriodsPerYear, ObsCount);
}

Int16 DataStore::LoadSelected(const std::filesystem::path& input1,
                              const std::filesystem::path& input2,
                              const std::vector<int>& indexList, EventPump& events) {
    return Status([&] {
        const Int16 count(indexList.size());
        SelectedIndexList.Clear();
        for (int i = 1; i <= count; ++i) {
            Int16 entry(indexList[static_cast<std::size_t>(i - 1)]);
            Int16 size = count;
            SelectedIndexList.Store(StoreMode, size, i, entry);
        }

        if (lorvane::ReadDescription(input2, Description) == 0 || ReadHeader(input1) == 0) {
            Raise(PathFileAccessError);
        }

        std::vector<std::string> names;
        if (ReadNames(input2, VarCount, names) == 0) {
            Raise(PathFileAccessError);
        }
        SelectedNames.Clear();
        for (int i = 1; i <= count; ++i) {
            const int j = SelectedIndexList.At(i);
            if (j < 1 || j > static_cast<int>(names.size())) {
                Raise(SubscriptOutOfRange);
            }
            Int16 size = count;
            NameStore(StoreMode, size, i, names[static_cast<std::size_t>(j - 1)]);
            events.yield();
        }
        names.clear();
        names.shrink_to_fit();

        Table<double> matrix;
        if (ReadData(input1, matrix, events) == 0) {
            Raise(PathFileAccessError);
        }
        SelectedData.Clear();
        const int rows = matrix.Rows();
        for (int i = 1; i <= count; ++i) {
            const int j = SelectedIndexList.At(i);
            for (int t = 1; t <= rows; ++t) {
                Int16 storeRows(rows);
                Int16 storeColumns = count;
                double value = matrix(t, j);
                ValueStore(StoreMode, storeRows, storeColumns, t, i, value);
                events.yield();
            }
        }
    });
}

void DataStore::NameStore(int mode, Int16& count, int index, std::string& name) {
    SelectedNames.Store(mode, count, index, name);
}

void DataStore::ValueStore(int mode, Int16& rows, Int16& columns, int t, int i, double& value) {
    SelectedData.Store(mode, rows, columns, t, i, value);
}

void DataStore::LargestLagStore(int mode, Int16& count, int i, Int16& lag) {
    LargestLags.Store(mode, count, i, lag);
}

void DataStore::LagStore(int mode, Int16& rows, Int16& columns, int i, int j, Int16& lag) {
    LagTable.Store(mode, rows, columns, i, j, lag);
}

void DataStore::StoreZeroLags(int n) {
    LargestLags.Clear();
    LagTable.Clear();
    for (int i = 1; i <= n; ++i) {
        Int16 count(n);
        Int16 zero;
        LargestLagStore(StoreMode, count, i, zero);
        for (int j = 1; j <= n; ++j) {
            Int16 rows(n);
            Int16 columns(n);
            LagStore(StoreMode, rows, columns, i, j, zero);
        }
    }
}

Int16 DataStore::YCount() const {
    return SingleYVariable > 0 ? Int16(1) : YIndexList.Count();
}

int DataStore::YColumn(int i) const {
    if (SingleYVariable > 0) {
        if (i != 1) {
            Raise(SubscriptOutOfRange);
        }
        return SingleYVariable;
    }
    return YIndexList.At(i);
}

const std::string& DataStore::YName(int i) const {
    return SelectedName(YColumn(i));
}

double DataStore::YValue(int t, int i) const {
    return SelectedValue(t, YColumn(i));
}

Int16 DataStore::FirstCommonObs() const {
    return FirstComplete(ObsCount, SelectedCount(), MissingCode,
                         [this](int t, int i) { return SelectedValue(t, i); });
}

Int16 DataStore::LastCommonObs() const {
    return LastComplete(ObsCount, SelectedCount(), MissingCode,
                        [this](int t, int i) { return SelectedValue(t, i); });
}

Int16 DataStore::MissingBetween(int mode, int sampleFirst, int sampleLast) const {
    if (MissingCode == 0) {
        return 0;
    }
    const int first = mode == 0 ? static_cast<int>(FirstCommonObs()) : sampleFirst;
    const int last = mode == 0 ? static_cast<int>(LastCommonObs()) : sampleLast;
    // No common observation gives the empty range 0..0.
    Int16 missing;
    for (int t = std::max(first, 1); t <= std::min(last, static_cast<int>(ObsCount)); ++t) {
        if (AnyMissing(t, SelectedCount(), MissingCode,
                       [this](int s, int i) { return SelectedValue(s, i); })) {
            ++missing;
        }
    }
    return missing;
}

Int16 DataStore::FirstYObs() const {
    return FirstComplete(ObsCount, YCount(), MissingCode,
                         [this](int t, int i) { return YValue(t, i); });
}

Int16 DataStore::LastYObs() const {
    return LastComplete(ObsCount, YCount(), MissingCode,
                        [this](int t, int i) { return YValue(t, i); });
}

std::string DataStore::ObsLabelOf(int t) const {
    return ObsLabel(t, DataType, FirstYear, FirstPeriod, PeriodsPerYear, ObsCount);
}

} // namespace lorvane
