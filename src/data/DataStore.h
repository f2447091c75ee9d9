#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

#include "data/Stores.h"
#include "frame/Int16.h"

namespace lorvane {

class EventPump;

// The code that stands for "no missing-value code" once a stored code of 0 was replaced.
inline constexpr double DefaultMissingCode = -99999.99;

// INPUT1.RAN: 12-byte records of two 16-bit integers A and B and a double C. Records 1 to 3
// hold the header (DataType, FirstYear, MissingCode / PeriodsPerYear, FirstPeriod, - /
// ObsCount, VarCount, -); the value of variable j at observation t is the C of record
// 3 + ObsCount * (j - 1) + t.
inline constexpr std::size_t Input1RecordLength = 12;
inline constexpr std::size_t Input1FieldA = 0;
inline constexpr std::size_t Input1FieldB = 2;
inline constexpr std::size_t Input1FieldC = 4;
inline constexpr long long Input1HeaderRecords = 3;

// INPUT2.RAN: 500-byte blank-padded texts. Records 1 to 3 hold the description, record 3 + j
// the name of variable j.
inline constexpr std::size_t Input2RecordLength = 500;
inline constexpr long long Input2DescriptionRecords = 3;

// The file routines below catch file errors (and a header that disagrees with its file) and
// return a status: 1 on success, else 0. Their outputs are set only on success.

// Records 1 to 3 of INPUT1.RAN.
Int16 ReadHeader(const std::filesystem::path& input1, Int16& varCount, double& missingCode,
                 Int16& dataType, Int16& firstYear, Int16& firstPeriod, Int16& periodsPerYear,
                 Int16& obsCount);

// Reads record 1. While its code is 0, code is written into it (A and B are kept); a stored
// non-zero code is copied to code instead.
Int16 FixMissingCode(const std::filesystem::path& input1, double& code);

// count names from record 4 on, trimmed: names[j - 1] is the name of variable j.
Int16 ReadNames(const std::filesystem::path& input2, int count, std::vector<std::string>& names);

// Records 1 to 3 joined and trimmed.
Int16 ReadDescription(const std::filesystem::path& input2, std::string& text);

// All values, matrix(t, j) for t = 1..ObsCount and j = 1..VarCount of record 3; yields to the
// event loop after each value.
Int16 ReadData(const std::filesystem::path& input1, Table<double>& matrix, EventPump& events);

// The data set in memory: the header of INPUT1.RAN and the chosen variables, loaded once at
// the selection and read through the accessors. Subscripts start at 1; t runs over
// 1..ObsCount, i over the selected variables. Accessors raise run-time error 9 for a
// subscript outside a store.
class DataStore {
public:
    // Header fields.
    Int16 DataType;
    Int16 FirstYear;
    Int16 FirstPeriod;
    Int16 PeriodsPerYear;
    Int16 ObsCount;
    Int16 VarCount;
    double MissingCode = 0;
    std::string Description;

    // Above 0: the one selected variable that is Y; YIndexList is then not consulted.
    Int16 SingleYVariable;

    // The stores.
    ListStore<Int16> SelectedIndexList;   // file numbers of the chosen variables
    ListStore<std::string> SelectedNames; // 1..k
    TableStore<double> SelectedData;      // (t, i)
    ListStore<Int16> YIndexList;          // selected-variable numbers of the dependent variables
    ListStore<Int16> ExtraIndexList;      // a second list, empty in this module
    ListStore<std::string> DetermNames;   // 1..m
    TableStore<double> DetermData;        // (t, j)
    ListStore<Int16> LargestLags;         // per dependent variable
    TableStore<Int16> LagTable;           // (dependent i, regressor j)

    // Reads the header into the fields above.
    Int16 ReadHeader(const std::filesystem::path& input1);

    // The whole load: the header, the names and values of the variables whose file numbers
    // indexList holds, in that order. Status 1 on success, else 0.
    Int16 LoadSelected(const std::filesystem::path& input1, const std::filesystem::path& input2,
                       const std::vector<int>& indexList, EventPump& events);

    // The store routines of the selected names and values, with the modes of ListStore and
    // TableStore (-1 clear, 1 store, else fetch).
    void NameStore(int mode, Int16& count, int index, std::string& name);
    void ValueStore(int mode, Int16& rows, Int16& columns, int t, int i, double& value);
    // The lag table: the largest lag of each dependent variable, and the lag of regressor j
    // in equation i.
    void LargestLagStore(int mode, Int16& count, int i, Int16& lag);
    void LagStore(int mode, Int16& rows, Int16& columns, int i, int j, Int16& lag);
    // Clears the lag table and stores zeros for n dependent variables.
    void StoreZeroLags(int n);

    Int16 SelectedCount() const { return SelectedNames.Count(); }
    const std::string& SelectedName(int i) const { return SelectedNames.At(i); }
    double SelectedValue(int t, int i) const { return SelectedData.At(t, i); }
    Int16 SelectedRows() const { return SelectedData.Rows(); }

    Int16 YCount() const;
    const std::string& YName(int i) const;
    double YValue(int t, int i) const;
    Int16 ExtraCount() const { return ExtraIndexList.Count(); }

    Int16 DetermCount() const { return DetermNames.Count(); }
    const std::string& DetermName(int j) const { return DetermNames.At(j); }
    double DetermValue(int t, int j) const { return DetermData.At(t, j); }

    // The first and last observation at which no selected variable is missing; 0 when there
    // is none. With a missing code of 0 nothing is missing.
    Int16 FirstCommonObs() const;
    Int16 LastCommonObs() const;
    // The observations with at least one missing selected variable, counted from
    // FirstCommonObs to LastCommonObs when mode is 0, else from sampleFirst to sampleLast.
    Int16 MissingBetween(int mode, int sampleFirst, int sampleLast) const;
    // The same over the dependent variables.
    Int16 FirstYObs() const;
    Int16 LastYObs() const;

    std::string ObsLabelOf(int t) const;

private:
    int YColumn(int i) const;
};

} // namespace lorvane
