#include <gtest/gtest.h>

#include "frame/TextFile.h"
#include "frame/Workspace.h"
#include "support/Errors.h"
#include "support/TestModule.h"

using namespace lorvane;
using lorvane::test::ErrorNumberOf;
using lorvane::test::ReadFile;
using lorvane::test::TempFolder;
using lorvane::test::WriteFile;

TEST(CommaForm, WritesQuotedTextsAndShortestNumbersWithCrLf) {
    TempFolder temp;
    const auto file = temp.Path() / "X.TMP";
    {
        TextOutput out(file, TextOutput::Mode::Output);
        out.WriteRecord(CommaRecord().Text("Y(1)").Number(0.1).Whole(-3).Number(-2.5e-7));
        out.WriteRecord(CommaRecord().Number(1.0 / 3.0));
        out.PrintLine("plain, line");
    }
    EXPECT_EQ(ReadFile(file), "\"Y(1)\",0.1,-3,-2.5e-07\r\n0.3333333333333333\r\nplain, line\r\n");

    TextInput in(file);
    EXPECT_EQ(in.ReadField(), "Y(1)");
    EXPECT_EQ(in.ReadNumber(), 0.1);
    EXPECT_EQ(in.ReadWhole(), -3);
    EXPECT_EQ(in.ReadNumber(), -2.5e-7);
    EXPECT_EQ(in.ReadNumber(), 1.0 / 3.0);
    EXPECT_EQ(in.ReadLine(), "plain, line");
    EXPECT_TRUE(in.AtEnd());
    EXPECT_EQ(ErrorNumberOf([&] { in.ReadField(); }), InputPastEndOfFile);
}

TEST(CommaForm, ReaderAcceptsLfBlanksQuotedCommasAndOtherWriters) {
    TempFolder temp;
    const auto file = temp.Path() / "in.txt";
    WriteFile(file, "  \"a, b\" , 1.5E-05,\"x\"\n 7 ,abc\n\"unclosed");
    TextInput in(file);
    EXPECT_EQ(in.ReadField(), "a, b");
    EXPECT_EQ(in.ReadNumber(), 1.5e-5);
    EXPECT_EQ(in.ReadField(), "x");
    EXPECT_EQ(in.ReadWhole(), 7);
    EXPECT_EQ(ErrorNumberOf([&] { in.ReadNumber(); }), TypeMismatch);
    EXPECT_EQ(in.ReadField(), "unclosed");
    EXPECT_TRUE(in.AtEnd());
}

TEST(TextFiles, MissingFilesAndFolders) {
    TempFolder temp;
    EXPECT_EQ(ErrorNumberOf([&] { TextInput in(temp.Path() / "none"); }), FileNotFound);
    EXPECT_EQ(ErrorNumberOf([&] { TextInput in(temp.Path()); }), FileNotFound);
    EXPECT_EQ(ErrorNumberOf(
                  [&] { TextOutput out(temp.Path() / "no" / "file", TextOutput::Mode::Output); }),
              PathFileAccessError);
    WriteFile(temp.Path() / "empty", "");
    WriteFile(temp.Path() / "one", "\r\n");
    EXPECT_EQ(FileExists(temp.Path() / "empty"), 0);
    EXPECT_EQ(FileExists(temp.Path() / "one"), 1);
    EXPECT_EQ(FileExists(temp.Path() / "none"), 0);
    WriteFile(temp.Path() / "lines", "a\r\nb\nc");
    EXPECT_EQ(ReadLines(temp.Path() / "lines"), (std::vector<std::string>{"a", "b", "c"}));
    EXPECT_EQ(ReadLines(temp.Path() / "lines", 2).size(), 2u);
}

TEST(Workspace, NamesUnderTheDataFolderAreFoldedToUpperCase) {
    TempFolder temp;
    Workspace workspace;
    workspace.DataFolder = temp.Path();
    workspace.WorkFolder = temp.Path();
    std::filesystem::create_directories(workspace.DataSubfolder());
    EXPECT_EQ(workspace.DataFile("Route.tmp"), temp.Path() / "LORVANE.DAT" / "ROUTE.TMP");

    WriteFile(temp.Path() / "global.VAR", "1");
    EXPECT_EQ(workspace.WorkFile("Global.var"), temp.Path() / "global.VAR");
    EXPECT_EQ(workspace.WorkFile("STARTDIR"), temp.Path() / "STARTDIR");

    for (const char* name : {"A.TMP", "b.tmp", "C.Tmp", "OUTPUT.TXT", "INPUT1.RAN", "TMP.TMPX"}) {
        WriteFile(workspace.DataSubfolder() / name, "x");
    }
    EXPECT_EQ(DeleteMatching(workspace.DataSubfolder(), "*.TMP"), 3);
    EXPECT_TRUE(std::filesystem::exists(workspace.DataSubfolder() / "OUTPUT.TXT"));
    EXPECT_TRUE(std::filesystem::exists(workspace.DataSubfolder() / "INPUT1.RAN"));
    EXPECT_TRUE(std::filesystem::exists(workspace.DataSubfolder() / "TMP.TMPX"));
    EXPECT_TRUE(WildcardMatch("IRP?????.BMP", "irp00001.bmp"));
    EXPECT_FALSE(WildcardMatch("IRP?????.BMP", "IRP0001.BMP"));
}

TEST(TextFiles, CountsAndRoomOfADamagedFile) {
    TempFolder temp;
    const auto file = temp.Path() / "C.TMP";
    WriteFile(file, "3\r\n-1\r\n40000\r\na,b\r\n");
    TextInput in(file);
    EXPECT_EQ(in.ReadCount(1, 3), 3);
    EXPECT_EQ(ErrorNumberOf([&] { in.ReadCount(0); }), InputPastEndOfFile);
    // A count beyond 16 bits is the overflow of the whole number that holds it.
    EXPECT_EQ(ErrorNumberOf([&] { in.ReadCount(0); }), Overflow);
    // "a,b\r\n" holds 2 fields and 5 characters: at most 5 fields can follow.
    in.ExpectFields(5);
    EXPECT_EQ(ErrorNumberOf([&] { in.ExpectFields(6); }), InputPastEndOfFile);
    EXPECT_EQ(ErrorNumberOf([&] { in.ExpectFields(-1); }), InputPastEndOfFile);
    EXPECT_EQ(in.ReadField(), "a");
    EXPECT_EQ(in.ReadField(), "b");
    in.ExpectFields(0);
    EXPECT_EQ(ErrorNumberOf([&] { in.ExpectFields(1); }), InputPastEndOfFile);
}
