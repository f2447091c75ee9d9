#include <gtest/gtest.h>

#include "data/DataFiles.h"
#include "frame/RecordFile.h"
#include "support/Errors.h"
#include "support/TestModule.h"

using namespace lorvane;
using lorvane::test::ErrorNumberOf;
using lorvane::test::ReadFile;
using lorvane::test::TempFolder;
using lorvane::test::WriteFile;

TEST(RecordFile, FieldsAreLittleEndianAtTheirOffsets) {
    TempFolder temp;
    const auto file = temp.Path() / "X.RAN";
    {
        RecordFile out(file, 12, RecordFile::Mode::Create);
        Record record(12);
        record.SetInt16(0, -2);
        record.SetInt16(2, 1990);
        record.SetDouble(4, 1.0);
        // Record 2 first: record 1 becomes a gap of zero bytes.
        out.Write(2, record);
        out.Close();
    }
    const std::string expected =
        std::string(12, '\0') + std::string("\xFE\xFF\xC6\x07\0\0\0\0\0\0\xF0\x3F", 12);
    EXPECT_EQ(ReadFile(file), expected);

    WriteFile(file, test::Record12(-32768, 32767, -99999.99) + test::Record12(4, 1, 0.1));
    RecordFile in(file, 12, RecordFile::Mode::Read);
    EXPECT_EQ(in.RecordCount(), 2);
    const Record first = in.Read(1);
    EXPECT_EQ(first.Int16At(0), -32768);
    EXPECT_EQ(first.Int16At(2), 32767);
    EXPECT_EQ(first.DoubleAt(4), -99999.99);
    EXPECT_EQ(in.Read(2).DoubleAt(4), 0.1);
    EXPECT_EQ(in.Read(1).Int16At(0), -32768); // records are read by number, in any order
    EXPECT_EQ(ErrorNumberOf([&] { (void)first.DoubleAt(5); }), InvalidProcedureCall);
}

TEST(RecordFile, UpdateRewritesOneRecordInPlace) {
    TempFolder temp;
    const auto file = temp.Path() / "X.RAN";
    WriteFile(file, test::Record12(1, 2, 3) + test::Record12(4, 5, 6) + test::Record12(7, 8, 9));
    {
        RecordFile io(file, 12, RecordFile::Mode::Update);
        Record record = io.Read(2);
        record.SetDouble(4, -1.5);
        io.Write(2, record);
        EXPECT_EQ(io.Read(2).DoubleAt(4), -1.5); // a read after a write sees it
        EXPECT_EQ(io.Read(3).Int16At(2), 8);
        io.Close();
    }
    EXPECT_EQ(ReadFile(file),
              test::Record12(1, 2, 3) + test::Record12(4, 5, -1.5) + test::Record12(7, 8, 9));
}

TEST(RecordFile, TextRecordsArePaddedWithBlanksAndCut) {
    Record record(5);
    record.SetText("ab");
    EXPECT_EQ(record.Text(), "ab   ");
    record.SetText("abcdefg");
    EXPECT_EQ(record.Text(), "abcde");
}

TEST(RecordFile, ErrorsOfOpeningReadingAndWriting) {
    TempFolder temp;
    const auto file = temp.Path() / "X.RAN";
    EXPECT_EQ(ErrorNumberOf([&] { RecordFile f(file, 12, RecordFile::Mode::Read); }), FileNotFound);
    EXPECT_EQ(ErrorNumberOf([&] { RecordFile f(file, 12, RecordFile::Mode::Update); }),
              FileNotFound);
    EXPECT_FALSE(std::filesystem::exists(file)); // opening to update never creates the file
    EXPECT_EQ(ErrorNumberOf([&] { RecordFile f(temp.Path(), 12, RecordFile::Mode::Read); }),
              PathFileAccessError);
    EXPECT_EQ(ErrorNumberOf([&] {
                  RecordFile f(temp.Path() / "none" / "X.RAN", 12, RecordFile::Mode::Create);
              }),
              PathFileAccessError);

    // One whole record and half of the next.
    WriteFile(file, test::Record12(1, 2, 3) + std::string(6, 'x'));
    RecordFile in(file, 12, RecordFile::Mode::Read);
    EXPECT_EQ(in.RecordCount(), 1);
    EXPECT_EQ(ErrorNumberOf([&] { in.Read(2); }), InputPastEndOfFile);
    EXPECT_EQ(ErrorNumberOf([&] { in.Read(3); }), InputPastEndOfFile);
    EXPECT_EQ(ErrorNumberOf([&] { in.Read(0); }), BadRecordNumber);
    EXPECT_EQ(in.Read(1).Int16At(2), 2); // the stream recovers after a failed read
    EXPECT_EQ(ErrorNumberOf([&] { in.Write(1, Record(12)); }), PathFileAccessError);
}
