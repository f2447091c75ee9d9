#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "estimate/WaldTest.h"
#include "frame/Screen.h"

namespace lorvane {

// The mark of a selected parameter in the list of a joint test screen.
inline constexpr std::string_view SelectionMark = "(*)";

// What the screens of joint significance tests have in common: the list of parameters that the
// user marks by double click, the dependent variables above the results, and the Wald test of
// the marked parameters being jointly zero. Each screen tells where its parameters come from,
// where the mark stands on a row, what heads a test's report and whether the log keeps it.
class JointTestScreen : public Screen {
public:
    void Activate() override;
    void DoubleClick(Control& control, int item) override;

protected:
    enum class MarkPlace { End, Start };

    struct Form {
        // The instruction above the list.
        std::string instruction;
        MarkPlace mark = MarkPlace::End;
        // The first line of the report of a test; none when empty.
        std::string reportHead;
        // Whether the report of a test also goes to the log.
        bool logged = false;
    };

    JointTestScreen(Module& module, std::string name, Form form);

    // Sets the fonts and shows the dependent variables in Text1 and the rows in List1.
    void ShowParameters(const std::vector<std::string>& rows);
    // Tests the marked rows jointly zero and reports in Text1; fewer than two marked rows only
    // get a word of advice.
    void TestMarked();
    // The parameters, read afresh for each test.
    virtual ParameterFile ReadParameters() const = 0;

private:
    bool Marked(const std::string& row) const;

    Form form_;
};

} // namespace lorvane
